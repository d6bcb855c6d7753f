#include <gmock/gmock.h>

#include <cmath>

#include "tests/host/picture/picture_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using Svg = PictureTest;

TEST_F(Svg, ALineIsAPathInItsColor) {
  const auto found = svg(DrawingNote().entity("LINE", line_tags(10, 20, 60, 70), "RED"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(found[0].points, ElementsAre(IsPlace(10, 80), IsPlace(60, 30)));
  EXPECT_EQ(found[0].inherited("stroke"), "#f00");
  EXPECT_EQ(found[0].inherited("fill"), "none");
}

TEST_F(Svg, ACircleIsTwoArcs) {
  const auto found = svg(DrawingNote().entity("CIRCLE", point_tags(10, 50, 50) + "40 20.0\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].attribute("d"), "M70 50a 20 20 0 0 0-40 0 20 20 0 0 0 40 0z");
}

TEST_F(Svg, AnArcGoesTheLongWayRound) {
  const auto found =
      svg(DrawingNote().entity("ARC", point_tags(10, 50, 50) + "40 20.0\n50 0.0\n51 270.0\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].attribute("d"), "M70 50a 20 20 0 1 0-20 20");
}

TEST_F(Svg, AnEllipseKeepsItsAxes) {
  const auto found =
      svg(DrawingNote().entity("ELLIPSE", point_tags(10, 50, 50) + point_tags(11, 0, 30) +
                                              "40 0.5\n41 0.0\n42 3.14159265\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(found[0].points, ElementsAre(IsPlace(50, 20), IsPlace(50, 80)));
  EXPECT_THAT(found[0].attribute("d"), HasSubstr("a 30 15"));
}

TEST_F(Svg, ABulgeIsAnArcBetweenLines) {
  const auto found = svg(DrawingNote().entity(
      "LWPOLYLINE", "90 3\n70 0\n10 10\n20 50\n10 30\n20 50\n42 1.0\n10 50\n20 50\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(found[0].points, ElementsAre(IsPlace(10, 50), IsPlace(30, 50), IsPlace(50, 50)));
  // A positive bulge turns counter-clockwise: below the chord, which is clockwise nowhere.
  EXPECT_THAT(found[0].attribute("d"), HasSubstr("a 10 10 0 0 0 20 0"));
}

TEST_F(Svg, ASplineIsCubics) {
  const auto found = svg(DrawingNote().entity(
      "SPLINE", "70 8\n71 3\n72 8\n73 4\n74 0\n40 0\n40 0\n40 0\n40 0\n40 1\n40 1\n40 1\n40 1\n" +
                    point_tags(10, 10, 10) + point_tags(10, 10, 60) + point_tags(10, 60, 60) +
                    point_tags(10, 60, 10)));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].attribute("d"), "M10 90c0-50 50-50 50 0");
}

TEST_F(Svg, AConstantWidthIsAWideStrokeThatGrowsWithTheDrawing) {
  const auto found =
      svg(DrawingNote().entity("LWPOLYLINE", "90 2\n70 0\n43 6.0\n10 10\n20 50\n10 90\n20 50\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].inherited("stroke-width"), "6");
  EXPECT_EQ(found[0].inherited("class"), "w");
}

TEST_F(Svg, ATaperIsFilled) {
  const auto found = svg(DrawingNote().entity(
      "LWPOLYLINE", "90 2\n70 0\n10 10\n20 50\n40 8.0\n41 0.0\n10 90\n20 50\n40 0\n41 0\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].inherited("fill"), "#000");
  EXPECT_THAT(found[0].points[0], IsPlace(10, 46));
}

TEST_F(Svg, WidthsGoWithAReferenceOfOneScaleAndAreFilledWithTwo) {
  const std::string wide =
      DrawingNote::record("LWPOLYLINE", "90 2\n70 0\n43 2.0\n10 0\n20 0\n10 10\n20 0\n");
  const auto even = svg(DrawingNote().block("B", wide).entity(
      "INSERT", "2 B\n" + point_tags(10, 10, 50) + "41 3.0\n42 3.0\n43 3.0\n"));
  ASSERT_THAT(even, SizeIs(1));
  EXPECT_EQ(even[0].inherited("stroke-width"), "6");
  const auto uneven = svg(DrawingNote().block("B", wide).entity(
      "INSERT", "2 B\n" + point_tags(10, 10, 50) + "41 3.0\n42 5.0\n43 1.0\n"));
  ASSERT_THAT(uneven, SizeIs(1));
  EXPECT_THAT(uneven[0].points, testing::Contains(IsPlace(40, 45)));
}

TEST_F(Svg, ACircleInAStretchedReferenceIsAnEllipse) {
  const auto found =
      svg(DrawingNote()
              .block("B", DrawingNote::record("CIRCLE", point_tags(10, 0, 0) + "40 1.0\n"))
              .entity("INSERT", "2 B\n" + point_tags(10, 50, 50) + "41 30.0\n42 10.0\n50 90.0\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(found[0].attribute("d"), testing::AnyOf(HasSubstr("a 30 10"), HasSubstr("a 10 30")));
  EXPECT_THAT(found[0].points, testing::Contains(IsPlace(50, 20)));
}

TEST_F(Svg, ATextIsARunOfSharedShapesWithItsWordsBesideIt) {
  given(DrawingNote()
            .entity("TEXT", point_tags(10, 10, 20) + "40 5.0\n1 ABBA <\\U+7BA1>\n")
            .entity("TEXT", point_tags(10, 10, 40) + "40 8.0\n1 AB\n50 30.0\n"));
  const std::string file = make(cad::picture::Format::kSvg).file;
  const auto found = elements(file);
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].attribute("aria-label"), "ABBA &lt;管&gt;");
  EXPECT_THAT(found[0].attribute("transform"), StartsWith("matrix(0.005 0 0 0.005 "));
  // A, B, <, the pipe and > are defined once each.
  int defined = 0;
  for (std::size_t at = 0; (at = file.find("<path id=", at + 1)) != std::string::npos;) ++defined;
  EXPECT_EQ(defined, 5);
}

TEST_F(Svg, TextOfTheRightEndsAtItsPoint) {
  const auto found = svg(DrawingNote().entity(
      "TEXT", point_tags(10, 0, 0) + "40 5.0\n1 II\n72 2\n73 0\n" + point_tags(11, 50, 20)));
  ASSERT_THAT(found, SizeIs(1));
  const std::string matrix = found[0].attribute("transform");
  const double x = std::strtod(matrix.substr(matrix.find("005 ", 14) + 4).c_str(), nullptr);
  EXPECT_LT(x, 50.0);
  EXPECT_GT(x, 40.0);
}

TEST_F(Svg, AParagraphIsARunForEachLine) {
  const auto found = svg(DrawingNote().entity(
      "MTEXT", point_tags(10, 10, 90) + "40 5.0\n71 1\n1 one\\Ptwo\\Pthree words\n"));
  ASSERT_THAT(found, SizeIs(3));
  EXPECT_EQ(found[2].attribute("aria-label"), "three words");
}

TEST_F(Svg, AnUnderlineIsALine) {
  const auto found =
      svg(DrawingNote().entity("TEXT", point_tags(10, 10, 20) + "40 5.0\n1 %%uA B\n"));
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].attribute("aria-label"), "A B");
  EXPECT_EQ(found[1].tag, "path");
  EXPECT_GT(found[1].points[0].second, 80.0);
}

constexpr char kSquare[] =
    "92 2\n72 0\n73 1\n93 4\n10 10\n20 10\n10 90\n20 10\n10 90\n20 90\n10 10\n20 90\n97 0\n";
constexpr char kHole[] =
    "92 16\n93 2\n72 2\n10 50\n20 50\n40 20\n50 0\n51 180\n73 1\n72 2\n10 50\n20 50\n40 20\n50 "
    "180\n51 360\n73 1\n97 0\n";

TEST_F(Svg, AHatchIsFilledButForItsHoles) {
  const auto found =
      svg(DrawingNote().entity("HATCH", point_tags(10, 0, 0) + "2 SOLID\n70 1\n71 0\n91 2\n" +
                                            kSquare + kHole + "75 0\n76 1\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].inherited("fill-rule"), "evenodd");
  EXPECT_THAT(found[0].attribute("d"), HasSubstr("a 20 20"));
}

TEST_F(Svg, DashesAreThoseOfTheLinetypeTimesAllScales) {
  const auto found = svg(DrawingNote()
                             .header("9 $LTSCALE\n40 2.0\n")
                             .entity("LINE", line_tags(0, 50, 100, 50), "GREEN", "48 0.5\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].inherited("stroke-dasharray"), "4 2");
}

TEST_F(Svg, DashesTooFineToSeeMakeASolidLine) {
  const auto found =
      svg(DrawingNote().entity("LINE", line_tags(0, 50, 100, 50), "GREEN", "48 0.1\n"));
  EXPECT_EQ(found[0].inherited("stroke-dasharray"), "");
}

TEST_F(Svg, ALineShorterThanItsPatternIsSolid) {
  const auto found =
      svg(DrawingNote().entity("LINE", line_tags(0, 50, 20, 50), "GREEN", "48 10\n"));
  EXPECT_EQ(found[0].inherited("stroke-dasharray"), "");
}

TEST_F(Svg, WeightsAreMillimetresOnPaper) {
  const auto found = svg(DrawingNote()
                             .entity("LINE", line_tags(0, 0, 100, 50), "WIDE")
                             .entity("LINE", line_tags(0, 0, 100, 60), "RED"));
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].inherited("stroke-width"), "1.89");
  EXPECT_EQ(found[1].inherited("stroke-width"), ".8");
}

TEST_F(Svg, TheForegroundTurnsWithTheBackground) {
  const DrawingNote note = DrawingNote()
                               .entity("LINE", line_tags(0, 0, 9, 9))
                               .entity("LINE", line_tags(0, 0, 9, 9), "ORANGE");
  EXPECT_EQ(svg(note)[0].inherited("stroke"), "#000");
  EXPECT_EQ(svg(note)[1].inherited("stroke"), "#f80");
  options.dark = true;
  EXPECT_EQ(svg(note)[0].inherited("stroke"), "#fff");
  EXPECT_EQ(svg(note)[1].inherited("stroke"), "#f80");
}

TEST_F(Svg, LayersMayBeChosen) {
  options.layer_shown = [](std::wstring_view layer) { return layer == L"RED"; };
  const auto found =
      svg(DrawingNote()
              .block("B", DrawingNote::record("LINE", line_tags(0, 0, 9, 9)) +
                              DrawingNote::record("LINE", line_tags(0, 0, 9, 9), "GREEN"))
              .entity("LINE", line_tags(0, 0, 9, 9))
              .entity("INSERT", "2 B\n" + point_tags(10, 0, 0), "RED")
              .entity("LINE", line_tags(0, 0, 9, 9), "RED"));
  EXPECT_THAT(found, SizeIs(2));
}

TEST_F(Svg, AHighlightIsDrawnAgainAtTheEndOverAMark) {
  given(DrawingNote()
            .entity("LINE", line_tags(0, 0, 90, 90), "RED")
            .entity("LINE", line_tags(0, 90, 90, 0), "GREEN"));
  options.highlights.push_back(database().first_entity());
  const auto found = elements(make(cad::picture::Format::kSvg).file);
  ASSERT_THAT(found, SizeIs(4));
  EXPECT_EQ(found[2].inherited("stroke-opacity"), "0.5");
  EXPECT_EQ(found[3].inherited("stroke"), "#f00");
  EXPECT_THAT(found[3].points, ElementsAre(IsPlace(0, 100), IsPlace(90, 10)));
}

TEST_F(Svg, ASmallHighlightGetsARing) {
  given(DrawingNote().entity("LINE", line_tags(50, 50, 51, 50), "RED"));
  options.highlights.push_back(database().first_entity());
  const auto found = elements(make(cad::picture::Format::kSvg).file);
  ASSERT_THAT(found, SizeIs(4));
  EXPECT_THAT(found[1].attribute("d"), HasSubstr("a 14 14"));
}

TEST_F(Svg, APointIsADotOrTheFigureOfPdmode) {
  const DrawingNote dot = DrawingNote().entity("POINT", point_tags(10, 50, 50));
  EXPECT_EQ(svg(dot)[0].attribute("d"), "M50 50l0 0");
  const auto cross = svg(DrawingNote(dot).header("9 $PDMODE\n70 34\n9 $PDSIZE\n40 10.0\n"));
  ASSERT_THAT(cross, SizeIs(1));
  EXPECT_THAT(cross[0].points, testing::Contains(IsPlace(40, 50)));
  EXPECT_THAT(cross[0].attribute("d"), HasSubstr("a 5 5"));
  EXPECT_THAT(svg(DrawingNote(dot).header("9 $PDMODE\n70 1\n")), IsEmpty());
}

TEST_F(Svg, AWipeoutHidesWhatIsBelow) {
  const auto found =
      svg(DrawingNote().entity("WIPEOUT", point_tags(10, 10, 10) + point_tags(11, 80, 0) +
                                              point_tags(12, 0, 80) + "13 1\n23 1\n"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].inherited("fill"), "#fff");
}

TEST_F(Svg, LinesWithoutEndAreCutAtTheEdge) {
  const auto found = svg(DrawingNote()
                             .entity("XLINE", point_tags(10, 50, 50) + point_tags(11, 1, 0))
                             .entity("RAY", point_tags(10, 50, 50) + point_tags(11, 0, 1)));
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_THAT(found[0].points, ElementsAre(IsPlace(-1, 50), IsPlace(101, 50)));
  EXPECT_THAT(found[1].points, ElementsAre(IsPlace(50, 50), IsPlace(50, -1)));
}

TEST_F(Svg, WhatReachesFarOutIsCut) {
  const auto found = svg(DrawingNote()
                             .entity("LINE", line_tags(50, 50, 1e12, 50))
                             .entity("CIRCLE", point_tags(10, 1e9, 50) + "40 999999950.0\n"));
  ASSERT_THAT(found, SizeIs(2));
  for (const auto& element : found)
    for (const auto& [x, y] : element.points) {
      EXPECT_LT(std::abs(x), 400.0);
      EXPECT_LT(std::abs(y), 400.0);
    }
}

TEST_F(Svg, WhatIsOutsideIsLeftOut) {
  EXPECT_THAT(svg(DrawingNote().entity("LINE", line_tags(500, 500, 600, 600))), IsEmpty());
  EXPECT_TRUE(make(cad::picture::Format::kSvg).blank);
}

TEST_F(Svg, APictureOfTheSameDrawingIsTheSame) {
  const DrawingNote note = DrawingNote()
                               .entity("TEXT", point_tags(10, 10, 20) + "40 5.0\n1 ABC\n")
                               .entity("CIRCLE", point_tags(10, 50, 50) + "40 20.0\n", "GREEN");
  given(note);
  const std::string first = make(cad::picture::Format::kSvg).file;
  given(note);
  EXPECT_EQ(make(cad::picture::Format::kSvg).file, first);
}

TEST_F(Svg, ThePictureHasATitleAndTellsWhatItIs) {
  options.title = "plan <1>.dxf";
  given(DrawingNote().entity("LINE", line_tags(0, 0, 9, 9)));
  const std::string file = make(cad::picture::Format::kSvg).file;
  EXPECT_THAT(file, HasSubstr("<title id=\"title\">plan &lt;1&gt;.dxf</title>"));
  EXPECT_THAT(file, HasSubstr("<desc id=\"desc\">Drawing of 1 entity.</desc>"));
  EXPECT_THAT(file, HasSubstr("viewBox=\"0 0 100 100\""));
}

}  // namespace
