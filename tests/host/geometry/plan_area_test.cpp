#include "host/geometry/plan_area.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/host/geometry/near.h"

namespace {

using cad::Curve;
using cad::PlanArea;
using cad::Segment;
using Vertices = std::vector<Curve::Vertex>;

const PlanArea kWindow = PlanArea::box({10, 10}, {0, 0});

Curve circle(double x, double y, double r) {
  return Curve::circle({x, y, 0}, AcGeVector3d::kZAxis, r);
}

TEST(PlanArea, PointsOnTheBorderAreInside) {
  EXPECT_TRUE(kWindow.holds(AcGePoint2d(5, 5)));
  EXPECT_TRUE(kWindow.holds(AcGePoint2d(0, 10)));
  EXPECT_FALSE(kWindow.holds(AcGePoint2d(10.001, 5)));
}

TEST(PlanArea, ALineIsInsideWhenItsEndsAre) {
  EXPECT_TRUE(kWindow.holds(Curve::line({0, 0, 5}, {10, 10, -5})));
  EXPECT_FALSE(kWindow.holds(Curve::line({1, 1, 0}, {11, 1, 0})));
}

TEST(PlanArea, ALineThroughTheWindowTouchesItWithoutAnEndInside) {
  EXPECT_TRUE(kWindow.touches(Curve::line({-5, 5, 0}, {15, 5, 0})));
  EXPECT_TRUE(kWindow.touches(Curve::line({-5, 0, 0}, {15, 0, 0})));  // along its side
  EXPECT_TRUE(kWindow.touches(Curve::line({-1, 1, 0}, {1, -1, 0})));  // at its corner
  EXPECT_FALSE(kWindow.touches(Curve::line({-1, 0.5, 0}, {0.5, -1, 0})));
}

TEST(PlanArea, AnArcCountsAsWhatItIsNotAsItsChord) {
  // From (0, 12) over the top of the window: the chord passes it, the arc does not.
  const Curve bow = Curve::polyline(Vertices{{{-2, 5}, -1.2}, {{12, 5}, 0}}, false);
  EXPECT_FALSE(kWindow.touches(circle(5, 5, 20)));
  EXPECT_FALSE(kWindow.holds(bow));
  const Curve above = Curve::arc({5, 5, 0}, AcGeVector3d::kZAxis, 8, 0, kPi);
  EXPECT_FALSE(kWindow.touches(above));
  EXPECT_TRUE(kWindow.touches(Curve::line({-3, 5, 0}, {13, 5, 0})));
  EXPECT_TRUE(kWindow.touches(circle(15, 5, 5)));  // touches the side
  EXPECT_FALSE(kWindow.touches(circle(15, 5, 4.999)));
  EXPECT_TRUE(kWindow.holds(circle(5, 5, 5)));
  EXPECT_FALSE(kWindow.holds(circle(5, 5, 5.001)));
}

TEST(PlanArea, AWindowWithinACircleTouchesNothing) {
  EXPECT_FALSE(PlanArea::box({4, 4}, {6, 6}).touches(circle(5, 5, 4)));
}

TEST(PlanArea, RaysAndXlinesReachFar) {
  EXPECT_TRUE(kWindow.touches(Curve::xline({1000, 1005, 0}, {1, 1, 0})));
  EXPECT_FALSE(kWindow.touches(Curve::ray({1000, 1005, 0}, {1, 1, 0})));
  EXPECT_TRUE(kWindow.touches(Curve::ray({1000, 1005, 0}, {-1, -1, 0})));
  EXPECT_FALSE(kWindow.holds(Curve::ray({5, 5, 0}, {-1, -1, 0})));
}

TEST(PlanArea, APolygonWithABayHoldsOnlyWhatAvoidsTheBay) {
  // A "U": the bay is 4 < x < 6, y > 2.
  const PlanArea u({{0, 0}, {10, 0}, {10, 10}, {6, 10}, {6, 2}, {4, 2}, {4, 10}, {0, 10}});
  EXPECT_TRUE(u.holds(Curve::line({1, 1, 0}, {9, 1, 0})));
  EXPECT_FALSE(u.holds(Curve::line({1, 5, 0}, {9, 5, 0})));  // both ends inside
  EXPECT_TRUE(u.touches(Curve::line({5, 5, 0}, {5, 1, 0})));
  EXPECT_FALSE(u.touches(Curve::line({5, 5, 0}, {5, 9, 0})));
  EXPECT_FALSE(u.touches(circle(5, 6, 0.9)));
  EXPECT_TRUE(u.touches(circle(5, 6, 1)));
  // An arc from leg to leg through the bay.
  EXPECT_FALSE(u.holds(Curve::polyline(Vertices{{{1, 5}, 0.2}, {{9, 5}, 0}}, false)));
  EXPECT_TRUE(u.holds(Curve::arc({5, 5, 0}, AcGeVector3d::kZAxis, 4, kPi, 2 * kPi)));  // below it
}

TEST(PlanArea, AreasHoldAndTouchAreas) {
  EXPECT_TRUE(kWindow.holds(PlanArea::box({1, 1}, {9, 9})));
  EXPECT_FALSE(kWindow.holds(PlanArea::box({1, 1}, {11, 9})));
  EXPECT_TRUE(kWindow.touches(PlanArea::box({-100, -100}, {100, 100})));  // lies within it
  EXPECT_FALSE(kWindow.touches(PlanArea::box({11, 11}, {12, 12})));
}

TEST(PlanArea, ASplineTouchesWhereItRunsNotWhereItsFrameDoes) {
  cad::SplineShape shape;
  shape.degree = 2;
  shape.knots = {0, 0, 0, 1, 1, 1};
  shape.controls = {{0, -4, 0}, {5, 4, 0}, {10, -4, 0}};  // rises to y = 0 at x = 5
  const Curve curve = *Curve::spline(shape);
  EXPECT_TRUE(kWindow.touches(curve));
  EXPECT_FALSE(PlanArea::box({0, 0.001}, {10, 10}).touches(curve));
  EXPECT_TRUE(PlanArea::box({0, 0}, {10, -4}).holds(curve));
}

TEST(PlanArea, DegenerateAreasHoldTheirPointsOnly) {
  const PlanArea point = PlanArea::box({3, 3}, {3, 3});
  EXPECT_TRUE(point.touches(Curve::line({0, 0, 0}, {6, 6, 0})));
  EXPECT_TRUE(point.touches(circle(0, 3, 3)));
  EXPECT_FALSE(point.touches(Curve::line({0, 1, 0}, {6, 7, 0})));
  EXPECT_FALSE(PlanArea({}).touches(circle(0, 0, 1)));
  EXPECT_FALSE(PlanArea({}).holds(circle(0, 0, 1)));
}

TEST(Meetings, AreInTheOrderOfTheSegment) {
  const Segment arc = Segment::arc({0, 0, 0}, {5, 0, 0}, {0, 5, 0}, 0, kPi);
  const std::vector<double> at = cad::meetings(arc, {-10, 4}, {10, 4});
  ASSERT_EQ(at.size(), 2U);
  EXPECT_THAT(arc.point_at(at[0]), Is(3, 4, 0));
  EXPECT_THAT(arc.point_at(at[1]), Is(-3, 4, 0));
  EXPECT_TRUE(cad::meetings(arc, {-10, 4}, {-4, 4}).empty());
}

/// Against a dense sampling of the curve: what the samples see, the exact test must see too.
TEST(PlanAreaLaw, AgreesWithSamples) {
  std::mt19937 random(31);
  const auto number = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  int touching = 0, held = 0;
  for (int round = 0; round < 600; ++round) {
    Vertices vertices(3);
    for (Curve::Vertex& v : vertices) v = {{number(-9, 9), number(-9, 9)}, number(-2, 2)};
    const Curve curve = round % 2 ? Curve::polyline(vertices, true)
                                  : Curve::ellipse({number(-5, 5), number(-5, 5), 0}, {0, 0.3, 1},
                                                   {number(0.5, 6), 0, 0}, 0.4, 0, number(1, 6));
    std::vector<AcGePoint2d> corners;
    for (int i = 0; i < 5; ++i)
      corners.push_back({8 * std::cos(i * 1.2) * number(0.3, 1), 8 * std::sin(i * 1.2)});
    const PlanArea area(corners);
    bool any = false, all = true;
    for (int i = 0; i <= 3000; ++i) {
      const AcGePoint3d p = curve.point_at(curve.start_param() +
                                           (curve.end_param() - curve.start_param()) * i / 3000);
      (area.holds(AcGePoint2d(p.x, p.y)) ? any : all) = area.holds(AcGePoint2d(p.x, p.y));
    }
    EXPECT_TRUE(!any || area.touches(curve)) << round;
    EXPECT_TRUE(!area.holds(curve) || (all && any)) << round;
    touching += any;
    held += area.holds(curve);
  }
  EXPECT_GT(touching, 100);
  EXPECT_GT(held, 5);
}

}  // namespace
