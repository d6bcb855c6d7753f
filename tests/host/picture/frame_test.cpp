#include "host/picture/frame.h"

#include <gmock/gmock.h>

#include "host/picture/palette.h"
#include "tests/host/picture/picture_test.h"

namespace {

using testing::HasSubstr;
using testing::SizeIs;

class Framing : public PictureTest {
 protected:
  Framing() {
    options.window.reset();
    options.size.reset();
  }
  cad::picture::Picture picture(const DrawingNote& note) {
    given(note);
    return make(cad::picture::Format::kSvg);
  }
};

TEST_F(Framing, TheWholeDrawingFitsWithAMargin) {
  options.size = {1000, 1000};
  const auto found = elements(picture(DrawingNote()
                                          .entity("LINE", line_tags(1000, 2000, 1100, 2000))
                                          .entity("LINE", line_tags(1000, 2000, 1000, 2100)))
                                  .file);
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_NEAR(found[0].points[0].first, 23.8, 0.1);
  EXPECT_NEAR(found[0].points[1].first, 976.2, 0.1);
  EXPECT_NEAR(found[1].points[1].second, 23.8, 0.1);
}

TEST_F(Framing, TheLongerSideHas1600Pixels) {
  const auto wide = picture(DrawingNote().entity("LINE", line_tags(0, 0, 200, 100)));
  EXPECT_EQ(wide.size.width, 1600);
  EXPECT_NEAR(wide.size.height, 838, 2);
  const auto high = picture(DrawingNote().entity("LINE", line_tags(0, 0, 50, 100)));
  EXPECT_EQ(high.size.height, 1600);
}

TEST_F(Framing, AFlatDrawingStillHasHeight) {
  const auto flat = picture(DrawingNote().entity("LINE", line_tags(0, 0, 1000, 0)));
  EXPECT_GE(flat.size.height, 160);
  EXPECT_FALSE(flat.blank);
}

TEST_F(Framing, ASinglePointIsShown) {
  EXPECT_FALSE(picture(DrawingNote().entity("POINT", point_tags(10, 5e5, 4e6))).blank);
}

TEST_F(Framing, AWindowWithoutExtentShowsWhatIsRoundIt) {
  options.window = cad::picture::Box{5, 5, 5, 5};
  EXPECT_FALSE(picture(DrawingNote().entity("LINE", line_tags(0, 0, 10, 10))).blank);
}

TEST_F(Framing, AnEmptyDrawingIsBlank) { EXPECT_TRUE(picture(DrawingNote()).blank); }

TEST_F(Framing, AFewFarAwayEntitiesAreLeftOutAndCounted) {
  DrawingNote note;
  for (int i = 0; i < 30; ++i) note.entity("LINE", line_tags(i, 0, i, 20));
  note.entity("LINE", line_tags(1e12, 1e12, 1e12 + 1, 1e12));
  const auto made = picture(note);
  EXPECT_EQ(made.far_away, 1u);
  EXPECT_THAT(elements(made.file), SizeIs(30));
}

TEST_F(Framing, AStrayEntityAtTheOriginDoesNotShrinkANetworkInPlaneCoordinates) {
  DrawingNote note;
  for (int i = 0; i < 60; ++i)
    note.entity("LINE", line_tags(500000 + i * 10, 4000000, 500005 + i * 10, 4000100));
  note.entity("POINT", point_tags(10, 0, 0));
  EXPECT_EQ(picture(note).far_away, 1u);
}

TEST_F(Framing, TwoPartsOfADrawingAreBothShown) {
  DrawingNote note;
  for (int i = 0; i < 10; ++i) {
    note.entity("LINE", line_tags(i, 0, i, 5));
    note.entity("LINE", line_tags(10000 + i, 0, 10000 + i, 5));
  }
  EXPECT_EQ(picture(note).far_away, 0u);
}

TEST_F(Framing, CoordinatesThatAreNoPlacesAreSkippedAndCounted) {
  const auto made = picture(DrawingNote()
                                .entity("LINE", "10 nan\n20 0\n11 1\n21 1\n")
                                .entity("LINE", line_tags(0, 0, 1e300, 1))
                                .entity("CIRCLE", point_tags(10, 0, 0) + "40 inf\n")
                                .entity("LINE", line_tags(0, 0, 10, 10)));
  EXPECT_GE(made.bad_coordinates, 1u);
  EXPECT_FALSE(made.blank);
  EXPECT_THAT(made.file, testing::Not(HasSubstr("nan")));
}

TEST_F(Framing, TextsWithoutHeightAreSkippedAndCounted) {
  const auto made = picture(DrawingNote()
                                .entity("TEXT", point_tags(10, 0, 0) + "40 0.0\n1 ABC\n")
                                .entity("LINE", line_tags(0, 0, 10, 10)));
  EXPECT_EQ(made.empty_texts, 1u);
  EXPECT_FALSE(made.blank);
}

TEST_F(Framing, XlinesDoNotWidenTheFrame) {
  options.size = {100, 100};
  const auto found =
      elements(picture(DrawingNote()
                           .entity("LINE", line_tags(0, 0, 10, 10))
                           .entity("XLINE", point_tags(10, 1e6, 1e6) + point_tags(11, 1, 1)))
                   .file);
  ASSERT_FALSE(found.empty());
  EXPECT_NEAR(found[0].points[1].first, 97.6, 0.2);
}

TEST_F(Framing, PaperSpaceIsNotInThePictureOfTheModel) {
  EXPECT_TRUE(picture(DrawingNote().entity("LINE", line_tags(0, 0, 10, 10), "0", "67 1\n")).blank);
}

TEST(Palette, HasTheColorsOfTheIndex) {
  using cad::picture::palette_color;
  EXPECT_EQ(palette_color(1), 0xFF0000U);
  EXPECT_EQ(palette_color(8), 0x808080U);
  EXPECT_EQ(palette_color(10), 0xFF0000U);
  EXPECT_EQ(palette_color(11), 0xFF7F7FU);
  EXPECT_EQ(palette_color(14), 0x7F0000U);
  EXPECT_EQ(palette_color(30), 0xFF7F00U);
  EXPECT_EQ(palette_color(50), 0xFFFF00U);
  EXPECT_EQ(palette_color(90), 0x00FF00U);
  EXPECT_EQ(palette_color(170), 0x0000FFU);
  EXPECT_EQ(palette_color(255), 0xFFFFFFU);
  EXPECT_EQ(palette_color(0), 0xFFFFFFU);
}

TEST(PictureFormat, IsTheEndingOfTheName) {
  using cad::picture::Format;
  using cad::picture::format_of;
  EXPECT_EQ(format_of("a.svg"), Format::kSvg);
  EXPECT_EQ(format_of("dir.png/a.PDF"), Format::kPdf);
  EXPECT_EQ(format_of("a.Png"), Format::kPng);
  EXPECT_EQ(format_of("a.dxf"), std::nullopt);
  EXPECT_EQ(format_of(".svg"), std::nullopt);
}

}  // namespace
