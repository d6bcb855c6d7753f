#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "host/geometry/ge.h"
#include "tests/host/geometry/near.h"

namespace {

struct Axes {
  AcGePoint3d origin;
  AcGeVector3d u, v;
  explicit Axes(const AcGePlane& plane) { plane.getCoordSystem(origin, u, v); }
};

TEST(Plane, ThePlanHasTheAxesOfTheWorld) {
  for (const AcGePlane& plan : {AcGePlane(), AcGePlane::kXYPlane,
                                AcGePlane(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis * 5)}) {
    const Axes axes(plan);
    EXPECT_THAT(axes.u, Is(1, 0, 0));
    EXPECT_THAT(axes.v, Is(0, 1, 0));
    EXPECT_THAT(plan.normal(), Is(0, 0, 1));
  }
}

TEST(Plane, TheOtherWorldPlanesTurnOn) {
  EXPECT_THAT(AcGePlane::kYZPlane.normal(), Is(1, 0, 0));
  EXPECT_THAT(AcGePlane::kZXPlane.normal(), Is(0, 1, 0));
}

TEST(Plane, KeepsUAndTurnsVToARightAngle) {
  const AcGePlane plane({1, 2, 3}, {0, 2, 0}, {-5, 3, 0});
  const Axes axes(plane);
  EXPECT_THAT(axes.origin, Is(1, 2, 3));
  EXPECT_THAT(axes.u, Is(0, 1, 0));
  EXPECT_THAT(axes.v, Is(-1, 0, 0));
  EXPECT_THAT(plane.normal(), Is(0, 0, 1));
}

TEST(Plane, AxesThatSpanNoPlaneStillGiveOne) {
  for (const AcGePlane& plane :
       {AcGePlane({}, {1, 0, 0}, {2, 0, 0}), AcGePlane({}, {0, 0, 0}, {0, 0, 0}),
        AcGePlane({}, AcGeVector3d::kIdentity)}) {
    EXPECT_TRUE(plane.normal().isUnitLength());
  }
}

TEST(Plane, TheDistanceIsPositiveOnTheSideOfTheNormal) {
  const AcGePlane ground({0, 0, 10}, AcGeVector3d::kZAxis);
  EXPECT_EQ(ground.signedDistanceTo({5, 5, 12}), 2.0);
  EXPECT_EQ(ground.signedDistanceTo({5, 5, 7}), -3.0);
}

TEST(Plane, MapsItsCoordinatesToTheWorldAndBack) {
  const AcGePlane plane({1, 2, 3}, {0, 1, 0}, {0, 0, 1});
  EXPECT_THAT(AcGeMatrix3d::planeToWorld(plane) * AcGePoint3d(4, 5, 6), Is(7, 6, 8));
  EXPECT_THAT(AcGeMatrix3d::worldToPlane(plane) * AcGePoint3d(7, 6, 8), Is(4, 5, 6));
}

TEST(ObjectCoordinates, AreThoseOfTheWorldForFlatObjects) {
  const AcGeMatrix3d m = cad::ocs_to_wcs(AcGeVector3d::kZAxis);
  for (unsigned row = 0; row < 4; ++row) {
    for (unsigned column = 0; column < 4; ++column) {
      EXPECT_EQ(m(row, column), row == column ? 1.0 : 0.0) << "exactly";
    }
  }
}

TEST(ObjectCoordinates, TurnXOverForAnObjectSeenFromBelow) {
  const AcGeMatrix3d m = cad::ocs_to_wcs(-AcGeVector3d::kZAxis);
  EXPECT_THAT(m * AcGePoint3d(3, 2, 1), Is(-3, 2, -1));
}

TEST(ObjectCoordinates, OfAWallHaveXAlongTheGround) {
  const AcGeMatrix3d m = cad::ocs_to_wcs(AcGeVector3d::kXAxis);
  EXPECT_THAT(m * AcGeVector3d::kXAxis, Is(0, 1, 0));
  EXPECT_THAT(m * AcGeVector3d::kYAxis, Is(0, 0, 1));
}

TEST(ObjectCoordinates, ChangeTheirRuleASixtyFourthFromZ) {
  const auto x_axis = [](double x) { return cad::ocs_x_axis({x, 0, std::sqrt(1 - x * x)}); };
  EXPECT_GT(x_axis(0.0156).x, 0.99) << "from the world's Y axis";
  EXPECT_THAT(x_axis(0.0157), Is(0, 1, 0)) << "from the world's Z axis";
}

TEST(ObjectCoordinates, AreRightHandedAndKeepLengths) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::normal_distribution<double> number;
  for (int i = 0; i < 1000; ++i) {
    const AcGeVector3d normal(number(random), number(random), number(random));
    const AcGeMatrix3d m = cad::ocs_to_wcs(normal);
    EXPECT_TRUE(m.isUniScaledOrtho());
    EXPECT_NEAR(m.det(), 1.0, 1e-12);
    EXPECT_TRUE(m.column(2).isCodirectionalTo(normal));
    EXPECT_TRUE((AcGeMatrix3d::worldToPlane(normal) * AcGeMatrix3d::planeToWorld(normal))
                    .isEqualTo(AcGeMatrix3d::kIdentity));
  }
}

TEST(ObjectCoordinates, ANormalThatIsNoneCountsAsZ) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const AcGeVector3d& normal :
       {AcGeVector3d(), AcGeVector3d(kNan, 0, 1), AcGeVector3d(kInfinity, 0, 0)}) {
    EXPECT_TRUE(cad::ocs_to_wcs(normal) == AcGeMatrix3d::kIdentity);
  }
}

}  // namespace
