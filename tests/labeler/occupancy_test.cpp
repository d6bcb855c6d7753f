#include "labeler/occupancy.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace labeler {
namespace {

constexpr double kPi = std::numbers::pi;

Box square(double x, double y, double half, double angle = 0.0) {
  return {AcGePoint2d(x, y), half, half, angle};
}

int conflicts(Occupancy& taken, const Box& box) { return taken.conflicts({&box, 1}, 100); }

TEST(Boxes, ThatTouchDoNotOverlap) {
  EXPECT_TRUE(overlap(square(0, 0, 1), square(1.9, 0, 1)));
  EXPECT_FALSE(overlap(square(0, 0, 1), square(2, 0, 1)));
  EXPECT_FALSE(overlap(square(0, 0, 1), square(2, 2, 1)));
}

TEST(Boxes, TurnedOnesOverlapWhereTheyAre) {
  // The corner of the turned square reaches 1.41, the other's side stands at 1.3.
  EXPECT_TRUE(overlap(square(0, 0, 1, kPi / 4), square(2.3, 0, 1)));
  EXPECT_FALSE(overlap(square(0, 0, 1, kPi / 4), square(2.1, 2.1, 1)));
}

TEST(Boxes, ALineIsABoxWithoutHeight) {
  const Box line = box_of_line({0, 0}, {10, 10});
  EXPECT_TRUE(overlap(line, square(5, 5, 1)));
  EXPECT_FALSE(overlap(line, square(5, 8, 1)));
}

TEST(Occupied, WhatIsFiledIsFoundOnce) {
  Occupancy taken(1.0);
  taken.add(square(0, 0, 5));  // in many cells
  EXPECT_EQ(conflicts(taken, square(1, 1, 3)), 1);
  EXPECT_EQ(conflicts(taken, square(20, 1, 3)), 0);
}

TEST(Occupied, ASlantedLineTakesOnlyWhatItCrosses) {
  Occupancy taken(1.0);
  taken.add(box_of_line({0, 0}, {100, 100}));
  EXPECT_GT(conflicts(taken, square(50, 50, 1)), 0);
  EXPECT_EQ(conflicts(taken, square(60, 40, 1)), 0);
}

TEST(Occupied, CountsUpToWhatIsEnough) {
  Occupancy taken(1.0);
  for (int i = 0; i < 10; ++i) taken.add(square(0, 0, 1));
  const Box box = square(0, 0, 1);
  EXPECT_EQ(taken.conflicts({&box, 1}, 3), 3);
}

TEST(Occupied, AHeavyBoxCountsAsMany) {
  Occupancy taken(1.0);
  taken.add(square(0, 0, 1), 0, 4);
  taken.add(square(0, 0, 1));
  EXPECT_EQ(conflicts(taken, square(0, 0, 1)), 5);
}

TEST(Occupied, WhatIsRemovedIsFree) {
  Occupancy taken(1.0);
  taken.add(square(0, 0, 1), 7);
  taken.add(square(0, 0, 1), 8);
  taken.remove(7);
  EXPECT_EQ(conflicts(taken, square(0, 0, 1)), 1);
  taken.remove(8);
  taken.remove(9);
  EXPECT_EQ(conflicts(taken, square(0, 0, 1)), 0);
}

TEST(Occupied, NumbersThatAreNoneAndEndlessLinesAreLeftOut) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  Occupancy taken(1.0);
  taken.add(square(kInf, 0, 1));
  taken.add(square(0, std::nan(""), 1));
  taken.add(box_of_line({0, 0}, {1e300, 1e300}));
  taken.add(box_of_line({0, 0}, {5e8, 5e8}));
  EXPECT_EQ(conflicts(taken, square(0, 0, 1)), 0);
  EXPECT_EQ(conflicts(taken, square(kInf, 0, 1)), 0);
}

RC_GTEST_PROP(Occupied, AnswersAsComparingEveryPairDoes, ()) {
  const auto box = rc::gen::map(
      rc::gen::tuple(rc::gen::inRange(-50, 50), rc::gen::inRange(-50, 50), rc::gen::inRange(0, 12),
                     rc::gen::inRange(0, 4), rc::gen::inRange(0, 12)),
      [](const std::tuple<int, int, int, int, int>& numbers) {
        const auto [x, y, width, height, turn] = numbers;
        return Box{AcGePoint2d(x, y), width * 0.9, height * 0.7, turn * kPi / 6};
      });
  const auto filed = *rc::gen::container<std::vector<Box>>(box);
  const Box asked = *box;
  Occupancy taken(3.0);
  bool any = false;
  for (const Box& one : filed) {
    taken.add(one);
    any = any || overlap(one, asked);
  }
  RC_ASSERT((conflicts(taken, asked) > 0) == any);
}

}  // namespace
}  // namespace labeler
