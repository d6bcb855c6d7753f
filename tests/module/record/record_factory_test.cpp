#include "module/record/record_factory.h"

#include <gtest/gtest.h>

#include <memory>

#include "module/record/kt_exception.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "tests/module/plan.h"

namespace {

CDimRecFactory factory;

int count(const resbuf* chain) {
  int buffers = 0;
  for (; chain; chain = chain->rbnext) ++buffers;
  return buffers;
}

Items items_of(const CDimRecord& record) {
  Items items;
  CDimRecordIterator cursor;
  EXPECT_EQ(record.newIterator(cursor), Acad::eOk);
  StuDim item;
  for (cursor.start(); !cursor.done(); cursor.step()) {
    EXPECT_EQ(cursor.getDim(item), Acad::eOk);
    items.push_back(item);
  }
  return items;
}

TEST(RecordFactory, AnItemHasExactlyEightBuffers) {
  const dim::ResbufChain chain(factory.CreateDimResbuf(item_of(L"a", L"1", L"40")));
  EXPECT_EQ(count(chain.get()), 8);
}

TEST(RecordFactory, ItemsReadBackAsTheyWentInInTheirOrder) {
  const Items items = {{L"a", L"40", L"1", L"(", L")", L"/", L"", L"x"},
                       {L"b", L"41", L"2", L"[", L"]", L"-", L"k", L"y"},
                       StuDim()};
  const std::unique_ptr<CDimRecord> record(factory.CreateDimRec(items));
  ASSERT_TRUE(record);
  EXPECT_EQ(items_of(*record), items);
}

TEST(RecordFactory, TextsOfTheTradeSurvive) {
  const Items items = {
      {L"管道长度", L"40", L"  36.5\t", L"^J%%c", L"\U0001F4A7", L"\n", L"", L" "}};
  const std::unique_ptr<CDimRecord> record(factory.CreateDimRec(items));
  EXPECT_EQ(items_of(*record), items);
}

TEST(RecordFactory, ItemsOfEqualNamesAreAllStored) {
  const std::unique_ptr<CDimRecord> record(
      factory.CreateDimRec(Items{item_of(L"a", L"1"), item_of(L"A", L"2")}));
  EXPECT_EQ(names_of(items_of(*record)), (Names{L"a", L"A"}));
  StuDim found;
  EXPECT_EQ(record->getAt(L"A", found), Acad::eOk);
  EXPECT_EQ(found.value, L"1");
}

TEST(RecordFactory, OneItemMakesARecordToo) {
  const std::unique_ptr<CDimRecord> record(factory.CreateDimRec(item_of(L"a", L"1")));
  EXPECT_EQ(items_of(*record), Items{item_of(L"a", L"1")});
}

TEST(RecordFactory, NoItemsMakeARecordWithoutItems) {
  const std::unique_ptr<CDimRecord> record(factory.CreateDimRec(Items{}));
  ASSERT_TRUE(record);
  EXPECT_TRUE(record->isValid());
  EXPECT_EQ(items_of(*record), Items{});
}

TEST(RecordFactory, AMadeRecordHasNoTypeAndIsValid) {
  const std::unique_ptr<CDimRecord> record(factory.CreateDimRec(item_of(L"a", L"1")));
  EXPECT_STREQ(record->getDimTypeName(), L"");
  EXPECT_TRUE(record->isValid());
}

TEST(ModuleException, SaysWhereItHappened) {
  const CKTException failure(0, L".\\DimRecFactory", 53);
  EXPECT_EQ(failure.code(), 0);
  EXPECT_STREQ(failure.file(), L".\\DimRecFactory");
  EXPECT_EQ(failure.line(), 53);
}

}  // namespace
