// Stakes: their labels, style and layout.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "host/app/host.h"
#include "host/base/decimal_text.h"
#include "host/base/numbers.h"
#include "tests/module/style/style_fixture.h"

namespace {

using network::variable_record;

class StakeLabel : public WithStyle {
 protected:
  /// Decimals of stakes, which a drawing sets.
  void given_decimals(int decimals) {
    if (!host) {
      host = std::make_unique<cad::Host>();
      drawing = host->new_drawing();
    }
    ASSERT_TRUE(host->eval_string(drawing, "(setvar \"USERI4\" " + std::to_string(decimals) + ")"));
    style.UpdateData();
  }
  CString label(double stake, const CString& text = L"") const {
    return style.GetZhStr(stake, text);
  }
  std::unique_ptr<cad::Host> host;
  AcApDocument* drawing = nullptr;
};

class StakeStyle : public WithStyle {};
class StakeLayout : public WithStyle {
 protected:
  void given_layout(const std::wstring& mode, const std::wstring& line) {
    given_installation_variables(
        *variable_record(L"PLN_STK_SET", L"1000 50 1 0 1 0 1 1 K 0 " + mode + L" 0 0 0") +
        *variable_record(L"PLN_STKDIM_M" + mode, line));
  }
};

TEST_F(StakeLabel, BuiltInStyle) {
  EXPECT_EQ(label(1234.5), L"K1+234.5");
  EXPECT_EQ(label(1234.0), L"K1+234");
  EXPECT_EQ(label(50.25), L"K0+050.25");
  EXPECT_EQ(label(-20.0), L"K0-020");
  EXPECT_EQ(label(0.0), L"K0+000");
  EXPECT_EQ(label(12345.678), L"K12+345.678");
}

TEST_F(StakeLabel, ThatNobodyMeasuredIsEmpty) { EXPECT_EQ(label(kNoValue), L""); }

TEST_F(StakeLabel, AFractionThatRoundsUpGoesToTheNextMetreAndLeavesThePoint) {
  EXPECT_EQ(label(999.9996), L"K0+1000.");
  EXPECT_EQ(label(1.9999), L"K0+002.");
  EXPECT_EQ(label(-1.9999), L"K0-002.") << "and the next number is that of 2 - 0.0001";
}

TEST_F(StakeLabel, FourDecimalsAreAllThatCounts) {
  EXPECT_EQ(label(99.99996), L"K0+100");
  EXPECT_EQ(label(-0.00001), L"K0+000") << "below zero by nothing";
}

TEST_F(StakeLabel, HectometresTakeTwoDigits) {
  given_stake_style(L"100 50 0 0 1 0 1 1 K 0");
  EXPECT_EQ(label(1234.5), L"K12+34.5");
  EXPECT_EQ(label(105.0), L"K1+05");
  given_stake_style(L"100 50 0 1 1 0 1 1 K 0");
  EXPECT_EQ(label(1234.5), L"K12+34.5");
  EXPECT_EQ(label(105.0), L"K01+05");
}

TEST_F(StakeLabel, KilometresTakeOneDigitEvenWhenPadded) {
  given_stake_style(L"1000 50 0 1 1 0 1 1 K 0");
  EXPECT_EQ(label(1234.5), L"K1+234.5");
  EXPECT_EQ(label(12034.5), L"K12+034.5");
  given_stake_style(L"500 50 0 1 1 0 1 1 K 0");
  EXPECT_EQ(label(1034.5), L"K2+034.5") << "so do units of any other length";
}

TEST_F(StakeLabel, MetresArePaddedOnDemand) {
  given_stake_style(L"1000 50 0 0 0 0 1 1 K 0");
  EXPECT_EQ(label(1005.5), L"K1+5.5");
}

TEST_F(StakeLabel, ZerosOfTheFractionAreKeptOnDemand) {
  given_stake_style(L"1000 50 0 0 1 1 1 1 K 0");
  EXPECT_EQ(label(1234.5), L"K1+234.500");
  EXPECT_EQ(label(1234.0), L"K1+234");
  given_stake_style(L"1000 50 0 0 1 1 0 1 K 0");
  EXPECT_EQ(label(1234.0), L"K1+234.000");
}

TEST_F(StakeLabel, AFractionOfZeroThatIsKeptIsThePointAlone) {
  given_stake_style(L"1000 50 0 0 1 0 0 1 K 0");
  EXPECT_EQ(label(1234.0), L"K1+234.");
}

TEST_F(StakeLabel, WithoutDecimalsTheFractionIsTwoZeros) {
  given_stake_style(L"1000 50 0 0 1 0 0 1 K 0");
  given_decimals(0);
  EXPECT_EQ(label(1234.0), L"K1+234.00");
  EXPECT_EQ(label(1234.5), L"K1+235.00");
  given_stake_style(L"1000 50 0 0 1 0 1 1 K 0");
  EXPECT_EQ(label(1234.0), L"K1+234");
  EXPECT_EQ(label(1234.4), L"K1+234.00");
  given_stake_style(L"1000 50 0 0 1 1 0 1 K 0");
  EXPECT_EQ(label(1234.0), L"K1+234") << "zeros are kept, and there are none";
}

TEST_F(StakeLabel, WithoutDecimalsANegativeStakeNeverRoundsUp) {
  given_decimals(0);
  EXPECT_EQ(label(-20.7), L"K0-020.00");
  EXPECT_EQ(label(20.7), L"K0+021.00");
  given_decimals(-5);
  EXPECT_EQ(label(20.7), L"K0+021.00");
}

TEST_F(StakeLabel, DecimalsComeFromTheDrawing) {
  given_decimals(1);
  EXPECT_EQ(label(1234.25), L"K1+234.3");
  given_decimals(20);
  EXPECT_EQ(label(0.5), L"K0+000.5");
}

TEST_F(StakeLabel, TheUnitPartOfWholeUnitsOnly) {
  given_stake_style(L"1000 50 1 0 1 0 1 1 K 0");
  EXPECT_EQ(label(1234.5), L"+234.5");
  EXPECT_EQ(label(2000.0), L"K2+000");
  EXPECT_EQ(label(1200.0), L"+200");
  given_stake_style(L"100 50 1 0 1 0 1 1 K 0");
  EXPECT_EQ(label(1200.0), L"K12+00");
}

TEST_F(StakeLabel, TheLetterIsOptional) {
  given_stake_style(L"1000 50 0 0 1 0 1 0 K 0");
  EXPECT_EQ(label(1234.5), L"1+234.5");
  given_stake_style(L"1000 50 0 0 1 0 1 1 里程 0");
  EXPECT_EQ(label(1234.5), L"里程1+234.5");
}

TEST_F(StakeLabel, BeginsWithTheTailOfAName) {
  given_stake_style(L"1000 50 0 0 1 0 1 1 K 1");
  EXPECT_EQ(label(1234.5, L"管线号码=W1"), L"W1 K1+234.5");
  EXPECT_EQ(label(1234.5, L"12345"), L"K1+234.5");
  EXPECT_EQ(label(1234.5, L"1"), L"K1+234.5");
  given_stake_style(L"1000 50 0 0 1 0 1 0 K 1");
  EXPECT_EQ(label(1234.5, L"管线号码=W1"), L"W11+234.5");
  given_stake_style(L"1000 50 0 0 1 0 1 1 K 2");
  EXPECT_EQ(label(1234.5, L"管线号码=W1"), L"K1+234.5") << "1 alone sets the flag";
}

TEST_F(StakeLabel, AUnitOfZeroDoesNotBreakAnything) {
  given_stake_style(L"0 50 0 0 1 0 1 1 K 0");
  EXPECT_FALSE(label(1234.5).empty());
  given_stake_style(L"-1000 50 0 0 1 0 1 1 K 0");
  EXPECT_EQ(label(1234.5), L"K1+234.5");
  EXPECT_FALSE(label(1e300).empty());
  EXPECT_EQ(label(HUGE_VAL), L"K0+001") << "1.#INF reads back as 1";
}

TEST_F(StakeLabel, ReadsBackAsTheStakeToItsDecimals) {
  struct Style {
    const wchar_t* tokens;
    int unit;
  };
  for (const Style& form :
       {Style{L"1000 50 0 0 1 0 1 1 K 0", 1000}, Style{L"100 50 0 1 1 1 0 1 K 0", 100}}) {
    given_stake_style(form.tokens);
    EXPECT_TRUE(rc::check("label and stake", [&] {
      const int drawn = *rc::gen::inRange(-50'000'000, 50'000'000);
      const double stake = drawn / 1000.0;
      const CString text = label(stake);
      const std::size_t sign = text.find_first_of(L"+-");
      RC_ASSERT(text[0] == L'K' && sign != CString::npos);
      const double metres = cad::wtoi(text.substr(1)) * double(form.unit) +
                            cad::wtof(std::wstring_view(text).substr(sign + 1));
      const double back = text[sign] == L'-' ? -metres : metres;
      RC_ASSERT(std::fabs(back - stake) < 1e-6);
    }));
  }
}

TEST_F(StakeStyle, HasInitialValues) {
  const tdfPln_Stk_Set s;
  EXPECT_EQ(s.unitFactor, 0.001);
  EXPECT_EQ(std::vector<int>({s.stakeUnit, s.stakeStep, s.wholeOnlyPrefix, s.padUnit, s.padMetre,
                              s.keepZeros, s.omitZeroFraction, s.letterFlag, s.nameTail}),
            std::vector<int>({1000, 50, 0, 0, 1, 0, 1, 1, 0}));
  EXPECT_EQ(s.letter, L"K");
}

TEST_F(StakeStyle, IsReadFromTheProject) {
  given_file("project/KTSYSVAR.KSV",
             *variable_record(L"PLN_STK_SET", L"100  20 1\t1 0 1 0 0 桩 1 5 6 7"));
  tdfPln_Stk_Set s;
  EXPECT_EQ(style.ReadZhSytle(s), 1);
  EXPECT_EQ(std::vector<int>({s.stakeUnit, s.stakeStep, s.wholeOnlyPrefix, s.padUnit, s.padMetre,
                              s.keepZeros, s.omitZeroFraction, s.letterFlag, s.nameTail}),
            std::vector<int>({100, 20, 1, 1, 0, 1, 0, 0, 1}));
  EXPECT_EQ(s.letter, L"桩");
  EXPECT_EQ(s.unitFactor, 0.001);
}

TEST_F(StakeStyle, AShorterLineLeavesTheRest) {
  given_file("project/ktsysvar.ksv", *variable_record(L"PLN_STK_SET", L"100 20"));
  tdfPln_Stk_Set s;
  EXPECT_EQ(style.ReadZhSytle(s), 1);
  EXPECT_EQ(s.stakeUnit, 100);
  EXPECT_EQ(s.padMetre, 1);
  EXPECT_EQ(s.letter, L"K");
}

TEST_F(StakeStyle, NotFoundKeepsTheStyleAndIsNamed) {
  tdfPln_Stk_Set s;
  s.stakeUnit = 7;
  EXPECT_EQ(style.ReadZhSytle(s), 0);
  EXPECT_EQ(s.stakeUnit, 7);
  EXPECT_EQ(error_text(), L"读取桩号标风格失败!");
}

TEST_F(StakeStyle, TheInstallationsVariableIsNotTheProjects) {
  given_installation_variables(*variable_record(L"PLN_STK_SET", L"100 20"));
  tdfPln_Stk_Set s;
  EXPECT_EQ(style.ReadZhSytle(s), 0);
}

TEST_F(StakeLayout, ItsNumberIsInTheInstallation) {
  int mode = -1;
  style.ReadZhModeIndex(mode);
  EXPECT_EQ(mode, 0) << "without a file";
  given_file("project/ktsysvar.ksv",
             *variable_record(L"PLN_STK_SET", L"1000 50 1 0 1 0 1 1 K 0 5 0 0 0"));
  given_layout(L"3", L"1");
  style.ReadZhModeIndex(mode);
  EXPECT_EQ(mode, 3);
  given_installation_variables(*variable_record(L"PLN_STK_SET", L"1000 50"));
  style.ReadZhModeIndex(mode);
  EXPECT_EQ(mode, 0) << "a short line";
}

TEST_F(StakeLayout, EachModeHasItsWords) {
  const auto read = [this](const wchar_t* mode, const wchar_t* line) {
    given_layout(mode, line);
    stuStakeDimMode layout;
    EXPECT_EQ(style.ReadZhMode(layout), 1);
    return layout;
  };
  using M = stuStakeDimMode;
  EXPECT_EQ(read(L"0", L"9 1.5 2.5 3.5 4.5"), (M{0, 9, 1.5, 2.5}));
  EXPECT_EQ(read(L"1", L"9 1.5 2.5 3.5 4.5"), (M{1, 9, 3.5, 4.5, 1.5, 2.5}));
  EXPECT_EQ(read(L"2", L"9 1.5 2.5 3.5 4.5"), (M{2, 9, 3.5, 4.5, 1.5, 2.5}));
  EXPECT_EQ(read(L"3", L"9 1.5 2.5 3.5 4.5"), (M{3, 9, 3.5, 4.5, 0, 2.5, 1.5}));
  EXPECT_EQ(read(L"4", L"9 1.5 2.5 3.5 4.5"), (M{4, 9, 3.5, 4.5, 0, 2.5, 1.5}));
  EXPECT_EQ(read(L"5", L"9 1.5 2.5 3.5 4.5"), (M{5, 9, 0, 0, 0, 0, 0, 1.5}));
  EXPECT_EQ(read(L"6", L"9x"), (M{6, 9}));
}

TEST_F(StakeLayout, AModeBeyondTheSeventhIsRefused) {
  for (const wchar_t* number : {L"7", L"-1"}) {
    given_layout(number, L"9 1.5");
    stuStakeDimMode mode;
    EXPECT_EQ(style.ReadZhMode(mode), 0);
    EXPECT_EQ(mode.mode, cad::wtoi(number));
    EXPECT_EQ(mode.code, 0);
  }
}

TEST_F(StakeLayout, WithoutALineIsRefused) {
  stuStakeDimMode mode;
  EXPECT_EQ(style.ReadZhMode(mode), 0);
}

}  // namespace
