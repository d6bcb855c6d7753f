#include "host/geometry/intersect.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

#include "host/geometry/curve.h"

namespace {

using cad::Curve;
using cad::Extend;

constexpr double kPi = std::numbers::pi;
const AcGeVector3d kZ = AcGeVector3d::kZAxis;

/// Points to seven decimals: "1,2,0 3,4,0".
std::string met(const Curve& a, const Curve& b, Extend extend = Extend::kNeither) {
  std::string text;
  for (const AcGePoint3d& p : cad::intersections(a, b, extend)) {
    if (!text.empty()) text += ' ';
    for (unsigned axis = 0; axis < 3; ++axis) {
      char number[64];
      const double tidy = std::round(p[axis] * 1e7) / 1e7;
      std::snprintf(number, sizeof number, "%s%.15g", axis ? "," : "", tidy == 0 ? 0.0 : tidy);
      text += number;
    }
  }
  return text;
}

Curve line(double x1, double y1, double x2, double y2, double z = 0) {
  return Curve::line({x1, y1, z}, {x2, y2, z});
}
Curve circle(double x, double y, double r) { return Curve::circle({x, y, 0}, kZ, r); }

TEST(Intersect, Lines) {
  EXPECT_EQ(met(line(0, 0, 4, 4), line(0, 4, 4, 0)), "2,2,0");
  EXPECT_EQ(met(line(0, 0, 1, 1), line(0, 4, 4, 0)), "");
  EXPECT_EQ(met(line(0, 0, 1, 1), line(0, 4, 4, 0), Extend::kFirst), "2,2,0");
  EXPECT_EQ(met(line(0, 0, 1, 1), line(0, 4, 4, 0), Extend::kSecond), "");
  EXPECT_EQ(met(line(0, 0, 1, 1), line(0, 4, 1, 3), Extend::kBoth), "2,2,0");
  EXPECT_EQ(met(line(0, 0, 4, 4), line(0, 4, 4, 0, 1)), "") << "one above the other";
  EXPECT_EQ(met(line(0, 0, 4, 0), line(0, 1, 4, 1), Extend::kBoth), "");
}

TEST(Intersect, LinesAlongEachOtherShareEndsOnly) {
  EXPECT_EQ(met(line(0, 0, 4, 0), line(4, 0, 9, 0)), "4,0,0");
  EXPECT_EQ(met(line(0, 0, 4, 0), line(2, 0, 9, 0)), "");
}

TEST(Intersect, EndsThatTouchCount) {
  EXPECT_EQ(met(line(0, 0, 4, 0), line(2, 0, 2, 5)), "2,0,0");
  EXPECT_EQ(met(line(500000.1, 4000000.2, 500010.1, 4000000.2),
                line(500005.1, 4000000.2, 500005.1, 4000009)),
            "500005.1,4000000.2,0");
}

TEST(Intersect, LinesAndCircles) {
  EXPECT_EQ(met(line(-9, 0, 9, 0), circle(0, 0, 5)), "-5,0,0 5,0,0");
  EXPECT_EQ(met(circle(0, 0, 5), line(-9, 0, 9, 0)), "5,0,0 -5,0,0");
  EXPECT_EQ(met(line(-9, 5, 9, 5), circle(0, 0, 5)), "0,5,0");
  EXPECT_EQ(met(line(-9, 5.001, 9, 5.001), circle(0, 0, 5)), "");
  EXPECT_EQ(met(line(0, 0, 9, 0), circle(0, 0, 5)), "5,0,0");
  EXPECT_EQ(met(line(0, 0, 1, 0), circle(0, 0, 5), Extend::kFirst), "-5,0,0 5,0,0");
  EXPECT_EQ(met(Curve::line({3, 4, -1}, {3, 4, 1}), circle(0, 0, 5)), "3,4,0")
      << "through its plane";
}

TEST(Intersect, ArcsEndWhereTheyEnd) {
  const Curve quarter = Curve::arc({0, 0, 0}, kZ, 5, 0, kPi / 2);
  EXPECT_EQ(met(line(-9, 3, 9, 3), quarter), "4,3,0");
  EXPECT_EQ(met(line(-9, 3, 9, 3), quarter, Extend::kSecond), "-4,3,0 4,3,0");
  const Curve below = Curve::arc({0, 0, 0}, -kZ, 5, 0, kPi / 2);  // from (-5, 0) up to (0, 5)
  EXPECT_EQ(met(line(-9, 3, 9, 3), below), "-4,3,0");
}

TEST(Intersect, Circles) {
  EXPECT_EQ(met(circle(0, 0, 5), circle(6, 0, 5)), "3,4,0 3,-4,0");
  EXPECT_EQ(met(circle(0, 0, 5), circle(10, 0, 5)), "5,0,0");
  EXPECT_EQ(met(circle(0, 0, 5), circle(3, 0, 2)), "5,0,0");
  EXPECT_EQ(met(circle(0, 0, 5), circle(0, 0, 4)), "");
  EXPECT_EQ(met(circle(0, 0, 5), circle(0, 0, 5)), "");
}

TEST(Intersect, Polylines) {
  const Curve::Vertex corners[] = {{{0, 0}}, {{10, 0}}, {{10, 10}}, {{0, 10}}};
  const Curve square = Curve::polyline(corners, true);
  EXPECT_EQ(met(square, line(-5, 5, 15, 5)), "10,5,0 0,5,0");
  EXPECT_EQ(met(square, line(-5, -5, 15, 15)), "0,0,0 10,10,0") << "each corner once";
  const Curve::Vertex bulged[] = {{{0, 0}, 1}, {{10, 0}}};  // half a circle below the X axis
  EXPECT_EQ(met(Curve::polyline(bulged, false), line(5, -20, 5, 20)), "5,-5,0");
  const Curve open = Curve::polyline(std::span(corners).first(3), false);
  EXPECT_EQ(met(open, line(-5, 20, 15, 20), Extend::kFirst), "10,20,0") << "behind its end";
  EXPECT_EQ(met(open, line(5, -5, 5, 20), Extend::kFirst), "5,0,0") << "not in its middle";
}

TEST(Intersect, EllipsesAndSplines) {
  const Curve ellipse = Curve::ellipse({0, 0, 0}, kZ, {4, 0, 0}, 0.5, 0, 2 * kPi);
  EXPECT_EQ(met(ellipse, line(-9, 0, 9, 0)), "4,0,0 -4,0,0");
  EXPECT_EQ(met(ellipse, line(0, -9, 0, 9)), "0,2,0 0,-2,0");
  EXPECT_EQ(met(ellipse, circle(0, 0, 4)), "4,0,0 -4,0,0");
  // (x/4)^2 + (y/2)^2 = 1 and (x/2)^2 + (y/4)^2 = 1 meet where x = y: x^2 = 16/5.
  const Curve upright = Curve::ellipse({0, 0, 0}, kZ, {0, 4, 0}, 0.5, 0, 2 * kPi);
  EXPECT_EQ(met(ellipse, upright),
            "1.7888544,1.7888544,0 -1.7888544,1.7888544,0 -1.7888544,-1.7888544,0 "
            "1.7888544,-1.7888544,0");
}

TEST(Intersect, NumbersThatMakeNoCurveMeetNothing) {
  const double bad = std::nan("");
  EXPECT_EQ(met(line(bad, 0, 1, 1), line(0, 4, 4, 0), Extend::kBoth), "");
  EXPECT_EQ(met(line(0, 0, 0, 0), line(0, 4, 4, 0), Extend::kBoth), "");
  EXPECT_EQ(met(circle(0, 0, 0), line(-1, 0, 4, 0)), "");
  EXPECT_EQ(met(circle(bad, 0, 2), circle(0, 0, 2)), "");
  EXPECT_EQ(met(circle(1e300, 0, 1e300), line(0, 0, 1, 0)), "") << "too large to be squared";
}

}  // namespace
