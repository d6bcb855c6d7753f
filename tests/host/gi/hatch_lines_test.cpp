#include "host/gi/hatch_lines.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace {

using cad::HatchStroke;
using cad::PatternLines;
using Polygon = std::vector<AcGePoint2d>;
using testing::SizeIs;

const Polygon kSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

std::vector<HatchStroke> strokes(const PatternLines& lines, std::vector<Polygon> polygons,
                                 std::size_t most = 1000) {
  return cad::hatch_strokes(std::span(&lines, 1), polygons, most);
}

double length_of(const std::vector<HatchStroke>& strokes) {
  double length = 0.0;
  for (const HatchStroke& stroke : strokes) length += (stroke.to - stroke.from).length();
  return length;
}

TEST(HatchLines, RunAcrossTheAreaOneStepApart) {
  const auto found = strokes({0.0, {0, 0.5}, {0, 1}, {}}, {kSquare});
  ASSERT_THAT(found, SizeIs(10));
  for (std::size_t i = 0; i < found.size(); ++i) {
    EXPECT_NEAR(found[i].from.y, 0.5 + static_cast<double>(i), 1e-9);
    EXPECT_NEAR(found[i].from.x, 0.0, 1e-9);
    EXPECT_NEAR(found[i].to.x, 10.0, 1e-9);
  }
}

TEST(HatchLines, LeaveHolesOut) {
  const Polygon hole = {{2, 2}, {8, 2}, {8, 8}, {2, 8}};
  EXPECT_NEAR(length_of(strokes({0.0, {0, 0.5}, {0, 1}, {}}, {kSquare, hole})), 100.0 - 36.0, 1e-9);
}

TEST(HatchLines, ThroughACornerCountOnce) {
  const Polygon diamond = {{0, 0}, {5, -5}, {10, 0}, {5, 5}};
  EXPECT_NEAR(length_of(strokes({0.0, {0, 0}, {0, 20}, {}}, {diamond})), 10.0, 1e-9);
}

TEST(HatchLines, TurnWithTheirAngle) {
  const auto found = strokes({std::numbers::pi / 4, {0, 0.5}, {-1, 1}, {}}, {kSquare});
  EXPECT_GT(found.size(), 8u);
  for (const HatchStroke& stroke : found)
    EXPECT_NEAR(stroke.to.x - stroke.from.x, stroke.to.y - stroke.from.y, 1e-9);
}

TEST(HatchLines, DashesBeginAtTheBaseAndShiftFromLineToLine) {
  const auto found = strokes({0.0, {0, 0.5}, {1, 5}, {2, -2}}, {kSquare});
  ASSERT_THAT(found, SizeIs(6));
  EXPECT_NEAR(found[0].from.x, 0.0, 1e-9);
  EXPECT_NEAR(found[0].to.x, 2.0, 1e-9);
  EXPECT_NEAR(found[1].from.x, 4.0, 1e-9);
  EXPECT_NEAR(found[3].from.x, 1.0, 1e-9);
  EXPECT_NEAR(found[3].to.x, 3.0, 1e-9);
}

TEST(HatchLines, ADotHasBothEndsInOnePlace) {
  const auto found = strokes({0.0, {0.5, 5}, {0, 100}, {0, -1}}, {kSquare});
  ASSERT_THAT(found, SizeIs(10));
  EXPECT_EQ(found[3].from.x, found[3].to.x);
}

TEST(HatchLines, ADensePatternIsThinnedOut) {
  const auto found = strokes({0.0, {0, 0}, {0, 1e-7}, {1, -1}}, {kSquare}, 500);
  EXPECT_LE(found.size(), 500u);
  EXPECT_GT(found.size(), 100u);
}

TEST(HatchLines, NumbersThatAreNoneGiveNoLines) {
  EXPECT_THAT(strokes({0.0, {0, 0}, {1, 0}, {}}, {kSquare}), SizeIs(0));
  EXPECT_THAT(strokes({NAN, {0, 0}, {0, 1}, {}}, {kSquare}), SizeIs(0));
  EXPECT_THAT(strokes({0.0, {0, 0}, {0, 1}, {}}, {{{0, 0}, {NAN, 0}, {1, 1}}}), SizeIs(0));
}

TEST(HatchLines, FarFromTheirBaseTheyComeToAnEnd) {
  const Polygon far = {{1e14, 1e14}, {1e14 + 10, 1e14}, {1e14 + 10, 1e14 + 10}};
  strokes({0.3, {0, 0}, {1e-3, 1e-3}, {1e-4, -1e-4}}, {far});
}

}  // namespace
