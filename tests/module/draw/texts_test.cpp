// Texts: size, alignment, where they begin.

#include <limits>

#include "tests/module/draw/draw_fixture.h"
#include "tests/module/draw/recording_draw.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class DrawnTexts : public WithDraw {
 protected:
  /// Where a text begins, seen from its alignment point: along its reading direction, and up.
  static AcGePoint3d start_of(AcDbObjectId id) {
    const auto text = reading<AcDbText>(id);
    const AcGeVector3d way = text->position() - text->alignmentPoint();
    AcGeVector3d x = AcGeVector3d::kXAxis, y = AcGeVector3d::kYAxis;
    x.rotateBy(text->rotation(), AcGeVector3d::kZAxis);
    y.rotateBy(text->rotation(), AcGeVector3d::kZAxis);
    return {way.dotProduct(x), way.dotProduct(y), way.z};
  }
  static double width_of(const wchar_t* text, double height, double factor) {
    double width = 0;
    EXPECT_TRUE(KT::GetTextWidth(text, height, width, 0, factor));
    return width;
  }
};

TEST_F(DrawnTexts, HoldWhatTheyAreGiven) {
  CDimDraw draw(500, L"ZY-标注");
  draw.SetDrawColor(2);
  const AcDbObjectId id = draw.DrawTextW(L"管径DN300", {10, 20, 3}, AcDb::kTextRight,
                                         AcDb::kTextBottom, kPi / 6, 2.5, 0.8);
  const auto text = reading<AcDbText>(id);
  EXPECT_EQ(taken(text->textString()), L"管径DN300");
  EXPECT_EQ(text->horizontalMode(), AcDb::kTextRight);
  EXPECT_EQ(text->verticalMode(), AcDb::kTextBottom);
  EXPECT_THAT(text->alignmentPoint(), Is(10, 20, 3));
  EXPECT_NEAR(text->rotation(), kPi / 6, 1e-12);
  EXPECT_EQ(text->height(), 2.5);
  EXPECT_EQ(text->widthFactor(), 0.8);
  EXPECT_EQ(text->layerId(), Gx::GetLayer(L"ZY-标注"));
  EXPECT_EQ(text->colorIndex(), 2);
  EXPECT_EQ(text->blockId(), database().modelSpaceId());
}

TEST_F(DrawnTexts, AHeightOfZeroOrLessIsTheConfiguredOneAtScale) {
  CDimDraw draw(500, nullptr);
  for (const double height : {0.0, -1.0}) {
    const AcDbObjectId id = draw.DrawMMText(L"a", {0, 0, 0}, 0, height, 1);
    EXPECT_DOUBLE_EQ(reading<AcDbText>(id)->height(), 1.75);
  }
  draw.SetTextHeight(7);
  EXPECT_DOUBLE_EQ(reading<AcDbText>(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, 1))->height(), 3.5);
}

TEST_F(DrawnTexts, AWidthFactorOfMinusOneIsTheConfiguredOne) {
  CDimDraw draw(500, nullptr);
  for (const double factor : {-1.0, -1.0005, -0.9995})
    EXPECT_EQ(reading<AcDbText>(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, factor))->widthFactor(), 0.7)
        << factor;
}

TEST_F(DrawnTexts, AWidthFactorBesideMinusOneIsTakenAsGiven) {
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(reading<AcDbText>(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, -1.01))->widthFactor(), -1.01);
  EXPECT_EQ(reading<AcDbText>(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, 0.9))->widthFactor(), 0.9);
}

TEST_F(DrawnTexts, TheWidthFactorFollowsTheSettingsWithTheNextDrawingObject) {
  CDimDraw first(500, nullptr);
  given_settings("[Drawing]\nTextHigh=3.5\nTextWidthFactor=0.5\n");
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(reading<AcDbText>(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, -1))->widthFactor(), 0.5);
  given_settings("[Drawing]\nTextHigh=3.5\nTextWidthFactor=none\n");
  CDimDraw plain(500, nullptr);
  EXPECT_EQ(reading<AcDbText>(plain.DrawMMText(L"a", {0, 0, 0}, 0, 0, -1))->widthFactor(), 1.0);
}

TEST_F(DrawnTexts, TheShorthandsAlignAsTheirNamesSay) {
  CDimDraw draw(500, nullptr);
  using Shorthand = AcDbObjectId (CDimDraw::*)(const CString&, AcGePoint3d, double, double, double);
  const struct {
    Shorthand draw;
    int horizontal, vertical;
  } rows[] = {{&CDimDraw::DrawLBText, 0, 1},
              {&CDimDraw::DrawRBText, 2, 1},
              {&CDimDraw::DrawMMText, 1, 2},
              {&CDimDraw::DrawMBText, 1, 1},
              {&CDimDraw::DrawMTText, 1, 3}};
  for (const auto& row : rows) {
    const AcDbObjectId id = (draw.*row.draw)(L"abc", {5, 6, 0}, 0.5, 2, 0.75);
    const auto text = reading<AcDbText>(id);
    EXPECT_EQ(text->horizontalMode(), row.horizontal);
    EXPECT_EQ(text->verticalMode(), row.vertical);
    EXPECT_THAT(text->alignmentPoint(), Is(5, 6, 0));
    EXPECT_NEAR(text->rotation(), 0.5, 1e-12);
    EXPECT_EQ(text->height(), 2);
    EXPECT_EQ(text->widthFactor(), 0.75);
  }
}

TEST_F(DrawnTexts, BeginWhereTheirAlignmentPutsThem) {
  CDimDraw draw(500, nullptr);
  const double width = width_of(L"DN300", 2, 0.7);
  const struct {
    AcDb::TextHorzMode horizontal;
    AcDb::TextVertMode vertical;
    double along, least_up, most_up;
  } rows[] = {{AcDb::kTextCenter, AcDb::kTextBase, -width / 2, 0, 0},
              {AcDb::kTextRight, AcDb::kTextBase, -width, 0, 0},
              {AcDb::kTextLeft, AcDb::kTextBottom, 0, 0.01, 1},
              {AcDb::kTextCenter, AcDb::kTextVertMid, -width / 2, -1, -1},
              {AcDb::kTextRight, AcDb::kTextTop, -width, -2, -2}};
  for (const double rotation : {0.0, 1.0, 4.0}) {
    for (const auto& row : rows) {
      const AcDbObjectId id =
          draw.DrawTextW(L"DN300", {1000, 2000, 0}, row.horizontal, row.vertical, rotation, 2, 0.7);
      const AcGePoint3d start = start_of(id);
      EXPECT_NEAR(start.x, row.along, 1e-9);
      EXPECT_GE(start.y, row.least_up - 1e-9);
      EXPECT_LE(start.y, row.most_up + 1e-9);
    }
  }
}

TEST_F(DrawnTexts, LeftOnTheBaseLineTheyHaveNoAlignmentPoint) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id =
      draw.DrawTextW(L"a", {3, 4, 5}, AcDb::kTextLeft, AcDb::kTextBase, 0, 2, 1);
  EXPECT_THAT(reading<AcDbText>(id)->position(), Is(3, 4, 5));
  EXPECT_THAT(reading<AcDbText>(id)->alignmentPoint(), Is(0, 0, 0));
}

TEST_F(DrawnTexts, BeginElsewhereWhenTheirTextChanges) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id = draw.DrawMMText(L"DN300", {1000, 2000, 0}, 0.3, 2, 0.7);
  {
    const dim::Opened<AcDbText> text(id, AcDb::kForWrite);
    text->setTextString(L"DN1000-36.5");
  }
  EXPECT_THAT(reading<AcDbText>(id)->alignmentPoint(), Is(1000, 2000, 0));
  EXPECT_NEAR(start_of(id).x, -width_of(L"DN1000-36.5", 2, 0.7) / 2, 1e-9);
}

/// Makes the style HZ, with a font of its own, the current one.
void make_style_current(AcDbDatabase& database) {
  AcDbTextStyleTable* table = nullptr;
  ASSERT_EQ(database.getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
  auto* style = new AcDbTextStyleTableRecord;
  style->setName(L"HZ");
  style->setFileName(L"hztxt.shx");
  AcDbObjectId id;
  ASSERT_EQ(table->add(id, style), Acad::eOk);
  style->close();
  table->close();
  ASSERT_TRUE(database.set_header_variable("$TEXTSTYLE", std::wstring(L"HZ")));
}

TEST_F(DrawnTexts, TakeTheCurrentTextStyle) {
  make_style_current(database());
  CDimDraw draw(500, nullptr);
  const AcDbObjectId style =
      reading<AcDbText>(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, 1))->textStyle();
  EXPECT_EQ(reading<AcDbTextStyleTableRecord>(style)->name(), L"HZ");
}

TEST_F(DrawnTexts, AnEmptyTextIsDrawn) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id = draw.DrawMMText(L"", {7, 8, 0}, 0, 0, 1);
  EXPECT_EQ(taken(reading<AcDbText>(id)->textString()), L"");
  EXPECT_THAT(reading<AcDbText>(id)->alignmentPoint(), Is(7, 8, 0));
}

TEST_F(DrawnTexts, WhoseNumbersAreNotFiniteAreNotDrawn) {
  CDimDraw draw(500, nullptr);
  for (const double bad : {kNaN, kInfinity, -kInfinity}) {
    EXPECT_TRUE(draw.DrawMMText(L"a", {bad, 0, 0}, 0, 0, 1).isNull());
    EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, bad}, 0, 0, 1).isNull());
    EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, 0}, bad, 0, 1).isNull());
    EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, 0}, 0, 1, bad).isNull());
  }
  EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, 0}, 0, kNaN, 1).isNull());
  EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, 0}, 0, kInfinity, 1).isNull());
  EXPECT_TRUE(CDimDraw(kInfinity, nullptr).DrawMMText(L"a", {0, 0, 0}, 0, 0, 1).isNull());
  EXPECT_EQ(entities(), 0u);
  EXPECT_TRUE(draw.GetAllDimEntityId().isEmpty());
}

// Preview: a world draw knows no alignment, so texts are put where they begin.

TEST_F(DrawnTexts, InAPreviewStandWhereTheyWouldBegin) {
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  const double width = width_of(L"DN300", 2, 0.7);
  const struct {
    AcDb::TextHorzMode horizontal;
    AcDb::TextVertMode vertical;
    double x, y;
  } rows[] = {{AcDb::kTextLeft, AcDb::kTextBase, 10, 20},
              {AcDb::kTextLeft, AcDb::kTextBottom, 10, 20},
              {AcDb::kTextCenter, AcDb::kTextBase, 10 - width / 2, 20},
              {AcDb::kTextRight, AcDb::kTextBottom, 10 - width, 20},
              {AcDb::kTextCenter, AcDb::kTextVertMid, 10 - width / 2, 19},
              {AcDb::kTextRight, AcDb::kTextTop, 10 - width, 18}};
  for (const auto& row : rows) {
    world.texts.clear();
    EXPECT_TRUE(
        draw.DrawTextW(L"DN300", {10, 20, 0}, row.horizontal, row.vertical, 0, 2, 0.7).isNull());
    ASSERT_EQ(world.texts.size(), 1u);
    EXPECT_EQ(world.texts[0].string, L"DN300");
    EXPECT_THAT(world.texts[0].position, Is(row.x, row.y, 0));
    EXPECT_EQ(world.texts[0].height, 2);
    EXPECT_NEAR(world.texts[0].width_factor, 0.7, 1e-12);
  }
}

TEST_F(DrawnTexts, InAPreviewHaveTheStyleThatWasCurrentWhenDrawingBegan) {
  make_style_current(database());
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  ASSERT_TRUE(database().set_header_variable("$TEXTSTYLE", std::wstring(L"Standard")));
  draw.DrawMMText(L"DN300", {0, 0, 0}, 0, 2, 1);
  ASSERT_EQ(world.texts.size(), 1u);
  EXPECT_EQ(world.texts[0].font, L"hztxt.shx");
}

TEST_F(DrawnTexts, InAPreviewAreMeasuredByTheFactorAndHeightTheyAreDrawnWith) {
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  draw.DrawRBText(L"DN300", {10, 20, 0}, 0, 0, -1);
  ASSERT_EQ(world.texts.size(), 1u);
  EXPECT_NEAR(world.texts[0].width_factor, 0.7, 1e-12);
  EXPECT_THAT(world.texts[0].position, Is(10 - width_of(L"DN300", 1.75, 0.7), 20, 0));
}

TEST_F(DrawnTexts, InAPreviewAreShiftedAlongTheirOwnAxes) {
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  const double width = width_of(L"DN300", 2, 1);
  draw.DrawMTText(L"DN300", {10, 20, 0}, kPi / 2, 2, 1);
  ASSERT_EQ(world.texts.size(), 1u);
  EXPECT_THAT(world.texts[0].position, Is(12, 20 - width / 2, 0));
  EXPECT_THAT(world.texts[0].direction.normal(), Is(0, 1, 0));
}

TEST_F(DrawnTexts, InAPreviewAreFlippedByTheMatrix) {
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  draw.DrawTextW(L"a", {10, 20, 0}, AcDb::kTextLeft, AcDb::kTextBase, 0, 2, 1);
  ASSERT_EQ(world.texts.size(), 1u);
  EXPECT_THAT(world.texts[0].position, Is(-10, -20, 0));
  EXPECT_THAT(world.texts[0].direction.normal(), Is(-1, 0, 0));
}

TEST_F(DrawnTexts, InAPreviewLeaveTheDrawingAsItWas) {
  const std::string untouched = database().save_bytes();
  RecordingDraw world;
  CDimDraw draw(500, &world, nullptr);
  EXPECT_TRUE(draw.DrawMMText(L"a", {0, 0, 0}, 0, 0, -1).isNull());
  EXPECT_TRUE(draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1).isNull());
  EXPECT_TRUE(draw.DrawLine({0, 0, 0}, {1, 0, 0}, 0.2).isNull());
  EXPECT_TRUE(draw.DrawPl({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, -1).isNull());
  EXPECT_TRUE(draw.Arrow({0, 0, 0}, {1, 0, 0}).isNull());
  EXPECT_GE(world.calls(), 5u);
  EXPECT_TRUE(draw.GetAllDimEntityId().isEmpty());
  EXPECT_EQ(database().save_bytes(), untouched);
}

}  // namespace
