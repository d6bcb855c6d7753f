#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "host/geometry/ge.h"
#include "tests/host/geometry/near.h"

namespace {

constexpr AcGePoint3d kWell(100, 200, 5);

AcGeMatrix3d random_matrix(std::mt19937& random) {
  std::uniform_real_distribution<double> number(-10, 10);
  AcGeMatrix3d m;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) m(row, column) = number(random);
  }
  return m;
}

TEST(Matrix, TheIdentityMovesNothing) {
  EXPECT_THAT(AcGeMatrix3d() * kWell, Is(100, 200, 5));
  EXPECT_TRUE(AcGeMatrix3d::kIdentity == AcGeMatrix3d());
  AcGeMatrix3d m = AcGeMatrix3d::scaling(3);
  EXPECT_TRUE(m.setToIdentity().isEqualTo(AcGeMatrix3d::kIdentity));
}

TEST(Matrix, TranslationMovesPointsAndLeavesVectors) {
  const AcGeMatrix3d m = AcGeMatrix3d::translation({1, 2, 3});
  EXPECT_THAT(m * kWell, Is(101, 202, 8));
  EXPECT_THAT(m * AcGeVector3d(4, 5, 6), Is(4, 5, 6));
  EXPECT_THAT(m.translation(), Is(1, 2, 3));
  EXPECT_EQ(m(1, 3), 2.0);
  EXPECT_EQ(m.entry[2][3], 3.0);
}

TEST(Matrix, RotationTurnsALabelAboutItsWell) {
  const AcGeMatrix3d m = AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis, kWell);
  AcGePoint3d label = kWell + AcGeVector3d(10, 0, 0);
  EXPECT_THAT(label.transformBy(m), Is(100, 210, 5));
  EXPECT_THAT(m * kWell, Is(100, 200, 5));
  AcGeVector3d direction(1, 0, 0);
  EXPECT_THAT(direction.transformBy(m), Is(0, 1, 0));
}

TEST(Matrix, RotationIsRightHandedAboutEveryAxis) {
  const auto quarter = [](const AcGeVector3d& axis) {
    return AcGeMatrix3d::rotation(kPi / 2, axis);
  };
  EXPECT_THAT(quarter({3, 0, 0}) * AcGeVector3d::kYAxis, Is(0, 0, 1));
  EXPECT_THAT(quarter({0, 3, 0}) * AcGeVector3d::kZAxis, Is(1, 0, 0));
  EXPECT_THAT(AcGeMatrix3d::rotation(2 * kPi / 3, {1, 1, 1}) * AcGeVector3d::kXAxis, Is(0, 1, 0));
  EXPECT_TRUE(AcGeMatrix3d::rotation(1, {0, 0, 0}).isEqualTo(AcGeMatrix3d::kIdentity));
}

TEST(Matrix, ScalingKeepsItsCentre) {
  const AcGeMatrix3d m = AcGeMatrix3d::scaling(2, kWell);
  EXPECT_THAT(m * kWell, Is(100, 200, 5));
  EXPECT_THAT(m * AcGePoint3d(101, 200, 5), Is(102, 200, 5));
  EXPECT_THAT(AcGeMatrix3d::scaling({1, -1, 3}, kWell) * AcGePoint3d(101, 201, 6), Is(101, 199, 8));
}

TEST(Matrix, MirroringAtAPlaneAndAtAPoint) {
  const AcGePlane wall({10, 0, 0}, AcGeVector3d::kXAxis);
  EXPECT_THAT(AcGeMatrix3d::mirroring(wall) * AcGePoint3d(12, 3, 4), Is(8, 3, 4));
  EXPECT_THAT(AcGeMatrix3d::mirroring(kWell) * AcGePoint3d(101, 202, 8), Is(99, 198, 2));
  EXPECT_LT(AcGeMatrix3d::mirroring(wall).det(), 0.0);
}

TEST(Matrix, ThePublishedSettersReplaceTheWholeMatrix) {
  AcGeMatrix3d m = AcGeMatrix3d::scaling(7);
  EXPECT_TRUE(m.setToTranslation({1, 2, 3}) == AcGeMatrix3d::translation({1, 2, 3}));
  EXPECT_TRUE(m.setToRotation(1, AcGeVector3d::kZAxis, kWell) ==
              AcGeMatrix3d::rotation(1, AcGeVector3d::kZAxis, kWell));
  EXPECT_TRUE(m.setToScaling(2, kWell) == AcGeMatrix3d::scaling(2, kWell));
  EXPECT_TRUE(m.setToMirroring(AcGePlane()) == AcGeMatrix3d::mirroring(AcGePlane()));
  EXPECT_TRUE(m.setToMirroring(kWell) == AcGeMatrix3d::mirroring(kWell));
}

TEST(Matrix, SettingTheTranslationKeepsTheRest) {
  AcGeMatrix3d m = AcGeMatrix3d::scaling(7, kWell);
  m.setTranslation({1, 2, 3});
  EXPECT_THAT(m * AcGePoint3d::kOrigin, Is(1, 2, 3));
  EXPECT_EQ(m(0, 0), 7.0);
}

TEST(Matrix, AProductAppliesItsRightFactorFirst) {
  const AcGeMatrix3d turn = AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis);
  const AcGeMatrix3d move = AcGeMatrix3d::translation({10, 0, 0});
  EXPECT_THAT(move * turn * AcGePoint3d(1, 0, 0), Is(10, 1, 0));
  EXPECT_THAT(turn * move * AcGePoint3d(1, 0, 0), Is(0, 11, 0));
  AcGeMatrix3d m = turn;
  EXPECT_TRUE(m.preMultBy(move) == move * turn);
  m = turn;
  EXPECT_TRUE(m.postMultBy(move) == turn * move);
  m = turn;
  m *= move;
  EXPECT_TRUE(m == turn * move);
  EXPECT_TRUE(m.setToProduct(move, turn) == move * turn);
}

TEST(Matrix, TheInverseUndoes) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  AcGeTol rounding;
  rounding.setEqualPoint(1e-6);
  rounding.setEqualVector(1e-6);
  for (int i = 0; i < 200; ++i) {
    const AcGeMatrix3d m = random_matrix(random);
    if (std::fabs(m.det()) < 1.0) continue;
    EXPECT_TRUE((m.inverse() * m).isEqualTo(AcGeMatrix3d::kIdentity, rounding));
    EXPECT_TRUE((m * m.inverse()).isEqualTo(AcGeMatrix3d::kIdentity, rounding));
  }
  AcGeMatrix3d m = AcGeMatrix3d::translation({1, 2, 3});
  EXPECT_TRUE(m.invert() == AcGeMatrix3d::translation({-1, -2, -3}));
}

TEST(Matrix, AVerySmallScaleIsNotSingular) {
  const AcGeMatrix3d m = AcGeMatrix3d::scaling(1e-6);
  EXPECT_FALSE(m.isSingular());
  EXPECT_THAT(m.inverse() * AcGePoint3d(1e-6, 0, 0), Is(1, 0, 0));
}

TEST(Matrix, AFlattenedMatrixHasNoInverse) {
  AcGeMatrix3d m;
  m.setCoordSystem(kWell, {1, 0, 0}, {0, 1, 0}, {1, 1, 0});
  EXPECT_TRUE(m.isSingular());
  EXPECT_TRUE(m.inverse() == AcGeMatrix3d::kIdentity);
  EXPECT_TRUE(AcGeMatrix3d::scaling(0).isSingular());
  EXPECT_TRUE(AcGeMatrix3d::scaling(std::numeric_limits<double>::quiet_NaN()).isSingular());
}

TEST(Matrix, ACoordinateSystemIsReadBack) {
  AcGeMatrix3d m;
  m.setCoordSystem(kWell, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
  AcGePoint3d origin;
  AcGeVector3d x, y, z;
  m.getCoordSystem(origin, x, y, z);
  EXPECT_THAT(origin, Is(100, 200, 5));
  EXPECT_THAT(x, Is(0, 1, 0));
  EXPECT_THAT(y, Is(-1, 0, 0));
  EXPECT_THAT(z, Is(0, 0, 1));
  EXPECT_THAT(m * AcGePoint3d(1, 0, 0), Is(100, 201, 5));
}

TEST(Matrix, TheTransposeExchangesRowsAndColumns) {
  AcGeMatrix3d m;
  m(0, 1) = 5;
  EXPECT_EQ(m.transpose()(1, 0), 5.0);
  EXPECT_EQ(m.transposeIt()(1, 0), 5.0);
  EXPECT_EQ(m(0, 1), 0.0);
}

TEST(Matrix, KnowsWhetherCirclesStayCircles) {
  EXPECT_TRUE(AcGeMatrix3d::scaling(3, kWell).isUniScaledOrtho());
  EXPECT_TRUE(AcGeMatrix3d::rotation(1, {1, 2, 3}).isUniScaledOrtho());
  EXPECT_FALSE(AcGeMatrix3d::scaling({1, 2, 1}).isUniScaledOrtho());
  AcGeMatrix3d shear;
  shear(0, 1) = 1;
  EXPECT_FALSE(shear.isUniScaledOrtho());
  EXPECT_EQ(AcGeMatrix3d::scaling({1, -4, 2}).scale(), 4.0);
  EXPECT_EQ(AcGeMatrix3d::scaling({2, 3, 4}).det(), 24.0);
}

TEST(Matrix, EqualityTakesAxesAsVectorsAndTheOriginAsAPoint) {
  AcGeMatrix3d m;
  m(0, 3) = 9e-11;
  EXPECT_TRUE(m.isEqualTo(AcGeMatrix3d::kIdentity));
  m(0, 3) = 2e-10;
  EXPECT_FALSE(m.isEqualTo(AcGeMatrix3d::kIdentity));
  m = AcGeMatrix3d();
  m(0, 1) = 9e-11;
  EXPECT_FALSE(m.isEqualTo(AcGeMatrix3d::kIdentity));
  m(0, 1) = 9e-13;
  EXPECT_TRUE(m.isEqualTo(AcGeMatrix3d::kIdentity));
  EXPECT_TRUE(m != AcGeMatrix3d::scaling(2));
}

}  // namespace
