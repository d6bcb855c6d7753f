#include "host/geometry/curve.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "host/geometry/ocs.h"
#include "tests/host/geometry/near.h"

namespace {

using cad::Curve;
using cad::Segment;
using cad::SplineShape;
using Vertices = std::vector<Curve::Vertex>;

constexpr double kHalfCircle = 1.0;  // bulges
constexpr double kQuarterCircle = 0.41421356237309503;

/// Two sides of a square and the quarter circle back: (0,0) (10,0) (10,10), center (10,0).
Curve fan() {
  return Curve::polyline(Vertices{{{0, 0}, 0}, {{10, 0}, 0}, {{10, 10}, kQuarterCircle}}, true);
}

TEST(Curve, ALineCountsItsLength) {
  const Curve line = Curve::line({1, 2, 3}, {4, 6, 3});
  EXPECT_EQ(line.start_param(), 0.0);
  EXPECT_EQ(line.end_param(), 5.0);
  EXPECT_THAT(line.point_at(2.5), Is(2.5, 4, 3));
  EXPECT_THAT(line.first_derivative(1), Is(0.6, 0.8, 0));
  EXPECT_THAT(line.second_derivative(1), Is(0, 0, 0));
  EXPECT_EQ(line.distance_at(2), 2.0);
  EXPECT_EQ(line.param_at_distance(2), 2.0);
  EXPECT_EQ(line.area(), 0.0);
  EXPECT_FALSE(line.is_closed());
}

TEST(Curve, ParametersBeyondTheEndsCountAsTheEnds) {
  const Curve line = Curve::line({0, 0, 0}, {10, 0, 0});
  EXPECT_THAT(line.point_at(-1), Is(0, 0, 0));
  EXPECT_THAT(line.point_at(11), Is(10, 0, 0));
  EXPECT_EQ(line.distance_at(11), 10.0);
  EXPECT_EQ(line.param_at_distance(11), 10.0);
}

TEST(Curve, ARayHasAStartAndAnXlineHasNone) {
  const Curve ray = Curve::ray({1, 1, 0}, {0, 1, 0});
  EXPECT_EQ(ray.start_param(), 0.0);
  EXPECT_EQ(ray.end_param(), std::numeric_limits<double>::infinity());
  EXPECT_THAT(ray.point_at(7), Is(1, 8, 0));
  EXPECT_THAT(ray.closest_point({3, 100, 0}), Is(1, 100, 0));
  EXPECT_THAT(ray.closest_point({3, -100, 0}), Is(1, 1, 0));
  const Curve xline = Curve::xline({1, 1, 0}, {0, 1, 0});
  EXPECT_THAT(xline.point_at(-7), Is(1, -6, 0));
  EXPECT_THAT(xline.closest_point({3, -100, 0}), Is(1, -100, 0));
  EXPECT_EQ(xline.param_at({1, -100, 0}), -101.0);
}

TEST(Curve, AnArcCountsItsAngleFromStartToEnd) {
  const Curve arc = Curve::arc({0, 0, 0}, AcGeVector3d::kZAxis, 2, kPi / 2, kPi);
  EXPECT_EQ(arc.start_param(), kPi / 2);
  EXPECT_EQ(arc.end_param(), kPi);
  EXPECT_THAT(arc.start_point(), Is(0, 2, 0));
  EXPECT_THAT(arc.end_point(), Is(-2, 0, 0));
  EXPECT_THAT(arc.first_derivative(kPi / 2), Is(-2, 0, 0));
  EXPECT_THAT(arc.second_derivative(kPi / 2), Is(0, -2, 0));
  EXPECT_DOUBLE_EQ(arc.length(), kPi);
  EXPECT_DOUBLE_EQ(arc.distance_at(3 * kPi / 4), kPi / 2);
  EXPECT_DOUBLE_EQ(arc.area(), kPi - 2);  // the segment of the circle above the chord
}

TEST(Curve, AnArcThatPassesTheXAxisEndsBeyondAFullTurn) {
  const Curve arc = Curve::arc({0, 0, 0}, AcGeVector3d::kZAxis, 1, 3 * kPi / 2, kPi / 2);
  EXPECT_EQ(arc.start_param(), 3 * kPi / 2);
  EXPECT_DOUBLE_EQ(arc.end_param(), 5 * kPi / 2);
  EXPECT_THAT(arc.point_at(2 * kPi), Is(1, 0, 0));
}

TEST(Curve, AnArcsAnglesCountFromTheAxisOfItsNormal) {
  // Turned around: the X axis of the normal -Z points to the left.
  const Curve arc = Curve::arc({5, 0, 0}, -AcGeVector3d::kZAxis, 1, 0, kPi / 2);
  EXPECT_THAT(arc.start_point(), Is(4, 0, 0));
  EXPECT_THAT(arc.end_point(), Is(5, 1, 0));
}

TEST(Curve, ACircleIsClosedAndPeriodic) {
  const Curve circle = Curve::circle({1, 1, 0}, AcGeVector3d::kZAxis, 3);
  EXPECT_TRUE(circle.is_closed());
  EXPECT_TRUE(circle.is_periodic());
  EXPECT_EQ(circle.end_param(), 2 * kPi);
  EXPECT_DOUBLE_EQ(circle.length(), 6 * kPi);
  EXPECT_DOUBLE_EQ(circle.area(), 9 * kPi);
  EXPECT_THAT(circle.closest_point({11, 1, 0}), Is(4, 1, 0));
  EXPECT_THAT(circle.closest_point({1, 1, 0}), Is(4, 1, 0));  // its center: the start
  const AcDbExtents box = circle.extents();
  EXPECT_THAT(box.minPoint(), Is(-2, -2, 0));
  EXPECT_THAT(box.maxPoint(), Is(4, 4, 0));
}

TEST(Curve, AnEllipseMeasuresByItsParametricAngle) {
  const Curve ellipse = Curve::ellipse({0, 0, 0}, AcGeVector3d::kZAxis, {5, 0, 0}, 0.6, 0, 2 * kPi);
  EXPECT_THAT(ellipse.point_at(kPi / 2), Is(0, 3, 0));
  EXPECT_THAT(ellipse.first_derivative(0), Is(0, 3, 0));
  EXPECT_DOUBLE_EQ(ellipse.area(), 15 * kPi);
  EXPECT_NEAR(ellipse.length(), 25.526998863398124, 1e-11);  // 4 a E(e)
  EXPECT_NEAR(ellipse.distance_at(kPi), 25.526998863398124 / 2, 1e-11);
  EXPECT_NEAR(ellipse.param_at_distance(25.526998863398124 / 4), kPi / 2, 1e-12);
  EXPECT_THAT(ellipse.closest_point({0, 100, 0}), Is(0, 3, 0));
  EXPECT_THAT(ellipse.closest_point({7, 0, 0}), Is(5, 0, 0));
}

TEST(Curve, APolylineCountsVerticesAndFractions) {
  const Curve curve = fan();
  EXPECT_EQ(curve.end_param(), 3.0);
  EXPECT_THAT(curve.point_at(1), Is(10, 0, 0));
  EXPECT_THAT(curve.point_at(1.25), Is(10, 2.5, 0));
  // The arc turns about (10, 0)... by its angle, not its chord.
  EXPECT_THAT(curve.point_at(2.5), Is(10 - 10 * std::cos(kPi / 4), 10 * std::sin(kPi / 4), 0));
  EXPECT_DOUBLE_EQ(curve.length(), 20 + 5 * kPi);
  EXPECT_DOUBLE_EQ(curve.distance_at(2.5), 20 + 2.5 * kPi);
  EXPECT_DOUBLE_EQ(curve.param_at_distance(20 + 2.5 * kPi), 2.5);
  EXPECT_NEAR(curve.area(), 25 * kPi, 1e-12);
}

TEST(Curve, AtAVertexTheDerivativeIsThatOfTheSegmentBehind) {
  const Curve curve = fan();
  EXPECT_THAT(curve.first_derivative(0), Is(10, 0, 0));
  EXPECT_THAT(curve.first_derivative(1), Is(0, 10, 0));
  EXPECT_THAT(curve.first_derivative(2), Is(-5 * kPi, 0, 0));
  EXPECT_THAT(curve.first_derivative(3), Is(0, -5 * kPi, 0));  // the end: of the last
}

TEST(Curve, ANegativeBulgeTurnsTheOtherWay) {
  const Curve curve = Curve::polyline(Vertices{{{0, 0}, -kHalfCircle}, {{2, 0}, 0}}, false);
  EXPECT_THAT(curve.point_at(0.5), Is(1, 1, 0));
  const Curve left = Curve::polyline(Vertices{{{0, 0}, kHalfCircle}, {{2, 0}, 0}}, false);
  EXPECT_THAT(left.point_at(0.5), Is(1, -1, 0));
  EXPECT_DOUBLE_EQ(curve.area(), kPi / 2);
  EXPECT_THAT(curve.extents().maxPoint(), Is(2, 1, 0));
}

TEST(Curve, APolylineInAnotherPlaneLiesAtItsElevation) {
  const AcGeVector3d normal(1, 0, 0);
  const Curve curve = Curve::polyline(Vertices{{{1, 2}, 0}, {{3, 2}, 0}}, false, normal, 7);
  const AcGeMatrix3d axes = cad::ocs_to_wcs(normal);
  const AcGePoint3d start = axes * AcGePoint3d(1, 2, 7);
  EXPECT_THAT(curve.start_point(), Is(start.x, start.y, start.z));
  EXPECT_NEAR(curve.start_point().x, 7, 1e-12);
  ASSERT_TRUE(curve.plane_normal());
}

TEST(Curve, TheNearestPointIsOnTheTrueCurve) {
  const Curve curve = fan();
  const Curve::Nearest on_arc = curve.nearest({0, 10, 0});
  EXPECT_THAT(on_arc.point, Is(10 - 10 * std::cos(kPi / 4), 10 * std::sin(kPi / 4), 0));
  EXPECT_NEAR(on_arc.param, 2.5, 1e-12);
  EXPECT_THAT(curve.closest_point({12, -3, 5}), Is(10, 0, 0));  // a vertex
}

TEST(Curve, ExtendedCurvesGoOnBeyondTheirEnds) {
  const Curve line = Curve::line({0, 0, 0}, {10, 0, 0});
  EXPECT_THAT(line.closest_point({15, 3, 0}, true), Is(15, 0, 0));
  EXPECT_THAT(line.closest_point({15, 3, 0}, false), Is(10, 0, 0));
  const Curve arc = Curve::arc({0, 0, 0}, AcGeVector3d::kZAxis, 1, 0, kPi / 2);
  EXPECT_THAT(arc.closest_point({-5, 0, 0}, true), Is(-1, 0, 0));
  EXPECT_THAT(arc.closest_point({-5, 0, 0}, false), Is(0, 1, 0));
  const Curve open = Curve::polyline(Vertices{{{0, 0}, 0}, {{10, 0}, 0}, {{10, 10}, 0}}, false);
  EXPECT_THAT(open.closest_point({-4, 1, 0}, true), Is(-4, 0, 0));
  EXPECT_THAT(open.closest_point({9, 30, 0}, true), Is(10, 30, 0));
  EXPECT_THAT(open.closest_point({30, -1, 0}, true), Is(10, 0, 0));  // only outwards
}

TEST(Curve, TheNearestPointInAProjectionIsFoundInThePlan) {
  const Curve line = Curve::line({0, 0, 0}, {10, 0, 100});
  EXPECT_THAT(line.nearest_in_projection({5, 3, 0}, AcGeVector3d::kZAxis).point, Is(5, 0, 50));
  const Curve circle = Curve::circle({0, 0, 9}, {0, 1, 1}, 2);
  const AcGePoint3d found = circle.nearest_in_projection({5, 0, 0}, AcGeVector3d::kZAxis).point;
  EXPECT_THAT(found, Is(2, 0, 9));
}

TEST(Curve, APointBesideTheCurveHasNoParameter) {
  const Curve line = Curve::line({0, 0, 0}, {10, 0, 0});
  EXPECT_EQ(line.param_at({4, 0, 0}), 4.0);
  EXPECT_EQ(line.param_at({4, 1e-10, 0}), 4.0);
  EXPECT_EQ(line.param_at({4, 1e-5, 0}), std::nullopt);
  const Curve far = Curve::line({500000, 4000000, 0}, {500010, 4000010, 0});
  EXPECT_TRUE(far.param_at(far.point_at(3.3)));
}

TEST(Curve, SegmentsWithoutLengthDoNoHarm) {
  const Curve curve = Curve::polyline(
      Vertices{{{0, 0}, 0}, {{0, 0}, 1}, {{5, 0}, 0}, {{5, 0}, 0}, {{5, 5}, 0}, {{0, 0}, 0}}, true);
  EXPECT_EQ(curve.end_param(), 6.0);
  EXPECT_DOUBLE_EQ(curve.length(), 2.5 * kPi + 5 + std::sqrt(50.0));
  EXPECT_THAT(curve.point_at(0.5), Is(0, 0, 0));
  EXPECT_THAT(curve.closest_point({6, 3, 0}), Is(5, 3, 0));
  EXPECT_THAT(curve.point_at(5.5), Is(0, 0, 0));
}

TEST(Curve, BulgesWithoutARadiusMakeStraightSegments) {
  const double huge = std::numeric_limits<double>::max();
  for (const double bulge : {0.0, 1e-320, huge, -huge, std::nan("")}) {
    const Curve curve = Curve::polyline(Vertices{{{0, 0}, bulge}, {{4, 0}, 0}}, false);
    EXPECT_THAT(curve.point_at(0.5), Is(2, 0, 0)) << bulge;
    EXPECT_EQ(curve.length(), 4.0) << bulge;
  }
}

TEST(Curve, FlatArcsKeepTheirPrecision) {
  const double bulge = 1e-9;  // rises 1e-9 * half the chord
  const Curve curve = Curve::polyline(Vertices{{{0, 0}, bulge}, {{2, 0}, 0}}, false);
  EXPECT_THAT(curve.end_point(), Is(2, 0, 0));
  EXPECT_NEAR(curve.point_at(0.5).x, 1, 1e-15);
  EXPECT_NEAR(curve.point_at(0.5).y, -1e-9, 1e-16);
  EXPECT_NEAR(curve.closest_point({0.7, 1, 0}).x, 0.7, 1e-9);
}

TEST(Curve, NumbersThatAreNotFiniteEndEverySearch) {
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  const Curve curves[] = {
      Curve::line({nan, 0, 0}, {1, 0, 0}),
      Curve::arc({0, 0, 0}, {nan, nan, nan}, inf, nan, 1),
      Curve::circle({inf, 0, 0}, AcGeVector3d::kZAxis, -1),
      Curve::ellipse({0, 0, 0}, {0, 0, 0}, {nan, 1, 0}, inf, 0, nan),
      Curve::polyline(Vertices{{{nan, 0}, nan}, {{inf, 1}, 2}}, true),
      Curve::polyline(Vertices{}, true),
      Curve::polyline(Vertices{{{1, 1}, 1}}, false),
      Curve::polyline(Vertices{{{1, 1}, 1}}, true),
      Curve::polyline3d(std::vector<AcGePoint3d>{}, false),
      Curve::ray({0, 0, 0}, {0, 0, 0}),
      Curve::xline({0, 0, 0}, {nan, 0, 0}),
  };
  for (const Curve& curve : curves) {
    for (const double param : {0.0, 0.5, nan, inf, -inf}) {
      curve.point_at(param);
      curve.first_derivative(param);
      curve.distance_at(param);
      curve.param_at_distance(param);
    }
    curve.nearest({1, 2, 3}, true);
    curve.nearest({nan, 2, 3});
    curve.nearest_in_projection({1, 2, 3}, {0, 0, 1});
    curve.area();
    curve.extents();
    curve.plane_normal();
    curve.param_at({0, 0, 0});
  }
}

SplineShape parabola() {
  // y = x^2 from (0,0) to (2,4), degree 2.
  SplineShape shape;
  shape.degree = 2;
  shape.knots = {0, 0, 0, 1, 1, 1};
  shape.controls = {{0, 0, 0}, {1, 0, 0}, {2, 4, 0}};
  return shape;
}

TEST(Curve, ASplineCountsItsKnots) {
  const Curve curve = *Curve::spline(parabola());
  EXPECT_EQ(curve.end_param(), 1.0);
  EXPECT_THAT(curve.point_at(0.5), Is(1, 1, 0));
  EXPECT_THAT(curve.first_derivative(0.5), Is(2, 4, 0));
  EXPECT_THAT(curve.second_derivative(0.5), Is(0, 8, 0));
  // The length of y = x^2 from 0 to 2.
  EXPECT_NEAR(curve.length(), std::sqrt(17.0) + std::asinh(4.0) / 4, 1e-12);
  EXPECT_NEAR(curve.area(), 4 - 8.0 / 3, 1e-12);  // between chord and parabola
  EXPECT_THAT(curve.extents().minPoint(), Is(0, 0, 0));
}

TEST(Curve, ARationalSplineIsAnExactCircle) {
  SplineShape shape;
  shape.degree = 2;
  shape.knots = {0, 0, 0, 1, 1, 2, 2, 2};
  const double w = std::sqrt(0.5);
  shape.controls = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {-1, 1, 0}, {-1, 0, 0}};
  shape.weights = {1, w, 1, w, 1};
  const Curve curve = *Curve::spline(shape);
  ASSERT_EQ(curve.segments().size(), 2U);
  for (double t = 0; t <= 2; t += 0.125)
    EXPECT_NEAR((curve.point_at(t) - AcGePoint3d()).length(), 1, 1e-15) << t;
  EXPECT_NEAR(curve.length(), kPi, 1e-12);
  EXPECT_NEAR(curve.area(), kPi / 2, 1e-12);
  EXPECT_NEAR(curve.extents().maxPoint().y, 1, 1e-12);
  const AcGePoint3d p = curve.closest_point({3, 3, 0});
  EXPECT_NEAR(p.x, std::sqrt(0.5), 1e-12);
}

TEST(Curve, AnUnclampedSplineRunsWithinItsInnerKnots) {
  SplineShape shape;
  shape.degree = 3;
  shape.knots = {0, 1, 2, 3, 4, 5, 6, 7, 8};
  shape.controls = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}};
  const Curve curve = *Curve::spline(shape);
  EXPECT_EQ(curve.start_param(), 3.0);
  EXPECT_EQ(curve.end_param(), 5.0);
  EXPECT_THAT(curve.start_point(), Is(1, 0, 0));
  EXPECT_THAT(curve.point_at(4), Is(2, 0, 0));
}

TEST(Curve, KnotsAndPointsThatDoNotFitMakeNoSpline) {
  SplineShape shape = parabola();
  shape.knots.pop_back();
  EXPECT_FALSE(Curve::spline(shape));
  shape = parabola();
  shape.knots = {0, 0, 0, 1, 0.5, 1};
  EXPECT_FALSE(Curve::spline(shape));
  shape = parabola();
  shape.weights = {1, 0, 1};
  EXPECT_FALSE(Curve::spline(shape));
  shape = parabola();
  shape.degree = 0;
  EXPECT_FALSE(Curve::spline(shape));
  EXPECT_FALSE(Curve::spline(SplineShape()));
}

TEST(Curve, FitPointsArePassedInOrderWithContinuousCurvature) {
  SplineShape shape;
  shape.fit_points = {{0, 0, 0}, {3, 4, 0}, {8, 4, 1}, {8, 4, 1}, {9, 0, 0}};
  const Curve curve = *Curve::spline(shape);
  EXPECT_THAT(curve.point_at(5), Is(3, 4, 0));  // chords of 5 and sqrt 26
  EXPECT_THAT(curve.end_point(), Is(9, 0, 0));
  EXPECT_THAT(curve.second_derivative(0), Is(0, 0, 0));
  const AcGeVector3d before = curve.second_derivative(5 - 1e-9),
                     behind = curve.second_derivative(5 + 1e-9);
  EXPECT_NEAR((before - behind).length(), 0, 1e-7);
  EXPECT_NEAR((curve.first_derivative(5 - 1e-9) - curve.first_derivative(5)).length(), 0, 1e-7);
}

TEST(Curve, FitPointsWithTangentsLeaveAlongThem) {
  SplineShape shape;
  shape.fit_points = {{0, 0, 0}, {3, 4, 0}, {6, 0, 0}};
  shape.start_tangent = {0, 2, 0};
  shape.end_tangent = {0, -1, 0};
  const Curve curve = *Curve::spline(shape);
  EXPECT_THAT(curve.first_derivative(0), Is(0, 1, 0));
  EXPECT_THAT(curve.first_derivative(10), Is(0, -1, 0));
}

TEST(Curve, ClosedFitPointsJoinSmoothly) {
  SplineShape shape;
  shape.closed = true;
  shape.fit_points = {{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}};
  const Curve curve = *Curve::spline(shape);
  EXPECT_TRUE(curve.is_closed());
  const double end = curve.end_param();
  EXPECT_NEAR((curve.first_derivative(0) - curve.first_derivative(end)).length(), 0, 1e-12);
  EXPECT_NEAR((curve.second_derivative(0) - curve.second_derivative(end)).length(), 0, 1e-12);
}

TEST(Curve, FlatAndSpatialCurvesAreTold) {
  EXPECT_TRUE(Curve::line({0, 0, 0}, {1, 2, 3}).plane_normal());
  const AcGePoint3d flat[] = {{0, 0, 1}, {4, 0, 1}, {4, 4, 1}};
  EXPECT_THAT(*Curve::polyline3d(flat, false).plane_normal(), Is(0, 0, 1));
  const AcGePoint3d spatial[] = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 1}};
  EXPECT_FALSE(Curve::polyline3d(spatial, true).plane_normal());
}

/// Curves of every kind, different at each call.
class AnyCurve {
 public:
  explicit AnyCurve(unsigned seed) : random_(seed) {}

  double number(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }
  AcGePoint3d point(double size = 10) {
    return {number(-size, size), number(-size, size), number(-size, size)};
  }
  Curve curve() {
    const AcGeVector3d normal = point().asVector();
    switch (std::uniform_int_distribution<int>(0, 5)(random_)) {
      case 0:
        return Curve::line(point(), point());
      case 1:
        return Curve::arc(point(), normal, number(0.1, 10), number(0, 6), number(0, 6));
      case 2: {
        const AcGeVector3d major = normal.perpVector() * number(1, 10);
        return Curve::ellipse(point(), normal, major, number(0.01, 1), number(0, 6), number(0, 6));
      }
      case 3: {
        Vertices vertices(std::uniform_int_distribution<std::size_t>(2, 8)(random_));
        for (Curve::Vertex& v : vertices) v = {{number(-9, 9), number(-9, 9)}, number(-3, 3)};
        return Curve::polyline(vertices, number(0, 1) > 0.5, normal, number(-5, 5));
      }
      case 4: {
        SplineShape shape;
        for (int i = 0; i < 6; ++i) shape.fit_points.push_back(point());
        return *Curve::spline(shape);
      }
      default: {
        SplineShape shape;
        shape.degree = std::uniform_int_distribution<int>(1, 5)(random_);
        const int count = shape.degree + 4;
        double knot = 0;
        for (int i = 0; i < count + shape.degree + 1; ++i) {
          shape.knots.push_back(knot);
          if (i >= shape.degree && i < count) knot += number(0.2, 2);
        }
        for (int i = 0; i < count; ++i) {
          shape.controls.push_back(point());
          shape.weights.push_back(number(0.2, 4));
        }
        return *Curve::spline(shape);
      }
    }
  }

 private:
  std::mt19937 random_;
};

TEST(CurveLaw, NoSampleIsNearerThanTheNearestPoint) {
  AnyCurve any(4711);
  for (int round = 0; round < 400; ++round) {
    const Curve curve = any.curve();
    const AcGePoint3d p = any.point(15);
    const Curve::Nearest found = curve.nearest(p);
    EXPECT_NEAR(found.point.distanceTo(p), found.distance, 1e-12);
    EXPECT_NEAR(curve.point_at(found.param).distanceTo(found.point), 0, 1e-9);
    constexpr int kSamples = 2000;
    for (int i = 0; i <= kSamples; ++i) {
      const double t =
          curve.start_param() + (curve.end_param() - curve.start_param()) * i / kSamples;
      ASSERT_GE(curve.point_at(t).distanceTo(p), found.distance - 1e-9) << "round " << round;
    }
  }
}

TEST(CurveLaw, LengthsAgreeWithFineChords) {
  AnyCurve any(99);
  for (int round = 0; round < 100; ++round) {
    const Curve curve = any.curve();
    const double range = curve.end_param() - curve.start_param();
    double sum = 0;
    constexpr int kSamples = 20000;
    for (int i = 0; i < kSamples; ++i)
      sum += curve.point_at(curve.start_param() + range * i / kSamples)
                 .distanceTo(curve.point_at(curve.start_param() + range * (i + 1) / kSamples));
    EXPECT_NEAR(curve.length(), sum, 1e-3 * sum);
    EXPECT_LE(sum, curve.length() * (1 + 1e-12));
  }
}

TEST(CurveLaw, DistanceAndParameterAreInverse) {
  AnyCurve any(5);
  for (int round = 0; round < 200; ++round) {
    const Curve curve = any.curve();
    const double t = any.number(curve.start_param(), curve.end_param());
    const double distance = curve.distance_at(t);
    EXPECT_NEAR(curve.param_at_distance(distance), t, 1e-8) << "round " << round;
    EXPECT_NEAR(curve.distance_at(curve.param_at_distance(distance)), distance, 1e-9);
  }
}

TEST(CurveLaw, ExtentsAreTight) {
  AnyCurve any(12);
  for (int round = 0; round < 150; ++round) {
    const Curve curve = any.curve();
    const AcDbExtents box = curve.extents();
    AcDbExtents sampled;
    constexpr int kSamples = 4000;
    for (int i = 0; i <= kSamples; ++i) {
      const AcGePoint3d p = curve.point_at(
          curve.start_param() + (curve.end_param() - curve.start_param()) * i / kSamples);
      sampled.addPoint(p);
    }
    for (unsigned axis = 0; axis < 3; ++axis) {
      EXPECT_LE(box.minPoint()[axis], sampled.minPoint()[axis] + 1e-9);
      EXPECT_GE(box.maxPoint()[axis], sampled.maxPoint()[axis] - 1e-9);
      EXPECT_NEAR(box.minPoint()[axis], sampled.minPoint()[axis], 0.02);
      EXPECT_NEAR(box.maxPoint()[axis], sampled.maxPoint()[axis], 0.02);
    }
  }
}

TEST(CurveLaw, DerivativesAreTheSlopesOfPoints) {
  AnyCurve any(77);
  for (int round = 0; round < 200; ++round) {
    const Curve curve = any.curve();
    const double range = curve.end_param() - curve.start_param();
    const double t =
        any.number(curve.start_param() + range * 0.01, curve.end_param() - range * 0.01);
    const double h = range * 1e-6;
    if (std::fabs(t - std::round(t)) < 2 * h && curve.kind() == Curve::Kind::kPolyline) continue;
    const AcGeVector3d slope = (curve.point_at(t + h) - curve.point_at(t - h)) / (2 * h);
    EXPECT_NEAR((slope - curve.first_derivative(t)).length(), 0,
                1e-3 * (1 + curve.first_derivative(t).length()))
        << "round " << round;
  }
}

}  // namespace
