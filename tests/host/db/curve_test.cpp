#include "host/db/curve.h"

#include <gmock/gmock.h>

#include <memory>

#include "host/db/arc.h"
#include "host/db/circle.h"
#include "host/db/ellipse.h"
#include "host/db/polyline.h"
#include "host/db/polyline_heavy.h"
#include "host/db/spline.h"
#include "tests/host/db/little.h"
#include "tests/host/db/plan.h"
#include "tests/host/geometry/near.h"

namespace {

class Curves : public DrawingTest {
 protected:
  /// The first entity of a drawing of these.
  template <class T = AcDbCurve>
  T* first(std::string_view entities, AcDb::OpenMode mode = AcDb::kForRead) {
    given(little_drawing(entities));
    return opened<T>(database().first_entity(), mode);
  }
};

constexpr std::string_view kPolyline =
    "0 LWPOLYLINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 3\n70 1\n38 2.0\n43 0.5\n"
    "10 0.0\n20 0.0\n10 10.0\n20 0.0\n42 1.0\n10 10.0\n20 4.0\n";

TEST_F(Curves, AnswerWithNumbersOfTheirKind) {
  auto* line = first(
      "0 LINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0\n20 0\n30 0\n11 30\n21 40\n31 0\n");
  double value = -1;
  AcGePoint3d point;
  AcGeVector3d vector;
  EXPECT_EQ(line->getStartParam(value), Acad::eOk);
  EXPECT_EQ(value, 0.0);
  EXPECT_EQ(line->getEndParam(value), Acad::eOk);
  EXPECT_EQ(value, 50.0);
  EXPECT_EQ(line->getPointAtDist(25, point), Acad::eOk);
  EXPECT_THAT(point, Is(15, 20, 0));
  EXPECT_EQ(line->getParamAtPoint({15, 20, 0}, value), Acad::eOk);
  EXPECT_EQ(value, 25.0);
  EXPECT_EQ(line->getDistAtPoint({15, 20, 0}, value), Acad::eOk);
  EXPECT_EQ(value, 25.0);
  EXPECT_EQ(line->getFirstDeriv(7.0, vector), Acad::eOk);
  EXPECT_THAT(vector, Is(0.6, 0.8, 0));
  EXPECT_EQ(line->getClosestPointTo({100, 100, 0}, point, true), Acad::eOk);
  EXPECT_THAT(point, Is(84, 112, 0));
  EXPECT_EQ(line->getClosestPointTo({100, 100, 0}, point), Acad::eOk);
  EXPECT_THAT(point, Is(30, 40, 0));
  EXPECT_FALSE(line->isClosed());
  line->close();
}

TEST_F(Curves, RefuseWhatIsNotOnThem) {
  auto* curve = first(kPolyline);
  double value = -1;
  AcGePoint3d point(7, 7, 7);
  EXPECT_EQ(curve->getPointAtParam(3.5, point), Acad::eInvalidInput);
  EXPECT_EQ(curve->getPointAtParam(-0.1, point), Acad::eInvalidInput);
  EXPECT_EQ(curve->getPointAtDist(1000, point), Acad::eInvalidInput);
  EXPECT_EQ(curve->getParamAtDist(-1, value), Acad::eInvalidInput);
  EXPECT_EQ(curve->getParamAtPoint({5, 0, 0}, value), Acad::eInvalidInput);  // not its elevation
  EXPECT_EQ(curve->getClosestPointTo({0, 0, 0}, AcGeVector3d(), point), Acad::eInvalidInput);
  EXPECT_EQ(value, -1);
  EXPECT_THAT(point, Is(7, 7, 7));
  curve->close();
}

TEST_F(Curves, WithoutEndHaveNoEndParameter) {
  auto* ray =
      first("0 RAY\n5 30\n100 AcDbEntity\n8 0\n100 AcDbRay\n10 1\n20 1\n30 0\n11 0\n21 1\n31 0\n");
  double value = 0;
  AcGePoint3d point;
  EXPECT_EQ(ray->getStartPoint(point), Acad::eOk);
  EXPECT_THAT(point, Is(1, 1, 0));
  EXPECT_EQ(ray->getEndParam(value), Acad::eNotApplicable);
  EXPECT_EQ(ray->getEndPoint(point), Acad::eNotApplicable);
  EXPECT_EQ(ray->getArea(value), Acad::eNotApplicable);
  EXPECT_EQ(ray->getPointAtDist(5, point), Acad::eOk);
  EXPECT_THAT(point, Is(1, 6, 0));
  ray->close();
}

TEST_F(Curves, APolylineKnowsItsVertices) {
  auto* line = first<AcDbPolyline>(kPolyline);
  EXPECT_EQ(line->numVerts(), 3U);
  AcGePoint3d point;
  AcGePoint2d flat;
  double a = 0, b = 0;
  EXPECT_EQ(line->getPointAt(1, point), Acad::eOk);
  EXPECT_THAT(point, Is(10, 0, 2));
  EXPECT_EQ(line->getPointAt(3, flat), Acad::eInvalidIndex);
  EXPECT_EQ(line->getBulgeAt(1, a), Acad::eOk);
  EXPECT_EQ(a, 1.0);
  EXPECT_EQ(line->getWidthsAt(2, a, b), Acad::eOk);
  EXPECT_EQ(b, 0.5);
  EXPECT_EQ(line->segType(0), AcDbPolyline::kLine);
  EXPECT_EQ(line->segType(1), AcDbPolyline::kArc);
  EXPECT_EQ(line->segType(3), AcDbPolyline::kEmpty);
  EXPECT_TRUE(line->isClosed());
  EXPECT_TRUE(line->hasBulges());
  EXPECT_EQ(line->getArea(a), Acad::eOk);
  EXPECT_DOUBLE_EQ(a, 20 + 2 * kPi);
  line->close();
}

TEST_F(Curves, ChangingAVertexLeavesTheOthersBytes) {
  auto* line = first<AcDbPolyline>(kPolyline, AcDb::kForWrite);
  EXPECT_EQ(line->setPointAt(0, {1, 2.5}), Acad::eOk);
  EXPECT_EQ(line->setBulgeAt(1, 0), Acad::eOk);
  EXPECT_EQ(line->addVertexAt(3, {0, 4}), Acad::eOk);
  EXPECT_EQ(line->addVertexAt(5, {0, 4}), Acad::eInvalidIndex);
  EXPECT_EQ(line->removeVertexAt(2), Acad::eOk);
  line->setClosed(false);
  line->close();
  std::string wanted = little_drawing(
      "0 LWPOLYLINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 3\n70 0\n38 2.0\n43 0.5\n"
      "10 1.0\n20 2.5\n10 10.0\n20 0.0\n10 0.0\n20 4.0\n");
  const auto words = [](const std::string& text) {
    std::vector<std::string> found;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find('\n', at);
      std::string word = text.substr(at, end - at);
      word.erase(0, word.find_first_not_of(' '));
      found.push_back(word);
      at = end + 1;
    }
    return found;
  };
  EXPECT_EQ(words(database().save_bytes()), words(wanted));
}

TEST_F(Curves, AWidthOfOneVertexEndsTheConstantWidth) {
  auto* line = first<AcDbPolyline>(kPolyline, AcDb::kForWrite);
  double width = 0, end = 0;
  EXPECT_EQ(line->setWidthsAt(1, 2, 3), Acad::eOk);
  EXPECT_EQ(line->getConstantWidth(width), Acad::eInvalidInput);
  EXPECT_EQ(line->getWidthsAt(0, width, end), Acad::eOk);
  EXPECT_EQ(width, 0.5);
  EXPECT_EQ(line->setConstantWidth(1.5), Acad::eOk);
  EXPECT_EQ(line->getWidthsAt(1, width, end), Acad::eOk);
  EXPECT_EQ(end, 1.5);
  EXPECT_EQ(line->numVerts(), 3U);
  double bulge = 0;
  EXPECT_EQ(line->getBulgeAt(1, bulge), Acad::eOk);
  EXPECT_EQ(bulge, 1.0);
  line->close();
}

TEST_F(Curves, AVertexWithoutWidthsTakesTheConstantOneAndZeroIsAWidth) {
  const auto check = [](AcDbPolyline& line) {
    double start = 0, end = 0;
    EXPECT_EQ(line.setConstantWidth(1.5), Acad::eOk);
    EXPECT_EQ(line.addVertexAt(1, {1, 5}), Acad::eOk);
    EXPECT_EQ(line.getConstantWidth(start), Acad::eOk);
    EXPECT_EQ(start, 1.5);
    EXPECT_EQ(line.addVertexAt(1, {1, 4}, 0, 0, 0), Acad::eOk);
    EXPECT_EQ(line.getWidthsAt(1, start, end), Acad::eOk);
    EXPECT_EQ(start + end, 0.0);
    EXPECT_EQ(line.getWidthsAt(2, start, end), Acad::eOk);
    EXPECT_EQ(start + end, 3.0);
    EXPECT_EQ(line.setConstantWidth(0), Acad::eOk);
    EXPECT_EQ(line.addVertexAt(1, {1, 3}, 0, 0, 0), Acad::eOk);
    EXPECT_EQ(line.getConstantWidth(start), Acad::eOk);
    EXPECT_EQ(start, 0.0) << "nothing needs saying where all are 0";
  };
  auto* const read = first<AcDbPolyline>(kPolyline, AcDb::kForWrite);
  check(*read);
  read->close();
  AcDbPolyline fresh;
  fresh.addVertexAt(0, {0, 0});
  fresh.addVertexAt(1, {1, 0});
  check(fresh);
}

TEST_F(Curves, NewOnesAreAddedToADrawing) {
  given_plan();
  auto* polyline = new AcDbPolyline;
  EXPECT_EQ(polyline->addVertexAt(0, {0, 0}, 0.5), Acad::eOk);
  EXPECT_EQ(polyline->addVertexAt(1, {4, 0}, 0, 0.2, 0.3), Acad::eOk);
  EXPECT_EQ(polyline->addVertexAt(0, {-4, 0}), Acad::eOk);
  EXPECT_EQ(polyline->setConstantWidth(0.1), Acad::eOk);
  append(polyline);
  append(new AcDbArc({1, 2, 3}, -AcGeVector3d::kZAxis, 5, 0.5, 1.5));
  append(new AcDbCircle({1, 2, 3}, {1, 1, 0}, 5));
  append(new AcDbEllipse({1, 2, 3}, AcGeVector3d::kZAxis, {0, 6, 0}, 0.5));
  auto* xline = new AcDbXline;
  EXPECT_EQ(xline->setUnitDir({3, 4, 0}), Acad::eOk);
  EXPECT_EQ(xline->setUnitDir({0, 0, 0}), Acad::eInvalidInput);
  const AcDbHandle last = append(xline).handle();

  reopened();
  const auto nth_last = [&](std::uint64_t n) { return id(last - n); };
  auto* read = opened<AcDbPolyline>(nth_last(4));
  EXPECT_EQ(read->numVerts(), 3U);
  double value = 0;
  EXPECT_EQ(read->getBulgeAt(1, value), Acad::eOk);
  EXPECT_EQ(value, 0.5);
  EXPECT_EQ(read->getConstantWidth(value), Acad::eOk);
  EXPECT_EQ(value, 0.1);
  read->close();
  auto* arc = opened<AcDbArc>(nth_last(3));
  EXPECT_THAT(arc->center(), Is(1, 2, 3));
  EXPECT_NEAR(arc->startAngle(), 0.5, 1e-12);
  EXPECT_NEAR(arc->length(), 5, 1e-12);
  arc->close();
  auto* circle = opened<AcDbCircle>(nth_last(2));
  EXPECT_THAT(circle->center(), Is(1, 2, 3));
  circle->close();
  auto* ellipse = opened<AcDbEllipse>(nth_last(1));
  EXPECT_THAT(ellipse->minorAxis(), Is(-3, 0, 0));
  EXPECT_TRUE(ellipse->isClosed());
  ellipse->close();
  auto* line = opened<AcDbXline>(last);
  EXPECT_THAT(line->unitDir(), Is(0.6, 0.8, 0));
  line->close();
}

TEST_F(Curves, OldPolylinesAreFlatOrSpatialByTheirFlags) {
  given(little_drawing(
      "0 POLYLINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDb3dPolyline\n66 1\n10 0\n20 0\n30 0\n70 9\n"
      "0 VERTEX\n5 31\n330 30\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n"
      "10 0\n20 0\n30 0\n70 32\n"
      "0 VERTEX\n5 32\n330 30\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n"
      "10 3\n20 0\n30 4\n70 32\n"
      "0 SEQEND\n5 33\n330 30\n100 AcDbEntity\n8 0\n"
      "0 POLYLINE\n5 40\n100 AcDbEntity\n8 0\n100 AcDb2dPolyline\n66 1\n10 0\n20 0\n30 7\n70 4\n"
      "75 6\n"
      "0 VERTEX\n5 41\n330 40\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n"
      "10 50\n20 50\n30 0\n70 16\n"
      "0 VERTEX\n5 42\n330 40\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n"
      "10 0\n20 0\n30 0\n70 8\n42 1\n"
      "0 VERTEX\n5 43\n330 40\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n"
      "10 2\n20 0\n30 0\n70 8\n"
      "0 SEQEND\n5 44\n330 40\n100 AcDbEntity\n8 0\n"));
  auto* spatial = opened<AcDb3dPolyline>(0x30);
  double value = 0;
  EXPECT_EQ(spatial->getEndParam(value), Acad::eOk);
  EXPECT_EQ(value, 2.0);  // closed: there and back
  EXPECT_EQ(spatial->polyType(), AcDb::k3dSimplePoly);
  spatial->close();
  auto* flat = opened<AcDb2dPolyline>(0x40);
  EXPECT_EQ(flat->polyType(), AcDb::k2dCubicSplinePoly);
  AcGePoint3d point;
  EXPECT_EQ(flat->getPointAtParam(0.5, point), Acad::eOk);
  EXPECT_THAT(point, Is(1, -1, 7));  // without the vertex of the frame
  const std::unique_ptr<AcDbObjectIterator> walk(flat->vertexIterator());
  int count = 0;
  for (; !walk->done(); walk->step()) {
    auto* vertex = opened<AcDb2dVertex>(walk->objectId());
    EXPECT_EQ(vertex->vertexType() == AcDb::k2dSplineCtlVertex, count == 0);
    vertex->close();
    ++count;
  }
  EXPECT_EQ(count, 3);
  flat->close();
}

TEST_F(Curves, ASplineReadsItsControlPoints) {
  auto* spline = first<AcDbSpline>(
      "0 SPLINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDbSpline\n70 8\n71 2\n72 6\n73 3\n74 0\n"
      "40 0\n40 0\n40 0\n40 1\n40 1\n40 1\n10 0\n20 0\n30 0\n10 1\n20 0\n30 0\n10 2\n20 4\n30 0\n",
      AcDb::kForWrite);
  AcGePoint3d point;
  EXPECT_EQ(spline->getPointAtParam(0.5, point), Acad::eOk);
  EXPECT_THAT(point, Is(1, 1, 0));
  EXPECT_EQ(spline->numControlPoints(), 3);
  EXPECT_EQ(spline->setControlPointAt(1, {1, 2, 0}), Acad::eOk);
  EXPECT_EQ(spline->setControlPointAt(3, {1, 2, 0}), Acad::eInvalidIndex);
  EXPECT_EQ(spline->getPointAtParam(0.5, point), Acad::eOk);
  EXPECT_THAT(point, Is(1, 2, 0));  // now a straight line
  EXPECT_EQ(spline->weightAt(0), 1.0);
  spline->close();
}

TEST_F(Curves, BrokenRecordsMakeNoCurve) {
  auto* spline = first("0 SPLINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDbSpline\n70 8\n71 3\n40 0\n");
  double value = 0;
  EXPECT_EQ(spline->getStartParam(value), Acad::eInvalidInput);
  EXPECT_FALSE(spline->isClosed());
  spline->close();
  auto* polyline = first("0 LWPOLYLINE\n5 30\n100 AcDbEntity\n8 0\n100 AcDbPolyline\n90 0\n70 0\n");
  EXPECT_EQ(polyline->getEndParam(value), Acad::eInvalidInput);
  polyline->close();
  EXPECT_FALSE(cad::curve_of(AcDbObjectId()));
}

}  // namespace
