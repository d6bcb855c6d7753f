#include "host/gi/entity_drawer.h"

#include <gmock/gmock.h>

#include "host/db/database.h"
#include "tests/host/gi/drawing_note.h"
#include "tests/host/gi/recorded_draw.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class EntityDrawing : public testing::Test {
 protected:
  void draw(const DrawingNote& note, std::size_t most = 1000) {
    ASSERT_TRUE(database_.read_bytes(note.bytes(), "note"));
    cad::EntityDrawer drawer(draw_, most);
    for (AcDbObjectId id = database_.first_entity(); !id.isNull(); id = database_.next_entity(id)) {
      if (!database_.drawing().is_sub_entity(*id.stub())) drawer.draw(id);
    }
    gaps_ = drawer.gaps();
  }
  std::vector<int> colors() const {
    std::vector<int> found;
    for (const auto& call : draw_.calls) found.push_back(call.color);
    return found;
  }

  AcDbDatabase database_{false};
  RecordedDraw draw_;
  cad::DrawingGaps gaps_;
};

std::string line(std::string_view layer, std::string_view common = {}) {
  return DrawingNote::record("LINE", line_tags(0, 0, 1, 0), layer, common);
}

TEST_F(EntityDrawing, EntitiesHaveTheColorsOfTheirLayers) {
  draw(DrawingNote()
           .entity("LINE", line_tags(0, 0, 1, 0), "RED")
           .entity("LINE", line_tags(0, 0, 1, 0), "GREEN")
           .entity("LINE", line_tags(0, 0, 1, 0), "GREEN", "62 6\n"));
  EXPECT_THAT(colors(), ElementsAre(1, 3, 6));
}

TEST_F(EntityDrawing, HiddenLayersAndEntitiesAreLeftOut) {
  draw(DrawingNote()
           .entity("LINE", line_tags(0, 0, 1, 0), "OFF")
           .entity("LINE", line_tags(0, 0, 1, 0), "FROZEN")
           .entity("LINE", line_tags(0, 0, 1, 0), "SCREEN")
           .entity("LINE", line_tags(0, 0, 1, 0), "0", "60 1\n"));
  EXPECT_THAT(draw_.calls, IsEmpty());
  EXPECT_TRUE(gaps_.empty());
}

TEST_F(EntityDrawing, BlockContentsInheritColorAndLayer) {
  draw(DrawingNote()
           .block("B", line("0") + line("0", "62 0\n") + line("GREEN") + line("GREEN", "62 0\n"))
           .entity("INSERT", "2 B\n" + point_tags(10, 0, 0), "RED", "62 6\n"));
  EXPECT_THAT(colors(), ElementsAre(1, 6, 3, 6));
}

TEST_F(EntityDrawing, ByBlockGoesOnThroughNestedBlocks) {
  draw(DrawingNote()
           .block("INNER", line("0", "62 0\n"))
           .block("OUTER",
                  DrawingNote::record("INSERT", "2 INNER\n" + point_tags(10, 0, 0), "0", "62 0\n"))
           .entity("INSERT", "2 OUTER\n" + point_tags(10, 0, 0), "RED"));
  EXPECT_THAT(colors(), ElementsAre(1));
}

TEST_F(EntityDrawing, AReferenceOnALayerThatIsOffStillShowsContentsOnOtherLayers) {
  draw(DrawingNote()
           .block("B", line("0") + line("RED"))
           .entity("INSERT", "2 B\n" + point_tags(10, 0, 0), "OFF"));
  EXPECT_THAT(colors(), ElementsAre(1));
}

TEST_F(EntityDrawing, AReferenceOnAFrozenLayerShowsNothing) {
  draw(DrawingNote()
           .block("B", line("0") + line("RED"))
           .entity("INSERT", "2 B\n" + point_tags(10, 0, 0), "FROZEN"));
  EXPECT_THAT(draw_.calls, IsEmpty());
}

TEST_F(EntityDrawing, AnArrayRepeatsTheBlockInRowsAndColumns) {
  draw(DrawingNote()
           .block("B", line("0"))
           .entity("INSERT",
                   "2 B\n" + point_tags(10, 0, 0) + "50 90.0\n70 3\n71 2\n44 10.0\n45 100.0\n"));
  ASSERT_THAT(draw_.calls, SizeIs(6));
  EXPECT_TRUE(draw_.calls[1].points[0].isEqualTo({0, 10, 0}));
  EXPECT_TRUE(draw_.calls[3].points[0].isEqualTo({-100, 0, 0}));
}

TEST_F(EntityDrawing, AMirroredNormalMirrorsTheBlock) {
  draw(DrawingNote()
           .block("B", DrawingNote::record("LINE", line_tags(0, 0, 1, 2)))
           .entity("INSERT", "2 B\n" + point_tags(10, 5, 0) + point_tags(210, 0, 0, -1)));
  EXPECT_TRUE(draw_.calls[0].points[0].isEqualTo({-5, 0, 0}));
  EXPECT_TRUE(draw_.calls[0].points[1].isEqualTo({-6, 2, 0}));
}

TEST_F(EntityDrawing, ABlockThatContainsItselfIsCutAndCounted) {
  draw(DrawingNote()
           .block("B", line("0") + DrawingNote::record("INSERT", "2 B\n" + point_tags(10, 1, 0)))
           .entity("INSERT", "2 B\n" + point_tags(10, 0, 0)));
  EXPECT_THAT(draw_.calls, SizeIs(1));
  EXPECT_EQ(gaps_.cycles, 1u);
}

TEST_F(EntityDrawing, BlocksThatMultiplyBeyondMeasureComeToAnEnd) {
  DrawingNote note;
  note.block("B0", line("0"));
  for (int i = 1; i <= 12; ++i) {
    const std::string inner = "2 B" + std::to_string(i - 1) + "\n" + point_tags(10, 0, 0);
    note.block("B" + std::to_string(i),
               DrawingNote::record("INSERT", inner + "70 30000\n71 30000\n44 1.0\n45 1.0\n"));
  }
  note.entity("INSERT", "2 B12\n" + point_tags(10, 0, 0));
  draw(note, 5000);
  EXPECT_GT(gaps_.too_many, 0u);
  EXPECT_LE(draw_.calls.size(), 5000u);
}

TEST_F(EntityDrawing, AReferenceToNoBlockIsCounted) {
  draw(DrawingNote().entity("INSERT", "2 LOST\n" + point_tags(10, 0, 0)));
  EXPECT_EQ(gaps_.missing_blocks, 1u);
}

TEST_F(EntityDrawing, KindsThatAreNotDrawnAreCountedByName) {
  draw(DrawingNote()
           .block("B", DrawingNote::record("ACAD_PROXY_ENTITY", ""))
           .entity("ACAD_PROXY_ENTITY", "")
           .entity("INSERT", "2 B\n" + point_tags(10, 0, 0))
           .entity("3DSOLID", ""));
  EXPECT_THAT(gaps_.kinds,
              ElementsAre(testing::Pair("3DSOLID", 1u), testing::Pair("ACAD_PROXY_ENTITY", 2u)));
}

constexpr char kAttribute[] = "40 1.0\n1 W-7\n2 NUMBER\n";

TEST_F(EntityDrawing, AttributesAreShownAndTheirDefinitionsNot) {
  const std::string attribute = point_tags(10, 1, 2) + kAttribute;
  draw(DrawingNote()
           .block("B", line("0") + DrawingNote::record("ATTDEF", attribute + "70 0\n"))
           .entity("INSERT", "66 1\n2 B\n" + point_tags(10, 0, 0), "RED")
           .entity("ATTRIB", attribute + "70 0\n", "GREEN")
           .entity("ATTRIB", attribute + "70 1\n", "GREEN")
           .entity("SEQEND", ""));
  EXPECT_THAT(draw_.kinds(), ElementsAre("polyline", "text"));
  EXPECT_EQ(draw_.calls[1].text, L"W-7");
  EXPECT_EQ(draw_.calls[1].color, 3);
}

TEST_F(EntityDrawing, AttmodeShowsAllAttributesOrNone) {
  for (const auto& [mode, count] : {std::pair("0", 0u), std::pair("2", 1u)}) {
    draw_.calls.clear();
    AcDbDatabase database(false);
    DrawingNote note;
    note.header(std::string("9 $ATTMODE\n70 ") + mode + "\n")
        .block("B", "")
        .entity("INSERT", "66 1\n2 B\n" + point_tags(10, 0, 0))
        .entity("ATTRIB", point_tags(10, 0, 0) + kAttribute + "70 1\n")
        .entity("SEQEND", "");
    ASSERT_TRUE(database.read_bytes(note.bytes(), "note"));
    cad::EntityDrawer(draw_).draw(database.first_entity());
    EXPECT_THAT(draw_.calls, SizeIs(count)) << mode;
  }
}

TEST_F(EntityDrawing, ADimensionIsDrawnByItsBlock) {
  draw(DrawingNote()
           .block("*D1", DrawingNote::record("LINE", line_tags(3, 4, 8, 4)))
           .entity("DIMENSION", "2 *D1\n" + point_tags(10, 99, 99) + point_tags(11, 0, 0)));
  EXPECT_THAT(draw_.calls[0].points, ElementsAre(AcGePoint3d(3, 4, 0), AcGePoint3d(8, 4, 0)));
}

TEST_F(EntityDrawing, ALeaderEndsInAnArrowWhereThereIsRoom) {
  const std::string leader = "71 1\n76 2\n" + point_tags(10, 0, 0) + point_tags(10, 10, 0);
  draw(DrawingNote().entity("LEADER", leader).entity("LEADER", "71 0\n" + leader.substr(5)));
  EXPECT_THAT(draw_.kinds(), ElementsAre("polyline", "polygon", "polyline"));
  EXPECT_THAT(draw_.calls[1].points, SizeIs(3));
}

TEST_F(EntityDrawing, AMultileaderIsItsLinesItsArrowAndItsText) {
  const std::string context =
      "100 AcDbMLeader\n270 2\n300 CONTEXT_DATA{\n40 1.0\n" + point_tags(10, 0, 0) +
      "41 2.0\n140 1.5\n290 1\n304 DN300\\PL=20\n" + point_tags(11, 0, 0, 1) +
      point_tags(12, 31, 11) + point_tags(13, 1, 0) +
      "42 0.0\n43 0.0\n45 1.0\n171 1\n296 0\n302 LEADER{\n" + point_tags(10, 22, 10) +
      point_tags(11, 1, 0) + "40 8.0\n304 LEADER_LINE{\n" + point_tags(10, 2, -10) +
      "305 }\n303 }\n301 }\n170 1\n291 1\n";
  draw(DrawingNote().entity("MULTILEADER", context, "RED"));
  ASSERT_THAT(draw_.kinds(), ElementsAre("polyline", "polygon", "text", "text"));
  EXPECT_THAT(draw_.calls[0].points,
              ElementsAre(AcGePoint3d(2, -10, 0), AcGePoint3d(22, 10, 0), AcGePoint3d(30, 10, 0)));
  EXPECT_EQ(draw_.calls[1].points[0], AcGePoint3d(2, -10, 0));
  EXPECT_EQ(draw_.calls[2].text, L"DN300");
  EXPECT_NEAR(draw_.calls[2].points[0].y, 9.0, 1e-6);
}

TEST_F(EntityDrawing, AHatchIsFilledInItsColor) {
  const std::string square =
      "91 1\n92 2\n72 0\n73 1\n93 4\n10 0\n20 0\n10 4\n20 0\n10 4\n20 4\n10 0\n20 4\n97 0\n";
  draw(DrawingNote().entity(
      "HATCH", point_tags(10, 0, 0) + "2 SOLID\n70 1\n71 0\n" + square + "75 0\n76 1\n", "RED"));
  ASSERT_THAT(draw_.kinds(), ElementsAre("polygon"));
  EXPECT_TRUE(draw_.calls[0].filled);
  EXPECT_EQ(draw_.calls[0].color, 1);
}

TEST_F(EntityDrawing, AHatchPatternIsDrawnAsLines) {
  const std::string square =
      "91 1\n92 2\n72 0\n73 1\n93 4\n10 0\n20 0\n10 4\n20 0\n10 4\n20 4\n10 0\n20 4\n97 0\n";
  draw(DrawingNote().entity(
      "HATCH", point_tags(10, 0, 0) + "2 LINES\n70 0\n71 0\n" + square +
                   "75 0\n76 1\n52 0.0\n41 1.0\n77 0\n78 1\n53 0.0\n43 0.0\n44 0.5\n45 0.0\n46 "
                   "1.0\n79 0\n98 0\n"));
  ASSERT_THAT(draw_.calls, SizeIs(4));
  EXPECT_THAT(draw_.calls[0].points, ElementsAre(AcGePoint3d(0, 0.5, 0), AcGePoint3d(4, 0.5, 0)));
}

TEST_F(EntityDrawing, AParagraphMayBeFilledAndFramed) {
  draw(DrawingNote().entity(
      "MTEXT", point_tags(10, 0, 0) + "40 1.0\n71 7\n1 HH\n90 17\n63 2\n45 1.5\n", "RED"));
  ASSERT_THAT(draw_.kinds(), ElementsAre("polygon", "polyline", "text"));
  EXPECT_THAT(colors(), ElementsAre(2, 1, 1));
  EXPECT_TRUE(draw_.calls[0].points[0].isEqualTo({-0.5, -0.5, 0}));
  EXPECT_NEAR(draw_.calls[0].points[2].y, 1.5, 1e-9);
}

TEST_F(EntityDrawing, ColorsInAParagraphEndWithIt) {
  draw(DrawingNote()
           .entity("MTEXT", point_tags(10, 0, 0) + "40 1.0\n71 1\n1 a{\\C5;b}c\n", "RED")
           .entity("LINE", line_tags(0, 0, 1, 0), "GREEN"));
  EXPECT_THAT(colors(), ElementsAre(1, 5, 1, 3));
}

}  // namespace
