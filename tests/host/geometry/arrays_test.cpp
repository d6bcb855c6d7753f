#include <gtest/gtest.h>

#include <vector>

#include "host/geometry/arrays.h"

namespace {

std::vector<int> items(const AcGeIntArray& array) { return {array.begin(), array.end()}; }

TEST(Array, AppendAnswersThePosition) {
  AcGePoint3dArray vertices;
  EXPECT_TRUE(vertices.isEmpty());
  EXPECT_EQ(vertices.append({0, 0, 0}), 0);
  EXPECT_EQ(vertices.append({10, 0, 0}), 1);
  EXPECT_EQ(vertices.length(), 2);
  EXPECT_EQ(vertices.last().x, 10.0);
  EXPECT_EQ(vertices.first().x, 0.0);
}

TEST(Array, AppendsAnotherEvenItself) {
  AcGeIntArray diameters{100, 200};
  diameters.append(AcGeIntArray{300});
  diameters.append(diameters);
  EXPECT_EQ(items(diameters), (std::vector<int>{100, 200, 300, 100, 200, 300}));
}

TEST(Array, InsertsReplacesAndRemovesByPosition) {
  AcGeIntArray diameters{100, 300};
  diameters.insertAt(1, 200).insertAt(3, 400).setAt(0, 150);
  EXPECT_EQ(items(diameters), (std::vector<int>{150, 200, 300, 400}));
  diameters.removeAt(1).removeFirst().removeLast();
  EXPECT_EQ(items(diameters), (std::vector<int>{300}));
  EXPECT_TRUE(diameters.removeAll().isEmpty());
}

TEST(Array, FindsTheFirstEqualItem) {
  AcGeIntArray diameters{100, 200, 100};
  EXPECT_EQ(diameters.find(100), 0);
  EXPECT_EQ(diameters.find(100, 1), 2);
  EXPECT_EQ(diameters.find(300), -1);
  EXPECT_TRUE(diameters.contains(200));
  EXPECT_TRUE(diameters.remove(100));
  EXPECT_FALSE(diameters.remove(300));
  EXPECT_EQ(items(diameters), (std::vector<int>{200, 100}));
}

TEST(Array, PointsAreFoundWithinTheTolerance) {
  const AcGePoint3dArray vertices{{1, 2, 3}};
  EXPECT_TRUE(vertices.contains({1, 2, 3 + 1e-11}));
}

TEST(Array, NewItemsOfALongerArrayAreZero) {
  AcGeIntArray diameters{100};
  EXPECT_EQ(items(diameters.setLogicalLength(3)), (std::vector<int>{100, 0, 0}));
  EXPECT_EQ(diameters.logicalLength(), 3);
  EXPECT_EQ(items(diameters.setPhysicalLength(50)), (std::vector<int>{100, 0, 0}));
  EXPECT_EQ(items(diameters.setLogicalLength(1)), (std::vector<int>{100}));
}

TEST(Array, IsReversedInPlace) {
  AcGeIntArray diameters{1, 2, 3};
  EXPECT_EQ(items(diameters.reverse()), (std::vector<int>{3, 2, 1}));
  EXPECT_TRUE(diameters == (AcGeIntArray{3, 2, 1}));
}

TEST(Array, KnowsWhichPositionsExist) {
  const AcGeIntArray diameters{100};
  EXPECT_TRUE(diameters.isValid(0));
  EXPECT_FALSE(diameters.isValid(1));
  EXPECT_FALSE(diameters.isValid(-1));
  EXPECT_EQ(*diameters.asArrayPtr(), 100);
}

}  // namespace
