#include "host/app/system/diesel.h"

#include <gtest/gtest.h>

#include "host/app/system/picture_time.h"
#include "tests/host/app/host_test.h"

namespace cad {
namespace {

std::wstring diesel(std::wstring_view text) {
  DieselSurroundings around;
  around.variable = [](std::wstring_view name) {
    return name == L"dwgname" ? L"plan.dxf" : name == L"luprec" ? L"4" : L"";
  };
  around.number = [](std::wstring_view) { return std::nullopt; };
  around.environment = [](std::wstring_view) { return std::wstring(L"here"); };
  return evaluate_diesel(text, around);
}

TEST(Diesel, EvaluatesExpressionsWithinText) {
  struct Row {
    const wchar_t* text;
    const wchar_t* value;
  };
  for (const Row& row : std::initializer_list<Row>{
           {L"", L""},
           {L"plain (text), 1", L"plain (text), 1"},
           {L"a $(+,1,2) b", L"a 3 b"},
           {L"$(+,1,2.5)", L"3.5"},
           {L"$(-,10,2,3)", L"5"},
           {L"$(*,1.5,4)", L"6"},
           {L"$(/,7,2)", L"3.5"},
           {L"$(/,1,3)", L"0.333333333333"},
           {L"$(=,1,1.0)", L"1"},
           {L"$(!=,1,1)", L"0"},
           {L"$(<,1,2)$(>,1,2)$(<=,2,2)$(>=,1,2)", L"1010"},
           {L"$(and,7,5)$(or,1,4)$(xor,5,4)", L"551"},
           {L"$(eq,ab,ab)$(eq,ab,AB)", L"10"},
           {L"$(if,1,yes,no)$(if,0,yes,no)$(if,0,yes)", L"yesno"},
           {L"$(if,$(eq,$(getvar,dwgname),plan.dxf),same)", L"same"},
           {L"$(eval,\"$(+,1,1)\")", L"2"},
           {L"$(fix,3.99)$(fix,-3.99)", L"3-3"},
           {L"$(index,1,\"a,b,c\")", L"b"},
           {L"$(index,5,\"a,b,c\")", L""},
           {L"$(nth,2,a,b,c)", L"c"},
           {L"$(nth,3,a,b,c)",
            L"$(nth,?"
            L"?)"},
           {L"$(strlen,abcd)$(strlen,)", L"40"},
           {L"$(substr,abcdef,2,3)$(substr,abcdef,5)", L"bcdef"},
           {L"$(upper,abc)", L"ABC"},
           {L"$(rtos,3.14159,2,2)", L"3.14"},
           {L"$(rtos,15.5,4,2)", L"1'-3 1/2\""},
           {L"$(angtos,1.5707963267949,0,1)", L"90.0"},
           {L"$(getenv,HOME)", L"here"},
           {L"$(linelen)", L"240"},
           {L"\"$(+,1,1)\"", L"\"2\""},
           {L"$(strlen,\"say \"\"hi\"\"\")", L"8"},
       }) {
    EXPECT_EQ(diesel(row.text), row.value)
        << "expression " << std::string(row.text, row.text + wcslen(row.text));
  }
}

TEST(Diesel, TellsWhatItCannotDo) {
  EXPECT_EQ(diesel(L"$(nosuch,1)"),
            L"$(nosuch)?"
            L"?");
  EXPECT_EQ(diesel(L"$(+,a)"),
            L"$(+,?"
            L"?)");
  EXPECT_EQ(diesel(L"$(/,1,0)"),
            L"$(/,?"
            L"?)");
  EXPECT_EQ(diesel(L"$(eq,1)"),
            L"$(eq,?"
            L"?)");
  EXPECT_EQ(diesel(L"a $(+,1,2"), L"a $?");
  std::wstring deep;
  for (int i = 0; i < 100000; ++i) deep += L"$(+,1,";
  deep += L"1" + std::wstring(100000, L')');
  EXPECT_NE(diesel(deep).find(L"??"), std::wstring::npos);
}

TEST(Diesel, TellsTimeByAPicture) {
  constexpr double kMoment = 2459000.5 + 0.1;  // 31 May 2020 is day 2459001; the fraction is 14:24
  EXPECT_EQ(picture_of_time(kMoment, L"YYYY-MO-DD HH:MM:SS"), L"2020-05-30 14:24:00");
  EXPECT_EQ(picture_of_time(kMoment, L"DDDD, D MONTH YY"), L"Saturday, 30 May 20");
  EXPECT_EQ(picture_of_time(kMoment, L"DDD D mon M"), L"Sat 30 May 5");
  EXPECT_EQ(picture_of_time(kMoment, L"H:MMam/pm"), L"2:24pm");
  EXPECT_EQ(picture_of_time(kMoment, L"HH:MM AM/PM"), L"02:24 PM");
  EXPECT_EQ(picture_of_time(2459000.0, L"H A/P MSEC"), L"12 A 000");
  EXPECT_EQ(picture_of_time(-5, L"D"), L"");
  EXPECT_EQ(diesel(L"$(edtime,2459000.6,D/M,YYYY)"), L"30/5,2020");
}

using Menucmd = WithHost;

TEST_F(Menucmd, EvaluatesWhatFollowsM) {
  host.new_drawing();
  EXPECT_EQ(eval("(menucmd \"M=$(+,1,$(getvar,lunits))\")"), "\"3\"");
  EXPECT_EQ(eval("(menucmd \"m=$(edtime,$(getvar,date),YYYY)\")").size(), 6u);
  EXPECT_EQ(eval("(menucmd \"P1=POP5\")"), "nil");
  EXPECT_EQ(eval("(menugroup \"CUSTOM\")"), "nil");
}

}  // namespace
}  // namespace cad
