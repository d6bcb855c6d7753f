#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/geometry/ge.h"
#include "tests/host/geometry/near.h"

namespace {

constexpr AcGeVector3d kX = AcGeVector3d::kXAxis;
constexpr AcGeVector3d kY = AcGeVector3d::kYAxis;
constexpr AcGeVector3d kZ = AcGeVector3d::kZAxis;
constexpr AcGeVector3d kNone = AcGeVector3d::kIdentity;

TEST(Vector, AddsSubtractsAndScales) {
  AcGeVector3d v(1, 2, 3);
  EXPECT_THAT(v + kX, Is(2, 2, 3));
  EXPECT_THAT(v - kY, Is(1, 1, 3));
  EXPECT_THAT(-v, Is(-1, -2, -3));
  EXPECT_THAT(v * 2, Is(2, 4, 6));
  EXPECT_THAT(2 * v, Is(2, 4, 6));
  EXPECT_THAT(v / 2, Is(0.5, 1, 1.5));
  v += kZ;
  v -= kX;
  v *= 4;
  v /= 2;
  EXPECT_THAT(v, Is(0, 4, 8));
  EXPECT_THAT(v.negate(), Is(0, -4, -8));
  EXPECT_THAT(v.set(7, 8, 9), Is(7, 8, 9));
}

TEST(Vector, CoordinatesCanBeReachedByNumber) {
  AcGeVector3d v(1, 2, 3);
  EXPECT_EQ(v[0] + 10 * v[1] + 100 * v[2], 321);
  v[2] = 5;
  EXPECT_EQ(v.z, 5);
}

TEST(Vector, TheLengthOfAPipeIsThatOfItsRunAndFall) {
  EXPECT_EQ(AcGeVector3d(3, 4, 12).length(), 13.0);
  EXPECT_EQ(AcGeVector3d(3, 4, 12).lengthSqrd(), 169.0);
  EXPECT_EQ(AcGeVector2d(3, 4).length(), 5.0);
}

TEST(Vector, TheNormalHasUnitLengthAndTheSameDirection) {
  EXPECT_THAT(AcGeVector3d(3, 0, -4).normal(), Is(0.6, 0, -0.8));
  AcGeVector3d v(0, -250, 0);
  EXPECT_THAT(v.normalize(), Is(0, -1, 0));
  EXPECT_TRUE(v.isUnitLength());
}

TEST(Vector, AVectorOfNoLengthStaysWhatItIs) {
  EXPECT_THAT(kNone.normal(), Is(0, 0, 0));
  EXPECT_EQ(AcGeVector3d(1e-13, 0, 0).normal().x, 1e-13);
  EXPECT_TRUE(AcGeVector3d(1e-13, 0, 0).isZeroLength());
  EXPECT_FALSE(AcGeVector3d(1e-11, 0, 0).isZeroLength());
}

TEST(Vector, ProductsFollowTheRightHand) {
  EXPECT_THAT(kX.crossProduct(kY), Is(0, 0, 1));
  EXPECT_THAT(kY.crossProduct(kX), Is(0, 0, -1));
  EXPECT_EQ(AcGeVector3d(1, 2, 3).dotProduct({4, -5, 6}), 12.0);
}

TEST(Vector, RotatesRightHandedInPlace) {
  AcGeVector3d pipe(10, 0, 0);
  EXPECT_THAT(pipe.rotateBy(kPi / 2, kZ), Is(0, 10, 0));
  EXPECT_THAT(pipe, Is(0, 10, 0));
  EXPECT_THAT(pipe.rotateBy(kPi / 2, kX), Is(0, 0, 10));
  EXPECT_THAT(pipe.rotateBy(-kPi / 2, AcGeVector3d(0, 50, 0)), Is(-10, 0, 0));
}

TEST(Vector, AboutAnAxisOfNoLengthNothingTurns) {
  AcGeVector3d pipe(10, 2, 3);
  EXPECT_THAT(pipe.rotateBy(1.0, kNone), Is(10, 2, 3));
}

TEST(Vector, MirrorsInThePlaneOfANormal) {
  AcGeVector3d v(1, 2, 3);
  EXPECT_THAT(v.mirror(kY * 5), Is(1, -2, 3));
}

TEST(Vector, PerpVectorStandsAtARightAngle) {
  for (const AcGeVector3d& v : {kX, kY, kZ, -kZ, AcGeVector3d(1, 2, 3), AcGeVector3d(0.01, 0, 9)}) {
    EXPECT_TRUE(v.perpVector().isPerpendicularTo(v));
    EXPECT_TRUE(v.perpVector().isUnitLength());
  }
  EXPECT_THAT(kZ.perpVector(), Is(1, 0, 0));
  EXPECT_EQ(AcGeVector2d(3, 1).perpVector(), AcGeVector2d(-1, 3));
}

TEST(Vector, TheAngleBetweenDirectionsIsAtMostHalfATurn) {
  EXPECT_DOUBLE_EQ(kX.angleTo(kY * 7), kPi / 2);
  EXPECT_DOUBLE_EQ(kX.angleTo(-kX), kPi);
  EXPECT_EQ(kX.angleTo(kX * 3), 0.0);
  EXPECT_DOUBLE_EQ(kX.angleTo({1, -1, 0}), kPi / 4);
  EXPECT_EQ(kX.angleTo(kNone), 0.0);
}

TEST(Vector, ASmallAngleIsExact) { EXPECT_DOUBLE_EQ(kX.angleTo({1, 1e-9, 0}), 1e-9); }

TEST(Vector, TheAngleAboutAReferenceGoesAllTheWayRound) {
  EXPECT_DOUBLE_EQ(kX.angleTo(kY, kZ), kPi / 2);
  EXPECT_DOUBLE_EQ(kX.angleTo(kY, -kZ), 3 * kPi / 2);
  EXPECT_DOUBLE_EQ(kX.angleTo({1, -1, 0}, kZ), 7 * kPi / 4);
  EXPECT_EQ(kX.angleTo(kX, kZ), 0.0);
  EXPECT_LT(kX.angleTo({1, -1e-300, 0}, kZ), 2 * kPi);
}

TEST(Vector, TheAngleOnThePlanIsCountedFromTheXAxis) {
  const AcGePlane plan;
  EXPECT_EQ(AcGeVector3d(5, 0, 0).angleOnPlane(plan), 0.0);
  EXPECT_DOUBLE_EQ(AcGeVector3d(0, 5, 2).angleOnPlane(plan), kPi / 2);
  EXPECT_DOUBLE_EQ(AcGeVector3d(-5, 0, 0).angleOnPlane(plan), kPi);
  EXPECT_DOUBLE_EQ(AcGeVector3d(1, -1, 0).angleOnPlane(plan), 7 * kPi / 4);
  EXPECT_EQ(kZ.angleOnPlane(plan), 0.0) << "stands on the plane";
  EXPECT_EQ(kNone.angleOnPlane(plan), 0.0);
}

TEST(Vector, TheAngleOnThePlanIsNeverAFullTurnNorNegativeZero) {
  const AcGePlane plan;
  EXPECT_EQ(AcGeVector3d(1, -1e-300, 0).angleOnPlane(plan), 0.0);
  EXPECT_FALSE(std::signbit(AcGeVector3d(1, -0.0, 0).angleOnPlane(plan)));
  EXPECT_FALSE(std::signbit(AcGeVector2d(1, -0.0).angle()));
  EXPECT_EQ(AcGeVector2d(1, -1e-300).angle(), 0.0);
  EXPECT_DOUBLE_EQ(AcGeVector2d(0, -1).angle(), 3 * kPi / 2);
}

TEST(Vector, DirectionsAreComparedWithoutTheirLength) {
  EXPECT_TRUE(kX.isParallelTo(kX * 300));
  EXPECT_TRUE(kX.isParallelTo(kX * -300));
  EXPECT_FALSE(kX.isParallelTo({1, 1e-6, 0}));
  EXPECT_TRUE(kX.isCodirectionalTo(kX * 300));
  EXPECT_FALSE(kX.isCodirectionalTo(kX * -300));
  EXPECT_TRUE(kX.isPerpendicularTo(kY * 300));
  EXPECT_FALSE(kX.isPerpendicularTo({1e-6, 1, 0}));
  EXPECT_TRUE(AcGeVector2d(2, 0).isPerpendicularTo({0, -3}));
  EXPECT_TRUE(AcGeVector2d(2, 0).isParallelTo({-3, 0}));
  EXPECT_FALSE(AcGeVector2d(2, 0).isCodirectionalTo({-3, 0}));
}

TEST(Vector, AVectorOfNoLengthHasNoDirection) {
  EXPECT_FALSE(kX.isParallelTo(kNone));
  EXPECT_FALSE(kNone.isParallelTo(kNone));
  EXPECT_FALSE(kNone.isCodirectionalTo(kX));
  EXPECT_FALSE(kX.isPerpendicularTo(kNone));
}

TEST(Vector, EqualVectorsDifferByNoMoreThanTheTolerance) {
  EXPECT_TRUE(kX.isEqualTo({1, 9e-13, 0}));
  EXPECT_FALSE(kX.isEqualTo({1, 2e-12, 0}));
  EXPECT_TRUE(kX == AcGeVector3d(1, 9e-13, 0));
  EXPECT_TRUE(kX != kY);
  AcGeTol loose;
  loose.setEqualVector(0.1);
  EXPECT_TRUE(kX.isEqualTo({1, 0.09, 0}, loose));
  EXPECT_TRUE(kX.isParallelTo({1, 0.09, 0}, loose));
}

TEST(Vector, TheGeneralToleranceIsThatOfTheHost) {
  EXPECT_EQ(AcGeContext::gTol.equalPoint(), 1e-10);
  EXPECT_EQ(AcGeContext::gTol.equalVector(), 1e-12);
}

TEST(Vector, WhatIsNoNumberAnswersWithoutHarm) {
  const AcGeVector3d v(std::numeric_limits<double>::quiet_NaN(), 0, 0);
  EXPECT_FALSE(v.isEqualTo(v));
  EXPECT_FALSE(v.isParallelTo(kX));
  EXPECT_TRUE(std::isnan(v.normal().x));
}

TEST(FlatVector, TurnsCounterClockwise) {
  AcGeVector2d v(2, 0);
  v.rotateBy(kPi / 2);
  EXPECT_TRUE(v.isEqualTo({0, 2}));
  EXPECT_DOUBLE_EQ(AcGeVector2d(1, 0).angleTo({0, -1}), kPi / 2);
  EXPECT_TRUE(AcGeVector2d(0, 9).normal().isEqualTo(AcGeVector2d::kYAxis));
  EXPECT_TRUE(
      (AcGeVector2d(1, 2) + AcGeVector2d(3, 4) * 2 - AcGeVector2d(1, 1) / 2).isEqualTo({6.5, 9.5}));
}

}  // namespace
