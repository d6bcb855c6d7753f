// CDimRecord::deleteDim and deleteDimInfo.

#include "module/platform/opened.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"
#include "module/registry/update_service.h"
#include "tests/module/plan.h"

namespace {

class DeleteRecord : public PlanTest {
 protected:
  void given_items(const Items& items, AcDb::OpenMode mode = AcDb::kForWrite) {
    id = plan.store_items(L"2F", L"pcgb", items);
    ASSERT_EQ(record.open(id, mode, false), Acad::eOk);
  }
  AcDbObjectId id;
  CDimRecord record;
};

TEST_F(DeleteRecord, ErasesItsEntitiesAndItself) {
  given_items({item_of(L"a", L"1", L"40"), item_of(L"41", L"", L"41"), item_of(L"c", L"2", L"4a")});
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"40"));
  EXPECT_TRUE(plan.is_erased(L"41"));
  EXPECT_TRUE(plan.is_erased(L"4A"));
  EXPECT_FALSE(plan.is_erased(L"42"));
  EXPECT_EQ(plan.keys(L"2F"), Names{});
  plan.reopen();
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(DeleteRecord, IsNoLongerValidAfterwards) {
  given_items({item_of(L"a", L"1", L"40")});
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(record.close(), 374);
  EXPECT_EQ(record.deleteDim(), 374);
  EXPECT_EQ(record.deleteDimInfo(), 374);
}

TEST_F(DeleteRecord, AnEntityOfSeveralItemsIsErasedOnce) {
  given_items({item_of(L"a", L"1", L"40"), item_of(L"b", L"2", L"40"), item_of(L"c", L"3", L"41")});
  const TraceLines trace;
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_EQ(trace.lines(), Texts{});
  EXPECT_TRUE(plan.is_erased(L"40"));
  EXPECT_TRUE(plan.is_erased(L"41"));
}

TEST_F(DeleteRecord, InformationErasesNothing) {
  StuDim information = item_of(L"a", L"1", L"40");
  information.recordKind = dim::kNoEntityKind;
  given_items({information, item_of(L"b", L"2", L"41")});
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_FALSE(plan.is_erased(L"40"));
  EXPECT_TRUE(plan.is_erased(L"41"));
}

TEST_F(DeleteRecord, AHandleThatIsNoneErasesNothingNotEvenTheEntityBefore) {
  given_items({item_of(L"a", L"1", L"40"), item_of(L"b", L"2", L"no handle"),
               item_of(L"c", L"3", L"FFF"), item_of(L"d", L"4")});
  const TraceLines trace;
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_EQ(trace.lines(), Texts{});
  EXPECT_TRUE(plan.is_erased(L"40"));
  for (const wchar_t* other : {L"2F", L"41", L"42", L"43"}) EXPECT_FALSE(plan.is_erased(other));
}

TEST_F(DeleteRecord, ObjectsThatAreNoEntitiesStay) {
  given_items({item_of(L"a", L"1", L"C"), item_of(L"b", L"2", L"10"), item_of(L"c", L"3", L"41")});
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_FALSE(plan.is_erased(L"C"));
  EXPECT_FALSE(plan.is_erased(L"10"));
  EXPECT_TRUE(plan.is_erased(L"41"));
}

TEST_F(DeleteRecord, EntitiesThatCannotBeOpenedForWriteStayDrawn) {
  given_items(
      {item_of(L"locked", L"1", L"4B"), item_of(L"held", L"2", L"40"), item_of(L"c", L"3", L"41")});
  const dim::Opened<AcDbEntity> held(plan.id(L"40"), AcDb::kForRead);
  const TraceLines trace;
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_EQ(trace.lines(), (Texts{L"打开实体失败!", L"打开实体失败!"}));
  EXPECT_FALSE(plan.is_erased(L"4B"));
  EXPECT_FALSE(plan.is_erased(L"40"));
  EXPECT_TRUE(plan.is_erased(L"41"));
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(DeleteRecord, OneThatNamesItsOwnerErasesThatToo) {
  given_items({item_of(L"owner", L"1", L"2F"), item_of(L"b", L"2", L"41")});
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"2F"));
  EXPECT_TRUE(plan.is_erased(L"41"));
  EXPECT_TRUE(id.isErased());
}

TEST_F(DeleteRecord, OfADamagedRecordTheWholeItemsCount) {
  Texts texts = {L"a", L"40", L"", L"1", L"", L"", L"", L""};
  texts.insert(texts.end(), {L"b", L"41", L""});
  id = plan.store_chain(L"2F", L"pcgb", text_chain(texts).get());
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"40"));
  EXPECT_FALSE(plan.is_erased(L"41"));
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(DeleteRecord, OneThatWasNeverFiledGoesAltogether) {
  std::unique_ptr<CDimRecord> made(
      CDimUpdateServ::getInstance().getDimFactory().CreateDimRec(item_of(L"a", L"1", L"40")));
  EXPECT_EQ(made->deleteDim(), Acad::eOk);
  EXPECT_FALSE(made->isValid());
  EXPECT_TRUE(plan.is_erased(L"40"));
}

TEST_F(DeleteRecord, OneOpenForReadingStaysAndItsEntitiesGo) {
  given_items({item_of(L"a", L"1", L"40")}, AcDb::kForRead);
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"40"));
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(plan.keys(L"2F"), Names{L"pcgb"});
}

TEST_F(DeleteRecord, OneThatWasNeverOpenedIsNotOpen) {
  EXPECT_EQ(record.deleteDim(), 374);
  EXPECT_EQ(record.deleteDimInfo(), 374);
}

TEST_F(DeleteRecord, TheRecordAloneGoesAndItsEntitiesStay) {
  given_items({item_of(L"a", L"1", L"40"), item_of(L"41", L"", L"41")});
  EXPECT_EQ(record.deleteDimInfo(), Acad::eOk);
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(record.close(), 374);
  EXPECT_EQ(plan.keys(L"2F"), Names{});
  plan.reopen();
  EXPECT_FALSE(plan.is_erased(L"40"));
  EXPECT_FALSE(plan.is_erased(L"41"));
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(DeleteRecord, AnotherRecordOfTheEntityStays) {
  plan.store_items(L"2F", L"bzjg", {item_of(L"b", L"2", L"42")});
  given_items({item_of(L"a", L"1", L"40")});
  EXPECT_EQ(record.deleteDim(), Acad::eOk);
  EXPECT_EQ(plan.keys(L"2F"), Names{L"bzjg"});
  EXPECT_FALSE(plan.is_erased(L"42"));
}

}  // namespace
