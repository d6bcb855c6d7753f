#include "network/gx_data.h"

#include <gtest/gtest.h>

TEST(PipeLibrarySettings, ThereIsOneObjectForTheProcess) {
  EXPECT_EQ(CGxData::Instance(), CGxData::Instance());
  EXPECT_EQ(CGxData::Instance()->getGcGpBzSz(), CGxData::Instance()->getGcGpBzSz());
}

TEST(PipeLibrarySettings, PlanLabelsStartWithTheirInitialValues) {
  const DimUtility::tdfGdcdpdbz& labels = *CGxData::Instance()->getGcGpBzSz();
  EXPECT_EQ(labels.lengthPrefix, L"");
  EXPECT_EQ(labels.lengthDecimals, 2);
  EXPECT_EQ(labels.lengthUnit, 2);
  EXPECT_EQ(labels.lengthTrailingZero, 1);
  EXPECT_EQ(labels.wellNumberUpperCase, 1);
  EXPECT_EQ(labels.wellNumberSeparator, L"-");
  EXPECT_EQ(labels.hydrant, 0);
  EXPECT_EQ(labels.hydrantPrefix, L"XH");
  EXPECT_EQ(labels.wellNumberExtra, L"L");
  EXPECT_EQ(labels.compositeSeparateLines, 0);
  EXPECT_EQ(labels.compositeSeparator, L"-");
  EXPECT_EQ(labels.compositeSlot1 + L" " + labels.compositeSlot2 + L" " + labels.compositeSlot3,
            L"DN LL PD");
  EXPECT_EQ(labels.verticalMode, 1);
}

TEST(PipeLibrarySettings, ProfileLabelsStartWithTheirInitialValues) {
  const DimUtility::tdfZdm_bzsz& labels = *CGxData::Instance()->getZdmGdBzSz();
  EXPECT_EQ(labels.elevationDecimals, 3);
  EXPECT_EQ(labels.depthDecimals, 2);
  EXPECT_EQ(labels.diameterNotation, 0);
  EXPECT_EQ(labels.wholeStakeInterval, 20.0);
  EXPECT_EQ(labels.nodesAboveSection, 1);
}

TEST(PipeLibrarySettings, NoCalculationLabelIsSetAtTheStart) {
  for (const int decimals : CGxData::Instance()->getPcBzSz()->decimals) EXPECT_EQ(decimals, -1);
}
