// Scale, text height, layers, colour: what a drawing object starts with and draws with.

#include <limits>

#include "tests/module/draw/draw_fixture.h"
#include "tests/module/draw/recording_draw.h"

namespace {

class DrawingContext : public WithDraw {};

TEST_F(DrawingContext, AScaleOfOneOrLessBecomes500) {
  for (const double scale : {1.0, 0.5, 0.0, -3.0, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(CDimDraw(scale, nullptr).PaperLongToCAD(1000.0), 500.0) << scale;
}

TEST_F(DrawingContext, AnyScaleAboveOneStays) {
  EXPECT_EQ(CDimDraw(1.5, nullptr).PaperLongToCAD(1000.0), 1.5);
  EXPECT_EQ(CDimDraw(2000, nullptr).PaperLongToCAD(1000.0), 2000.0);
}

TEST_F(DrawingContext, PaperMillimetresBecomeMetresAtScale) {
  const CDimDraw draw(500, nullptr);
  EXPECT_DOUBLE_EQ(draw.PaperLongToCAD(3.5), 1.75);
  EXPECT_DOUBLE_EQ(draw.TextHeight(), 1.75);
  EXPECT_EQ(draw.GetTextHeight(), 3.5);
}

TEST_F(DrawingContext, TheTextHeightCanBeSetOnPaper) {
  CDimDraw draw(1000, nullptr);
  draw.SetTextHeight(2.5);
  EXPECT_EQ(draw.GetTextHeight(), 2.5);
  EXPECT_DOUBLE_EQ(draw.TextHeight(), 2.5);
}

TEST_F(DrawingContext, ATextHeightThatIsNotSetIsToldAndIs3Point5) {
  given_settings("");
  EXPECT_EQ(CDimDraw(500, nullptr).GetTextHeight(), 3.5);
  EXPECT_EQ(printed, "\n 取文字字高设置失败");
  given_settings("[Drawing]\nTextHigh=large\n");
  EXPECT_EQ(CDimDraw(500, nullptr).GetTextHeight(), 3.5);
  EXPECT_EQ(printed, "\n 取文字字高设置失败\n 取文字字高设置失败");
}

TEST_F(DrawingContext, AConfiguredTextHeightIsTaken) {
  given_settings("[Drawing]\nTextHigh=2.5\n");
  EXPECT_EQ(CDimDraw(500, nullptr).GetTextHeight(), 2.5);
  EXPECT_EQ(printed, "");
}

// Layers

TEST_F(DrawingContext, ACurrentLayerThatIsOffIsTurnedOnAndTold) {
  const AcDbObjectId layer = given_layer(L"ZY-管线", true, false, false);
  make_current(L"ZY-管线");
  CDimDraw(500, nullptr);
  EXPECT_EQ(state(layer), "");
  EXPECT_EQ(printed,
            "\n当前图层ZY-管线被关闭,或锁定,将不能看到拖放效果,在命令退出时程序才能自动打开图层!!");
}

TEST_F(DrawingContext, ACurrentLayerThatIsLockedIsUnlockedAndTold) {
  const AcDbObjectId layer = given_layer(L"A", false, true, false);
  make_current(L"A");
  CDimDraw(500, nullptr);
  EXPECT_EQ(state(layer), "");
  EXPECT_THAT(printed, testing::HasSubstr("当前图层A被关闭"));
}

TEST_F(DrawingContext, ACurrentLayerThatIsFrozenStaysSo) {
  const AcDbObjectId layer = given_layer(L"A", false, false, true);
  make_current(L"A");
  CDimDraw(500, nullptr);
  EXPECT_EQ(state(layer), "f");
  EXPECT_EQ(printed, "");
}

TEST_F(DrawingContext, ThawingIsLeftOutWhenTheCurrentLayerIsTurnedOn) {
  const AcDbObjectId layer = given_layer(L"A", true, true, true);
  make_current(L"A");
  CDimDraw(500, nullptr);
  EXPECT_EQ(state(layer), "f");
}

TEST_F(DrawingContext, ACurrentLayerThatIsTheLabelsOwnIsMadeReadyWithoutAWord) {
  const AcDbObjectId layer = given_layer(L"A", true, true, true);
  make_current(L"A");
  CDimDraw(500, L"A");
  EXPECT_EQ(state(layer), "");
  EXPECT_EQ(printed, "");
}

TEST_F(DrawingContext, AFaultOfSettingsIsNoPartOfTheMessage) {
  given_layer(L"A", true, false, false);
  make_current(L"A");
  CGxData::Instance()->GetErr()->Set(L"an older fault");
  CDimDraw(500, nullptr);
  CGxData::Instance()->GetErr()->Set(L"");
  EXPECT_THAT(printed, testing::Not(testing::HasSubstr("older")));
}

TEST_F(DrawingContext, ACurrentLayerInOrderIsNotTouched) {
  const std::string untouched = database().save_bytes();
  CDimDraw(500, nullptr);
  EXPECT_EQ(database().save_bytes(), untouched);
  EXPECT_EQ(printed, "");
}

TEST_F(DrawingContext, APreviewLeavesTheCurrentLayerAlone) {
  const AcDbObjectId layer = given_layer(L"A", true, true, false);
  make_current(L"A");
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  EXPECT_EQ(state(layer), "ol");
  EXPECT_EQ(printed, "");
  EXPECT_EQ(draw.GetWorldDraw(), &world);
}

TEST_F(DrawingContext, TheLayerIsMadeReadyWhicheverConditionHolds) {
  for (const bool preview : {false, true}) {
    for (int bits = 0; bits < 8; ++bits) {
      const AcDbObjectId layer = given_layer(L"标注", bits & 1, bits & 2, bits & 4);
      RecordingDraw world;
      const CDimDraw draw = preview ? CDimDraw(500, &world, L"标注") : CDimDraw(500, L"标注");
      EXPECT_EQ(state(layer), "") << bits;
      EXPECT_EQ(draw.GetLayerName(), L"标注");
    }
  }
  EXPECT_EQ(printed, "");
}

TEST_F(DrawingContext, ALayerThatIsOpenElsewhereStaysAsItIs) {
  const AcDbObjectId id = given_layer(L"A", true, false, false);
  {
    const dim::Opened<AcDbLayerTableRecord> reader(id, AcDb::kForRead);
    CDimDraw draw(500, L"A");
    EXPECT_TRUE(reader->isOff());
    EXPECT_TRUE(draw.SetDrawLayer(L"A"));
  }
  EXPECT_EQ(state(id), "o");
  EXPECT_EQ(printed, "");
}

TEST_F(DrawingContext, AMissingLayerIsMadeInTheColourOfTheSettings) {
  given_settings("[Drawing]\nTextHigh=3.5\n[Layers]\nZY-*=3\n");
  CDimDraw draw(500, L"zy-标注");
  const AcDbObjectId line = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  const AcDbObjectId layer = reading<AcDbLine>(line)->layerId();
  EXPECT_EQ(reading<AcDbLayerTableRecord>(layer)->name(), L"zy-标注");
  EXPECT_EQ(reading<AcDbLayerTableRecord>(layer)->colorIndex(), 3);
  draw.SetDrawLayer(L"other");
  const AcDbObjectId other = reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1))->layerId();
  EXPECT_EQ(reading<AcDbLayerTableRecord>(other)->colorIndex(), 7);
}

TEST_F(DrawingContext, ALayerIsFoundWhateverItsLetterCase) {
  const AcDbObjectId layer = given_layer(L"Labels", false, false, false);
  CDimDraw draw(500, L"LABELS");
  EXPECT_EQ(reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1))->layerId(), layer);
}

TEST_F(DrawingContext, ANameThatIsNoLayersLeavesEntitiesOnTheCurrentOne) {
  CDimDraw draw(500, L"a/b*");
  EXPECT_EQ(draw.GetLayerName(), L"a/b*");
  const AcDbObjectId line = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_EQ(reading<AcDbLine>(line)->layerId(), database().clayer());
  EXPECT_EQ(printed, "");
}

TEST_F(DrawingContext, WithoutALayerEntitiesAreOnTheCurrentOne) {
  const AcDbObjectId current = given_layer(L"A", false, false, false);
  make_current(L"A");
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(draw.GetLayerName(), L"");
  EXPECT_EQ(reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1))->layerId(), current);
}

TEST_F(DrawingContext, AnotherLayerIsTakenAndMadeReady) {
  const AcDbObjectId layer = given_layer(L"B", true, true, true);
  CDimDraw draw(500, L"A");
  EXPECT_TRUE(draw.SetDrawLayer(L"B"));
  EXPECT_EQ(draw.GetLayerName(), L"B");
  EXPECT_EQ(state(layer), "");
  EXPECT_EQ(reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1))->layerId(), layer);
}

TEST_F(DrawingContext, AnEmptyLayerNameChangesNothing) {
  CDimDraw draw(500, L"A");
  EXPECT_FALSE(draw.SetDrawLayer(L""));
  EXPECT_EQ(draw.GetLayerName(), L"A");
  EXPECT_EQ(reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1))->layerId(),
            Gx::GetLayer(L"A"));
}

TEST_F(DrawingContext, EntitiesOnALayerThatWasLockedMeanwhileAreStillDrawn) {
  CDimDraw draw(500, L"A");
  given_layer(L"A", false, true, false);
  const AcDbObjectId line = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_EQ(reading<AcDbLine>(line)->layerId(), Gx::GetLayer(L"A"));
}

// Colour

TEST_F(DrawingContext, EntitiesAreByLayerAtFirst) {
  ASSERT_TRUE(database().set_header_variable("$CECOLOR", std::int64_t{5}));
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(reading<AcDbLine>(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1))->colorIndex(), 256)
      << "whatever the current colour";
}

TEST_F(DrawingContext, AColourHoldsForWhatIsDrawnFromThenOn) {
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(draw.SetDrawColor(1), 256);
  const AcDbObjectId red = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_EQ(draw.SetDrawColor(3), 1);
  const AcDbObjectId green = draw.DrawLine({0, 0, 0}, {1, 0, 0}, 0.5);
  EXPECT_EQ(reading<AcDbLine>(red)->colorIndex(), 1);
  EXPECT_EQ(reading<AcDbPolyline>(green)->colorIndex(), 3);
}

TEST_F(DrawingContext, ANewColourIsToldToThePreview) {
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  EXPECT_EQ(draw.SetDrawColor(2), 256);
  EXPECT_THAT(world.colors, testing::ElementsAre(2));
}

TEST_F(DrawingContext, TheSameColourTouchesNoTraits) {
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  EXPECT_EQ(draw.SetDrawColor(256), 256);
  draw.SetDrawColor(4);
  EXPECT_EQ(draw.SetDrawColor(4), 4);
  EXPECT_THAT(world.colors, testing::ElementsAre(4));
}

// The object

TEST_F(DrawingContext, ACopyTakesEverythingAndSharesTheWorldDraw) {
  RecordingDraw world;
  CDimDraw preview(1000, &world, L"A");
  const CDimDraw copy(preview);
  EXPECT_EQ(copy.GetWorldDraw(), &world);
  EXPECT_EQ(copy.GetLayerName(), L"A");
  EXPECT_EQ(copy.PaperLongToCAD(1.0), 1.0);

  CDimDraw draw(200, L"B");
  const AcDbObjectId line = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  draw.SetTextHeight(5);
  preview = draw;
  EXPECT_EQ(preview.GetWorldDraw(), nullptr);
  EXPECT_EQ(preview.GetTextHeight(), 5);
  ASSERT_EQ(preview.GetAllDimEntityId().length(), 1);
  EXPECT_EQ(preview.GetAllDimEntityId()[0], line);
  preview.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_EQ(draw.GetAllDimEntityId().length(), 1) << "its own list";
}

static_assert(std::has_virtual_destructor_v<CDimDraw>);

TEST_F(DrawingContext, DrawnEntitiesAreListedInTheirOrderUntilCleared) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId first = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  const AcDbObjectId second = draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, 1);
  const AcDbObjectId third = draw.Arrow({0, 0, 0}, {1, 0, 0});
  EXPECT_THAT(std::vector(draw.GetAllDimEntityId().begin(), draw.GetAllDimEntityId().end()),
              testing::ElementsAre(first, second, third));
  draw.ClearEntityIdArray();
  EXPECT_TRUE(draw.GetAllDimEntityId().isEmpty());
  EXPECT_EQ(entities(), 3u);
}

TEST_F(DrawingContext, WithoutADrawingNothingIsDrawn) {
  host.close(document);
  document = nullptr;
  CDimDraw draw(500, L"A");
  EXPECT_TRUE(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1).isNull());
  EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, -1).isNull());
  EXPECT_TRUE(draw.GetAllDimEntityId().isEmpty());
}

TEST_F(DrawingContext, NothingIsDrawnOfNoEntity) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.DrawEntity(nullptr, true).isNull());
  EXPECT_EQ(entities(), 0u);
}

TEST_F(DrawingContext, AnyEntityCanBeDrawn) {
  CDimDraw draw(500, L"A");
  draw.SetDrawColor(6);
  draw.SetMatrix(AcGeMatrix3d::translation({10, 0, 0}));
  const AcDbObjectId moved = draw.DrawEntity(new AcDbLine({0, 0, 0}, {1, 0, 0}), true);
  const AcDbObjectId still = draw.DrawEntity(new AcDbLine({0, 0, 0}, {1, 0, 0}), false);
  EXPECT_THAT(reading<AcDbLine>(moved)->startPoint(), Is(10, 0, 0));
  EXPECT_THAT(reading<AcDbLine>(still)->startPoint(), Is(0, 0, 0));
  EXPECT_EQ(reading<AcDbLine>(still)->colorIndex(), 6);
  EXPECT_EQ(reading<AcDbLine>(still)->layerId(), Gx::GetLayer(L"A"));
}

TEST_F(DrawingContext, LabelsGoToTheCurrentSpace) {
  ASSERT_TRUE(database().set_header_variable("$TILEMODE", std::int64_t{0}));
  CDimDraw draw(500, nullptr);
  const AcDbObjectId line = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_NE(reading<AcDbLine>(line)->blockId(), database().modelSpaceId());
  EXPECT_EQ(reading<AcDbLine>(line)->blockId(), database().currentSpaceId());
}

}  // namespace
