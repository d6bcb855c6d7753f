#include <gtest/gtest.h>

#include "module/platform/opened.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "tests/module/plan.h"

namespace {

class OpenRecord : public CDimRecord {
 public:
  using CDimRecord::clearInvalid;
};

class StaleItems : public PlanTest {
 protected:
  /// One clean-up pass over these items; what is left.
  Names after_a_pass(const Items& items) {
    id = plan.store_items(L"2F", L"pcgb", items);
    return after_another_pass();
  }
  Names after_another_pass() {
    OpenRecord record;
    EXPECT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
    EXPECT_EQ(record.clearInvalid(), Acad::eOk);
    record.close();
    return names_of(plan.items(id));
  }
  AcDbObjectId id;
};

TEST_F(StaleItems, PresentEntitiesAreKept) {
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"40"), item_of(L"41", L"", L"41"),
                          item_of(L"c", L"1", L"4a")}),
            (Names{L"a", L"41", L"c"}));
}

TEST_F(StaleItems, ItemsWithoutHandleAreKept) {
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1"), item_of(L"b", L"1")}), (Names{L"a", L"b"}));
}

TEST_F(StaleItems, InformationIsKeptWhateverItsHandle) {
  StuDim information = item_of(L"a", L"1", L"FFF");
  information.recordKind = dim::kNoEntityKind;
  EXPECT_EQ(after_a_pass({information}), Names{L"a"});
  StuDim other_kind = item_of(L"b", L"1", L"FFF");
  other_kind.recordKind = L"非实体性记录信息";
  EXPECT_EQ(after_a_pass({other_kind}), Names{});
}

TEST_F(StaleItems, AnUnknownHandleIsDropped) {
  const TraceLines trace;
  EXPECT_EQ(after_a_pass({item_of(L"gone", L"1", L"FFF")}), Names{});
  EXPECT_EQ(trace.lines(), Texts{L"句柄-〉数据库id不成功，删除无用更新数据:gone !"});
}

TEST_F(StaleItems, ATextThatIsNoHandleIsDropped) {
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"no handle")}), Names{});
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"0")}), Names{});
}

TEST_F(StaleItems, AnErasedEntityCountsAsPresent) {
  plan.erase(L"40");
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"40")}), Names{L"a"});
}

TEST_F(StaleItems, AnObjectThatIsNoEntityIsDropped) {
  const TraceLines trace;
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"C")}), Names{});
  EXPECT_EQ(trace.lines(), Texts{L"打开实体失败,删除无用更新数据:a !"});
}

TEST_F(StaleItems, AnEntityThatCannotBeOpenedForWriteIsDropped) {
  EXPECT_EQ(after_a_pass({item_of(L"locked", L"1", L"4B")}), Names{});
  const dim::Opened<AcDbEntity> held(plan.id(L"40"), AcDb::kForRead);
  EXPECT_EQ(after_a_pass({item_of(L"held", L"1", L"40")}), Names{});
}

TEST_F(StaleItems, TheItemBehindADroppedOneWaitsForTheNextPass) {
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"FF1"), item_of(L"b", L"1", L"FF2")}), Names{L"b"});
  EXPECT_EQ(after_another_pass(), Names{});
}

TEST_F(StaleItems, EverySecondOfManyStaleItemsWaits) {
  EXPECT_EQ(after_a_pass({item_of(L"a", L"1", L"FF1"), item_of(L"b", L"1", L"FF2"),
                          item_of(L"c", L"1", L"FF3"), item_of(L"d", L"1", L"FF4"),
                          item_of(L"e", L"1", L"40")}),
            (Names{L"b", L"d", L"e"}));
  EXPECT_EQ(after_another_pass(), (Names{L"d", L"e"}));
  EXPECT_EQ(after_another_pass(), Names{L"e"});
}

TEST_F(StaleItems, OfTwoItemsOfANameTheFirstGoesForTheStaleSecond) {
  EXPECT_EQ(after_a_pass({item_of(L"a", L"sound", L"40"), item_of(L"A", L"stale", L"FFF")}),
            Names{L"A"});
}

TEST_F(StaleItems, ARecordOpenForReadingFails) {
  id = plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"40")});
  OpenRecord record;
  ASSERT_EQ(record.open(id, AcDb::kForRead, false), Acad::eOk);
  EXPECT_EQ(record.clearInvalid(), 1);
}

TEST_F(StaleItems, AnItemThatIsNotWholeEndsTheWalkAndNothingIsStored) {
  Texts texts = {L"gone", L"FFF", L"", L"1", L"", L"", L"", L""};
  texts.insert(texts.end(), {L"kept", L"40", L"", L"1", L"", L"", L"", L"", L"short"});
  id = plan.store_chain(L"2F", L"pcgb", text_chain(texts).get());
  OpenRecord record;
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.clearInvalid(), 1);
  EXPECT_EQ(record.setAt(item_of(L"kept", L"2", L"40")), 1);
  EXPECT_EQ(record.insertAfter(item_of(L"kept", L"2", L"40"), L"kept"), 1);
  record.close();
  EXPECT_EQ(plan.buffers(id).size(), 17u);
}

}  // namespace
