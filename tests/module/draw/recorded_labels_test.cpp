// Labels from drawing to deletion: drawn, recorded for a pipe, updated, saved, deleted with it.

#include "module/manager/dim_manager.h"
#include "tests/module/draw/draw_fixture.h"

namespace {

class RecordedLabels : public WithDraw {
 protected:
  RecordedLabels() {
    auto* line = new AcDbLine({0, 0, 0}, {36.5, 0, 0});
    EXPECT_EQ(ArxDbgUtils::addToCurrentSpace(line), Acad::eOk);
    pipe = line->objectId();
    line->close();
  }
  AcDbObjectId pipe;
};

TEST_F(RecordedLabels, FollowTheirPipe) {
  CDimDraw draw(500, L"ZY-标注");
  const AcDbObjectId text = draw.DrawMBText(L"DN300", {18.25, 1, 0}, 0, 0, -1);
  const AcDbObjectId arrow = draw.Arrow({18.25, 3, 0}, {1, 0, 0});
  CDimManager manager(pipe);
  ASSERT_EQ(manager.dimTxtRec(L"pcgb", L"pipe_dia", text, L"300", L"", L"DN", L""), Acad::eOk);
  ASSERT_EQ(manager.dimEntRec(L"pcgb", arrow), Acad::eOk);

  const AcGePoint3d old_start = reading<AcDbText>(text)->position();
  EXPECT_EQ(manager.updateDim(L"pipe_dia", L"1000"), Acad::eOk);
  EXPECT_EQ(taken(reading<AcDbText>(text)->textString()), L"DN1000");
  EXPECT_THAT(reading<AcDbText>(text)->alignmentPoint(), Is(18.25, 1, 0));
  EXPECT_LT(reading<AcDbText>(text)->position().x, old_start.x) << "a longer text begins earlier";

  AcDbObjectIdArray recorded;
  EXPECT_EQ(manager.getDimEnt(recorded), Acad::eOk);
  EXPECT_EQ(recorded.length(), 2);
  EXPECT_EQ(manager.deleteAllDim(), Acad::eOk);
  EXPECT_TRUE(text.isErased());
  EXPECT_TRUE(arrow.isErased());
  EXPECT_EQ(entities(), 1u) << "the pipe";
}

TEST_F(RecordedLabels, AreTheSameInTheSavedDrawing) {
  CDimDraw draw(500, L"ZY-标注");
  const AcDbObjectId text = draw.DrawMBText(L"DN300", {18.25, 1, 0}, 0.2, 0, -1);
  const AcGePoint3d start = reading<AcDbText>(text)->position();
  ASSERT_EQ(CDimManager(pipe).dimTxtRec(L"pcgb", L"pipe_dia", text, L"300", L"", L"DN", L""),
            Acad::eOk);
  const AcDbHandle label = text.handle(), owner = pipe.handle();
  const std::string bytes = database().save_bytes();
  host.close(document);
  const auto opened = host.open_bytes(bytes, "saved.dxf");
  ASSERT_TRUE(opened);
  document = *opened;

  AcDbObjectId id;
  ASSERT_EQ(database().getAcDbObjectId(id, false, label), Acad::eOk);
  EXPECT_THAT(reading<AcDbText>(id)->position(), Is(start.x, start.y, start.z));
  ASSERT_EQ(database().getAcDbObjectId(pipe, false, owner), Acad::eOk);
  CDimManager manager(pipe);
  EXPECT_EQ(manager.updateDim(L"pipe_dia", L"400"), Acad::eOk);
  EXPECT_EQ(taken(reading<AcDbText>(id)->textString()), L"DN400");
}

}  // namespace
