#include <gmock/gmock.h>

#include "tests/host/picture/picture_test.h"

namespace {

using Png = PictureTest;

constexpr std::uint32_t kWhite = 0xFFFFFF, kBlack = 0x000000, kRed = 0xFF0000;

TEST_F(Png, HasTheSizeAskedFor) {
  options.size = {120, 80};
  const Pixels pixels = png(DrawingNote().entity("LINE", line_tags(0, 0, 100, 100)));
  EXPECT_EQ(pixels.width(), 120);
  EXPECT_EQ(pixels.height(), 80);
}

TEST_F(Png, AWideLineIsThereAndNowhereElse) {
  const Pixels pixels = png(DrawingNote().entity(
      "LWPOLYLINE", "90 2\n70 0\n43 10.0\n10 20\n20 50\n10 80\n20 50\n", "RED"));
  EXPECT_TRUE(pixels.is_near(50, 50, kRed));
  EXPECT_TRUE(pixels.is_near(22, 46, kRed));
  EXPECT_TRUE(pixels.is_near(17, 50, kWhite));
  EXPECT_TRUE(pixels.is_near(50, 43, kWhite));
  EXPECT_NEAR(pixels.count_near(kRed), 600, 20);
}

TEST_F(Png, AHatchHasItsHole) {
  const Pixels pixels = png(DrawingNote().entity(
      "HATCH",
      point_tags(10, 0, 0) +
          "2 SOLID\n70 1\n71 0\n91 2\n92 2\n72 0\n73 1\n93 4\n10 10\n20 10\n10 90\n20 10\n10 "
          "90\n20 90\n10 10\n20 90\n97 0\n92 0\n93 1\n72 2\n10 50\n20 50\n40 20\n50 0\n51 "
          "360\n73 1\n97 0\n75 0\n76 1\n",
      "RED"));
  EXPECT_TRUE(pixels.is_near(20, 20, kRed));
  EXPECT_TRUE(pixels.is_near(50, 50, kWhite));
  EXPECT_NEAR(pixels.count_near(kRed), 6400 - 1257, 120);
}

TEST_F(Png, DarkTurnsTheForegroundWhite) {
  options.dark = true;
  const Pixels pixels =
      png(DrawingNote().entity("SOLID", point_tags(10, 20, 20) + point_tags(11, 80, 20) +
                                            point_tags(12, 20, 80) + point_tags(13, 80, 80)));
  EXPECT_TRUE(pixels.is_near(50, 50, kWhite));
  EXPECT_TRUE(pixels.is_near(5, 5, 0x1B1F24));
}

TEST_F(Png, ATextCoversAboutItsBox) {
  const Pixels pixels =
      png(DrawingNote().entity("TEXT", point_tags(10, 10, 40) + "40 20.0\n1 HHH\n"));
  int inside = 0, outside = 0;
  for (int y = 0; y < 100; ++y)
    for (int x = 0; x < 100; ++x)
      if (!pixels.is_near(x, y, kWhite)) ++(y >= 39 && y <= 61 && x >= 9 ? inside : outside);
  EXPECT_GT(inside, 200);
  EXPECT_EQ(outside, 0);
}

TEST_F(Png, AMirroredTextIsMirrored) {
  // "L" has its foot to the right of its stem; backwards to the left.
  const auto foot_is_right = [&](const char* generation) {
    const Pixels pixels = png(DrawingNote().entity(
        "TEXT", point_tags(10, 50, 30) + "40 40.0\n1 L\n71 " + std::string(generation) + "\n"));
    int left = 0, right = 0;
    for (int x = 0; x < 100; ++x)
      if (pixels.is_near(x, 68, kBlack)) ++(x < 50 ? left : right);
    return right > left;
  };
  EXPECT_TRUE(foot_is_right("0"));
  EXPECT_FALSE(foot_is_right("2"));
}

TEST_F(Png, TextTooSmallToReadIsAGreyBar) {
  const Pixels pixels = png(
      DrawingNote().entity("TEXT", point_tags(10, 10, 50) + "40 1.2\n1 HHHHHHHHHHHHHHHHHHHH\n"));
  EXPECT_EQ(pixels.count_near(kBlack), 0);
  EXPECT_FALSE(pixels.is_near(15, 49, kWhite));
}

TEST_F(Png, AnEntityBelowIsHiddenByOneAbove) {
  const std::string corners = point_tags(10, 20, 20) + point_tags(11, 80, 20) +
                              point_tags(12, 20, 80) + point_tags(13, 80, 80);
  const Pixels pixels =
      png(DrawingNote().entity("SOLID", corners, "GREEN").entity("SOLID", corners, "RED"));
  EXPECT_TRUE(pixels.is_near(50, 50, kRed));
}

}  // namespace
