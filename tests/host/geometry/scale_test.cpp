#include <gtest/gtest.h>

#include "host/geometry/ge.h"
#include "tests/host/geometry/near.h"

namespace {

TEST(Scale, OfABlockIsOneUnlessGiven) {
  EXPECT_TRUE(AcGeScale3d() == AcGeScale3d(1, 1, 1));
  EXPECT_TRUE(AcGeScale3d(2.5) == AcGeScale3d(2.5, 2.5, 2.5));
  EXPECT_TRUE(AcGeScale3d::kIdentity == AcGeScale3d());
}

TEST(Scale, FactorsMultiplyAxisByAxis) {
  EXPECT_TRUE(AcGeScale3d(1, 2, 3) * AcGeScale3d(4, 5, 6) == AcGeScale3d(4, 10, 18));
  EXPECT_TRUE(AcGeScale3d(1, 2, 3) * 2 == AcGeScale3d(2, 4, 6));
  EXPECT_TRUE(2 * AcGeScale3d(1, 2, 3) == AcGeScale3d(2, 4, 6));
  AcGeScale3d s(1, 2, 4);
  s *= AcGeScale3d(2);
  s *= 0.5;
  EXPECT_TRUE(s.inverse() == AcGeScale3d(1, 0.5, 0.25));
  EXPECT_TRUE(s.invert() == AcGeScale3d(1, 0.5, 0.25));
  EXPECT_EQ(s[0] + s[1] + s[2], 1.75);
  s[1] = 9;
  EXPECT_EQ(s.sy, 9.0);
  EXPECT_TRUE(s.set(1, 2, 3) != AcGeScale3d(3, 2, 1));
}

TEST(Scale, AMirroredBlockIsStillProportional) {
  EXPECT_TRUE(AcGeScale3d(-2, 2, 2).isProportional());
  EXPECT_FALSE(AcGeScale3d(2, 2, 1).isProportional());
}

TEST(Scale, IsAMatrixAboutTheOrigin) {
  EXPECT_THAT(AcGeScale3d(2, 3, -1).getMatrix() * AcGePoint3d(1, 1, 1), Is(2, 3, -1));
}

}  // namespace
