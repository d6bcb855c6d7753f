// Lines, polylines and drawn arrows, and the half turn that keeps labels readable.

#include <limits>

#include "tests/module/draw/draw_fixture.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class DrawnLines : public WithDraw {
 protected:
  static std::vector<AcGePoint2d> points(AcDbObjectId id) {
    const auto polyline = reading<AcDbPolyline>(id);
    std::vector<AcGePoint2d> all(polyline->numVerts());
    for (unsigned i = 0; i < all.size(); ++i) polyline->getPointAt(i, all[i]);
    return all;
  }
};

TEST_F(DrawnLines, ANegativeWidthDrawsALine) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id = draw.DrawLine({1, 2, 3}, {4, 5, 6}, -0.001);
  EXPECT_THAT(reading<AcDbLine>(id)->startPoint(), Is(1, 2, 3));
  EXPECT_THAT(reading<AcDbLine>(id)->endPoint(), Is(4, 5, 6));
}

TEST_F(DrawnLines, AWidthOfZeroDrawsAPolyline) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id = draw.DrawLine({1, 2, 3}, {4, 5, 6}, 0.0);
  const auto polyline = reading<AcDbPolyline>(id);
  EXPECT_EQ(polyline->numVerts(), 2u);
  double width = -1;
  EXPECT_EQ(polyline->getConstantWidth(width), Acad::eOk);
  EXPECT_EQ(width, 0.0);
  EXPECT_EQ(polyline->elevation(), 0.0) << "in the XY plane";
}

TEST_F(DrawnLines, WidthsAreDrawingUnits) {
  CDimDraw draw(500, nullptr);
  double width = 0;
  EXPECT_EQ(
      reading<AcDbPolyline>(draw.DrawLine({0, 0, 0}, {9, 0, 0}, 0.25))->getConstantWidth(width),
      Acad::eOk);
  EXPECT_EQ(width, 0.25);
}

TEST_F(DrawnLines, APolylineHasAVertexPerPoint) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id = draw.DrawPl({{0, 0, 9}, {1, 0, 8}, {1, 1, 7}, {0, 1, 6}}, -1);
  EXPECT_EQ(points(id), (std::vector<AcGePoint2d>{{0, 0}, {1, 0}, {1, 1}, {0, 1}}));
  const auto polyline = reading<AcDbPolyline>(id);
  EXPECT_FALSE(polyline->isClosed());
  EXPECT_FALSE(polyline->hasBulges());
  EXPECT_FALSE(polyline->hasWidth());
}

TEST_F(DrawnLines, FewerThanTwoPointsDrawNothing) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.DrawPl({{1, 1, 0}}, 0.5).isNull());
  EXPECT_TRUE(draw.DrawPl({}, -1).isNull());
  EXPECT_EQ(entities(), 0u);
}

TEST_F(DrawnLines, ManyPointsCostNoMoreEach) {
  CDimDraw draw(500, nullptr);
  AcGePoint3dArray many;
  for (int i = 0; i < 200'000; ++i) many.append({double(i), 0, 0});
  EXPECT_EQ(reading<AcDbPolyline>(draw.DrawPl(many, 0.1))->numVerts(), 200'000u);
}

TEST_F(DrawnLines, WhoseNumbersAreNotFiniteAreNotDrawn) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.DrawLine({kNaN, 0, 0}, {1, 0, 0}, -1).isNull());
  EXPECT_TRUE(draw.DrawLine({0, 0, 0}, {1, INFINITY, 0}, -1).isNull());
  EXPECT_TRUE(draw.DrawLine({0, 0, 0}, {1, INFINITY, 0}, 1).isNull());
  EXPECT_TRUE(draw.DrawLine({0, 0, 0}, {1, 0, 0}, INFINITY).isNull());
  EXPECT_TRUE(draw.Arrow({kNaN, 0, 0}, {1, 0, 0}).isNull());
  EXPECT_TRUE(draw.Arrow({0, 0, 0}, {kNaN, 0, 0}).isNull());
  EXPECT_EQ(entities(), 0u);
}

// The drawn arrow

TEST_F(DrawnLines, AnArrowIsCentredOnItsPoint) {
  CDimDraw draw(1000, nullptr);  // a paper millimetre is a unit
  const AcDbObjectId id = draw.Arrow({100, 50, 7}, {0, 2, 0});
  EXPECT_EQ(points(id), (std::vector<AcGePoint2d>{{100, 44.75}, {100, 51.75}, {100, 55.25}}));
  const auto arrow = reading<AcDbPolyline>(id);
  double start = -1, end = -1;
  arrow->getWidthsAt(0, start, end);
  EXPECT_EQ(start, 0.0);
  EXPECT_EQ(end, 0.0);
  arrow->getWidthsAt(1, start, end);
  EXPECT_EQ(start, 0.7);
  EXPECT_EQ(end, 0.0);
  arrow->getWidthsAt(2, start, end);
  EXPECT_EQ(start, 0.0);
  EXPECT_EQ(end, 0.0);
}

TEST_F(DrawnLines, AnArrowFollowsTheScale) {
  CDimDraw draw(500, nullptr);
  const auto arrow = points(draw.Arrow({0, 0, 0}, {1, 0, 0}));
  EXPECT_NEAR(arrow[2].x - arrow[0].x, 5.25, 1e-12);
}

TEST_F(DrawnLines, AFlippedArrowPointsTheSameWay) {
  CDimDraw draw(1000, nullptr);
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  const auto arrow = points(draw.Arrow({10, 0, 0}, {1, 0, 0}));
  EXPECT_NEAR(arrow[0].x, -15.25, 1e-9) << "about the flipped point";
  EXPECT_NEAR(arrow[2].x, -4.75, 1e-9) << "its head ahead";
}

TEST_F(DrawnLines, AnArrowWithoutDirectionIsNotDrawn) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.Arrow({0, 0, 0}, {0, 0, 0}).isNull());
  EXPECT_EQ(entities(), 0u);
}

// The reference direction

class ReferenceDirection : public WithDraw {
 protected:
  /// Whether a label would be turned.
  static bool turns(double reference, double label) {
    CDimDraw draw(500, nullptr);
    draw.SetReferenceDirection({10, 20, 0}, reference, label);
    const AcGePoint3d image = draw.DrawToOriginalPoint({11, 20, 0});
    EXPECT_NEAR(image.y, 20, 1e-9);
    EXPECT_NEAR(std::fabs(image.x - 10), 1, 1e-9);
    return image.x < 10;
  }
};

TEST_F(ReferenceDirection, EqualAnglesLeaveTheIdentity) {
  for (const double angle : {0.0, 0.3, 1.2, kPi / 2, 2 * kPi - 0.3})
    EXPECT_FALSE(turns(angle, angle)) << angle;
}

TEST_F(ReferenceDirection, AnglesHalfATurnApartTurnTheLabel) {
  for (const double angle : {0.0, 0.3, 1.2, 2 * kPi - 0.3})
    EXPECT_TRUE(turns(angle + kPi, angle)) << angle;
}

TEST_F(ReferenceDirection, AcuteAnglesKeepAndObtuseOnesTurn) {
  EXPECT_FALSE(turns(0.5, 0.0));
  EXPECT_FALSE(turns(-0.5, 0.0));
  EXPECT_TRUE(turns(2.5, 0.0));
  EXPECT_TRUE(turns(-2.5, 0.0));
}

TEST_F(ReferenceDirection, OfTheLabelCountsHowItIsRead) {
  EXPECT_FALSE(turns(0.0, kPi)) << "read along 0";
  EXPECT_TRUE(turns(kPi, kPi));
}

TEST_F(ReferenceDirection, AtARightAngleTheReferenceIsTurnedByOneToo) {
  EXPECT_FALSE(turns(0.0, kPi / 2)) << "the reference turned is the label";
  EXPECT_TRUE(turns(kPi, kPi / 2));
  EXPECT_TRUE(turns(kPi / 2, 0.0));
  EXPECT_FALSE(turns(-kPi / 2, 0.0));
}

TEST_F(ReferenceDirection, ARightAngleIsOneWithinATwentieth) {
  // 0.04 beside the right angle still counts as one, 0.06 does not: here the branches differ.
  EXPECT_TRUE(turns(kPi / 2 - 0.04, 0.0));
  EXPECT_FALSE(turns(kPi / 2 - 0.06, 0.0));
  EXPECT_FALSE(turns(-kPi / 2 - 0.04, 0.0));
  EXPECT_TRUE(turns(-kPi / 2 - 0.06, 0.0));
  EXPECT_TRUE(turns(kPi / 2 - 0.0499, 0.0));
  EXPECT_FALSE(turns(kPi / 2 - 0.0501, 0.0));
}

TEST_F(ReferenceDirection, ARightAngleIsOneBeyondHalfATurn) {
  EXPECT_FALSE(turns(3 * kPi / 2 - 0.04, 0.0)) << "the same direction as -pi / 2 - 0.04";
  EXPECT_TRUE(turns(3 * kPi / 2 - 0.06, 0.0));
  EXPECT_TRUE(turns(5 * kPi / 2 - 0.04, 0.0));
}

TEST_F(ReferenceDirection, ALabelThatReadsDownwardsCountsAsUpright) {
  // Just beyond 3 pi / 2: its direction is reversed before it is compared.
  EXPECT_FALSE(turns(0.0, 3 * kPi / 2 + 0.04));
  EXPECT_TRUE(turns(kPi, 3 * kPi / 2 + 0.04));
  // Within a twentieth, too; 0.02 keeps the right angle one for both.
  EXPECT_FALSE(turns(0.02, 3 * kPi / 2 + 0.0499));
  EXPECT_TRUE(turns(0.02, 3 * kPi / 2 + 0.0501));
  EXPECT_FALSE(turns(kPi + 0.5, 3 * kPi / 2 + 0.5)) << "across the reference, but not upright";
}

TEST_F(ReferenceDirection, ReplacesTheMatrixBefore) {
  CDimDraw draw(500, nullptr);
  draw.SetReferenceDirection({10, 20, 0}, kPi, 0);
  EXPECT_THAT(draw.DrawToOriginalPoint({11, 22, 5}), Is(9, 18, 5));
  draw.SetReferenceDirection({10, 20, 0}, 0, 0);
  EXPECT_THAT(draw.DrawToOriginalPoint({11, 22, 5}), Is(11, 22, 5));
}

TEST_F(ReferenceDirection, TheSameCallMapsAFlippedPointBack) {
  CDimDraw draw(500, nullptr);
  draw.SetReferenceDirection({10, 20, 0}, kPi, 0);
  const AcGePoint3d there = draw.DrawToOriginalPoint({1, 2, 3});
  EXPECT_THAT(draw.DrawToOriginalPoint(there), Is(1, 2, 3));
}

TEST_F(ReferenceDirection, AMatrixIsTakenAsGiven) {
  CDimDraw draw(500, nullptr);
  draw.SetMatrix(AcGeMatrix3d::translation({1, 2, 3}));
  EXPECT_THAT(draw.DrawToOriginalPoint({0, 0, 0}), Is(1, 2, 3));
  EXPECT_THAT(reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {5, 0, 0}, -1))->endPoint(), Is(6, 2, 3));
}

TEST_F(ReferenceDirection, AFlippedTextStandsUpsideDownAboutTheBase) {
  CDimDraw draw(500, nullptr);
  draw.SetReferenceDirection({10, 20, 0}, kPi, 0);
  const auto text = reading<AcDbText>(draw.DrawLBText(L"abc", {12, 21, 0}, 0, 2, 1));
  EXPECT_THAT(text->alignmentPoint(), Is(8, 19, 0));
  EXPECT_NEAR(text->rotation(), kPi, 1e-9);
  EXPECT_LT(text->position().y, 19) << "its base line is above its bottom, which is now below";
}

TEST_F(ReferenceDirection, LinesAndPolylinesAreFlippedToo) {
  CDimDraw draw(500, nullptr);
  draw.SetReferenceDirection({10, 20, 0}, kPi, 0);
  const AcDbObjectId line = draw.DrawLine({11, 21, 0}, {12, 21, 0}, -1);
  EXPECT_THAT(reading<AcDbLine>(line)->endPoint(), Is(8, 19, 0));
  for (const AcDbObjectId id : {draw.DrawLine({11, 21, 0}, {12, 21, 0}, 0.5),
                                draw.DrawPl({{11, 21, 0}, {12, 21, 0}, {12, 25, 0}}, -1)}) {
    AcGePoint3d second;
    EXPECT_EQ(reading<AcDbPolyline>(id)->getPointAt(1, second), Acad::eOk);
    EXPECT_THAT(second, Is(8, 19, 0));
  }
}

TEST_F(ReferenceDirection, TheNearestPointIsFoundAmongFlippedOnes) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.TestNearestDist({1, 0, 0}, {5, 0, 0}, {0, 0, 0}));
  EXPECT_FALSE(draw.TestNearestDist({5, 0, 0}, {1, 0, 0}, {0, 0, 0}));
  EXPECT_FALSE(draw.TestNearestDist({1, 0, 0}, {1, 0, 0}, {0, 0, 0})) << "neither is nearer";
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  EXPECT_FALSE(draw.TestNearestDist({1, 0, 0}, {-5, 0, 0}, {9, 0, 0})) << "-1 and 5 once flipped";
}

TEST_F(ReferenceDirection, TheNearestPointIsFoundInThePlaneOfTheFlattenedPoints) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.TestNearestDist({1, 0, 100}, {5, 0, 0}, {0, 0, 0}))
      << "their heights are dropped";
  EXPECT_FALSE(draw.TestNearestDist({5, 0, 0}, {1, 0, 100}, {0, 0, 0})) << "of both of them";
  draw.SetMatrix(AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kYAxis));
  EXPECT_TRUE(draw.TestNearestDist({5, 0, 0}, {1, 0, 0}, {0, 0, -5})) << "the target's is not";
}

}  // namespace
