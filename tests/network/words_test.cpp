#include "network/words.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr wchar_t kStake[] = L"1000 50 1 0 1 0 1 1 K 0 0 0 0 0";

TEST(Words, AreCountedFromZero) {
  EXPECT_EQ(KT::GetWordFromStr(kStake, 0, L' '), L"1000");
  EXPECT_EQ(KT::GetWordFromStr(kStake, 8, L' '), L"K");
  EXPECT_EQ(KT::GetWordFromStr(kStake, 13, L' '), L"0");
}

TEST(Words, AWordThatIsNotThereIsEmpty) {
  EXPECT_EQ(KT::GetWordFromStr(kStake, 14, L' '), L"");
  EXPECT_EQ(KT::GetWordFromStr(kStake, -1, L' '), L"");
  EXPECT_EQ(KT::GetWordFromStr(L"", 0, L' '), L"");
  EXPECT_EQ(KT::GetWordFromStr(L" \t ", 0, L' '), L"");
  EXPECT_EQ(KT::GetWordFromStr(kStake, std::numeric_limits<int>::max(), L' '), L"");
  EXPECT_EQ(KT::GetWordFromStr(kStake, std::numeric_limits<int>::max(), L','), L"");
}

TEST(Words, BlanksAndTabsMayStandInRuns) {
  EXPECT_EQ(KT::GetWordFromStr(L"  1000 \t 50  ", 1, L' '), L"50");
  EXPECT_EQ(KT::GetWordFromStr(L"1000\t50", 1, L' '), L"50");
  EXPECT_EQ(KT::GetWordFromStr(L"1000\t50", 1, L'\t'), L"50");
}

TEST(Words, BetweenTwoOtherSeparatorsStandsAnEmptyWord) {
  EXPECT_EQ(KT::GetWordFromStr(L"a,,b", 1, L','), L"");
  EXPECT_EQ(KT::GetWordFromStr(L"a,,b", 2, L','), L"b");
  EXPECT_EQ(KT::GetWordFromStr(L"a b,c", 0, L','), L"a b");
  EXPECT_EQ(KT::GetWordFromStr(L"a,", 1, L','), L"");
}

TEST(Words, ALineIsSplitAtRunsOfBlanks) {
  CStringArray words = {L"old"};
  EXPECT_EQ(KTOLD::DisSpaceString(L"  1000\t 50 K ", words), 3);
  EXPECT_EQ(words, (CStringArray{L"1000", L"50", L"K"}));
  EXPECT_EQ(KTOLD::DisSpaceString(L"   ", words), 0);
  EXPECT_TRUE(words.empty());
}

TEST(Words, AFullWidthBlankIsACharacterOfTheWord) {
  CStringArray words;
  KTOLD::DisSpaceString(L"管　长 2", words);
  EXPECT_EQ(words, (CStringArray{L"管　长", L"2"}));
  EXPECT_EQ(KT::GetWordFromStr(L"管　长 2", 1, L' '), L"2");
}

TEST(Numbers, ATextIsANumberWhenAllOfItIs) {
  for (const wchar_t* number :
       {L"0", L"12", L"-3", L"+3", L"36.5", L"-.5", L"5.", L"1e-7", L"2E+3", L"007", L"1908.29e9"})
    EXPECT_TRUE(KT::IsNum(number)) << testing::PrintToString(number);
  for (const wchar_t* other : {L"", L" ", L"x", L"-", L".", L"-.", L"1 ", L" 1", L"1m", L"1.2.3",
                               L"1e", L"1e+", L"0x10", L"inf", L"nan", L"１", L"1,5", L"--1"})
    EXPECT_FALSE(KT::IsNum(other)) << testing::PrintToString(other);
}

TEST(Numbers, ZeroIsBelowAMillionth) {
  EXPECT_TRUE(KT::ISZERO(0.0));
  EXPECT_TRUE(KT::ISZERO(-0.0));
  EXPECT_TRUE(KT::ISZERO(9.9e-7));
  EXPECT_TRUE(KT::ISZERO(-9.9e-7));
  EXPECT_FALSE(KT::ISZERO(1e-6));
  EXPECT_FALSE(KT::ISZERO(-1e-6));
  EXPECT_FALSE(KT::ISZERO(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Numbers, AreEqualWithinTheTolerance) {
  EXPECT_TRUE(KT::IsDoubleEQ(-1.0, -1.0005, 0.001));
  EXPECT_FALSE(KT::IsDoubleEQ(-1.0, -1.002, 0.001));
  EXPECT_FALSE(KT::IsDoubleEQ(1.0, 1.5, 0.5)) << "it is less than the tolerance";
}

}  // namespace
