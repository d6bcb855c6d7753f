#include "host/geometry/offset.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

#include "host/geometry/curve.h"

namespace {

using cad::Curve;

const AcGeVector3d kZ = AcGeVector3d::kZAxis;

std::string number(double value) {
  char text[64];
  const double tidy = std::round(value * 1e6) / 1e6;
  std::snprintf(text, sizeof text, "%.9g", tidy == 0 ? 0.0 : tidy);
  return text;
}

/// "0,0 5,0(0.5) closed" for each curve, bulges in brackets.
std::string shown(const std::vector<Curve>& curves) {
  std::string text;
  for (const Curve& curve : curves) {
    if (!text.empty()) text += " | ";
    for (const cad::Segment& s : curve.segments()) {
      text += number(s.start().x) + "," + number(s.start().y);
      const double bulge = cad::bulge_of(s, kZ);
      if (bulge != 0) text += "(" + number(bulge) + ")";
      text += " ";
    }
    text += curve.is_closed() ? "closed"
                              : number(curve.end_point().x) + "," + number(curve.end_point().y);
  }
  return text;
}

Curve polyline(std::vector<Curve::Vertex> vertices, bool closed = false) {
  return Curve::polyline(vertices, closed);
}

TEST(Offset, LinesAndCircles) {
  EXPECT_EQ(shown(cad::offset_curve(Curve::line({0, 0, 0}, {10, 0, 0}), 2)), "0,-2 10,-2");
  EXPECT_EQ(shown(cad::offset_curve(Curve::line({0, 0, 0}, {10, 0, 0}), -2)), "0,2 10,2");
  const auto larger = cad::offset_curve(Curve::circle({1, 2, 0}, kZ, 5), 2);
  ASSERT_EQ(larger.size(), 1u);
  EXPECT_EQ(larger[0].segments()[0].radius(), 7);
  EXPECT_TRUE(cad::offset_curve(Curve::circle({1, 2, 0}, kZ, 5), -5).empty());
  const auto arc = cad::offset_curve(Curve::arc({0, 0, 0}, kZ, 5, 1, 2), -2);
  ASSERT_EQ(arc.size(), 1u);
  EXPECT_EQ(arc[0].segments()[0].radius(), 3);
  EXPECT_EQ(arc[0].start_param(), 1);
  EXPECT_EQ(arc[0].end_param(), 2);
}

TEST(Offset, PolylinesKeepTheirCorners) {
  const Curve angle = polyline({{{0, 0}}, {{10, 0}}, {{10, 10}}});
  EXPECT_EQ(shown(cad::offset_curve(angle, 1)), "0,-1 11,-1 11,10");
  EXPECT_EQ(shown(cad::offset_curve(angle, -1)), "0,1 9,1 9,10");
  const Curve square = polyline({{{0, 0}}, {{10, 0}}, {{10, 10}}, {{0, 10}}}, true);
  EXPECT_EQ(shown(cad::offset_curve(square, -2)), "2,2 8,2 8,8 2,8 closed");
  EXPECT_EQ(shown(cad::offset_curve(square, 2)), "-2,-2 12,-2 12,12 -2,12 closed");
  EXPECT_EQ(shown(cad::offset_curve(square, -5)), "");
}

TEST(Offset, StraightPolylinesStayInThePlan) {
  const Curve slanting = polyline({{{0, 0}}, {{-3, -4}}});
  EXPECT_EQ(slanting.plane_normal(), kZ);
  EXPECT_EQ(shown(cad::offset_curve(slanting, 5)), "-4,3 -7,-1");
  EXPECT_EQ(shown(cad::offset_curve(slanting, -5)), "4,-3 1,-7");
}

TEST(Offset, ArcsStayArcs) {
  // A slot: two lines and two half circles.
  const Curve slot = polyline({{{0, 0}}, {{10, 0}, 1}, {{10, 4}}, {{0, 4}, 1}}, true);
  EXPECT_EQ(shown(cad::offset_curve(slot, 1)), "0,-1 10,-1(1) 10,5 0,5(1) closed");
  EXPECT_EQ(shown(cad::offset_curve(slot, -1)), "0,1 10,1(1) 10,3 0,3(1) closed");
  EXPECT_EQ(shown(cad::offset_curve(slot, -3)), "");
}

TEST(Offset, PiecesThatHaveNoRoomVanish) {
  // A notch one wide is closed by an offset of one.
  const Curve notched =
      polyline({{{0, 0}}, {{4.5, 0}}, {{4.5, 1}}, {{5.5, 1}}, {{5.5, 0}}, {{10, 0}}});
  const auto above = cad::offset_curve(notched, -2);
  ASSERT_EQ(above.size(), 1u);
  EXPECT_EQ(shown(above), "0,2 2.5,2 2.5,3 7.5,3 7.5,2 10,2");
  const auto below = cad::offset_curve(notched, 2);
  EXPECT_EQ(shown(below), "0,-2 10,-2");
  // An hourglass falls into two.
  const Curve hourglass =
      polyline({{{0, 0}}, {{10, 0}}, {{6, 5}}, {{10, 10}}, {{0, 10}}, {{4, 5}}}, true);
  EXPECT_EQ(cad::offset_curve(hourglass, -1.2).size(), 2u);
}

TEST(Offset, SidesAreToldByAPoint) {
  const Curve angle = polyline({{{0, 0}}, {{10, 0}}, {{10, 10}}});
  EXPECT_NEAR(cad::offset_distance_through(angle, {5, -1, 0}), 1, 1e-12);
  EXPECT_NEAR(cad::offset_distance_through(angle, {5, 1, 0}), -1, 1e-12);
  EXPECT_GT(cad::offset_distance_through(angle, {13, -4, 0}), 0);
  EXPECT_NEAR(cad::offset_distance_through(Curve::circle({0, 0, 0}, kZ, 5), {0, 3, 9}), -2, 1e-12);
  EXPECT_NEAR(cad::offset_distance_through(Curve::line({0, 0, 0}, {1, 0, 0}), {5, 2, 0}), -2,
              1e-12);
}

TEST(Offset, WhatHasNoOffsetHasNone) {
  EXPECT_TRUE(cad::offset_curve(Curve::ellipse({0, 0, 0}, kZ, {4, 0, 0}, 0.5, 0, 3), 1).empty());
  const AcGePoint3d points[] = {{0, 0, 0}, {1, 0, 5}, {1, 1, 9}};
  EXPECT_TRUE(cad::offset_curve(Curve::polyline3d(points, false), 1).empty());
  EXPECT_TRUE(cad::offset_curve(polyline({}), 1).empty());
  EXPECT_TRUE(cad::offset_curve(polyline({{{0, 0}}}), 1).empty());
  EXPECT_TRUE(cad::offset_curve(Curve::line({0, 0, 0}, {1, 0, 0}), std::nan("")).empty());
}

}  // namespace
