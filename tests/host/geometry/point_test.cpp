#include <gtest/gtest.h>

#include "host/geometry/ge.h"
#include "tests/host/geometry/near.h"

namespace {

TEST(Point, TheDifferenceOfTwoWellsIsTheRunOfThePipe) {
  const AcGePoint3d upper(500100, 3380200, 12.5), lower(500103, 3380204, 0.5);
  EXPECT_THAT(lower - upper, Is(3, 4, -12));
  EXPECT_EQ(upper.distanceTo(lower), 13.0);
  EXPECT_THAT(upper + (lower - upper) / 2, Is(500101.5, 3380202, 6.5));
}

TEST(Point, MovesByVectors) {
  AcGePoint3d p(1, 2, 3);
  p += AcGeVector3d(1, 0, 0);
  p -= AcGeVector3d(0, 1, 0);
  EXPECT_THAT(p, Is(2, 1, 3));
  EXPECT_THAT(p - AcGeVector3d(2, 1, 3), Is(0, 0, 0));
  EXPECT_THAT(p.asVector(), Is(2, 1, 3));
  EXPECT_THAT(p * 2, Is(4, 2, 6));
  EXPECT_THAT(2 * p, Is(4, 2, 6));
  EXPECT_THAT(p / 2, Is(1, 0.5, 1.5));
  p *= 3;
  p /= 6;
  EXPECT_THAT(p, Is(1, 0.5, 1.5));
  EXPECT_THAT(p.set(4, 5, 6), Is(4, 5, 6));
  EXPECT_EQ(p[0] + p[1] + p[2], 15);
}

TEST(Point, TurnsAboutAnotherPoint) {
  AcGePoint3d label(11, 5, 2);
  EXPECT_THAT(label.rotateBy(kPi / 2, AcGeVector3d::kZAxis, {10, 5, 0}), Is(10, 6, 2));
  AcGePoint2d flat(11, 5);
  EXPECT_TRUE(flat.rotateBy(kPi, {10, 5}).isEqualTo({9, 5}));
}

TEST(Point, ScalesAboutAnotherPoint) {
  AcGePoint3d p(11, 5, 2);
  EXPECT_THAT(p.scaleBy(3, {10, 5, 0}), Is(13, 5, 6));
  AcGePoint2d flat(2, 3);
  EXPECT_EQ(flat.scaleBy(2), AcGePoint2d(4, 6));
}

TEST(Point, IsMirroredAndProjectedAtAPlane) {
  const AcGePlane ground({0, 0, 10}, AcGeVector3d::kZAxis);
  AcGePoint3d p(1, 2, 13);
  EXPECT_THAT(p.orthoProject(ground), Is(1, 2, 10));
  EXPECT_THAT(p.mirror(ground), Is(1, 2, 7));
}

TEST(Point, HasCoordinatesOfItsOwnOnAPlane) {
  const AcGePlane wall({10, 0, 0}, AcGeVector3d::kYAxis);  // seen from the back: u is -X
  const AcGePoint2d flat = AcGePoint3d(7, 5, 3).convert2d(wall);
  EXPECT_EQ(flat, AcGePoint2d(3, 3));
  EXPECT_THAT(AcGePoint3d(wall, flat), Is(7, 0, 3));
}

TEST(Point, EqualPointsLieNoFurtherApartThanTheTolerance) {
  const AcGePoint3d p(1, 2, 3);
  EXPECT_TRUE(p.isEqualTo({1, 2, 3 + 9e-11}));
  EXPECT_FALSE(p.isEqualTo({1, 2, 3 + 2e-10}));
  EXPECT_TRUE(p == AcGePoint3d(1, 2, 3 + 9e-11));
  EXPECT_TRUE(p != AcGePoint3d(1, 2, 4));
  AcGeTol loose;
  loose.setEqualPoint(0.01);
  EXPECT_TRUE(p.isEqualTo({1.005, 2, 3}, loose));
  EXPECT_FALSE(AcGePoint2d(1, 2) == AcGePoint2d(1, 2.1));
}

TEST(Point, TheOriginIsKnownWhenTheProgramIsCompiled) {
  static_assert(AcGePoint3d::kOrigin.x == 0.0);
  static_assert((AcGePoint3d(1, 2, 3) - AcGePoint3d::kOrigin).z == 3.0);
  static_assert(AcGeMatrix3d::kIdentity(2, 2) == 1.0);
  EXPECT_THAT(AcGePoint3d(), Is(0, 0, 0));
}

}  // namespace
