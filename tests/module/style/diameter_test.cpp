// Labels of diameters and sections.
#include <cmath>

#include "tests/module/style/style_fixture.h"

namespace {

constexpr double kInvalid = kNoValue;

class RectangularSection : public WithStyle {};
class TwinSection : public WithStyle {};
class OddSection : public WithStyle {};
class CircularPipe : public WithStyle {};

/// Styles over pipes of two materials: 7 has a style and a size, 8 neither.
class DiameterStyle : public WithStyle {
 protected:
  DiameterStyle() {
    given_file("install/using/PipeMaterials.dat",
               "管材 7 PE 1 \"\"\n规格 7 110 96.8 6.6\n规格 7 125 110 -\n"
               "规格 7 200 180.1234567 9.5\n");
    network::forget_pipe_materials();
  }
  CString label(const std::string& style_line, double diameter = 110, const wchar_t* code = L"7") {
    given_diameter_styles(style_line + "\n");
    return style.GetDnStrhelper(code, 0, diameter);
  }
};

TEST_F(RectangularSection, IsLabelledByWidthAndHeight) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 2000, 1500, 0), L"BxH=2000x1500");
  EXPECT_EQ(style.GetDnStr(kInvalid, 1, 1, 2000.9, 1500.9, -1), L"BxH=2000x1500");
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 2000, 1500, kInvalid), L"BxH=2000x1500");
}

TEST_F(RectangularSection, TellsTheRatioOfItsSides) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 2000, 1500, 2.5), L"BxH=2000x1500(1:2.5)");
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 2000, 1500, 0.25), L"BxH=2000x1500(1:0.3)");
}

TEST_F(RectangularSection, WithoutWidthOrHeightIsEmpty) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(300, 1, 1, kInvalid, 1500, 0), L"");
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 2000, kInvalid, 0), L"");
}

TEST_F(RectangularSection, BeginsWithTheTextOfTheSettings) {
  given_library_settings("[WDLDIM]\nGgDimPre=宽x高 100%s%n\n");
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 2000, 1500, 0), L"宽x高 100%s%n=2000x1500");
}

TEST_F(RectangularSection, SizesBeyondWholeNumbersDoNotBreakAnything) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(300, 1, 1, 1e300, -1e300, 0), L"BxH=-2147483648x-2147483648");
}

TEST_F(RectangularSection, LosesFractionsUpToTheLimitsOfWholeNumbers) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(0, 1, 1, 2147483647.9, -0.9, 0), L"BxH=2147483647x0");
  EXPECT_EQ(style.GetDnStr(0, 1, 1, 2147483648.0, -2147483648.9, 0),
            L"BxH=-2147483648x-2147483648");
  EXPECT_EQ(style.GetDnStr(0, 1, 1, -2000.9, NAN, NAN), L"BxH=-2000x-2147483648");
}

TEST_F(TwinSection, SaysThatItIsTwin) {
  style.UpdateData();
  EXPECT_EQ(style.GetDRectPipeDnStr(300, 1, 1, 2000, 1500, 0), L"2xBxH=2000x1500");
}

TEST_F(TwinSection, WithARatioIsLabelledLikeASingleOne) {
  style.UpdateData();
  EXPECT_EQ(style.GetDRectPipeDnStr(300, 1, 1, 2000, 1500, 2.5), L"BxH=2000x1500(1:2.5)");
}

TEST_F(TwinSection, OtherPipesAreLabelledAsAlways) {
  style.UpdateData();
  EXPECT_EQ(style.GetDRectPipeDnStr(300, 1, 0, kInvalid, kInvalid, 0), L"300");
  EXPECT_EQ(style.GetDRectPipeDnStr(kInvalid, 1, 0, 2000, 1500, 0), L"");
}

TEST_F(OddSection, HasItsHeightAsDiameter) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(1500.7, 1, 0, 2000.7, 9, 2.5), L"BxH=2000x1500");
  EXPECT_EQ(style.GetDRectPipeDnStr(1500, 1, 0, 2000, 9, 2.5), L"2xBxH=2000x1500");
}

TEST_F(OddSection, InStandardBJHasASquare) {
  given_style_keys("LocalStyle=BJ\n");
  EXPECT_EQ(style.GetDnStr(1500, 1, 0, 2000, kInvalid, 0), L"□2000x1500");
  EXPECT_EQ(style.GetDRectPipeDnStr(1500, 1, 0, 2000, kInvalid, 0), L"□2x2000x1500");
  EXPECT_EQ(style.GetDnStr(1500, 1, 1, 2000, 1500, 0), L"BxH=2000x1500");
}

TEST_F(CircularPipe, WithoutADiameterIsEmpty) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(kInvalid, 1, 0, kInvalid, kInvalid, 0), L"");
  EXPECT_EQ(style.GetDnStr(kInvalid, 1, 0, 2000, kInvalid, 0), L"");
}

TEST_F(CircularPipe, InTheOwnNotationIsRounded) {
  given_profile_labels("管径 ((前缀 DN) (后缀 mm) (表示法 公称))\n");
  EXPECT_EQ(style.GetDnStr(299.6, 1, 0, kInvalid, kInvalid, 0), L"DN300mm");
  EXPECT_EQ(style.GetDnStr(300.5, 1, 0, kInvalid, kInvalid, 0), L"DN301mm");
}

TEST_F(CircularPipe, WithoutStylesIsTheBareDiameter) {
  style.UpdateData();
  EXPECT_EQ(style.GetDnStr(300.9, 1, 0, kInvalid, kInvalid, 0), L"300");
}

TEST_F(DiameterStyle, IsTheOneOfTheMaterial) {
  given_diameter_styles("DN STD\nde OUT × WALL \"\"\n");
  EXPECT_EQ(style.GetDnStr(110, 7, 0, kInvalid, kInvalid, 0), L"de110×6.6");
  EXPECT_EQ(style.GetDnStr(110, 8, 0, kInvalid, kInvalid, 0), L"DN110") << "no material: the first";
}

TEST_F(DiameterStyle, ShowsTwoSizes) {
  EXPECT_EQ(label("de OUT × WALL \"\""), L"de110×6.6");
  EXPECT_EQ(label("d IN / STD mm"), L"d96.8/110mm");
}

TEST_F(DiameterStyle, WithoutASecondNumberThereIsNoSuffix) {
  EXPECT_EQ(label("DN STD / \"\" mm"), L"DN110");
  EXPECT_EQ(label("DN STD / std mm"), L"DN110") << "letter case counts";
}

TEST_F(DiameterStyle, AnyOtherFirstWordIsTheNominalDiameter) {
  EXPECT_EQ(label("DN x / WALL mm"), L"DN110/6.6mm");
  EXPECT_EQ(label("DN"), L"DN110");
}

TEST_F(DiameterStyle, AnUnknownSizeIsTheNominalDiameter) {
  EXPECT_EQ(label("d OUT / WALL mm", 125), L"d125/125mm");
  EXPECT_EQ(label("d IN / WALL mm", 125), L"d110/125mm") << "the inner diameter is known";
  EXPECT_EQ(label("d IN / WALL mm", 110, L"8"), L"d110/110mm");
  EXPECT_EQ(label("d IN / WALL mm", 160), L"d160/160mm");
}

TEST_F(DiameterStyle, TheOuterDiameterIsTheInnerAndTwoWalls) {
  EXPECT_EQ(label("D OUT", 200), L"D199.123457");
}

TEST_F(DiameterStyle, SizesHaveSixDecimalsAtMost) {
  EXPECT_EQ(label("d IN × WALL \"\"", 200), L"d180.123457×9.5");
}

TEST_F(DiameterStyle, TheDiameterIsTruncated) { EXPECT_EQ(label("d IN", 110.9), L"d96.8"); }

TEST_F(DiameterStyle, BeyondTheListIsTheBareDiameter) {
  given_diameter_styles("DN STD\n");
  EXPECT_EQ(style.GetDnStrhelper(L"7", 1, 110), L"110");
  EXPECT_EQ(style.GetDnStrhelper(L"7", -2, 110), L"110");
  EXPECT_EQ(style.GetDnStrhelper(L"", 0, 110), L"DN110");
}

}  // namespace
