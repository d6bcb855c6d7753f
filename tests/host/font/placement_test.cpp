#include "host/font/placement.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/host/font/faces.h"

namespace {

using namespace cad::font;
using namespace font_test;

constexpr double kNear = 1e-9;
constexpr double kQuarter = 1.5707963267948966;
constexpr std::wstring_view kText = L"DN300g";

PlacedLine placed(Across across, Up up, double rotation = 0.0, double height = 2.0) {
  return place_line(kText, stroke_face(),
                    {.first = {99, 99},
                     .second = {10, 20},
                     .across = across,
                     .up = up,
                     .rotation = rotation,
                     .shape = {.height = height}});
}

/// How far the start stands from the alignment point.
struct Row {
  Across across;
  Up up;
  double widths;   // to the left, in widths of the text
  double heights;  // below, in its heights
};

TEST(Placement, ThirteenJustificationsGoByTheSecondPoint) {
  const double deep = -stroke_face().descender();
  const Box ink = measure_line(kText, stroke_face(), {}).ink;
  const Row rows[] = {
      {Across::kCenter, Up::kBase, 0.5, 0},
      {Across::kRight, Up::kBase, 1, 0},
      {Across::kLeft, Up::kBottom, 0, deep},
      {Across::kCenter, Up::kBottom, 0.5, deep},
      {Across::kRight, Up::kBottom, 1, deep},
      {Across::kLeft, Up::kMiddle, 0, 0.5},
      {Across::kCenter, Up::kMiddle, 0.5, .5},
      {Across::kRight, Up::kMiddle, 1, 0.5},
      {Across::kLeft, Up::kTop, 0, 1},
      {Across::kCenter, Up::kTop, 0.5, 1},
      {Across::kRight, Up::kTop, 1, 1},
      {Across::kMiddle, Up::kBase, 0.5, ink.height() / 2 + ink.bottom},
  };
  for (const Row& row : rows) {
    const PlacedLine line = placed(row.across, row.up);
    SCOPED_TRACE(testing::Message() << static_cast<int>(row.across) << static_cast<int>(row.up));
    EXPECT_NEAR(line.start.x, 10 - row.widths * width(kText, 2), kNear);
    EXPECT_NEAR(line.start.y, 20 - row.heights * 2, kNear);
  }
}

TEST(Placement, LeftOnTheBaseLineGoesByTheFirstPoint) {
  const PlacedLine line = placed(Across::kLeft, Up::kBase);
  EXPECT_EQ(line.start.x, 99);
  EXPECT_EQ(line.start.y, 99);
}

TEST(Placement, TurnedTextsMoveAlongTheirOwnAxes) {
  const PlacedLine line = placed(Across::kRight, Up::kTop, kQuarter);
  EXPECT_NEAR(line.start.x, 10 + 2, kNear);
  EXPECT_NEAR(line.start.y, 20 - width(kText, 2), kNear);
  const Point end = line.at({width(kText, 2), 2});
  EXPECT_NEAR(end.x, 10, kNear);
  EXPECT_NEAR(end.y, 20, kNear);
}

TEST(Placement, AlignedTextsTakeTheHeightThatFillsTheGap) {
  const PlacedLine line = place_line(
      L"0000", stroke_face(),
      {.first = {1, 1}, .second = {1, 9}, .across = Across::kAligned, .shape = {.height = 7}});
  EXPECT_NEAR(line.shape.height, 8 / (4 * kDigit), kNear);
  EXPECT_NEAR(line.shape.width_factor, 1, kNear);
  EXPECT_NEAR(line.rotation, kQuarter, kNear);
  EXPECT_EQ(line.start.x, 1);
  EXPECT_NEAR(line.at({line.extent.advance, 0}).y, 9, kNear);
}

TEST(Placement, FittedTextsTakeTheWidthFactorThatFillsTheGap) {
  const PlacedLine line = place_line(
      L"0000", stroke_face(),
      {.first = {1, 1}, .second = {9, 1}, .across = Across::kFit, .shape = {.height = 3}});
  EXPECT_NEAR(line.shape.height, 3, kNear);
  EXPECT_NEAR(line.shape.width_factor, 8 / (4 * 3 * kDigit), kNear);
  EXPECT_NEAR(line.at({line.extent.advance, 0}).x, 9, kNear);
}

TEST(Placement, WithoutAGapAlignedAndFittedTextsKeepTheirSize) {
  for (const Across across : {Across::kAligned, Across::kFit}) {
    const LinePlace where{.first = {5, 5}, .second = {5, 5}, .across = across, .shape = {3, 0.5}};
    const PlacedLine line = place_line(L"00", stroke_face(), where);
    EXPECT_EQ(line.shape.height, 3);
    EXPECT_EQ(line.shape.width_factor, 0.5);
    EXPECT_EQ(line.start.x, 5);
    EXPECT_EQ(place_line(L"", stroke_face(), where).extent.advance, 0);
  }
}

TEST(Placement, BackwardAndUpsideDownTextsAreMirroredAtTheirPoint) {
  LinePlace where{.second = {10, 20}, .across = Across::kRight, .up = Up::kTop, .shape = {2}};
  where.backward = true;
  PlacedLine line = place_line(kText, stroke_face(), where);
  EXPECT_NEAR(line.start.x, 10 + width(kText, 2), kNear);
  EXPECT_NEAR(line.at({1, 0}).x, line.start.x - 1, kNear);
  EXPECT_NEAR(line.start.y, 18, kNear);
  where.backward = false, where.upside_down = true;
  line = place_line(kText, stroke_face(), where);
  EXPECT_NEAR(line.start.y, 22, kNear);
  EXPECT_NEAR(line.at({0, 1}).y, 21, kNear);
}

TEST(Placement, WhatIsStoredAsFirstPointLeadsBackToTheSamePlace) {
  // Writers store the start as first point; a reader without fonts shows the text from there.
  const PlacedLine centred = placed(Across::kCenter, Up::kMiddle, 0.3);
  const PlacedLine plain = place_line(
      kText, stroke_face(), {.first = centred.start, .rotation = 0.3, .shape = {.height = 2}});
  const Point middle = plain.at({width(kText, 2) / 2, 1});
  EXPECT_NEAR(middle.x, 10, kNear);
  EXPECT_NEAR(middle.y, 20, kNear);
}

TEST(Placement, VerticalTextsHangFromTheirPoint) {
  LinePlace where{.second = {10, 20}, .across = Across::kCenter, .shape = {.height = 3}};
  where.shape.vertical = true;
  EXPECT_NEAR(place_line(L"标注", stroke_face(), where).start.y, 25, kNear);
  where.across = Across::kRight;
  EXPECT_NEAR(place_line(L"标注", stroke_face(), where).start.y, 30, kNear);
}

TEST(Placement, NumbersThatAreNoneDoNoHarm) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (int across = 0; across <= 5; ++across) {
    const PlacedLine line = place_line(kText, stroke_face(),
                                       {.first = {1, 2},
                                        .second = {kNan, kNan},
                                        .across = static_cast<Across>(across),
                                        .rotation = kNan,
                                        .shape = {kNan, kNan, kNan}});
    EXPECT_EQ(line.extent.advance, 0.0);
    EXPECT_EQ(line.rotation, 0.0);
  }
}

}  // namespace
