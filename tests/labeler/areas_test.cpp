#include "labeler/areas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace labeler {
namespace {

AcDbExtents rectangle(double left, double bottom, double right, double top) {
  return {{left, bottom, 0.0}, {right, top, 0.0}};
}

TEST(PlanAreas, ARectangleThatSharesAPointWithAnAreaMeetsIt) {
  Areas areas(10.0);
  areas.add(rectangle(-35, -5, 62, 5));
  EXPECT_TRUE(areas.meet(rectangle(60, 4, 100, 100)));
  EXPECT_TRUE(areas.meet(rectangle(0, 0, 0, 0)));
  EXPECT_TRUE(areas.meet(rectangle(-1000, 0, 1000, 0))) << "larger than the area";
}

TEST(PlanAreas, ARectangleMoreThanACellAwayMeetsNone) {
  Areas areas(10.0);
  areas.add(rectangle(-35, -5, 62, 5));
  EXPECT_FALSE(areas.meet(rectangle(73, 0, 80, 0)));
  EXPECT_FALSE(areas.meet(rectangle(0, 16, 0, 100)));
  EXPECT_FALSE(areas.meet(rectangle(-50, 0, -46, 0)));
}

TEST(PlanAreas, WithoutAreasNothingMeetsOne) {
  EXPECT_FALSE(Areas(10.0).meet(rectangle(0, 0, 1, 1)));
}

TEST(PlanAreas, WhatCannotBeLookedUpCountsAsMeeting) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  Areas areas(10.0);
  areas.add(rectangle(0, 0, 1, 1));
  EXPECT_TRUE(areas.meet(rectangle(1e6, 1e6, kInf, 1e6)));
  EXPECT_TRUE(areas.meet(rectangle(1e6, std::nan(""), 1e6, 1e6)));
  EXPECT_TRUE(areas.meet(rectangle(1e5, 1e5, 1e8, 1e8)));
  EXPECT_TRUE(areas.meet(rectangle(1e12, 0, 1e12, 0)));
}

TEST(PlanAreas, AnAreaThatIsTooLargeIsTheWholePlan) {
  Areas areas(10.0);
  areas.add(rectangle(0, 0, 1e8, 1e8));
  EXPECT_TRUE(areas.meet(rectangle(-1e6, -1e6, -1e6, -1e6)));
}

}  // namespace
}  // namespace labeler
