// CDimRecord::updateDim: the texts of a record's entities, made anew from its items.

#include "module/platform/opened.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "tests/module/plan.h"

namespace {

StuDim label(const wchar_t* name, const wchar_t* value, const wchar_t* handle,
             const wchar_t* prefix = L"", const wchar_t* separator = L"") {
  return {name, handle, value, prefix, L"", separator, L"", L""};
}

class UpdateTexts : public PlanTest {
 protected:
  void given_items(const Items& items) { id = plan.store_items(L"2F", L"pcgb", items); }
  Acad::ErrorStatus update() {
    CDimRecord record;
    EXPECT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
    return record.updateDim();
  }
  Names left() { return names_of(plan.items(id)); }
  AcDbObjectId id;
};

TEST_F(UpdateTexts, EveryTextIsWrittenWhole) {
  given_items({label(L"dia", L"300", L"40", L"DN", L"-"), label(L"len", L"36.5", L"40", L"L="),
               label(L"bh", L"W12", L"4A")});
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"DN300-L=36.5");
  EXPECT_EQ(plan.text(L"4A"), L"W12");
  EXPECT_EQ(plan.text(L"41"), L"label 41");
}

TEST_F(UpdateTexts, FormattingOfAMultilineTextIsNotKept) {
  given_items({label(L"a", L"1", L"4A")});
  {
    const dim::Opened<AcDbMText> lines(plan.id(L"4A"), AcDb::kForWrite);
    lines->setContents(L"{\\C1;red}\\Pbelow");
  }
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(plan.text(L"4A"), L"1");
}

TEST_F(UpdateTexts, PlaceHeightLayerAndRotationStay) {
  given_items({label(L"a", L"1", L"40")});
  EXPECT_EQ(update(), Acad::eOk);
  const dim::Opened<AcDbText> text(plan.id(L"40"), AcDb::kForRead);
  EXPECT_EQ(text->position().x, 1.0);
  EXPECT_EQ(text->height(), 3.5);
  EXPECT_EQ(text->rotation(), 0.0);
}

TEST_F(UpdateTexts, AnAttributeIsWrittenLikeAText) {
  given_items({label(L"bh", L"12", L"33", L"W")});
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(plan.text(L"33"), L"W12");
  plan.reopen();
  EXPECT_EQ(plan.text(L"33"), L"W12");
}

TEST_F(UpdateTexts, AnEntityThatIsNoTextStaysAsItIs) {
  given_items({label(L"a", L"1", L"30"), label(L"b", L"2", L"40")});
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"2");
  EXPECT_EQ(left(), (Names{L"a", L"b"}));
}

TEST_F(UpdateTexts, AnErasedTextIsSkippedAndItsItemStaysUntilItsHandleNoLongerResolves) {
  given_items({label(L"a", L"1", L"40"), label(L"b", L"2", L"41")});
  plan.erase(L"40");
  const TraceLines trace;
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(trace.lines(), Texts{L"文本实体没有打开，可能已经被删除!"});
  EXPECT_EQ(plan.text(L"41"), L"2");
  EXPECT_EQ(left(), (Names{L"a", L"b"}));

  plan.reopen();
  id = plan.entry(L"2F", L"pcgb");
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(left(), Names{L"b"});
}

TEST_F(UpdateTexts, ATextThatCameBackIsWrittenAgain) {
  given_items({label(L"a", L"1", L"40")});
  plan.erase(L"40");
  EXPECT_EQ(update(), Acad::eOk);
  plan.bring_back(L"40");
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"1");
}

TEST_F(UpdateTexts, InformationAloneTouchesNothing) {
  StuDim information = label(L"a", L"1", L"40");
  information.recordKind = dim::kNoEntityKind;
  given_items({information});
  plan.reopen();
  id = plan.entry(L"2F", L"pcgb");
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_FALSE(plan.database().is_modified());
}

TEST_F(UpdateTexts, ARecordWithoutStaleItemsIsNotWritten) {
  given_items({label(L"a", L"1", L"40")});
  EXPECT_EQ(update(), Acad::eOk);
  plan.reopen();
  id = plan.entry(L"2F", L"pcgb");
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_FALSE(plan.database().is_modified());
}

TEST_F(UpdateTexts, ATextOnALockedLayerIsLeftOutAndItsItemDropped) {
  given_items({label(L"locked", L"1", L"4B"), label(L"b", L"2", L"41"), label(L"c", L"3", L"42")});
  const TraceLines trace;
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(trace.lines(), Texts{L"打开实体失败,删除无用更新数据:locked !"});
  EXPECT_EQ(plan.text(L"4B"), L"label 4B");
  EXPECT_EQ(plan.text(L"41"), L"2");
  EXPECT_EQ(plan.text(L"42"), L"3");
  EXPECT_EQ(left(), (Names{L"b", L"c"}));
}

TEST_F(UpdateTexts, ATextBehindAStaleItemThatCannotBeWrittenIsLeftOutAndItsItemWaits) {
  given_items(
      {label(L"gone", L"1", L"FFF"), label(L"locked", L"2", L"4B"), label(L"c", L"3", L"42")});
  const TraceLines trace;
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(trace.lines(), (Texts{L"句柄-〉数据库id不成功，删除无用更新数据:gone !",
                                  L"文本实体没有打开，可能已经被删除!"}));
  EXPECT_EQ(plan.text(L"42"), L"3");
  EXPECT_EQ(left(), (Names{L"locked", L"c"}));
}

TEST_F(UpdateTexts, OfTwoStaleItemsInARowOnePassDropsTheFirst) {
  given_items({label(L"a", L"1", L"FF1"), label(L"b", L"2", L"FF2"), label(L"c", L"3", L"42")});
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(left(), (Names{L"b", L"c"}));
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(left(), Names{L"c"});
}

TEST_F(UpdateTexts, TheHandleOfTwoSpellingsIsWrittenLastInSmallLetters) {
  given_items({label(L"a", L"small", L"4a"), label(L"b", L"LARGE", L"4A")});
  EXPECT_EQ(update(), Acad::eOk);
  EXPECT_EQ(plan.text(L"4A"), L"small");
}

TEST_F(UpdateTexts, ARecordOpenForReadingFailsAndNothingIsWritten) {
  given_items({label(L"a", L"1", L"40")});
  CDimRecord record;
  ASSERT_EQ(record.open(id, AcDb::kForRead, false), Acad::eOk);
  const TraceLines trace;
  EXPECT_EQ(record.updateDim(), 1);
  EXPECT_EQ(trace.lines().back(), L"提取标注文字失败!");
  EXPECT_EQ(plan.text(L"40"), L"label 40");
}

TEST_F(UpdateTexts, ARecordThatIsNotOpenFails) {
  CDimRecordIterator cursor;
  StuDim item = item_of(L"a", L"1");
  EXPECT_EQ(CDimRecord().updateDim(), 1);
  EXPECT_EQ(CDimRecord().update_texts(cursor), 1);
  EXPECT_EQ(CDimRecord().set_at(cursor, item), 1);
  EXPECT_EQ(CDimRecord().get_at(cursor, L"a", item), 1);
}

TEST_F(UpdateTexts, OneCopyOfTheItemsServesAllSteps) {
  given_items({label(L"a", L"1", L"40"), label(L"gone", L"2", L"FFF"), label(L"c", L"3", L"41")});
  CDimRecord record;
  CDimRecordIterator cursor;
  StuDim item;
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  ASSERT_EQ(record.newIterator(cursor), Acad::eOk);
  EXPECT_EQ(record.get_at(cursor, L"C", item), Acad::eOk);
  EXPECT_EQ(item, label(L"c", L"3", L"41"));
  EXPECT_EQ(record.get_at(cursor, L"nobody", item), 1);
  item.value = L"4";
  EXPECT_EQ(record.set_at(cursor, item), Acad::eOk);
  EXPECT_EQ(record.update_texts(cursor), Acad::eOk);
  record.close();
  EXPECT_EQ(left(), (Names{L"a", L"c"}));
  EXPECT_EQ(plan.text(L"41"), L"4");
  EXPECT_EQ(record.update_texts(cursor), 1);
}

TEST_F(UpdateTexts, ADamagedRecordFailsAndNoTextIsWritten) {
  Texts texts = {L"a", L"40", L"", L"1", L"", L"", L"", L""};
  texts.insert(texts.end(), {L"b", L"41", L""});
  id = plan.store_chain(L"2F", L"pcgb", text_chain(texts).get());
  EXPECT_EQ(update(), 1);
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(plan.buffers(id).size(), 11u);
}

TEST_F(UpdateTexts, AnEmptyRecordIsFine) {
  id = plan.store_chain(L"2F", L"pcgb", nullptr);
  EXPECT_EQ(update(), Acad::eOk);
}

TEST_F(UpdateTexts, AVeryLongTextComesBackWhole) {
  std::wstring value;
  for (int i = 0; i < 2000; ++i) value += L"管" + std::to_wstring(i);
  given_items({label(L"a", value.c_str(), L"4A", L"前")});
  EXPECT_EQ(update(), Acad::eOk);
  plan.reopen();
  EXPECT_EQ(plan.text(L"4A"), L"前" + value);
}

}  // namespace
