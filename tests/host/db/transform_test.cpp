#include "host/db/transform.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/base/numbers.h"
#include "host/db/arxdbg_utils.h"
#include "host/db/record.h"
#include "host/dxf/tag_reader.h"
#include "tests/host/db/plan.h"
#include "tests/host/db/shapes.h"

namespace {

using cad::MirroredText;

/// Turns and mirrors as exact matrices, so that results are exact too.
AcGeMatrix3d axes(const AcGeVector3d& x, const AcGeVector3d& y, const AcGeVector3d& z,
                  const AcGePoint3d& origin = AcGePoint3d::kOrigin) {
  return AcGeMatrix3d().setCoordSystem(origin, x, y, z);
}
const AcGeVector3d kX(1, 0, 0), kY(0, 1, 0), kZ(0, 0, 1);
const AcGeMatrix3d kMove = AcGeMatrix3d::translation({10, 20, 30});
const AcGeMatrix3d kQuarter = axes(kY, -kX, kZ);  // about Z, counter-clockwise
const AcGeMatrix3d kMirrorX = axes(-kX, kY, kZ);  // left and right exchanged
const AcGeMatrix3d kMirrorY = axes(kX, -kY, kZ);  // top and bottom exchanged
const AcGeMatrix3d kDouble = AcGeMatrix3d::scaling(2.0);
const AcGeMatrix3d kWide = axes(kX * 2, kY, kZ);  // not uniform
const AcGeMatrix3d kTip = axes(kX, kZ, -kY);      // Y goes up: a quarter about X

std::string entity(std::string_view kind, std::string_view own) {
  std::string note = "0 ";
  note.append(kind).append("\n5 100\n330 1F\n100 AcDbEntity\n8 0\n").append(own);
  return note;
}

class Transform : public DrawingTest {
 protected:
  /// The tags behind the first class part, one per line.
  std::string tags_of(std::uint64_t handle) {
    const cad::RecordTags record = cad::record_tags(id(handle));
    cad::dxf::TagReader tags(record.bytes, *record.dialect);
    cad::dxf::Tag tag;
    std::string text;
    int markers = 0;
    while (tags.next(tag)) {
      if (tag.code == 100) ++markers;
      if (markers < 2) continue;
      const std::size_t blanks = std::min(tag.value.find_first_not_of(' '), tag.value.size());
      text += std::to_string(tag.code) + " " + std::string(tag.value.substr(blanks)) + "\n";
    }
    return text;
  }

  void expect(const std::string& kind, const std::string& before, const AcGeMatrix3d& map,
              const std::string& after, MirroredText text = MirroredText::kMirrored) {
    SCOPED_TRACE(kind + "\n" + before);
    given(drawing_of(entity(kind, before)));
    EXPECT_EQ(cad::transform_object(id(0x100), map, text), Acad::eOk);
    EXPECT_EQ(tags_of(0x100), after);
    reopened();
    EXPECT_EQ(tags_of(0x100), after);
  }
  void expect_refused(const std::string& kind, const std::string& own, const AcGeMatrix3d& map,
                      Acad::ErrorStatus status) {
    SCOPED_TRACE(kind);
    const std::string bytes = drawing_of(entity(kind, own));
    given(bytes);
    EXPECT_EQ(cad::transform_object(id(0x100), map), status);
    EXPECT_EQ(database().save_bytes(), bytes);
  }
};

TEST_F(Transform, ALineKeepsTheSpellingOfWhatDoesNotChange) {
  expect("LINE", "100 AcDbLine\n10 1.50\n20 2\n30 0\n11 4.0\n21 6.00\n31 0.0\n",
         AcGeMatrix3d::translation({10, 0, 0}),
         "100 AcDbLine\n10 11.5\n20 2\n30 0\n11 14.0\n21 6.00\n31 0.0\n");
  expect("LINE", "100 AcDbLine\n39 2.0\n10 1.0\n20 2.0\n30 0.0\n11 4.0\n21 6.0\n31 0.0\n", kDouble,
         "100 AcDbLine\n39 4.0\n10 2.0\n20 4.0\n30 0.0\n11 8.0\n21 12.0\n31 0.0\n");
}

TEST_F(Transform, MovingByNothingChangesNoByte) {
  const std::string bytes = drawing_of(entity(
      "ARC", "100 AcDbCircle\n10 1.50\n20 2\n30 0\n40 1.0\n100 AcDbArc\n50 350\n51 10.00\n"));
  given(bytes);
  EXPECT_EQ(cad::transform_object(id(0x100), AcGeMatrix3d()), Acad::eOk);
  EXPECT_FALSE(database().is_modified());
  EXPECT_EQ(database().save_bytes(), bytes);
}

TEST_F(Transform, PointsOfFacesAndRays) {
  expect("3DFACE",
         "100 AcDbFace\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n12 1.0\n22 1.0\n32 0.0\n"
         "13 0.0\n23 1.0\n33 5.0\n",
         kQuarter,
         "100 AcDbFace\n10 0.0\n20 0.0\n30 0.0\n11 0.0\n21 1.0\n31 0.0\n12 -1.0\n22 1.0\n32 0.0\n"
         "13 -1.0\n23 0.0\n33 5.0\n");
  expect("XLINE", "100 AcDbXline\n10 1.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n",
         kQuarter * kDouble, "100 AcDbXline\n10 0.0\n20 2.0\n30 0.0\n11 0.0\n21 1.0\n31 0.0\n");
}

TEST_F(Transform, ArcsStayCounterClockwise) {
  const std::string arc = "100 AcDbCircle\n10 1.0\n20 2.0\n30 0.0\n40 5.0\n100 AcDbArc\n";
  expect("ARC", arc + "50 30.0\n51 120.0\n", kQuarter,
         "100 AcDbCircle\n10 -2.0\n20 1.0\n30 0.0\n40 5.0\n100 AcDbArc\n50 120.0\n51 210.0\n");
  expect("ARC", arc + "50 30.0\n51 120.0\n", kMirrorX,
         "100 AcDbCircle\n10 -1.0\n20 2.0\n30 0.0\n40 5.0\n100 AcDbArc\n50 60.0\n51 150.0\n");
  expect("ARC", arc + "50 30.0\n51 120.0\n", kMirrorY,
         "100 AcDbCircle\n10 1.0\n20 -2.0\n30 0.0\n40 5.0\n100 AcDbArc\n50 240.0\n51 330.0\n");
  expect("ARC", arc + "50 30.0\n51 120.0\n",
         AcGeMatrix3d::rotation(std::numbers::pi / 6, kZ, {1, 2, 0}),
         "100 AcDbCircle\n10 1.0\n20 2.0\n30 0.0\n40 5.0\n100 AcDbArc\n50 60.0\n51 150.0\n");
}

TEST_F(Transform, ObjectsSeenFromBelowMoveInTheirOwnCoordinates) {
  // Of an object with the normal -Z the own X axis is the world's -X.
  const std::string below = "210 0.0\n220 0.0\n230 -1.0\n";
  expect("CIRCLE", "100 AcDbCircle\n10 -7.0\n20 2.0\n30 -1.0\n40 5.0\n" + below, kMove,
         "100 AcDbCircle\n10 -17.0\n20 22.0\n30 -31.0\n40 5.0\n" + below);
  expect("ARC",
         "100 AcDbCircle\n10 -7.0\n20 2.0\n30 0.0\n40 5.0\n" + below +
             "100 AcDbArc\n50 0.0\n51 90.0\n",
         kQuarter,
         "100 AcDbCircle\n10 2.0\n20 7.0\n30 0.0\n40 5.0\n" + below +
             "100 AcDbArc\n50 270.0\n51 0.0\n");
  expect("LWPOLYLINE",
         "100 AcDbPolyline\n90 2\n70 0\n38 4.0\n10 1.0\n20 2.0\n42 0.5\n10 3.0\n20 2.0\n" + below,
         kMove,
         "100 AcDbPolyline\n90 2\n70 0\n38 -26.0\n10 -9.0\n20 22.0\n42 0.5\n10 -7.0\n20 22.0\n" +
             below);
}

TEST_F(Transform, ATippedObjectGetsANormal) {
  expect("CIRCLE", "100 AcDbCircle\n10 1.0\n20 0.0\n30 0.0\n40 5.0\n", kTip,
         "100 AcDbCircle\n10 1.0\n20 0.0\n30 0.0\n40 5.0\n210 0.0\n220 -1.0\n230 0.0\n");
  expect("LWPOLYLINE", "100 AcDbPolyline\n90 2\n70 0\n10 1.0\n20 2.0\n10 3.0\n20 2.0\n",
         AcGeMatrix3d::translation({0, 0, 5}),
         "100 AcDbPolyline\n90 2\n70 0\n38 5.0\n10 1.0\n20 2.0\n10 3.0\n20 2.0\n");
}

TEST_F(Transform, PolylinesTurnTheirBulgesInTheMirror) {
  expect("LWPOLYLINE",
         "100 AcDbPolyline\n90 2\n70 1\n43 0.5\n10 1.0\n20 2.0\n42 0.25\n10 3.0\n20 2.0\n",
         kMirrorX,
         "100 AcDbPolyline\n90 2\n70 1\n43 0.5\n10 -1.0\n20 2.0\n42 -0.25\n10 -3.0\n20 2.0\n");
  expect("LWPOLYLINE",
         "100 AcDbPolyline\n90 2\n70 1\n43 0.5\n10 1.0\n20 2.0\n42 0.25\n10 3.0\n20 2.0\n", kDouble,
         "100 AcDbPolyline\n90 2\n70 1\n43 1.0\n10 2.0\n20 4.0\n42 0.25\n10 6.0\n20 4.0\n");
  expect("LWPOLYLINE", "100 AcDbPolyline\n90 2\n70 0\n10 1.0\n20 2.0\n10 3.0\n20 2.0\n", kWide,
         "100 AcDbPolyline\n90 2\n70 0\n10 2.0\n20 2.0\n10 6.0\n20 2.0\n");
}

TEST_F(Transform, VerticesGoWithTheirPolyline) {
  const std::string vertex =
      "0 VERTEX\n5 101\n330 100\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n"
      "10 1.0\n20 2.0\n30 3.0\n42 0.5\n0 SEQEND\n5 102\n330 100\n100 AcDbEntity\n8 0\n";
  expect("POLYLINE", "100 AcDb2dPolyline\n66 1\n10 0.0\n20 0.0\n30 3.0\n70 0\n" + vertex,
         kMirrorX * kMove, "100 AcDb2dPolyline\n66 1\n10 0.0\n20 0.0\n30 33.0\n70 0\n");
  EXPECT_EQ(tags_of(0x101),
            "100 AcDbVertex\n100 AcDb2dVertex\n10 -11.0\n20 22.0\n30 33.0\n42 -0.5\n");
  const std::string point =
      "0 VERTEX\n5 101\n330 100\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb3dPolylineVertex\n"
      "10 1.0\n20 2.0\n30 3.0\n0 SEQEND\n5 102\n330 100\n100 AcDbEntity\n8 0\n";
  expect("POLYLINE", "100 AcDb3dPolyline\n66 1\n10 0.0\n20 0.0\n30 0.0\n70 8\n" + point, kTip,
         "100 AcDb3dPolyline\n66 1\n10 0.0\n20 0.0\n30 0.0\n70 8\n");
  EXPECT_EQ(tags_of(0x101), "100 AcDbVertex\n100 AcDb3dPolylineVertex\n10 1.0\n20 -3.0\n30 2.0\n");
}

TEST_F(Transform, Ellipses) {
  const std::string head = "100 AcDbEllipse\n10 1.0\n20 0.0\n30 0.0\n";
  const std::string normal = "210 0.0\n220 0.0\n230 1.0\n";
  expect("ELLIPSE", head + "11 4.0\n21 0.0\n31 0.0\n" + normal + "40 0.5\n41 0.0\n42 1.5\n",
         kQuarter,
         "100 AcDbEllipse\n10 0.0\n20 1.0\n30 0.0\n11 0.0\n21 4.0\n31 0.0\n" + normal +
             "40 0.5\n41 0.0\n42 1.5\n");
  // Mirrored in its own axis an arc from 0 to 1.5 runs from -1.5 to 0.
  given(drawing_of(
      entity("ELLIPSE", head + "11 4.0\n21 0.0\n31 0.0\n" + normal + "40 0.5\n41 0.0\n42 1.5\n")));
  EXPECT_EQ(cad::transform_object(id(0x100), kMirrorY), Acad::eOk);
  const std::string tags = tags_of(0x100);
  EXPECT_THAT(tags,
              testing::HasSubstr("11 4.0\n21 0.0\n31 0.0\n" + normal + "40 0.5\n41 4.7831853"));
  EXPECT_THAT(tags, testing::HasSubstr("42 6.28318530717958"));
  // Twice as wide as high, then half as wide: a circle of radius 4 lying the other way.
  expect("ELLIPSE",
         head + "11 0.0\n21 4.0\n31 0.0\n" + normal + "40 0.5\n41 0.0\n42 6.283185307179586\n",
         kWide,
         "100 AcDbEllipse\n10 2.0\n20 0.0\n30 0.0\n11 0.0\n21 4.0\n31 0.0\n" + normal +
             "40 1.0\n41 0.0\n42 6.283185307179586\n");
}

TEST_F(Transform, Texts) {
  const std::string text = "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n";
  expect("TEXT", text + "100 AcDbText\n", kQuarter * kDouble,
         "100 AcDbText\n10 -4.0\n20 2.0\n30 0.0\n40 5.0\n1 A\n50 90.0\n100 AcDbText\n");
  expect("TEXT", text + "50 30.0\n72 1\n11 3.0\n21 2.0\n31 0.0\n100 AcDbText\n73 2\n", kQuarter,
         "100 AcDbText\n10 -2.0\n20 1.0\n30 0.0\n40 2.5\n1 A\n50 120.0\n72 1\n11 -2.0\n21 3.0\n"
         "31 0.0\n100 AcDbText\n73 2\n");
}

TEST_F(Transform, AMirroredTextIsDrawnBackward) {
  const std::string text = "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n50 30.0\n";
  expect("TEXT", text + "100 AcDbText\n", kMirrorX,
         "100 AcDbText\n10 -1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n50 330.0\n71 2\n100 AcDbText\n");
  expect("TEXT", text + "71 2\n100 AcDbText\n", kMirrorX,
         "100 AcDbText\n10 -1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n50 330.0\n71 0\n100 AcDbText\n");
}

TEST_F(Transform, AReadableTextTakesThePlaceOfTheMirroredOne) {
  // Right justified about (9, 2): in the mirror it begins there.
  expect("TEXT",
         "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n72 2\n11 9.0\n21 2.0\n31 0.0\n"
         "100 AcDbText\n",
         kMirrorX,
         "100 AcDbText\n10 -9.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n72 0\n11 -9.0\n21 2.0\n31 0.0\n"
         "100 AcDbText\n",
         MirroredText::kReadable);
  // Left justified: the left end is the right end then.
  given(drawing_of(
      entity("TEXT", "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n100 AcDbText\n")));
  EXPECT_EQ(cad::transform_object(id(0x100), kMirrorX, MirroredText::kReadable), Acad::eOk);
  EXPECT_THAT(tags_of(0x100), testing::HasSubstr("72 2\n11 -1.0\n21 2.0\n31 0.0\n"));
  EXPECT_THAT(tags_of(0x100), testing::Not(testing::HasSubstr("\n50 ")));
  // Upside down: the base line goes to what was the top.
  expect("TEXT", "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n100 AcDbText\n", kMirrorY,
         "100 AcDbText\n10 1.0\n20 -4.5\n30 0.0\n40 2.5\n1 A\n100 AcDbText\n",
         MirroredText::kReadable);
  // Between two points: the points change places.
  expect("TEXT",
         "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n72 5\n11 9.0\n21 2.0\n31 0.0\n"
         "100 AcDbText\n",
         kMirrorX,
         "100 AcDbText\n10 -9.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n72 5\n11 -1.0\n21 2.0\n31 0.0\n"
         "100 AcDbText\n",
         MirroredText::kReadable);
  // A text at 60 degrees would hang head down at 120: it reads from the other end.
  given(drawing_of(entity("TEXT",
                          "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.0\n1 A\n50 60.0\n"
                          "72 4\n11 9.0\n21 2.0\n31 0.0\n100 AcDbText\n")));
  EXPECT_EQ(cad::transform_object(id(0x100), kMirrorX, MirroredText::kReadable), Acad::eOk);
  EXPECT_THAT(tags_of(0x100), testing::HasSubstr("50 300.0\n72 4\n11 -9.0\n21 2.0\n"));
}

TEST_F(Transform, AReadableTextStartsWhereItsOwnStyleTells) {
  given(drawing_of(entity("TEXT",
                          "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 管DN300\n41 0.7\n"
                          "51 15.0\n100 AcDbText\n")));
  EXPECT_EQ(cad::transform_object(id(0x100), kMirrorX, MirroredText::kReadable), Acad::eOk);
  AcDbText* text = opened<AcDbText>(0x100, AcDb::kForWrite);
  const AcGePoint3d start = text->position();
  EXPECT_EQ(text->adjustAlignment(), Acad::eOk);
  EXPECT_EQ(text->position(), start);
  text->close();
}

TEST_F(Transform, TextsOfSeveralLines) {
  const std::string head =
      "100 AcDbMText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n41 10.0\n71 1\n72 5\n1 A\n7 S\n";
  expect("MTEXT", head + "11 1.0\n21 0.0\n31 0.0\n", kQuarter * kDouble,
         "100 AcDbMText\n10 -4.0\n20 2.0\n30 0.0\n40 5.0\n41 20.0\n71 1\n72 5\n1 A\n7 S\n"
         "11 0.0\n21 1.0\n31 0.0\n");
  expect(
      "MTEXT", head, kQuarter,
      "100 AcDbMText\n10 -2.0\n20 1.0\n30 0.0\n40 2.5\n41 10.0\n71 1\n72 5\n1 A\n7 S\n50 90.0\n");
  expect("MTEXT", head + "11 1.0\n21 0.0\n31 0.0\n", kMirrorX,
         "100 AcDbMText\n10 -1.0\n20 2.0\n30 0.0\n40 2.5\n41 10.0\n71 3\n72 5\n1 A\n7 S\n"
         "11 1.0\n21 0.0\n31 0.0\n",
         MirroredText::kReadable);
  expect("MTEXT", head + "11 1.0\n21 0.0\n31 0.0\n", kMirrorY,
         "100 AcDbMText\n10 1.0\n20 -2.0\n30 0.0\n40 2.5\n41 10.0\n71 7\n72 5\n1 A\n7 S\n"
         "11 1.0\n21 0.0\n31 0.0\n",
         MirroredText::kReadable);
}

TEST_F(Transform, BlockReferencesKeepTheirAttributes) {
  const std::string attribute =
      "0 ATTRIB\n5 101\n330 100\n100 AcDbEntity\n8 0\n100 AcDbText\n10 2.0\n20 2.0\n30 0.0\n40 "
      "1.0\n"
      "1 W1\n100 AcDbAttribute\n2 NUMBER\n70 0\n73 0\n74 0\n0 SEQEND\n5 102\n330 100\n100 "
      "AcDbEntity\n8 0\n";
  expect("INSERT", "66 1\n100 AcDbBlockReference\n2 BOX\n10 7.0\n20 8.0\n30 0.0\n" + attribute,
         kQuarter * kDouble,
         "100 AcDbBlockReference\n2 BOX\n10 -16.0\n20 14.0\n30 0.0\n41 2.0\n42 2.0\n43 2.0\n50 "
         "90.0\n");
  EXPECT_THAT(tags_of(0x101),
              testing::HasSubstr("10 -4.0\n20 4.0\n30 0.0\n40 2.0\n1 W1\n50 90.0\n"));
  expect("INSERT",
         "100 AcDbBlockReference\n2 BOX\n10 7.0\n20 8.0\n30 0.0\n50 30.0\n70 2\n71 2\n44 3.0\n45 "
         "4.0\n",
         kMirrorX,
         "100 AcDbBlockReference\n2 BOX\n10 -7.0\n20 8.0\n30 0.0\n41 -1.0\n50 330.0\n70 2\n71 "
         "2\n44 -3.0\n45 4.0\n");
  expect("INSERT", "100 AcDbBlockReference\n2 BOX\n10 7.0\n20 8.0\n30 0.0\n50 90.0\n", kWide,
         "100 AcDbBlockReference\n2 BOX\n10 14.0\n20 8.0\n30 0.0\n42 2.0\n50 90.0\n");
  expect_refused("INSERT", "100 AcDbBlockReference\n2 BOX\n10 7.0\n20 8.0\n30 0.0\n50 45.0\n",
                 kWide, Acad::eCannotScaleNonUniformly);
}

TEST_F(Transform, ADimensionTakesItsBlockAlong) {
  expect(
      "DIMENSION",
      "100 AcDbDimension\n2 *D1\n10 10.0\n20 5.0\n30 0.0\n11 5.0\n21 5.0\n31 0.0\n70 32\n42 10.0\n"
      "3 Standard\n100 AcDbAlignedDimension\n13 0.0\n23 0.0\n33 0.0\n14 10.0\n24 0.0\n34 0.0\n"
      "100 AcDbRotatedDimension\n50 0.0\n",
      kQuarter * kDouble,
      "100 AcDbDimension\n2 *D1\n10 -10.0\n20 20.0\n30 0.0\n11 -10.0\n21 10.0\n31 0.0\n70 32\n42 "
      "20.0\n"
      "3 Standard\n100 AcDbAlignedDimension\n13 0.0\n23 0.0\n33 0.0\n14 0.0\n24 20.0\n34 0.0\n"
      "100 AcDbRotatedDimension\n50 90.0\n");
  EXPECT_EQ(tags_of(0x2A), "100 AcDbLine\n10 -10.0\n20 0.0\n30 0.0\n11 -10.0\n21 20.0\n31 0.0\n");
}

TEST_F(Transform, HatchesAreReadPathByPath) {
  const std::string paths =
      "91 2\n92 7\n72 1\n73 1\n93 2\n10 0.0\n20 0.0\n42 1.0\n10 4.0\n20 0.0\n42 0.0\n97 0\n"
      "92 1\n93 3\n72 1\n10 0.0\n20 0.0\n11 2.0\n21 0.0\n"
      "72 2\n10 2.0\n20 1.0\n40 1.0\n50 270.0\n51 450.0\n73 1\n"
      "72 3\n10 1.0\n20 1.0\n11 1.0\n21 0.0\n40 0.5\n50 0.0\n51 90.0\n73 1\n97 0\n";
  expect(
      "HATCH",
      "100 AcDbHatch\n10 0.0\n20 0.0\n30 0.0\n210 0.0\n220 0.0\n230 1.0\n2 ANSI31\n70 0\n71 0\n" +
          paths +
          "75 0\n76 1\n52 0.0\n41 1.0\n77 0\n78 1\n53 45.0\n43 0.0\n44 0.0\n45 -2.0\n46 2.0\n79 "
          "1\n49 0.5\n98 1\n10 1.0\n20 0.5\n",
      AcGeMatrix3d::translation({10, 0, 3}) * kMirrorX,
      "100 AcDbHatch\n10 0.0\n20 0.0\n30 3.0\n210 0.0\n220 0.0\n230 1.0\n2 ANSI31\n70 0\n71 0\n"
      "91 2\n92 7\n72 1\n73 1\n93 2\n10 10.0\n20 0.0\n42 -1.0\n10 6.0\n20 0.0\n42 0.0\n97 0\n"
      "92 1\n93 3\n72 1\n10 10.0\n20 0.0\n11 8.0\n21 0.0\n"
      "72 2\n10 8.0\n20 1.0\n40 1.0\n50 90.0\n51 270.0\n73 0\n"
      "72 3\n10 9.0\n20 1.0\n11 -1.0\n21 0.0\n40 0.5\n50 0.0\n51 90.0\n73 0\n97 0\n"
      "75 0\n76 1\n52 180.0\n41 1.0\n77 0\n78 1\n53 135.0\n43 10.0\n44 0.0\n45 2.0\n46 2.0\n79 "
      "1\n49 0.5\n98 1\n10 9.0\n20 0.5\n");
}

TEST_F(Transform, ExtendedDataGoesWithItsObject) {
  expect("LINE",
         "100 AcDbLine\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n1001 PN\n1010 1.0\n1020 "
         "0.0\n1030 0.0\n"
         "1011 1.0\n1021 0.0\n1031 0.0\n1012 1.0\n1022 0.0\n1032 0.0\n1013 1.0\n1023 0.0\n1033 "
         "0.0\n1040 1.0\n1041 1.0\n1042 1.0\n",
         kMove * kQuarter * kDouble,
         "100 AcDbLine\n10 10.0\n20 20.0\n30 30.0\n11 10.0\n21 22.0\n31 30.0\n1001 PN\n1010 "
         "1.0\n1020 0.0\n1030 0.0\n"
         "1011 10.0\n1021 22.0\n1031 30.0\n1012 0.0\n1022 2.0\n1032 0.0\n1013 0.0\n1023 1.0\n1033 "
         "0.0\n1040 1.0\n1041 2.0\n1042 2.0\n");
}

TEST_F(Transform, WhatHasNoShapeForTheResultIsRefusedUntouched) {
  const Acad::ErrorStatus skewed = Acad::eCannotScaleNonUniformly;
  expect_refused("CIRCLE", "100 AcDbCircle\n10 1.0\n20 0.0\n30 0.0\n40 5.0\n", kWide, skewed);
  expect_refused("TEXT", "100 AcDbText\n10 1.0\n20 2.0\n30 0.0\n40 2.5\n1 A\n", kWide, skewed);
  expect_refused("LWPOLYLINE",
                 "100 AcDbPolyline\n90 2\n70 1\n10 1.0\n20 2.0\n42 0.25\n10 3.0\n20 2.0\n", kWide,
                 skewed);
  expect_refused("ACAD_PROXY_ENTITY", "100 AcDbProxyEntity\n10 1.0\n", kMove, Acad::eNotApplicable);
  const std::string line = "100 AcDbLine\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n";
  expect_refused("LINE", line, axes(kX, kX, kZ), Acad::eInvalidInput);
  AcGeMatrix3d endless;
  endless(0, 3) = std::numeric_limits<double>::infinity();
  expect_refused("LINE", line, endless, Acad::eInvalidInput);
  expect_refused("LINE", "100 AcDbLine\n10 1.0E308\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n",
                 AcGeMatrix3d::scaling(1e10), Acad::eInvalidInput);
  std::string locked = entity("LINE", line);
  locked.replace(locked.find("8 0"), 3, "8 LOCKED");
  given(drawing_of(locked));
  EXPECT_EQ(cad::transform_object(id(0x100), kMove), Acad::eOnLockedLayer);
  EXPECT_EQ(cad::transform_object({}, kMove), Acad::eNullObjectId);
}

TEST_F(Transform, ThePublishedCallWantsAnOpenEntity) {
  given(
      drawing_of(entity("LINE", "100 AcDbLine\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n")));
  auto* line = opened<AcDbLine>(0x100);
  EXPECT_EQ(line->transformBy(kMove), Acad::eNotOpenForWrite);
  EXPECT_EQ(line->upgradeOpen(), Acad::eOk);
  EXPECT_EQ(line->transformBy(kMove), Acad::eOk);
  EXPECT_EQ(line->startPoint(), AcGePoint3d(10, 20, 30));
  line->close();
}

TEST_F(Transform, WorksOnR12AndBinaryDrawings) {
  for (const Form form : {Form::kBinary, Form::kOldBinary, Form::kR12, Form::kChinese}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    ASSERT_EQ(cad::transform_object(id(0x2F), kMove), Acad::eOk);
    ASSERT_EQ(cad::transform_object(id(0x33), kMove), Acad::eOk);
    ASSERT_EQ(cad::transform_object(id(0x3A), kDouble), Acad::eOk);
    reopened();
    auto* line = opened<AcDbLine>(0x2F);
    EXPECT_EQ(line->startPoint(), AcGePoint3d(11, 22, 30));
    EXPECT_EQ(line->endPoint(), AcGePoint3d(14, 26, 30.5));
    line->close();
  }
}

// Pulling points

class Stretch : public Transform {
 protected:
  static bool right_of_two(const AcGePoint3d& p) { return p.x > 2; }
  void expect_stretched(const std::string& kind, const std::string& before,
                        const std::string& after) {
    SCOPED_TRACE(kind);
    given(drawing_of(entity(kind, before)));
    EXPECT_EQ(cad::stretch_object(id(0x100), {0, 10, 0}, right_of_two), Acad::eOk);
    EXPECT_EQ(tags_of(0x100), after);
  }
};

TEST_F(Stretch, OnlyChosenPointsMove) {
  expect_stretched("LINE", "100 AcDbLine\n10 1.0\n20 2.0\n30 0.0\n11 4.0\n21 6.0\n31 0.0\n",
                   "100 AcDbLine\n10 1.0\n20 2.0\n30 0.0\n11 4.0\n21 16.0\n31 0.0\n");
  expect_stretched("LWPOLYLINE",
                   "100 AcDbPolyline\n90 2\n70 0\n10 1.0\n20 2.0\n42 0.25\n10 3.0\n20 2.0\n",
                   "100 AcDbPolyline\n90 2\n70 0\n10 1.0\n20 2.0\n42 0.25\n10 3.0\n20 12.0\n");
  expect_stretched("CIRCLE", "100 AcDbCircle\n10 1.0\n20 0.0\n30 0.0\n40 5.0\n",
                   "100 AcDbCircle\n10 1.0\n20 0.0\n30 0.0\n40 5.0\n");
  expect_stretched("CIRCLE", "100 AcDbCircle\n10 3.0\n20 0.0\n30 0.0\n40 5.0\n",
                   "100 AcDbCircle\n10 3.0\n20 10.0\n30 0.0\n40 5.0\n");
}

TEST_F(Stretch, AnArcKeepsTheAngleItTurnsThrough) {
  // Half a circle from (4, 0) to (0, 0) about (2, 0); its start goes to (4, 10).
  given(drawing_of(entity(
      "ARC", "100 AcDbCircle\n10 2.0\n20 0.0\n30 0.0\n40 2.0\n100 AcDbArc\n50 0.0\n51 180.0\n")));
  EXPECT_EQ(cad::stretch_object(id(0x100), {0, 10, 0}, right_of_two), Acad::eOk);
  const std::string tags = tags_of(0x100);
  EXPECT_THAT(tags, testing::HasSubstr("20 5.0\n30 0.0\n40 5.38516480713450"));
}

// A new text is turned by its values, one of a drawing by its tags

TEST(NewTexts, AreTurnedAsThoseOfADrawingAre) {
  for (const double angle : {0.5, 3.14159265358979, -2.0}) {
    AcDbDatabase drawing;
    acdbHostApplicationServices()->setWorkingDatabase(&drawing);
    const AcGeMatrix3d map = AcGeMatrix3d::rotation(angle, AcGeVector3d::kZAxis, {7, -3, 2});
    AcDbObjectId ids[2];
    for (const bool first : {false, true}) {
      auto* text = new AcDbText({1, 2, 3}, L"abc", AcDbObjectId(), 2, 0.25);
      text->setHorizontalMode(AcDb::kTextRight);
      text->setAlignmentPoint({5, 6, 3});
      if (first) {
        EXPECT_EQ(text->transformBy(map), Acad::eOk);
      }
      EXPECT_EQ(ArxDbgUtils::addToCurrentSpace(text), Acad::eOk);
      ids[first] = text->objectId();
      text->close();
      if (!first) {
        EXPECT_EQ(cad::transform_object(ids[0], map), Acad::eOk);
      }
    }
    AcDbText* both[2] = {};
    for (const int i : {0, 1})
      ASSERT_EQ(acdbOpenObject(both[i], ids[i], AcDb::kForRead), Acad::eOk);
    EXPECT_LT(both[0]->position().distanceTo(both[1]->position()), 1e-9);
    EXPECT_LT(both[0]->alignmentPoint().distanceTo(both[1]->alignmentPoint()), 1e-9);
    EXPECT_NEAR(both[0]->rotation(), both[1]->rotation(), 1e-9);
    for (AcDbText* text : both) text->close();
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
  }
}

}  // namespace
