#include "host/gi/world_draw.h"

#include <gmock/gmock.h>

#include <cmath>
#include <memory>
#include <numbers>

#include "host/db/block_reference.h"
#include "host/db/circle.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/line.h"
#include "host/db/open.h"
#include "host/db/polyline.h"
#include "host/db/text.h"
#include "tests/host/db/shapes.h"
#include "tests/host/gi/drawing_note.h"
#include "tests/host/gi/recorded_draw.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kClose = 1e-9;

class WorldDraw : public testing::Test {
 protected:
  ~WorldDraw() override { acdbHostApplicationServices()->setWorkingDatabase(nullptr); }

  void given(const DrawingNote& note) {
    database_ = std::make_unique<AcDbDatabase>(false);
    ASSERT_TRUE(database_->read_bytes(note.bytes(), "note"));
    acdbHostApplicationServices()->setWorkingDatabase(database_.get());
  }
  /// Of the first entity of the drawing.
  bool draw_first() {
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, database_->first_entity(), AcDb::kForRead), Acad::eOk);
    const bool drawn = entity->worldDraw(&draw_);
    entity->close();
    return drawn;
  }
  const RecordedDraw::Call& only_call() {
    EXPECT_THAT(draw_.calls, SizeIs(1));
    if (draw_.calls.empty()) draw_.calls.emplace_back();
    return draw_.calls.front();
  }

  std::unique_ptr<AcDbDatabase> database_;
  RecordedDraw draw_;
};

TEST_F(WorldDraw, ALineOfNoDrawingIsDrawn) {
  AcDbLine line({1, 2, 0}, {3, 4, 0});
  EXPECT_TRUE(line.worldDraw(&draw_));
  EXPECT_EQ(only_call().what, "polyline");
  EXPECT_THAT(only_call().points, ElementsAre(AcGePoint3d(1, 2, 0), AcGePoint3d(3, 4, 0)));
}

TEST_F(WorldDraw, TheTraitsOfTheCallerAreLeftAlone) {
  given(DrawingNote().entity("LINE", line_tags(0, 0, 1, 1), "RED", "62 5\n"));
  draw_.subEntityTraits().setColor(42);
  EXPECT_TRUE(draw_first());
  EXPECT_EQ(only_call().color, 42);
}

TEST_F(WorldDraw, ACircleIsDrawnAsACircle) {
  given(DrawingNote().entity("CIRCLE", point_tags(10, 5, 6) + "40 2.5\n"));
  EXPECT_TRUE(draw_first());
  EXPECT_EQ(only_call().what, "circle");
  EXPECT_EQ(only_call().points.front(), AcGePoint3d(5, 6, 0));
  EXPECT_EQ(only_call().radius, 2.5);
}

TEST_F(WorldDraw, AnArcRunsFromItsStartThroughItsSweep) {
  given(DrawingNote().entity("ARC", point_tags(10, 0, 0) + "40 2.0\n50 90.0\n51 180.0\n"));
  EXPECT_TRUE(draw_first());
  EXPECT_EQ(only_call().what, "arc");
  EXPECT_NEAR(only_call().sweep, std::numbers::pi / 2, kClose);
  EXPECT_TRUE(only_call().points[1].isEqualTo({0, 2, 0}));
  EXPECT_TRUE(only_call().points[2].isEqualTo({-2, 0, 0}));
}

TEST_F(WorldDraw, ABulgeBecomesPointsOnItsArc) {
  AcDbPolyline polyline;
  polyline.addVertexAt(0, {0, 0}, 1.0);
  polyline.addVertexAt(1, {2, 0}, 1.0);
  polyline.addVertexAt(2, {0, 0});
  EXPECT_TRUE(polyline.worldDraw(&draw_));
  ASSERT_EQ(only_call().what, "polyline");
  ASSERT_GT(only_call().points.size(), 8u);
  for (const AcGePoint3d& p : only_call().points) EXPECT_NEAR(p.distanceTo({1, 0, 0}), 1.0, kClose);
  EXPECT_LT(only_call().points[only_call().points.size() / 4].y, -0.9);
}

TEST_F(WorldDraw, AWidePolylineIsFilledAreas) {
  AcDbPolyline polyline;
  polyline.addVertexAt(0, {0, 0});
  polyline.addVertexAt(1, {10, 0});
  polyline.setConstantWidth(2.0);
  EXPECT_TRUE(polyline.worldDraw(&draw_));
  EXPECT_EQ(only_call().what, "polygon");
  EXPECT_TRUE(only_call().filled);
  EXPECT_THAT(only_call().points, ElementsAre(AcGePoint3d(0, 1, 0), AcGePoint3d(10, 1, 0),
                                              AcGePoint3d(10, -1, 0), AcGePoint3d(0, -1, 0)));
  EXPECT_EQ(draw_.subEntityTraits().fillType(), kAcGiFillNever);
}

TEST_F(WorldDraw, ATaperingPolylineIsALineAndAWedge) {
  AcDbPolyline arrow;
  arrow.addVertexAt(0, {0, 0}, 0, 0, 0);
  arrow.addVertexAt(1, {7, 0}, 0, 1, 0);
  arrow.addVertexAt(2, {10, 0});
  EXPECT_TRUE(arrow.worldDraw(&draw_));
  ASSERT_THAT(draw_.kinds(), ElementsAre("polygon", "polyline"));
  EXPECT_THAT(draw_.calls[0].points, ElementsAre(AcGePoint3d(7, 0.5, 0), AcGePoint3d(10, 0, 0),
                                                 AcGePoint3d(10, 0, 0), AcGePoint3d(7, -0.5, 0)));
  EXPECT_THAT(draw_.calls[1].points, ElementsAre(AcGePoint3d(0, 0, 0), AcGePoint3d(7, 0, 0)));
}

TEST_F(WorldDraw, ATextOfNoDrawingStartsAtItsPositionHoweverItIsAligned) {
  AcDbText text({3, 4, 0}, L"DN300", AcDbObjectId(), 2.0, std::numbers::pi / 2);
  EXPECT_TRUE(text.worldDraw(&draw_));
  EXPECT_EQ(only_call().what, "text");
  EXPECT_EQ(only_call().text, L"DN300");
  EXPECT_EQ(only_call().radius, 2.0);
  EXPECT_EQ(only_call().points.front(), AcGePoint3d(3, 4, 0));
  EXPECT_NEAR(only_call().direction.y, 1.0, kClose);
}

TEST_F(WorldDraw, ATextOfADrawingStandsWhereItsAlignmentSays) {
  given(DrawingNote().entity(
      "TEXT", point_tags(10, 99, 99) + "40 2.0\n1 ABC\n72 2\n" + point_tags(11, 50, 10)));
  EXPECT_TRUE(draw_first());
  EXPECT_NEAR(only_call().points.front().y, 10.0, kClose);
  EXPECT_GT(only_call().points.front().x, 42.0);
  EXPECT_LT(only_call().points.front().x, 47.0);
}

TEST_F(WorldDraw, ATextTellsItsStyle) {
  DrawingNote note;
  note.style("2 HZ\n70 0\n40 0.0\n41 0.7\n50 0.0\n71 0\n42 2.5\n3 simplex.shx\n4 gbcbig.shx\n");
  note.entity("TEXT", point_tags(10, 0, 0) + "40 2.0\n1 ABC\n7 HZ\n41 0.8\n51 15.0\n");
  given(note);
  EXPECT_TRUE(draw_first());
  const AcGiTextStyle& style = only_call().style;
  EXPECT_STREQ(style.fileName(), L"simplex.shx");
  EXPECT_STREQ(style.bigFontFileName(), L"gbcbig.shx");
  EXPECT_EQ(style.xScale(), 0.8);
  EXPECT_NEAR(style.obliquingAngle(), 15 * std::numbers::pi / 180, kClose);
}

TEST_F(WorldDraw, AParagraphIsDrawnWordByWord) {
  given(DrawingNote().entity("MTEXT",
                             point_tags(10, 10, 20) + "40 2.0\n41 0.0\n71 1\n1 one\\Ptwo\n"));
  EXPECT_TRUE(draw_first());
  ASSERT_THAT(draw_.kinds(), ElementsAre("text", "text"));
  EXPECT_EQ(draw_.calls[0].text, L"one");
  EXPECT_EQ(draw_.calls[1].text, L"two");
  EXPECT_NEAR(draw_.calls[0].points[0].x, 10.0, 0.5);
  EXPECT_NEAR(draw_.calls[0].points[0].y, 18.0, 1e-6);
  EXPECT_LT(draw_.calls[1].points[0].y, 16.0);
}

TEST_F(WorldDraw, AReferenceShowsItsBlockScaledTurnedAndMoved) {
  DrawingNote note;
  note.block("WELL", DrawingNote::record("LINE", line_tags(1, 0, 2, 0)), "10 1\n20 0\n30 0\n");
  note.entity("INSERT", "2 WELL\n" + point_tags(10, 10, 20) + "41 3.0\n42 3.0\n43 3.0\n50 90.0\n");
  given(note);
  EXPECT_TRUE(draw_first());
  EXPECT_TRUE(only_call().points[0].isEqualTo({10, 20, 0}));
  EXPECT_TRUE(only_call().points[1].isEqualTo({10, 23, 0}));
}

TEST_F(WorldDraw, AReferenceOfNoDrawingFindsItsBlockInTheWorkingOne) {
  database_ = std::make_unique<AcDbDatabase>(false);
  ASSERT_TRUE(database_->read_bytes(drawing_of(""), "note"));
  acdbHostApplicationServices()->setWorkingDatabase(database_.get());
  AcDbObjectId block;
  ASSERT_EQ(database_->getAcDbObjectId(block, false, AcDbHandle(0x1A)), Acad::eOk);
  AcDbBlockReference loose({5, 5, 0}, block);
  EXPECT_TRUE(loose.worldDraw(&draw_));
  ASSERT_THAT(draw_.kinds(), ElementsAre("polyline", "circle"));
  EXPECT_THAT(draw_.calls[0].points, ElementsAre(AcGePoint3d(5, 5, 0), AcGePoint3d(7, 5, 0)));
  EXPECT_EQ(draw_.calls[1].points.front(), AcGePoint3d(6, 5, 0));
}

TEST_F(WorldDraw, ContentsByBlockHaveTheColourThatTheCallerSet) {
  DrawingNote note;
  note.block("WELL", DrawingNote::record("LINE", line_tags(0, 0, 2, 0), "0", "62 0\n") +
                         DrawingNote::record("LINE", line_tags(0, 1, 2, 1), "0", "62 3\n"));
  note.entity("INSERT", "2 WELL\n" + point_tags(10, 0, 0), "0", "62 5\n");
  given(note);
  draw_.subEntityTraits().setColor(42);
  EXPECT_TRUE(draw_first());
  ASSERT_THAT(draw_.calls, SizeIs(2));
  EXPECT_EQ(draw_.calls[0].color, 42);
  EXPECT_EQ(draw_.calls[1].color, 3);
}

TEST_F(WorldDraw, ContentsByBlockHaveTheReferencesColourWhenTheCallerSetNone) {
  DrawingNote note;
  note.block("WELL", DrawingNote::record("LINE", line_tags(0, 0, 2, 0), "0", "62 0\n"));
  note.entity("INSERT", "2 WELL\n" + point_tags(10, 0, 0), "0", "62 5\n");
  given(note);
  for (const Adesk::UInt16 none : {0, 256}) {
    draw_.calls.clear();
    draw_.subEntityTraits().setColor(none);
    EXPECT_TRUE(draw_first());
    EXPECT_EQ(only_call().color, 5);
  }
}

TEST_F(WorldDraw, AReferenceLeavesTheTraitsOfTheCallerAsTheyWere) {
  DrawingNote note;
  note.block("WELL", DrawingNote::record("LINE", line_tags(0, 0, 2, 0), "RED", "62 3\n370 50\n"));
  note.entity("INSERT", "2 WELL\n" + point_tags(10, 0, 0));
  given(note);
  AcGiSubEntityTraits& traits = draw_.subEntityTraits();
  const AcDbObjectId layer = database_->first_entity();  // any that is none of the contents'
  traits.setLayer(layer);
  traits.setColor(42);
  traits.setLineType(layer);
  traits.setLineTypeScale(7);
  traits.setLineWeight(static_cast<AcDb::LineWeight>(13));
  EXPECT_TRUE(draw_first());
  EXPECT_EQ(only_call().color, 3);
  EXPECT_EQ(traits.layerId(), layer);
  EXPECT_EQ(traits.color(), 42);
  EXPECT_EQ(traits.lineTypeId(), layer);
  EXPECT_EQ(traits.lineTypeScale(), 7);
  EXPECT_EQ(traits.lineWeight(), 13);
}

TEST_F(WorldDraw, AColouredWordLeavesTheColourOfTheCallerToTheNext) {
  given(DrawingNote().entity("MTEXT", point_tags(10, 0, 0) + "40 2.0\n71 1\n1 {\\C3;one} two\n"));
  draw_.subEntityTraits().setColor(42);
  EXPECT_TRUE(draw_first());
  ASSERT_THAT(draw_.calls, SizeIs(2));
  EXPECT_EQ(draw_.calls[0].color, 3);
  EXPECT_EQ(draw_.calls[1].color, 42);
  EXPECT_EQ(draw_.subEntityTraits().color(), 42);
}

TEST_F(WorldDraw, AKindThatIsNotDrawnSaysSo) {
  given(DrawingNote().entity("ACAD_PROXY_ENTITY", "90 498\n"));
  EXPECT_FALSE(draw_first());
  EXPECT_THAT(draw_.calls, IsEmpty());
}

TEST_F(WorldDraw, ASolidIsFilledRoundItsCorners) {
  given(DrawingNote().entity("SOLID", point_tags(10, 0, 0) + point_tags(11, 2, 0) +
                                          point_tags(12, 0, 1) + point_tags(13, 2, 1)));
  EXPECT_TRUE(draw_first());
  EXPECT_EQ(only_call().what, "polygon");
  EXPECT_THAT(only_call().points, ElementsAre(AcGePoint3d(0, 0, 0), AcGePoint3d(2, 0, 0),
                                              AcGePoint3d(2, 1, 0), AcGePoint3d(0, 1, 0)));
}

TEST_F(WorldDraw, LinesWithoutEndStayThat) {
  given(DrawingNote().entity("XLINE", point_tags(10, 1, 1) + point_tags(11, 0, 1)));
  EXPECT_TRUE(draw_first());
  EXPECT_EQ(only_call().what, "xline");
}

TEST_F(WorldDraw, NoWorldDrawIsNoDrawing) {
  AcDbLine line({1, 2, 0}, {3, 4, 0});
  EXPECT_FALSE(line.worldDraw(nullptr));
}

}  // namespace
