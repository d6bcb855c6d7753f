// What labels are drawn with: sizes, layers, reading directions, messages.

#include <cmath>
#include <limits>
#include <numbers>

#include "host/app/console.h"
#include "host/db/open.h"
#include "host/db/symbol_table.h"
#include "network/drawing_geometry.h"
#include "network/drawing_layers.h"
#include "network/drawing_settings.h"
#include "network/gx_error.h"
#include "tests/network/settings_folder.h"

namespace {

constexpr double kPi = std::numbers::pi;

// Sizes

class DrawingSizes : public WithSettingsFolders {};

TEST_F(DrawingSizes, ComeFromTheSettingsStore) {
  given_file("install/sys/QrmvPz.ini", "[Drawing]\nTextHigh=2.5\nTextWidthFactor=0.8\n");
  EXPECT_EQ(KT::GetTextHigh(), 2.5);
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.8);
}

TEST_F(DrawingSizes, OfTheProjectGoBeforeThoseOfTheInstallation) {
  given_file("install/sys/QrmvPz.ini", "[Drawing]\nTextHigh=2.5\nTextWidthFactor=0.8\n");
  given_file("project/QrmvPz.ini", "[Drawing]\nTextHigh=5\n");
  EXPECT_EQ(KT::GetTextHigh(), 5);
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.8);
}

TEST_F(DrawingSizes, ThatAreNotSetOrNoSizesCountAsNotSet) {
  EXPECT_LT(KT::GetTextHigh(), 0.0);
  EXPECT_EQ(Gx::GetTextWidthFactor(), 1.0);
  for (const char* value : {"", "0", "-2", "3mm", "inf", "nan", "abc"}) {
    const std::string text = value;
    given_file("install/sys/QrmvPz.ini",
               "[Drawing]\nTextHigh=" + text + "\nTextWidthFactor=" + text + "\n");
    EXPECT_LT(KT::GetTextHigh(), 0.0) << value;
    EXPECT_EQ(Gx::GetTextWidthFactor(), 1.0) << value;
  }
}

TEST_F(DrawingSizes, TheWidthFactorIsReadAgainWithTheHeightAndForOtherFolders) {
  given_file("install/sys/QrmvPz.ini", "[Drawing]\nTextWidthFactor=0.8\n");
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.8);
  given_file("install/sys/QrmvPz.ini", "[Drawing]\nTextWidthFactor=0.6\n");
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.8) << "labels ask one by one";
  KT::GetTextHigh();
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.6);
  given_file("other/sys/QrmvPz.ini", "[Drawing]\nTextWidthFactor=0.9\n");
  cad::host_settings().install_dir = (folder / "other").string();
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.9);
  given_file("road/QrmvPz.ini", "[Drawing]\nTextWidthFactor=0.4\n");
  cad::host_settings().project_dir = (folder / "road").string();
  EXPECT_EQ(Gx::GetTextWidthFactor(), 0.4);
}

// Layers

class DrawingLayers : public WithSettingsFolders {
 protected:
  DrawingLayers() { acdbHostApplicationServices()->setWorkingDatabase(&drawing); }
  ~DrawingLayers() override { acdbHostApplicationServices()->setWorkingDatabase(nullptr); }
  static int color_of(AcDbObjectId id) {
    AcDbLayerTableRecord* layer = nullptr;
    EXPECT_EQ(acdbOpenObject(layer, id, AcDb::kForRead), Acad::eOk);
    if (!layer) return -1;
    const int color = layer->colorIndex();
    layer->close();
    return color;
  }
  AcDbDatabase drawing;
};

TEST_F(DrawingLayers, AreFoundByNameWhateverTheirLetterCase) {
  EXPECT_EQ(Gx::GetLayer(L"0"), drawing.clayer());
  const AcDbObjectId made = Gx::GetLayer(L"Labels");
  EXPECT_FALSE(made.isNull());
  EXPECT_EQ(Gx::GetLayer(L"LABELS"), made);
}

TEST_F(DrawingLayers, ThatAreMissingAreMadeInTheColourOfTheFirstPattern) {
  given_file("install/sys/QrmvPz.ini",
             "[Layers]\nSwBz*JdBh=2\nSwBz*=3\nZY-标注=4\nBad=300\nWord=red\n");
  EXPECT_EQ(color_of(Gx::GetLayer(L"swbzW1JdBh")), 2);
  EXPECT_EQ(color_of(Gx::GetLayer(L"SwBzW1Pipe")), 3);
  EXPECT_EQ(color_of(Gx::GetLayer(L"ZY-标注")), 4);
  EXPECT_EQ(color_of(Gx::GetLayer(L"Bad")), 7);
  EXPECT_EQ(color_of(Gx::GetLayer(L"Word")), 7);
  EXPECT_EQ(color_of(Gx::GetLayer(L"Other")), 7);
}

TEST_F(DrawingLayers, ThatAreThereKeepTheirColour) {
  given_file("install/sys/QrmvPz.ini", "[Layers]\nA*=5\n");
  const AcDbObjectId layer = Gx::GetLayer(L"A1");
  given_file("install/sys/QrmvPz.ini", "[Layers]\nA*=3\n");
  EXPECT_EQ(Gx::GetLayer(L"A1"), layer);
  EXPECT_EQ(color_of(layer), 5);
}

TEST_F(DrawingLayers, PatternsOfTheProjectGoBeforeThoseOfTheInstallation) {
  given_file("install/sys/QrmvPz.ini", "[Layers]\nA*=3\nB*=4\n");
  given_file("project/QrmvPz.ini", "[Layers]\nA*=5\n");
  EXPECT_EQ(color_of(Gx::GetLayer(L"A1")), 5);
  EXPECT_EQ(color_of(Gx::GetLayer(L"B1")), 4);
}

TEST_F(DrawingLayers, NoNameOfALayerAndNoDrawingGiveNone) {
  for (const wchar_t* name : {L"", L"a/b", L"a<b", L"*"}) EXPECT_TRUE(Gx::GetLayer(name).isNull());
  EXPECT_TRUE(Gx::GetLayer(nullptr).isNull());
  EXPECT_FALSE(drawing.is_modified());
  acdbHostApplicationServices()->setWorkingDatabase(nullptr);
  EXPECT_TRUE(Gx::GetLayer(L"0").isNull());
}

// Geometry

TEST(LabelDirections, AreReadToTheRightOrUpwards) {
  const struct {
    double angle, read;
  } rows[] = {{0, 0},
              {0.3, 0.3},
              {kPi / 2, kPi / 2},
              {kPi / 2 + 0.01, 3 * kPi / 2 + 0.01},
              {kPi, 0},
              {3 * kPi / 2, kPi / 2},
              {3 * kPi / 2 + 0.01, 3 * kPi / 2 + 0.01},
              {2 * kPi, 0},
              {-0.3, 2 * kPi - 0.3},
              {-kPi / 2, kPi / 2},
              {5 * kPi + 0.2, 0.2},
              {-7.5 * kPi, kPi / 2}};
  for (const auto& row : rows) EXPECT_NEAR(Gx::CalcDimAng(row.angle), row.read, 1e-9) << row.angle;
}

TEST(LabelDirections, NoiseDoesNotTurnAnUprightLabel) {
  EXPECT_NEAR(Gx::CalcDimAng(kPi / 2 + 1e-9), kPi / 2, 1e-6);
  EXPECT_NEAR(Gx::CalcDimAng(3 * kPi / 2 + 1e-9), kPi / 2, 1e-6);
}

TEST(LabelDirections, StayWithinOneTurn) {
  for (double angle = -20; angle < 20; angle += 0.01) {
    const double read = Gx::CalcDimAng(angle);
    EXPECT_GE(read, 0.0);
    EXPECT_LT(read, 2 * kPi);
    EXPECT_GT(std::cos(read), -1e-5) << angle;
  }
  EXPECT_EQ(Gx::CalcDimAng(-1e-17), 0.0) << "which is 2 pi once rounded";
}

TEST(TextWidths, GrowWithHeightAndFactor) {
  double one = 0, twice = 0, narrow = 0;
  EXPECT_TRUE(KT::GetTextWidth(L"DN300", 1, one, 0, 1));
  EXPECT_TRUE(KT::GetTextWidth(L"DN300", 2, twice, 0, 1));
  EXPECT_TRUE(KT::GetTextWidth(L"DN300", 1, narrow, 0, 0.5));
  EXPECT_GT(one, 2.0);
  EXPECT_LT(one, 6.0);
  EXPECT_NEAR(twice, 2 * one, 1e-9);
  EXPECT_NEAR(narrow, one / 2, 1e-9);
}

TEST(TextWidths, OfNothingAreZero) {
  double width = 7;
  EXPECT_FALSE(KT::GetTextWidth(L"", 1, width, 0, 1));
  EXPECT_EQ(width, 0.0);
  width = 7;
  EXPECT_FALSE(KT::GetTextWidth(L"a", std::nan(""), width, 0, 1));
  EXPECT_EQ(width, 0.0);
}

TEST(NearPoints, TheFirstIsNearWhenItIsStrictlyNearer) {
  EXPECT_TRUE(CKtGxUtils::IsFirstPointNear({1, 0, 0}, {2, 0, 0}, {0, 0, 0}));
  EXPECT_FALSE(CKtGxUtils::IsFirstPointNear({2, 0, 0}, {1, 0, 0}, {0, 0, 0}));
  EXPECT_FALSE(CKtGxUtils::IsFirstPointNear({1, 0, 0}, {0, 1, 0}, {0, 0, 0}));
}

// Messages

TEST(Messages, AreShownAsHintsOrAsTheyStand) {
  std::string printed;
  cad::set_console([&](std::string_view text) { printed += text; });
  CGxError error;
  error.Report(L"100%s");
  error.Report2Cmd(L"\n 50%d");
  error.Report2Cmd(L"");
  cad::set_console({});
  EXPECT_EQ(printed, "\n100%s\n 50%d");
}

}  // namespace
