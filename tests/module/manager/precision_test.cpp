#include "module/manager/precision.h"

#include <gtest/gtest.h>

namespace {

using DimUtility::tagPcBzSz;

/// Settings with other decimals everywhere, so that a rule that takes the wrong one shows.
class Precision : public testing::Test {
 protected:
  Precision() {
    plan.lengthDecimals = 2;
    plan.lengthTrailingZero = 0;
    plan.slopeDecimals = 4;
    plan.slopeTrailingZero = 0;
    profile.elevationDecimals = 5;
    profile.depthDecimals = 9;
  }
  void set(tagPcBzSz::Position position, int decimals) {
    calculation.decimals[position] = decimals;
  }
  CString rounded(const wchar_t* name, const wchar_t* value) {
    return dim::rounded_value(name, value, {&plan, &profile, &calculation});
  }
  DimUtility::tdfGdcdpdbz plan;
  DimUtility::tdfZdm_bzsz profile;
  DimUtility::tagPcBzSz calculation;
};

TEST_F(Precision, LengthsHaveThePipeLengthDecimals) {
  EXPECT_EQ(rounded(L"pipe_len", L"12.3456"), L"12.35");
  EXPECT_EQ(rounded(L"pipe_len_mm", L"12345.600000"), L"12345.60");
  EXPECT_EQ(rounded(L"pipe_len_pc", L"12.345600"), L"12.35");
  EXPECT_EQ(rounded(L"pipe_length", L"1"), L"1.00");
}

TEST_F(Precision, LengthsDropZerosWhenTheSwitchIsOn) {
  plan.lengthTrailingZero = 1;
  EXPECT_EQ(rounded(L"pipe_len_mm", L"12345.600000"), L"12345.6");
  EXPECT_EQ(rounded(L"pipe_len", L"12"), L"12");
  EXPECT_EQ(rounded(L"pipe_len", L"100"), L"100");
  plan.lengthTrailingZero = -3;
  EXPECT_EQ(rounded(L"pipe_len", L"12.5"), L"12.5");
}

TEST_F(Precision, TheLengthOfTheCalculationHasDecimalsOfItsOwnWhenTheyAreSet) {
  set(tagPcBzSz::kPipeLength, 3);
  plan.lengthTrailingZero = 1;
  EXPECT_EQ(rounded(L"pipe_len_pc", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"pipe_len_pc", L"12.5"), L"12.5");
  EXPECT_EQ(rounded(L"pipe_len_PC", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"pipe_len", L"12.34567"), L"12.35");
  set(tagPcBzSz::kPipeLength, 0);
  EXPECT_EQ(rounded(L"pipe_len_pc", L"12.5"), L"13");
}

TEST_F(Precision, SlopesHaveTheSlopeDecimals) {
  EXPECT_EQ(rounded(L"pipe_i", L"0.003"), L"0.0030");
  EXPECT_EQ(rounded(L"pipe_ii", L"0.300000"), L"0.3000");
  plan.slopeTrailingZero = 1;
  EXPECT_EQ(rounded(L"pipe_ii", L"0.300000"), L"0.3");
  EXPECT_EQ(rounded(L"pipe_iii", L"3.000000"), L"3");
}

TEST_F(Precision, AnInnerDiameterIsRoundedLikeASlope) {
  EXPECT_EQ(rounded(L"pipe_idia", L"300"), L"300.0000");
}

TEST_F(Precision, ElevationsHaveTheElevationDecimals) {
  for (const wchar_t* name :
       {L"pipe_bgnd", L"pipe_bgzr", L"pipe_bgwd", L"well_bgdm", L"well_bgdm_pc", L"well_bgjd"}) {
    EXPECT_EQ(rounded(name, L"4.5"), L"4.50000");
  }
}

TEST_F(Precision, TheElevationOfFreeHeadHasDecimalsOfItsOwnWhenTheyAreSet) {
  EXPECT_EQ(rounded(L"well_bgzyst", L"4.5"), L"4.50000");
  set(tagPcBzSz::kFreeHeadElevation, 1);
  EXPECT_EQ(rounded(L"well_bgzyst", L"4.25"), L"4.3");
  EXPECT_EQ(rounded(L"well_bgZYST", L"4.25"), L"4.3");
  EXPECT_EQ(rounded(L"well_bgdm", L"4.25"), L"4.25000");
}

TEST_F(Precision, FreeHeadAndLossesHaveNoDecimalsUnlessSet) {
  EXPECT_EQ(rounded(L"well_gdzy", L"28.5"), L"29");
  EXPECT_EQ(rounded(L"well_loss", L"1.25"), L"1");
  EXPECT_EQ(rounded(L"well_loss1", L"1.25"), L"1");
  set(tagPcBzSz::kFreeHead, 2);
  set(tagPcBzSz::kLossFromSource, 1);
  EXPECT_EQ(rounded(L"WELL_GDZY", L"28.5"), L"28.50");
  EXPECT_EQ(rounded(L"well_loss2", L"1.25"), L"1.3");
}

TEST_F(Precision, HeadLossHasTwoDecimalsAndThreePerKilometreUnlessSet) {
  EXPECT_EQ(rounded(L"pipe_head", L"1.2346"), L"1.23");
  EXPECT_EQ(rounded(L"pipe_headi", L"1.2346"), L"1.235");
  set(tagPcBzSz::kHeadLoss, 1);
  EXPECT_EQ(rounded(L"pipe_head", L"1.2346"), L"1.2");
  EXPECT_EQ(rounded(L"pipe_headi", L"1.2346"), L"1.235");
  set(tagPcBzSz::kHeadLossPerKilometre, 0);
  EXPECT_EQ(rounded(L"pipe_HEADI", L"1.2346"), L"1");
}

TEST_F(Precision, FlowHasTwoDecimalsUnlessSet) {
  EXPECT_EQ(rounded(L"pipe_flow", L"1234567890"), L"1234567890.00");
  set(tagPcBzSz::kPipeFlow, 4);
  EXPECT_EQ(rounded(L"Pipe_Flow", L"0.5"), L"0.5000");
}

TEST_F(Precision, WhetherTheSpeedIsSetIsAskedOfTheFlow) {
  EXPECT_EQ(rounded(L"pipe_speed", L"1.23456"), L"1.23");
  set(tagPcBzSz::kPipeSpeed, 1);
  EXPECT_EQ(rounded(L"pipe_speed", L"1.23456"), L"1.23");
  set(tagPcBzSz::kPipeFlow, 4);
  EXPECT_EQ(rounded(L"pipe_speed", L"1.23456"), L"1.2");
}

TEST_F(Precision, ASpeedThatIsNotSetWhileTheFlowIsIsRoundedToThreeAtMost) {
  set(tagPcBzSz::kPipeFlow, 4);
  EXPECT_EQ(rounded(L"pipe_speed", L"1.23456"), L"1.235");
  EXPECT_EQ(rounded(L"pipe_speed", L"1.500"), L"1.5");
}

TEST_F(Precision, DiametersHaveNoDecimals) {
  EXPECT_EQ(rounded(L"pipe_dia", L"300.6"), L"301");
  EXPECT_EQ(rounded(L"pipe_odia", L"315"), L"315");
  EXPECT_EQ(rounded(L"any dia at all", L"0.5"), L"1");
}

TEST_F(Precision, BeginningsLookAtLetterCase) {
  EXPECT_EQ(rounded(L"PIPE_LEN", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"PIPE_LEN_PC", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"Well_bgdm", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"pipe_DIA", L"12.34567"), L"12.346");
}

TEST_F(Precision, ANameBehindAPrefixBeginsWithThePrefix) {
  EXPECT_EQ(rounded(L"北侧@pipe_len", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"北侧@pipe_dia", L"300.6"), L"301");
}

TEST_F(Precision, UnderNoRuleANumberWithAPointHasThreeDecimalsAtMost) {
  EXPECT_EQ(rounded(L"pipe_thick", L"4.56789"), L"4.568");
  EXPECT_EQ(rounded(L"pipe_thick", L"2.500"), L"2.5");
  EXPECT_EQ(rounded(L"pipe_thick", L"3.000"), L"3");
  EXPECT_EQ(rounded(L"pipe_thick", L"0.0"), L"0");
  EXPECT_EQ(rounded(L"pipe_thick", L"12.0005"), L"12.001");
}

TEST_F(Precision, UnderNoRuleATextAndAWholeNumberStay) {
  EXPECT_EQ(rounded(L"gdh", L"12"), L"12");
  EXPECT_EQ(rounded(L"gdh", L"0012"), L"0012");
  EXPECT_EQ(rounded(L"gdh", L"W1.50"), L"W1.50");
  EXPECT_EQ(rounded(L"gdh", L"1.5.0"), L"1.5.0");
  EXPECT_EQ(rounded(L"gdh", L" 1.50"), L" 1.50");
  EXPECT_EQ(rounded(L"gdh", L"雨 1.50"), L"雨 1.50");
  EXPECT_EQ(rounded(L"gdh", L""), L"");
}

TEST_F(Precision, UnderARuleATextIsTheNumberItBeginsWith) {
  EXPECT_EQ(rounded(L"pipe_len", L"12.3456m"), L"12.35");
  EXPECT_EQ(rounded(L"pipe_len", L"long"), L"0.00");
  EXPECT_EQ(rounded(L"pipe_len", L""), L"0.00");
}

TEST_F(Precision, DecimalsReadAsMinusOneCountAsNone) {
  plan.lengthDecimals = -1;
  EXPECT_EQ(rounded(L"pipe_len", L"12.34567"), L"12.346");
  EXPECT_EQ(rounded(L"pipe_len", L"long"), L"long");
}

TEST_F(Precision, DecimalsBelowThatMeanSix) {
  plan.lengthDecimals = -2;
  EXPECT_EQ(rounded(L"pipe_len", L"12.5"), L"12.500000");
}

TEST_F(Precision, ExactTiesRoundAwayFromZero) {
  plan.lengthDecimals = 1;
  EXPECT_EQ(rounded(L"pipe_len", L"12.25"), L"12.3");
  EXPECT_EQ(rounded(L"pipe_len", L"-12.25"), L"-12.3");
  EXPECT_EQ(rounded(L"pipe_dia", L"2.5"), L"3");
  plan.lengthDecimals = 2;
  EXPECT_EQ(rounded(L"pipe_len", L"1.005"), L"1.00");
}

TEST_F(Precision, ANegativeZeroKeepsItsSign) {
  EXPECT_EQ(rounded(L"pipe_len", L"-0.001"), L"-0.00");
  plan.lengthTrailingZero = 1;
  EXPECT_EQ(rounded(L"pipe_len", L"-0.001"), L"-0");
}

}  // namespace
