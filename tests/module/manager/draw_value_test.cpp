#include "module/manager/draw_value.h"

#include <gtest/gtest.h>

#include "tests/module/plan.h"

namespace {

TEST(DrawValue, APointIsThreeNumbersInParentheses) {
  EXPECT_EQ(dim::value_text(AcGePoint3d(1, -2.5, 0.0000006)), L"( 1.000000, -2.500000, 0.000001 )");
  EXPECT_EQ(dim::value_text(AcGeVector3d(0, 0, 1)), L"( 0.000000, 0.000000, 1.000000 )");
}

TEST(DrawValue, RealsHaveSixDecimals) {
  EXPECT_EQ(dim::value_text(36.5), L"36.500000");
  EXPECT_EQ(dim::value_text(1.0 / 3.0), L"0.333333");
  EXPECT_EQ(dim::value_text(-2.0 / 3.0), L"-0.666667");
}

TEST(DrawValue, ATieRoundsAwayFromZero) {
  EXPECT_EQ(dim::value_text(1.0 / 128.0), L"0.007813");  // 0.0078125 exactly
  EXPECT_EQ(dim::value_text(-1.0 / 128.0), L"-0.007813");
}

TEST(DrawValue, LongsAre32Bits) {
  EXPECT_EQ(dim::value_text(2147483647L), L"2147483647");
  EXPECT_EQ(dim::value_text(-2147483648L), L"-2147483648");
  EXPECT_EQ(dim::long_of(L"-2147483648"), -2147483648L);
  EXPECT_EQ(dim::long_of(L"12abc"), 12);
}

TEST(DrawValue, PointsReadBackToSixDecimals) {
  const AcGePoint3d point = dim::point_of(dim::value_text(AcGePoint3d(500123.1234567, -1e-7, 3)));
  EXPECT_EQ(point.x, 500123.123457);
  EXPECT_EQ(point.y, 0.0);
  EXPECT_EQ(point.z, 3.0);
}

TEST(DrawValue, WhatIsNoPointReadsAsZeros) {
  const AcGePoint3d point = dim::point_of(L"abc 2.5");
  EXPECT_EQ(point.x, 0.0);
  EXPECT_EQ(point.y, 2.5);
  EXPECT_EQ(point.z, 0.0);
  EXPECT_EQ(dim::real_of(L"abc"), 0.0);
  EXPECT_EQ(dim::long_of(L""), 0);
}

}  // namespace
