#include "module/record/record_table.h"

#include <gtest/gtest.h>

#include <memory>

#include "module/platform/opened.h"
#include "module/record/record.h"
#include "module/record/record_factory.h"
#include "module/registry/update_service.h"
#include "tests/module/plan.h"

namespace {

CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }

std::unique_ptr<CDimRecord> new_record(const wchar_t* type, const Items& items) {
  std::unique_ptr<CDimRecord> record(
      CDimUpdateServ::getInstance().getDimFactory().CreateDimRec(items));
  record->setDimTypeName(type);
  return record;
}

class RecordTable : public PlanTest {
 protected:
  Acad::ErrorStatus open(CDimRecordTable& table, const wchar_t* owner = L"2F") {
    return table.open(&registry(), plan.extension_dictionary(owner), AcDb::kForRead, 0);
  }
  Acad::ErrorStatus add(const wchar_t* type, const Items& items) {
    const std::unique_ptr<CDimRecord> record = new_record(type, items);
    CDimRecordTable table;
    EXPECT_EQ(open(table), Acad::eOk);
    return table.add(*record);
  }
  Names walk_types() {
    CDimRecordTable table;
    CDimRecordTableIterator walk;
    EXPECT_EQ(open(table), Acad::eOk);
    EXPECT_EQ(table.newIterator(walk), Acad::eOk);
    Names types;
    for (walk.start(); !walk.done(); walk.step()) types.emplace_back(walk.getDimTypeName());
    return types;
  }
  Items items(const wchar_t* type) { return plan.items(plan.entry(L"2F", type)); }
};

TEST_F(RecordTable, OneThatWasNotOpenedAnswersSo) {
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  AcDbObjectId id;
  EXPECT_EQ(table.newIterator(walk), 374);
  EXPECT_EQ(table.getAt(L"pcgb", id), 374);
  EXPECT_EQ(table.add(*new_record(L"pcgb", {})), 374);
  EXPECT_EQ(table.close(), Acad::eOk);
}

TEST_F(RecordTable, OneWithoutARegistryAnswersAsIfItWereNotOpened) {
  {
    CDimRecordTable table;
    CDimRecordTableIterator walk;
    AcDbObjectId id;
    ASSERT_EQ(table.open(nullptr, plan.extension_dictionary(L"2F"), AcDb::kForWrite, 0), Acad::eOk);
    EXPECT_EQ(table.newIterator(walk), 374);
    EXPECT_EQ(table.getAt(L"pcgb", id), 374);
    EXPECT_EQ(table.add(*new_record(L"pcgb", {item_of(L"a", L"1")})), 374);
    EXPECT_EQ(table.add_item(L"pcgb", item_of(L"a", L"1")), 374);
  }
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(RecordTable, OpensForWriteWhateverTheMode) {
  const AcDbObjectId dictionary = plan.extension_dictionary(L"2F");
  CDimRecordTable table;
  ASSERT_EQ(open(table), Acad::eOk);
  EXPECT_EQ(dim::Opened<AcDbDictionary>(dictionary, AcDb::kForRead).status(),
            Acad::eWasOpenForWrite);
}

TEST_F(RecordTable, OpeningFailsWithOneStatus) {
  CDimRecordTable table;
  EXPECT_EQ(table.open(&registry(), AcDbObjectId(), AcDb::kForWrite, 0), 1);
  EXPECT_EQ(table.open(&registry(), plan.id(L"2F"), AcDb::kForWrite, 0), 1);
  CDimRecordTable first;
  ASSERT_EQ(open(first), Acad::eOk);
  EXPECT_EQ(open(table), 1);
}

TEST_F(RecordTable, AnErasedDictionaryDoesNotOpen) {
  const AcDbObjectId dictionary = plan.extension_dictionary(L"2F");
  ASSERT_EQ(dim::Opened<AcDbDictionary>(dictionary, AcDb::kForWrite)->erase(), Acad::eOk);
  CDimRecordTable table;
  EXPECT_EQ(table.open(&registry(), dictionary, AcDb::kForWrite, 1), 1);
}

TEST_F(RecordTable, ItsEndClosesTheDictionary) {
  {
    CDimRecordTable table;
    ASSERT_EQ(open(table), Acad::eOk);
    EXPECT_EQ(plan.database().open_objects().size(), 1u);
  }
  EXPECT_TRUE(plan.database().open_objects().empty());
}

TEST_F(RecordTable, ClosingTwiceIsHarmless) {
  CDimRecordTable table;
  ASSERT_EQ(open(table), Acad::eOk);
  EXPECT_EQ(table.close(), Acad::eOk);
  EXPECT_TRUE(plan.database().open_objects().empty());
  EXPECT_EQ(table.close(), Acad::eNotOpenForRead);
}

TEST_F(RecordTable, WorksOnADictionaryOfTheCaller) {
  dim::Opened<AcDbDictionary> dictionary(plan.extension_dictionary(L"2F"), AcDb::kForWrite);
  {
    CDimRecordTable table;
    EXPECT_EQ(table.open(&registry(), &*dictionary, 0), Acad::eOk);
    EXPECT_EQ(table.add(*new_record(L"pcgb", {item_of(L"a", L"1")})), Acad::eOk);
  }
  EXPECT_TRUE(dictionary->isWriteEnabled());
  {
    CDimRecordTable table;
    EXPECT_EQ(table.open(&registry(), &*dictionary, 1), Acad::eOk);
  }
  EXPECT_FALSE(dictionary->isWriteEnabled());
}

TEST_F(RecordTable, ACallersDictionaryMustBeOpenForWrite) {
  CDimRecordTable table;
  EXPECT_EQ(table.open(&registry(), nullptr, 1), 1);
  const dim::Opened<AcDbDictionary> dictionary(plan.extension_dictionary(L"2F"), AcDb::kForRead);
  EXPECT_EQ(table.open(&registry(), &*dictionary, 1), 1);
}

TEST_F(RecordTable, ARecordOfANewTypeBecomesOneEntryInItsOwnLetterCase) {
  EXPECT_EQ(add(L"PcGb", {item_of(L"a", L"1")}), Acad::eOk);
  EXPECT_EQ(plan.keys(L"2F"), Names{L"PcGb"});
  EXPECT_EQ(items(L"pcgb"), Items{item_of(L"a", L"1")});
}

TEST_F(RecordTable, AFiledRecordBelongsToTheDrawing) {
  const std::unique_ptr<CDimRecord> record = new_record(L"pcgb", {item_of(L"a", L"1")});
  {
    CDimRecordTable table;
    ASSERT_EQ(open(table), Acad::eOk);
    ASSERT_EQ(table.add(*record), Acad::eOk);
  }
  EXPECT_EQ(record->setAt(item_of(L"b", L"2")), Acad::eOk);
  EXPECT_EQ(record->close(), Acad::eOk);
  EXPECT_EQ(names_of(items(L"pcgb")), (Names{L"a", L"b"}));
}

TEST_F(RecordTable, ARecordOfAKnownTypeIsMergedItemByItem) {
  ASSERT_EQ(add(L"pcgb", {item_of(L"a", L"1"), item_of(L"b", L"1"), item_of(L"c", L"1")}),
            Acad::eOk);
  const AcDbObjectId before = plan.entry(L"2F", L"pcgb");
  EXPECT_EQ(add(L"PCGB", {item_of(L"z", L"2"), item_of(L"B", L"2"), item_of(L"y", L"2")}),
            Acad::eOk);
  EXPECT_EQ(plan.entry(L"2F", L"pcgb"), before);
  EXPECT_EQ(plan.keys(L"2F"), Names{L"pcgb"});
  const Items merged = items(L"pcgb");
  EXPECT_EQ(names_of(merged), (Names{L"a", L"B", L"c", L"z", L"y"}));
  EXPECT_EQ(merged[1].value, L"2");
}

TEST_F(RecordTable, AnItemIsFiledAsARecordOrWrittenIntoTheOneThatIsThere) {
  CDimRecordTable table;
  EXPECT_EQ(table.add_item(L"pcgb", item_of(L"a", L"1")), 374);
  ASSERT_EQ(open(table), Acad::eOk);
  EXPECT_EQ(table.add_item(L"PcGb", item_of(L"a", L"1")), Acad::eOk);
  EXPECT_EQ(table.add_item(L"pcgb", item_of(L"b", L"1")), Acad::eOk);
  EXPECT_EQ(table.add_item(L"pcgb", item_of(L"A", L"2")), Acad::eOk);
  EXPECT_EQ(table.add_item(L"pcgb", StuDim()), 1);
  EXPECT_EQ(table.add_item(L"a|b", item_of(L"a", L"1")), Acad::eInvalidKey);
  EXPECT_EQ(table.add_item(nullptr, item_of(L"a", L"1")), Acad::eInvalidKey);
  table.close();
  EXPECT_EQ(plan.keys(L"2F"), Names{L"PcGb"});
  EXPECT_EQ(items(L"pcgb"), (Items{item_of(L"A", L"2"), item_of(L"b", L"1")}));
}

TEST_F(RecordTable, MergingDropsStaleItemsBeforeEachItem) {
  plan.store_items(L"2F", L"pcgb",
                   {item_of(L"gone1", L"1", L"FF1"), item_of(L"gone2", L"1", L"FF2"),
                    item_of(L"a", L"1", L"40")});
  EXPECT_EQ(add(L"pcgb", {item_of(L"b", L"2")}), Acad::eOk);
  EXPECT_EQ(names_of(items(L"pcgb")), (Names{L"gone2", L"a", L"b"}));
}

TEST_F(RecordTable, MergingIntoARecordWithoutItemsStoresNothing) {
  plan.store_items(L"2F", L"pcgb", {});
  EXPECT_EQ(add(L"pcgb", {item_of(L"a", L"1")}), Acad::eOk);
  EXPECT_EQ(items(L"pcgb"), Items{});
}

TEST_F(RecordTable, MergingANamelessItemFails) {
  ASSERT_EQ(add(L"pcgb", {item_of(L"a", L"1")}), Acad::eOk);
  EXPECT_EQ(add(L"pcgb", {StuDim()}), 1);
}

TEST_F(RecordTable, MergingIntoARecordThatIsOpenFails) {
  ASSERT_EQ(add(L"pcgb", {item_of(L"a", L"1")}), Acad::eOk);
  const dim::Opened<AcDbXrecord> held(plan.entry(L"2F", L"pcgb"), AcDb::kForRead);
  const TraceLines trace;
  EXPECT_EQ(add(L"pcgb", {item_of(L"b", L"1")}), 1);
  EXPECT_EQ(trace.lines(), Texts{L"打开实体失败!"});
}

TEST_F(RecordTable, MergingIntoWhatIsNoRecordFails) {
  AcDbObjectId id;
  {
    dim::Opened<AcDbDictionary> dictionary(plan.extension_dictionary(L"2F"), AcDb::kForWrite);
    auto entry = std::make_unique<AcDbDictionary>();
    ASSERT_EQ(dictionary->setAt(L"pcgb", entry.get(), id), Acad::eOk);
    entry.release()->close();
  }
  EXPECT_EQ(add(L"pcgb", {item_of(L"a", L"1")}), 1);
}

TEST_F(RecordTable, AFiledTypeMustBeAKeyTheDrawingAllows) {
  EXPECT_EQ(add(L"", {item_of(L"a", L"1")}), Acad::eInvalidKey);
  EXPECT_EQ(add(L"a|b", {item_of(L"a", L"1")}), Acad::eInvalidKey);
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(RecordTable, FindsAnyKeyWithoutLetterCase) {
  const AcDbObjectId id = plan.store_items(L"2F", L"OtherApp", {});
  CDimRecordTable table;
  ASSERT_EQ(open(table), Acad::eOk);
  AcDbObjectId found;
  EXPECT_EQ(table.getAt(L"OTHERAPP", found), Acad::eOk);
  EXPECT_EQ(found, id);
  EXPECT_EQ(table.getAt(L"pcgb", found), 22);
  EXPECT_EQ(table.getAt(nullptr, found), 22);
  EXPECT_EQ(found, id);
}

TEST_F(RecordTable, TheWalkSeesRegisteredTypesInDictionaryOrder) {
  for (const wchar_t* key : {L"xdbg", L"OtherApp", L"bzjg", L"PCGB", L"pcjdb"}) {
    plan.store_items(L"2F", key, {});
  }
  EXPECT_EQ(walk_types(), (Names{L"bzjg", L"pcjdb", L"xdbg"}));
}

TEST_F(RecordTable, TheWalkGivesTheIdsOfTheRecords) {
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {});
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  ASSERT_EQ(open(table), Acad::eOk);
  ASSERT_EQ(table.newIterator(walk), Acad::eOk);
  walk.start();
  AcDbObjectId found;
  walk.GetObjectId(found);
  EXPECT_EQ(found, id);
  walk.start();
  EXPECT_STREQ(walk.getDimTypeName(), L"pcgb");
  walk.step();
  EXPECT_TRUE(walk.done());
  walk.step();
  EXPECT_TRUE(walk.done());
}

TEST_F(RecordTable, AWalkWithoutRegisteredKeysIsDoneAtOnce) {
  plan.store_items(L"2F", L"OtherApp", {});
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  ASSERT_EQ(open(table), Acad::eOk);
  ASSERT_EQ(table.newIterator(walk), Acad::eOk);
  walk.start();
  EXPECT_TRUE(walk.done());
  EXPECT_STREQ(walk.getDimTypeName(), L"");
  AcDbObjectId found = plan.id(L"2F");
  walk.GetObjectId(found);
  EXPECT_TRUE(found.isNull());
}

TEST_F(RecordTable, StartingAgainForgetsTheLastRecord) {
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {});
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  ASSERT_EQ(open(table), Acad::eOk);
  ASSERT_EQ(table.newIterator(walk), Acad::eOk);
  walk.start();
  EXPECT_STREQ(walk.getDimTypeName(), L"pcgb");
  ASSERT_EQ(dim::Opened<AcDbXrecord>(id, AcDb::kForWrite)->erase(), Acad::eOk);
  walk.start();
  EXPECT_TRUE(walk.done());
  EXPECT_STREQ(walk.getDimTypeName(), L"");
  AcDbObjectId found = id;
  walk.GetObjectId(found);
  EXPECT_TRUE(found.isNull());
}

TEST_F(RecordTable, AWalkWithoutATableIsDone) {
  CDimRecordTableIterator walk;
  const TraceLines trace;
  walk.start();
  walk.step();
  EXPECT_EQ(walk.done(), 1);
  EXPECT_EQ(walk.getDimTypeName(), nullptr);
  EXPECT_EQ(trace.lines(), Texts(3, L"表迭代器没有被初始化!"));
}

TEST_F(RecordTable, AWalkThatWasNotStartedIsDone) {
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  ASSERT_EQ(open(table), Acad::eOk);
  ASSERT_EQ(table.newIterator(walk), Acad::eOk);
  EXPECT_TRUE(walk.done());
  walk.step();
  EXPECT_STREQ(walk.getDimTypeName(), L"");
}

TEST_F(RecordTable, OtherEntriesAreNeverTouched) {
  const AcDbObjectId other = plan.store_items(L"2F", L"OtherApp", {item_of(L"x", L"1", L"FFF")});
  ASSERT_EQ(add(L"pcgb", {item_of(L"a", L"1")}), Acad::eOk);
  EXPECT_EQ(plan.items(other), Items{item_of(L"x", L"1", L"FFF")});
}

}  // namespace
