#include "host/gi/wide_outline.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace {

using cad::Curve;
using cad::SegmentWidth;
using testing::ElementsAre;
using testing::SizeIs;

std::vector<std::vector<AcGePoint3d>> outlines(std::vector<Curve::Vertex> vertices, bool closed,
                                               std::vector<SegmentWidth> widths) {
  return cad::wide_outlines(Curve::polyline(vertices, closed), widths, AcGeVector3d::kZAxis, 0.001);
}

TEST(WideOutline, StraightPiecesOfOneWidthAreMitred) {
  const auto found = outlines({{{0, 0}, 0}, {{10, 0}, 0}, {{10, 10}, 0}}, false, {{2, 2}, {2, 2}});
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_TRUE(found[0][1].isEqualTo({9, 1, 0}));
  EXPECT_TRUE(found[0][2].isEqualTo({11, -1, 0}));
  EXPECT_TRUE(found[1][0].isEqualTo({9, 1, 0}));
}

TEST(WideOutline, AClosedPolylineIsMitredAtItsStartToo) {
  const auto found = outlines({{{0, 0}, 0}, {{10, 0}, 0}, {{10, 10}, 0}, {{0, 10}, 0}}, true,
                              {{2, 2}, {2, 2}, {2, 2}, {2, 2}});
  ASSERT_THAT(found, SizeIs(4));
  EXPECT_TRUE(found[0][0].isEqualTo({1, 1, 0}));
  EXPECT_TRUE(found[3][1].isEqualTo({1, 1, 0}));
}

TEST(WideOutline, ASharpCornerIsNotMitred) {
  const auto found = outlines({{{0, 0}, 0}, {{10, 0}, 0}, {{0, 0.1}, 0}}, false, {{2, 2}, {2, 2}});
  for (const auto& outline : found)
    for (const AcGePoint3d& p : outline) EXPECT_LT(p.x, 11.1);
}

TEST(WideOutline, WidthsChangeAlongAnArc) {
  const auto found = outlines({{{-5, 0}, 1.0}, {{5, 0}, 0}}, false, {{2, 4}});
  ASSERT_THAT(found, SizeIs(1));
  const std::vector<AcGePoint3d>& outline = found[0];
  const std::size_t half = outline.size() / 2;
  EXPECT_NEAR(outline.front().distanceTo({0, 0, 0}), 4.0, 1e-9);
  EXPECT_NEAR(outline[half - 1].distanceTo({0, 0, 0}), 3.0, 1e-9);
  EXPECT_NEAR(outline[half].distanceTo({0, 0, 0}), 7.0, 1e-9);
}

TEST(WideOutline, PiecesWithoutWidthOrLengthHaveNone) {
  EXPECT_THAT(outlines({{{0, 0}, 0}, {{10, 0}, 0}, {{10, 0}, 0}, {{20, 0}, 0}}, false,
                       {{0, 0}, {1, 1}, {1, 1}}),
              SizeIs(1));
}

TEST(WideOutline, PointsKeepWithinTheDeviation) {
  std::vector<AcGePoint3d> points;
  const Curve circle = Curve::circle({0, 0, 0}, AcGeVector3d::kZAxis, 100.0);
  cad::append_points(circle.segments().front(), 0.5, points);
  for (std::size_t i = 1; i < points.size(); ++i) {
    const AcGePoint3d middle = points[i - 1] + (points[i] - points[i - 1]) / 2.0;
    EXPECT_LT(100.0 - middle.distanceTo({0, 0, 0}), 0.5);
  }
  EXPECT_LT(points.size(), 100u);
}

}  // namespace
