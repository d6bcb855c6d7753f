#include "network/pipe_materials.h"

#include <gtest/gtest.h>

#include "network/places.h"
#include "tests/network/settings_folder.h"

namespace {

class PipeMaterials : public WithSettingsFolders {
 protected:
  void given_table(const std::string& bytes) {
    given_file("install/using/PipeMaterials.dat", bytes);
    network::forget_pipe_materials();
  }
};

TEST_F(PipeMaterials, SizesAreFoundByMaterialAndNominalDiameter) {
  given_table("; PE\n管材 3 \"PE100 SDR17\" 2\n规格 3 110 96.8 6.6\n规格 3 160 141 9.5\n");
  EXPECT_EQ(WDLGX::GetDimH(L"3"), 2);
  EXPECT_EQ(WDLGX::GetGCNL2(L"3", 110), 96.8);
  EXPECT_EQ(WDLGX::GetGCHBH(L"3", 110), 6.6);
  EXPECT_EQ(WDLGX::GetGCNL2(L"3", 160), 141.0);
}

TEST_F(PipeMaterials, WhatIsNotInTheTableIsUnknown) {
  given_table("管材 3 PE x\n规格 3 110 96.8 -\n规格 4 50 40\n");
  EXPECT_EQ(WDLGX::GetDimH(L"3"), -1) << "no number";
  EXPECT_EQ(WDLGX::GetDimH(L"4"), -1) << "a material with sizes only";
  EXPECT_EQ(WDLGX::GetDimH(L"5"), -1);
  EXPECT_EQ(WDLGX::GetDimH(nullptr), -1);
  EXPECT_EQ(WDLGX::GetGCHBH(L"3", 110), -1.0);
  EXPECT_EQ(WDLGX::GetGCNL2(L"3", 111), -1.0);
  EXPECT_EQ(WDLGX::GetGCNL2(L"5", 110), -1.0);
  EXPECT_EQ(WDLGX::GetGCNL2(L"4", 50), 40.0);
  EXPECT_EQ(WDLGX::GetGCHBH(L"4", 50), -1.0);
}

TEST_F(PipeMaterials, WithoutATableEverythingIsUnknown) {
  EXPECT_EQ(WDLGX::GetDimH(L"1"), -1);
  EXPECT_EQ(WDLGX::GetGCNL2(L"1", 300), -1.0);
}

TEST_F(PipeMaterials, LinesThatMakeNoSenseAreLeftOut) {
  given_table("管材\n规格\n规格 1\n规格 1 x 2 3\nabc 1 2 3 4\n((((\n\"\n规格 1 300 x y\n");
  EXPECT_EQ(WDLGX::GetGCNL2(L"1", 300), -1.0);
}

TEST_F(PipeMaterials, AnotherInstallationHasItsOwnTable) {
  given_table("管材 1 A 1\n");
  EXPECT_EQ(WDLGX::GetDimH(L"1"), 1);
  given_file("other/using/PipeMaterials.dat", "管材 1 A 3\n");
  cad::host_settings().install_dir = (folder / "other").string();
  EXPECT_EQ(WDLGX::GetDimH(L"1"), 3);
}

TEST_F(PipeMaterials, TheDefaultTableHoldsTheStandardsSizes) {
  cad::host_settings().install_dir = network::default_install_dir();
  struct Row {
    const wchar_t* material;
    int nominal;
    double outer;
    double wall;
  };
  for (const Row& row :
       {Row{L"1", 300, 326, 7.2}, Row{L"1", 80, 98, 6.0}, Row{L"1", 1000, 1048, 13.5},
        Row{L"2", 110, 110, 10.0}, Row{L"3", 110, 110, 6.6}, Row{L"3", 315, 315, 18.7},
        Row{L"4", 110, 110, 4.2}, Row{L"5", 315, 315, 9.2}, Row{L"6", 100, 114.3, 4.0},
        Row{L"7", 200, 219.1, 6.3}, Row{L"8", 1000, 1200, 100}}) {
    const double inner = WDLGX::GetGCNL2(row.material, row.nominal);
    EXPECT_EQ(WDLGX::GetGCHBH(row.material, row.nominal), row.wall) << row.nominal;
    EXPECT_NEAR(inner + 2 * row.wall, row.outer, 1e-9) << row.nominal;
    EXPECT_GE(WDLGX::GetDimH(row.material), 0);
  }
  EXPECT_EQ(WDLGX::GetGCNL2(L"9", 300), 294.0);
  EXPECT_EQ(WDLGX::GetGCHBH(L"9", 300), -1.0) << "a corrugated wall has no one thickness";
  EXPECT_EQ(WDLGX::GetGCNL2(L"10", 600), 600.0);
}

}  // namespace
