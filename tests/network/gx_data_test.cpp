#include "network/gx_data.h"

#include <gmock/gmock.h>

#include "network/settings_log.h"
#include "tests/network/settings_folder.h"

namespace {

using testing::Each;
using testing::ElementsAre;

class PipeLibrarySettings : public WithSettingsFolders {
 protected:
  PipeLibrarySettings() { data.Update(); }
  ~PipeLibrarySettings() override { data.Update(); }

  CGxData& data = *CGxData::Instance();
};

TEST_F(PipeLibrarySettings, ThereIsOneObjectForTheProcess) {
  given_file("install/Is/gdcdpdbz.dat", "\"L=\" \"m\" 1 m 0\n");
  EXPECT_EQ(CGxData::Instance(), CGxData::Instance());
  ASSERT_NE(data.getGcGpBzSz(), nullptr);
  EXPECT_EQ(data.getGcGpBzSz(), data.getGcGpBzSz());
}

TEST_F(PipeLibrarySettings, AreThoseOfTheFiles) {
  given_file("install/Is/gdcdpdbz.dat", "\"L=\" \"m\" 3 mm 0\n\"i=\" \"\" 4 ‰ 1\n");
  given_file("install/user/zdm_bzsz.dat", "标高 ((小数位 4))\n");
  given_file("install/Is/pcbzsz.dat", "0 1 2 3 4 5 6 7 8 9\n");
  EXPECT_EQ(data.getGcGpBzSz()->lengthPrefix, L"L=");
  EXPECT_EQ(data.getGcGpBzSz()->lengthDecimals, 3);
  EXPECT_EQ(data.getGcGpBzSz()->lengthUnit, 1);
  EXPECT_EQ(data.getGcGpBzSz()->slopeDecimals, 4);
  EXPECT_EQ(data.getGcGpBzSz()->slopeUnit, 2);
  EXPECT_EQ(data.getGcGpBzSz()->slopeTrailingZero, 1);
  EXPECT_EQ(data.getZdmGdBzSz()->elevationDecimals, 4);
  EXPECT_THAT(data.getPcBzSz()->decimals, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST_F(PipeLibrarySettings, WithoutAFileThereAreNone) {
  EXPECT_EQ(data.getGcGpBzSz(), nullptr);
  EXPECT_EQ(data.getZdmGdBzSz(), nullptr);
  EXPECT_EQ(data.getPcBzSz(), nullptr);
}

TEST_F(PipeLibrarySettings, EachFileIsForItself) {
  given_file("install/Is/pcbzsz.dat", "1\n");
  EXPECT_EQ(data.getGcGpBzSz(), nullptr);
  EXPECT_EQ(data.getZdmGdBzSz(), nullptr);
  EXPECT_NE(data.getPcBzSz(), nullptr);
}

TEST_F(PipeLibrarySettings, AFileThatHoldsNothingIsNone) {
  given_file("install/Is/gdcdpdbz.dat", "; only a comment\n\n");
  given_file("install/user/zdm_bzsz.dat", "");
  std::filesystem::create_directories(folder / "install/Is/pcbzsz.dat");
  EXPECT_EQ(data.getGcGpBzSz(), nullptr);
  EXPECT_EQ(data.getZdmGdBzSz(), nullptr);
  EXPECT_EQ(data.getPcBzSz(), nullptr) << "a folder";
}

TEST_F(PipeLibrarySettings, SayNothingOfWhatIsMissing) {
  data.getGcGpBzSz();
  EXPECT_EQ(data.GetErr()->text(), L"") << "whoever asks prints the warning";
}

TEST_F(PipeLibrarySettings, WhatAFileLeavesOutHasItsInitialValue) {
  given_file("install/Is/gdcdpdbz.dat", "\"L=\" \"m\" 3 m 0\n");
  given_file("install/user/zdm_bzsz.dat", "埋深及覆土 ((小数位 1))\n");
  const DimUtility::tdfGdcdpdbz& plan = *data.getGcGpBzSz();
  EXPECT_EQ(plan.wellNumberUpperCase, 1);
  EXPECT_EQ(plan.wellNumberSeparator, L"-");
  EXPECT_EQ(plan.hydrantPrefix, L"XH");
  EXPECT_EQ(plan.compositeSlot1 + L" " + plan.compositeSlot2 + L" " + plan.compositeSlot3,
            L"DN LL PD");
  EXPECT_EQ(plan.verticalMode, 1);
  EXPECT_EQ(data.getZdmGdBzSz()->depthDecimals, 1);
  EXPECT_EQ(data.getZdmGdBzSz()->elevationDecimals, 3);
  EXPECT_EQ(data.getZdmGdBzSz()->wholeStakeInterval, 20.0);
}

TEST_F(PipeLibrarySettings, TheDrawingStandardDecidesTheSlots) {
  given_file("install/Is/gdcdpdbz.dat", "x\nx\nx\n0 \"-\" DN LL PD DH GCDN V\n");
  EXPECT_EQ(data.getGcGpBzSz()->compositeSlot4, L"");
  given_file("install/sys/DimStyle.ini", "[GxBz]\nLocalStyle=ly\n");
  data.Update();
  EXPECT_EQ(data.getGcGpBzSz()->compositeSlot4, L"DH");
  EXPECT_EQ(data.getGcGpBzSz()->compositeSlot5, L"GCDN");
  EXPECT_EQ(data.getGcGpBzSz()->verticalMode, 1);
}

TEST_F(PipeLibrarySettings, CalculationLabelsThatAreNotSetAreMinusOne) {
  given_file("install/Is/pcbzsz.dat", "; decimals\n2 -1 -7 1\n5 5 5 5 5 5 5 5 5 5\n");
  EXPECT_THAT(data.getPcBzSz()->decimals, ElementsAre(2, -1, -1, 1, -1, -1, -1, -1, -1, -1))
      << "below 0, behind the end; one line is read";
}

TEST_F(PipeLibrarySettings, TheInstalledCalculationLabelsAreNotSet) {
  cad::host_settings().install_dir = PN_FIXTURES "/../../data/install";
  ASSERT_NE(data.getPcBzSz(), nullptr);
  EXPECT_THAT(data.getPcBzSz()->decimals, Each(-1));
  EXPECT_NE(data.getGcGpBzSz(), nullptr);
  EXPECT_NE(data.getZdmGdBzSz(), nullptr);
}

TEST_F(PipeLibrarySettings, AreReadAgainWhenTold) {
  given_file("install/Is/pcbzsz.dat", "1\n");
  const DimUtility::tagPcBzSz* const first = data.getPcBzSz();
  given_file("install/Is/pcbzsz.dat", "2\n");
  EXPECT_EQ(data.getPcBzSz()->decimals[0], 1);
  data.Update();
  EXPECT_EQ(data.getPcBzSz()->decimals[0], 2);
  EXPECT_EQ(data.getPcBzSz(), first) << "the same object";
  std::filesystem::remove(folder / "install/Is/pcbzsz.dat");
  EXPECT_NE(data.getPcBzSz(), nullptr);
  data.Update();
  EXPECT_EQ(data.getPcBzSz(), nullptr);
}

TEST_F(PipeLibrarySettings, AreReadAgainWhenTheInstallationIsAnother) {
  given_file("install/Is/pcbzsz.dat", "1\n");
  given_file("other/Is/pcbzsz.dat", "2\n");
  EXPECT_EQ(data.getPcBzSz()->decimals[0], 1);
  cad::host_settings().install_dir = (folder / "other").string();
  EXPECT_EQ(data.getPcBzSz()->decimals[0], 2);
}

TEST_F(PipeLibrarySettings, TellWhereCalculationLabelsStand) {
  const auto file = given_file("install/Is/pcbzsz.dat", "; decimals\n2 -1 3\n");
  network::SettingsLog log;
  const network::SettingsLogScope scope(log);
  data.getPcBzSz();
  ASSERT_EQ(log.settings.size(), 8u) << "those that are used";
  const network::SettingNote& speed = log.settings[1];
  EXPECT_EQ(speed.name, L"calculated speed decimals");
  EXPECT_EQ(speed.value, L"3");
  EXPECT_EQ(speed.origin.file, wide(file));
  EXPECT_EQ(speed.origin.line, 2);
  EXPECT_EQ(speed.origin.place, L"token 2");
  EXPECT_TRUE(log.settings[2].is_default);
  EXPECT_EQ(log.settings[2].value, L"-1");
}

}  // namespace
