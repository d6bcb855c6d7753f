#include "host/db/extents.h"

#include <gmock/gmock.h>

#include <random>

#include "host/db/entity_shape.h"
#include "host/db/text_box.h"
#include "host/geometry/plan_area.h"
#include "tests/host/db/little.h"
#include "tests/host/db/plan.h"
#include "tests/host/geometry/near.h"

namespace {

std::string entity(std::string_view kind, std::string_view part, std::string_view tags) {
  return "0 " + std::string(kind) + "\n100 AcDbEntity\n8 0\n100 " + std::string(part) + "\n" +
         std::string(tags);
}
std::string insert(std::string_view tags) { return entity("INSERT", "AcDbBlockReference", tags); }
const std::string kCircle = entity("CIRCLE", "AcDbCircle", "10 2\n20 0\n30 0\n40 1\n");
const std::string kLine = entity("LINE", "AcDbLine", "10 0\n20 0\n30 0\n11 4\n21 1\n31 0\n");

class Extents : public DrawingTest {
 protected:
  /// Of the first entity.
  std::optional<AcDbExtents> box(std::string_view entities, std::string_view blocks = {}) {
    given(little_drawing(entities, blocks));
    AcDbExtents found;
    if (!cad::entity_extents(database().first_entity(), found)) return std::nullopt;
    return found;
  }
  void expect_box(const std::optional<AcDbExtents>& found, AcGePoint3d min, AcGePoint3d max) {
    ASSERT_TRUE(found);
    EXPECT_THAT(found->minPoint(), Is(min.x, min.y, min.z));
    EXPECT_THAT(found->maxPoint(), Is(max.x, max.y, max.z));
  }
};

TEST_F(Extents, OfCurvesArePrecise) {
  expect_box(box(kCircle), {1, -1, 0}, {3, 1, 0});
  expect_box(box(entity("ARC", "AcDbCircle", "10 0\n20 0\n30 0\n40 2\n50 45\n51 135\n")),
             {-std::sqrt(2), std::sqrt(2), 0}, {std::sqrt(2), 2, 0});
}

TEST_F(Extents, OfPointsAndFilledAreas) {
  expect_box(box(entity("POINT", "AcDbPoint", "10 1\n20 2\n30 3\n")), {1, 2, 3}, {1, 2, 3});
  expect_box(
      box(entity("SOLID", "AcDbTrace",
                 "10 0\n20 0\n30 0\n11 2\n21 0\n31 0\n12 0\n22 1\n32 0\n13 2\n23 1\n33 0\n")),
      {0, 0, 0}, {2, 1, 0});
  expect_box(
      box(entity("3DFACE", "AcDbFace",
                 "10 0\n20 0\n30 5\n11 2\n21 0\n31 0\n12 2\n22 1\n32 0\n13 2\n23 1\n33 0\n")),
      {0, 0, 0}, {2, 1, 5});
}

TEST_F(Extents, OfHatchesAreThoseOfTheirPaths) {
  expect_box(box(entity("HATCH", "AcDbHatch",
                        "10 0\n20 0\n30 3\n210 0\n220 0\n230 1\n2 SOLID\n70 1\n71 0\n91 2\n"
                        "92 2\n72 1\n73 1\n93 2\n10 0\n20 0\n42 1\n10 4\n20 0\n42 0\n97 0\n"
                        "92 1\n93 2\n72 1\n10 5\n20 5\n11 6\n21 7\n"
                        "72 2\n10 6\n20 7\n40 1\n50 0\n51 90\n73 0\n97 0\n"
                        "75 1\n76 1\n98 1\n10 99\n20 99\n")),
             {0, -2, 3}, {7, 7, 3});
}

TEST_F(Extents, OfBlockReferencesAreThoseOfTheirMappedBlocks) {
  const std::string blocks = block("B", kCircle + kLine, "10 1\n20 0\n30 0\n");
  expect_box(box(insert("2 b\n10 10\n20 10\n30 0\n"), blocks), {9, 9, 0}, {13, 11, 0});
  expect_box(box(insert("2 B\n10 10\n20 10\n30 0\n41 2\n42 -1\n"), blocks), {8, 9, 0}, {16, 11, 0});
  expect_box(box(insert("2 B\n10 10\n20 10\n30 0\n50 90\n"), blocks), {9, 9, 0}, {11, 13, 0});
  // Turned by 45 degrees the circle's box is still its own, not the turned box.
  const auto turned = box(insert("2 C\n10 0\n20 0\n30 0\n50 45\n"),
                          block("C", entity("CIRCLE", "AcDbCircle", "10 0\n20 0\n30 0\n40 1\n")));
  expect_box(turned, {-1, -1, 0}, {1, 1, 0});
}

TEST_F(Extents, OfArraysReachToTheLastRow) {
  const std::string blocks = block("B", kCircle);
  expect_box(box(insert("2 B\n10 0\n20 0\n30 0\n70 3\n71 2\n44 10\n45 -5\n"), blocks), {1, -6, 0},
             {23, 1, 0});
  expect_box(box(insert("2 B\n10 0\n20 0\n30 0\n70 32767\n71 32767\n44 1\n45 1\n"), blocks),
             {1, -1, 0}, {32769, 32767, 0});
}

TEST_F(Extents, OfNestedReferencesGoThrough) {
  const std::string blocks =
      block("IN", kCircle) + block("OUT", insert("2 IN\n10 10\n20 0\n30 0\n50 90\n"));
  expect_box(box(insert("2 OUT\n10 0\n20 0\n30 0\n41 2\n42 2\n43 2\n"), blocks), {18, 2, 0},
             {22, 6, 0});
}

TEST_F(Extents, OfAReferenceWithAttributesHoldTheirTexts) {
  expect_box(box(insert("2 B\n10 0\n20 0\n30 0\n66 1\n") +
                     entity("ATTRIB", "AcDbText", "10 100\n20 0\n30 0\n40 2.1\n1 HH\n70 0\n") +
                     entity("ATTRIB", "AcDbText", "10 500\n20 0\n30 0\n40 2.1\n1 HH\n70 1\n") +
                     "0 SEQEND\n100 AcDbEntity\n8 0\n",
                 block("B", kCircle + entity("ATTDEF", "AcDbText",
                                             "10 900\n20 0\n30 0\n40 1\n1 0\n2 T\n70 0\n"))),
             {1, -1, 0}, {100 + cad::line_box(L"HH", 2.1).right, 2.1, 0});
}

TEST_F(Extents, OfBlocksThatContainThemselvesEnd) {
  const std::string loop = block("A", kCircle + insert("2 B\n10 5\n20 0\n30 0\n")) +
                           block("B", insert("2 A\n10 5\n20 0\n30 0\n50 30\n") + kLine);
  expect_box(box(insert("2 A\n10 0\n20 0\n30 0\n"), loop), {1, -1, 0}, {9, 1, 0});
}

TEST_F(Extents, OfBlocksThatMultiplyEnd) {
  // Seven levels of eight turned copies each: two million circles.
  std::string blocks = block("L0", kCircle);
  for (int level = 1; level <= 7; ++level) {
    std::string eight;
    for (int i = 0; i < 8; ++i)
      eight += insert("2 L" + std::to_string(level - 1) + "\n10 " + std::to_string(i) +
                      "\n20 0\n30 0\n50 30\n");
    blocks += block("L" + std::to_string(level), eight);
  }
  EXPECT_TRUE(box(insert("2 L7\n10 0\n20 0\n30 0\n50 10\n"), blocks));
}

TEST_F(Extents, OfADimensionAreThoseOfItsBlock) {
  expect_box(
      box(entity("DIMENSION", "AcDbDimension", "2 *D1\n10 0\n20 0\n30 0\n"), block("*D1", kLine)),
      {0, 0, 0}, {4, 1, 0});
}

TEST_F(Extents, OfAnImageFollowItsClip) {
  const std::string place =
      "10 0\n20 0\n30 0\n11 0.1\n21 0\n31 0\n12 0\n22 0.1\n32 0\n13 100\n23 50\n";
  expect_box(box(entity("IMAGE", "AcDbRasterImage", place)), {0, 0, 0}, {10, 5, 0});
  expect_box(box(entity("IMAGE", "AcDbRasterImage",
                        place + "280 1\n71 1\n91 2\n14 -0.5\n24 -0.5\n14 9.5\n24 9.5\n")),
             {0, 4, 0}, {1, 5, 0});
}

TEST_F(Extents, OfUnknownKindsAreUnknown) {
  EXPECT_FALSE(box(entity("3DSOLID", "AcDbModelerGeometry", "70 1\n")));
  EXPECT_FALSE(box(entity("XLINE", "AcDbXline", "10 0\n20 0\n30 0\n11 1\n21 0\n31 0\n")));
  EXPECT_FALSE(box(insert("2 NONE\n10 0\n20 0\n30 0\n")));
  EXPECT_FALSE(box(insert("2 EMPTY\n10 0\n20 0\n30 0\n"), block("EMPTY", "")));
}

TEST_F(Extents, OfMeshesReachAllVertices) {
  std::string mesh = entity("POLYLINE", "AcDbPolygonMesh", "66 1\n70 16\n71 2\n72 2\n");
  for (const char* place :
       {"10 0\n20 0\n30 0\n", "10 5\n20 0\n30 0\n", "10 0\n20 5\n30 1\n", "10 5\n20 6\n30 0\n"})
    mesh += entity("VERTEX", "AcDbPolygonMeshVertex", std::string(place) + "70 64\n");
  expect_box(box(mesh + "0 SEQEND\n100 AcDbEntity\n8 0\n"), {0, 0, 0}, {5, 6, 1});
}

TEST_F(Extents, OfDamagedEntitiesEnd) {
  // Any groups with any numbers: whatever comes out, nothing crashes and everything ends.
  constexpr const char* kKinds[] = {
      "LINE",  "ARC",    "CIRCLE", "ELLIPSE",  "LWPOLYLINE", "SPLINE",  "LEADER", "TEXT",
      "MTEXT", "ATTDEF", "HATCH",  "SOLID",    "3DFACE",     "INSERT",  "IMAGE",  "WIPEOUT",
      "MLINE", "POINT",  "XLINE",  "VIEWPORT", "DIMENSION",  "POLYLINE"};
  constexpr const char* kNumbers[] = {"0", "1",   "-1",  "1e308", "-1e308", "1e-320",
                                      "3", "nan", "inf", "x",     "360",    "0.5"};
  constexpr const char* kCounts[] = {"0", "1", "2", "3", "-5", "32767", "16", "64", "8"};
  constexpr int kReals[] = {10, 20, 30, 11, 21, 31, 12, 22, 13,  23,  14,  24,
                            40, 41, 42, 43, 44, 45, 50, 51, 210, 220, 230, 38};
  constexpr int kIntegers[] = {70, 71, 72, 73, 74, 75, 91, 92, 93, 94, 95, 96, 97};
  const cad::PlanArea window({{0, 0}, {2, 0}, {1, 3}});
  std::mt19937 random(7);
  const auto one_of = [&](const auto& choices) { return choices[random() % std::size(choices)]; };
  for (int round = 0; round < 150; ++round) {
    std::string note;
    for (const char* kind : kKinds) {
      note += std::string("0 ") + kind + "\n8 0\n1 a%%\\H1e9;{\n2 B\n";
      for (int i = static_cast<int>(random() % 30); i > 0; --i)
        note += random() % 4 ? std::to_string(one_of(kReals)) + " " + one_of(kNumbers) + "\n"
                             : std::to_string(one_of(kIntegers)) + " " + one_of(kCounts) + "\n";
    }
    given(little_drawing(note, block("B", kCircle + insert("2 B\n"))));
    cad::EntityShapes shapes;
    for (AcDbObjectId entity = database().first_entity(); !entity.isNull();
         entity = database().next_entity(entity)) {
      AcDbExtents found;
      shapes.extents(entity, found);
      if (const auto curve = cad::curve_of(entity)) {
        curve->nearest({1, 2, 3}, true);
        curve->length();
        curve->area();
        curve->param_at_distance(5);
        curve->plane_normal();
        window.touches(*curve);
        window.holds(*curve);
      }
    }
  }
}

TEST_F(Extents, ArraysAreVisitedCellByCellWithTheirPath) {
  given(little_drawing(insert("2 B\n10 0\n20 0\n30 0\n70 2\n71 2\n44 10\n45 10\n"),
                       block("B", kCircle)));
  cad::EntityShapes shapes;
  std::vector<AcGePoint3d> centers;
  const AcDbObjectId reference = database().first_entity();
  shapes.visit(reference, [&](const cad::EntityShapes::Visit& visit) {
    EXPECT_EQ(visit.path.size(), 1U);
    EXPECT_EQ(visit.path[0], reference);
    centers.push_back(visit.map * AcGePoint3d(2, 0, 0));
    return true;
  });
  ASSERT_EQ(centers.size(), 4U);
  EXPECT_THAT(centers[3], Is(12, 10, 0));
}

}  // namespace
