#include "host/app/prompt/point_text.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

cad::InputUnits units() {
  cad::InputUnits units;
  units.last = {10, 20, 5};
  units.elevation = 3;
  return units;
}

void expect_point(std::wstring_view text, const cad::InputUnits& how, double x, double y,
                  double z) {
  const auto point = cad::parse_point(text, how);
  ASSERT_TRUE(point) << std::string(text.begin(), text.end());
  EXPECT_NEAR(point->x, x, 1e-9);
  EXPECT_NEAR(point->y, y, 1e-9);
  EXPECT_NEAR(point->z, z, 1e-9);
}

TEST(PointText, CoordinatesAndTheElevation) {
  expect_point(L"1,2", units(), 1, 2, 3);
  expect_point(L" 1.5 , -2 ,7", units(), 1.5, -2, 7);
  expect_point(L"1e2,.5", units(), 100, 0.5, 3);
}

TEST(PointText, RelativeToTheLastPoint) {
  expect_point(L"@1,2", units(), 11, 22, 5);
  expect_point(L"@1,2,3", units(), 11, 22, 8);
  expect_point(L"@", units(), 10, 20, 5);
}

TEST(PointText, DistanceAndAngle) {
  expect_point(L"10<90", units(), 0, 10, 3);
  expect_point(L"@10<180", units(), 0, 20, 5);
  expect_point(L"10<0,7", units(), 10, 0, 7);
  expect_point(L"10<0<90", units(), 0, 0, 10);
}

TEST(PointText, AnglesCountFromTheBaseClockwiseOrNot) {
  cad::InputUnits how = units();
  how.angle_base = std::numbers::pi / 2;
  expect_point(L"10<0", how, 0, 10, 3);
  how.clockwise = true;
  expect_point(L"10<90", how, 10, 0, 3);
}

TEST(PointText, WorldCoordinates) {
  cad::InputUnits how = units();
  how.world_to_ucs = AcGeMatrix3d::translation({-100, 0, 0});
  expect_point(L"*100,5,0", how, 0, 5, 0);
  expect_point(L"@*1,0,0", how, 11, 20, 5);
  expect_point(L"#1,2", how, 1, 2, 3);
}

TEST(PointText, FeetAndInches) {
  cad::InputUnits how = units();
  how.lengths = cad::lisp::LengthUnits::kArchitectural;
  expect_point(L"1',1'6\"", how, 12, 18, 3);
}

TEST(PointText, WhatIsNoPoint) {
  for (const wchar_t* text :
       {L"", L"1", L",", L"1,", L",1", L"1,2,3,4", L"a,b", L"1<", L"<90", L"1<2<3<4", L"1<2,3,4",
        L"1<2<3,4", L"@@1,2", L"1,nan", L"*", L"inf,1"})
    EXPECT_FALSE(cad::parse_point(text, units()));
}

}  // namespace
