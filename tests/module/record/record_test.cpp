#include "module/record/record.h"

#include <gtest/gtest.h>

#include <memory>

#include "module/platform/opened.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"
#include "module/registry/update_service.h"
#include "tests/module/plan.h"

namespace {

/// The record with its inner operations in reach.
class OpenRecord : public CDimRecord {
 public:
  using CDimRecord::clearInvalid;
  using CDimRecord::find;
};

class Record : public PlanTest {
 protected:
  void given_items(const Names& names, AcDb::OpenMode mode = AcDb::kForWrite) {
    Items items;
    for (const std::wstring& name : names) items.push_back(item_of(name, L"old", L"40"));
    id = plan.store_items(L"2F", L"pcgb", items);
    ASSERT_EQ(record.open(id, mode, false), Acad::eOk);
  }
  Items stored() {
    record.close();
    return plan.items(id);
  }
  AcDbObjectId id;
  OpenRecord record;
};

TEST_F(Record, OneThatWasNeverOpenedIsNotOpen) {
  CDimRecordIterator cursor;
  StuDim item = item_of(L"a", L"1");
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(record.close(), 374);
  EXPECT_EQ(record.newIterator(cursor), 374);
  EXPECT_EQ(record.clearInvalid(), 374);
  EXPECT_EQ(record.getAt(item), 1);
  EXPECT_EQ(record.setAt(item), 1);
  EXPECT_EQ(record.insertAfter(item, L"a"), 1);
  EXPECT_EQ(record.find(L"a", cursor), 1);
}

TEST_F(Record, OpeningPassesTheHostsStatusOn) {
  EXPECT_EQ(record.open(AcDbObjectId(), AcDb::kForRead, false), Acad::eNullObjectId);
  given_items({L"a"});
  CDimRecord second;
  EXPECT_EQ(second.open(id, AcDb::kForRead, false), Acad::eWasOpenForWrite);
  EXPECT_FALSE(second.isValid());
}

TEST_F(Record, AnErasedRecordOpensOnRequestOnly) {
  given_items({L"a"});
  record.close();
  {
    dim::Opened<AcDbXrecord> xrecord(id, AcDb::kForWrite);
    ASSERT_EQ(xrecord->erase(), Acad::eOk);
  }
  EXPECT_EQ(record.open(id, AcDb::kForRead, false), Acad::eWasErased);
  EXPECT_EQ(record.open(id, AcDb::kForRead, true), Acad::eOk);
}

TEST_F(Record, WhatIsNoXrecordDoesNotOpenAsARecord) {
  EXPECT_EQ(record.open(plan.id(L"2F"), AcDb::kForRead, false), Acad::eNotThatKindOfClass);
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(record.open(plan.extension_dictionary(L"2F"), AcDb::kForRead, false),
            Acad::eNotThatKindOfClass);
}

TEST_F(Record, IsValidWhileItIsOpen) {
  given_items({L"a"}, AcDb::kForRead);
  EXPECT_TRUE(record.isValid());
  EXPECT_EQ(record.close(), Acad::eOk);
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(record.close(), 374);
  EXPECT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_TRUE(record.isValid());
}

TEST_F(Record, OpenForNotifyIsValidAndCannotBeWritten) {
  given_items({L"a"}, AcDb::kForNotify);
  EXPECT_TRUE(record.isValid());
  EXPECT_EQ(record.clearInvalid(), 1);
  EXPECT_EQ(record.setAt(item_of(L"a", L"new", L"40")), 1);
  EXPECT_EQ(record.close(), Acad::eOk);
  EXPECT_FALSE(record.isValid());
  EXPECT_EQ(stored(), Items{item_of(L"a", L"old", L"40")});
}

TEST_F(Record, ItsEndClosesIt) {
  given_items({L"a"});
  record.close();
  {
    CDimRecord other;
    ASSERT_EQ(other.open(id, AcDb::kForWrite, false), Acad::eOk);
    EXPECT_EQ(plan.database().open_objects().size(), 1u);
  }
  EXPECT_TRUE(plan.database().open_objects().empty());
}

TEST_F(Record, ACopySharesTheOpenXrecord) {
  given_items({L"a"});
  record.setDimTypeName(L"pcgb");
  {
    const CDimRecord copy(record);
    EXPECT_TRUE(copy.isValid());
  }  // closes for both
  EXPECT_FALSE(record.isValid());
  EXPECT_STREQ(record.getDimTypeName(), L"pcgb");
}

TEST_F(Record, TheTypeNameIsKeptBesideTheDrawing) {
  EXPECT_STREQ(record.getDimTypeName(), L"");
  record.setDimTypeName(L"BzJg");
  EXPECT_STREQ(record.getDimTypeName(), L"BzJg");
  record.setDimTypeName(nullptr);
  EXPECT_STREQ(record.getDimTypeName(), L"");
}

TEST_F(Record, LooksItemsUpByNameWithoutLetterCase) {
  given_items({L"a", L"Pipe_Len"});
  StuDim item = item_of(L"PIPE_LEN", L"mine", L"mine");
  item.extra = L"mine";
  EXPECT_EQ(record.getAt(item), Acad::eOk);
  EXPECT_EQ(item, item_of(L"Pipe_Len", L"old", L"40"));
  StuDim named;
  EXPECT_EQ(record.getAt(L"A", named), Acad::eOk);
  EXPECT_EQ(named.name, L"a");
}

TEST_F(Record, LookingUpNothingOrAMissingNameFails) {
  given_items({L"a"});
  StuDim item;
  EXPECT_EQ(record.getAt(item), 1);
  EXPECT_EQ(record.getAt(L"b", item), 1);
  EXPECT_EQ(item.name, L"b");
  EXPECT_EQ(record.getAt(nullptr, item), 1);
}

TEST_F(Record, AnEmptyNameIsNotLookedUpThoughAnItemHasIt) {
  given_items({L"", L"a"});
  StuDim item;
  EXPECT_EQ(record.getAt(item), 1);
  EXPECT_EQ(record.getAt(L"", item), 1);
  EXPECT_EQ(item, StuDim());
}

TEST_F(Record, FindingStandsOnTheItem) {
  given_items({L"a", L"b"});
  CDimRecordIterator cursor;
  EXPECT_EQ(record.find(L"B", cursor), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"b");
  EXPECT_EQ(record.find(L"c", cursor), 22);
  EXPECT_TRUE(cursor.done());
}

TEST_F(Record, SettingReplacesInPlace) {
  given_items({L"a", L"b", L"c"});
  EXPECT_EQ(record.setAt(item_of(L"B", L"new", L"41")), Acad::eOk);
  const Items items = stored();
  EXPECT_EQ(names_of(items), (Names{L"a", L"B", L"c"}));
  EXPECT_EQ(items[1], item_of(L"B", L"new", L"41"));
}

TEST_F(Record, SettingAppendsANewName) {
  given_items({L"a"});
  EXPECT_EQ(record.setAt(item_of(L"b", L"new")), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"b"}));
}

TEST_F(Record, SettingIntoARecordWithoutItemsStoresNothing) {
  given_items({});
  EXPECT_EQ(record.setAt(item_of(L"a", L"new")), Acad::eOk);
  EXPECT_EQ(stored(), Items{});
}

TEST_F(Record, SettingWithoutANameFailsButCleansUp) {
  const Items items = {item_of(L"gone", L"1", L"FFF"), item_of(L"a", L"1", L"40")};
  id = plan.store_items(L"2F", L"pcgb", items);
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.setAt(item_of(L"", L"new")), 1);
  EXPECT_EQ(names_of(stored()), Names{L"a"});
}

TEST_F(Record, SettingDropsStaleItemsFirst) {
  id = plan.store_items(L"2F", L"pcgb",
                        {item_of(L"gone", L"1", L"FFF"), item_of(L"a", L"1", L"40")});
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.setAt(item_of(L"a", L"new", L"40")), Acad::eOk);
  EXPECT_EQ(stored(), Items{item_of(L"a", L"new", L"40")});
}

TEST_F(Record, SettingIntoARecordThatTheCleanUpEmptiedStoresNothing) {
  id = plan.store_items(L"2F", L"pcgb", {item_of(L"gone", L"1", L"FFF")});
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.setAt(item_of(L"a", L"new", L"40")), Acad::eOk);
  EXPECT_EQ(stored(), Items{});
}

TEST_F(Record, VeryManyItemsKeepTheirOrder) {
  Items items;
  for (int i = 0; i < 3000; ++i) items.push_back(item_of(std::to_wstring(i), L"old", L"40"));
  id = plan.store_items(L"2F", L"pcgb", items);
  {
    CDimRecord large;
    ASSERT_EQ(large.open(id, AcDb::kForWrite, false), Acad::eOk);
    EXPECT_EQ(large.setAt(item_of(L"1500", L"new", L"40")), Acad::eOk);
    EXPECT_EQ(large.setAt(item_of(L"last", L"new", L"40")), Acad::eOk);
  }
  plan.reopen();
  items[1500].value = L"new";
  items.push_back(item_of(L"last", L"new", L"40"));
  EXPECT_EQ(plan.items(plan.entry(L"2F", L"pcgb")), items);
}

TEST_F(Record, SettingThroughARecordOpenForReadingFailsAndChangesNothing) {
  given_items({L"a"}, AcDb::kForRead);
  EXPECT_EQ(record.setAt(item_of(L"a", L"new", L"40")), 1);
  EXPECT_EQ(stored(), Items{item_of(L"a", L"old", L"40")});
}

TEST_F(Record, InsertAfterPutsTheItemBehindTheNamedOne) {
  given_items({L"a", L"b", L"c"});
  EXPECT_EQ(record.insertAfter(item_of(L"new", L"1"), L"B"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"b", L"new", L"c"}));
}

TEST_F(Record, InsertAfterTheLastItemAppends) {
  given_items({L"a", L"b"});
  EXPECT_EQ(record.insertAfter(item_of(L"new", L"1"), L"b"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"b", L"new"}));
}

TEST_F(Record, InsertAfterTheFirstItemDropsTheRest) {
  given_items({L"a", L"b", L"c"});
  EXPECT_EQ(record.insertAfter(item_of(L"new", L"1"), L"a"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"new"}));
}

TEST_F(Record, InsertAfterTheOnlyItemAppends) {
  given_items({L"a"});
  EXPECT_EQ(record.insertAfter(item_of(L"new", L"1"), L"a"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"new"}));
}

TEST_F(Record, InsertAfterAMissingNameReplacesOrAppends) {
  given_items({L"a", L"b"});
  EXPECT_EQ(record.insertAfter(item_of(L"c", L"1"), L"nobody"), Acad::eOk);
  EXPECT_EQ(record.insertAfter(item_of(L"A", L"2"), nullptr), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"A", L"b", L"c"}));
}

TEST_F(Record, InsertAfterInARecordWithoutItemsStoresNothing) {
  given_items({});
  EXPECT_EQ(record.insertAfter(item_of(L"a", L"1"), L"a"), Acad::eOk);
  EXPECT_EQ(stored(), Items{});
}

TEST_F(Record, InsertAfterDoesNotMindATakenName) {
  given_items({L"a", L"b", L"c"});
  EXPECT_EQ(record.insertAfter(item_of(L"c", L"second"), L"b"), Acad::eOk);
  StuDim item;
  EXPECT_EQ(record.getAt(L"c", item), Acad::eOk);
  EXPECT_EQ(item.value, L"second");
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"b", L"c", L"c"}));
}

TEST_F(Record, InsertAfterDropsStaleItemsFirst) {
  id = plan.store_items(L"2F", L"pcgb",
                        {item_of(L"gone", L"1", L"FFF"), item_of(L"a", L"1", L"40"),
                         item_of(L"b", L"1", L"40"), item_of(L"c", L"1", L"40")});
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.insertAfter(item_of(L"new", L"1"), L"b"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"b", L"new", L"c"}));
}

TEST_F(Record, InsertAfterTakesAnItemWithoutName) {
  given_items({L"a", L"b"});
  EXPECT_EQ(record.insertAfter(item_of(L"", L"1"), L"b"), Acad::eOk);
  EXPECT_EQ(stored().back(), item_of(L"", L"1"));
}

TEST_F(Record, InsertAfterThroughARecordOpenForReadingFails) {
  given_items({L"a", L"b"}, AcDb::kForRead);
  EXPECT_EQ(record.insertAfter(item_of(L"c", L"1"), L"b"), 1);
  EXPECT_EQ(names_of(stored()), (Names{L"a", L"b"}));
}

TEST_F(Record, AnUnfiledRecordIsDeletedWithIt) {
  std::unique_ptr<CDimRecord> made(
      CDimUpdateServ::getInstance().getDimFactory().CreateDimRec(item_of(L"a", L"1")));
  EXPECT_EQ(made->close(), 137);
  EXPECT_TRUE(made->isValid());
}

}  // namespace
