#include "module/record/stored_items.h"

#include <gtest/gtest.h>

#include "module/platform/opened.h"
#include "module/record/record.h"
#include "tests/module/plan.h"

namespace {

class StoredItems : public PlanTest {
 protected:
  dim::StoredItems items;
};

Items all_of(const dim::StoredItems& items) {
  Items all;
  for (std::size_t i = 0; i < items.size(); ++i) all.push_back(items.item(i));
  return all;
}

TEST_F(StoredItems, AreThoseThatWereStored) {
  const Items stored = {{L"n", L"2F", L"36.5", L"L=", L"m", L"/", L"kind", L"extra"},
                        item_of(L"管长", L"坡度‰"),
                        item_of(L"", L"")};
  ASSERT_EQ(items.read(plan.store_items(L"2F", L"pcgb", stored)), Acad::eOk);
  EXPECT_EQ(all_of(items), stored);
  EXPECT_FALSE(items.is_cut_short());
}

TEST_F(StoredItems, OfAnotherRecordTakeTheirPlace) {
  const AcDbObjectId longer =
      plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1"), item_of(L"b", L"2")});
  const AcDbObjectId shorter = plan.store_items(L"2F", L"xzgj", {item_of(L"c", L"3")});
  ASSERT_EQ(items.read(longer), Acad::eOk);
  ASSERT_EQ(items.read(shorter), Acad::eOk);
  EXPECT_EQ(all_of(items), Items{item_of(L"c", L"3")});
  EXPECT_EQ(items.read(AcDbObjectId()), Acad::eNullObjectId);
  EXPECT_EQ(items.size(), 0u) << "nothing of the record before";
}

TEST_F(StoredItems, ChangedBetweenTwoReadsAreReadAsTheyStand) {
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"40")});
  ASSERT_EQ(items.read(id), Acad::eOk);
  {
    CDimRecord record;
    ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
    ASSERT_EQ(record.setAt(item_of(L"a", L"2", L"40")), Acad::eOk);
  }
  ASSERT_EQ(items.read(id), Acad::eOk);
  EXPECT_EQ(all_of(items), Items{item_of(L"a", L"2", L"40")});
}

TEST_F(StoredItems, ARecordThatEndsWithinAnItemHasTheWholeOnesAndIsCutShort) {
  for (std::size_t rest = 0; rest < 8; ++rest) {
    const dim::ResbufChain chain = text_chain(Texts(8 + rest, L"x"));
    ASSERT_EQ(items.read(plan.store_chain(L"2F", L"pcgb", chain.get())), Acad::eOk);
    EXPECT_EQ(items.size(), 1u);
    EXPECT_EQ(items.is_cut_short(), rest != 0);
  }
}

TEST_F(StoredItems, ARecordWithoutValuesHasNone) {
  ASSERT_EQ(items.read(plan.store_chain(L"2F", L"pcgb", nullptr)), Acad::eOk);
  EXPECT_EQ(items.size(), 0u);
  EXPECT_FALSE(items.is_cut_short());
}

TEST_F(StoredItems, AreTextWhereACursorSaysSo) {
  const Items stored = {item_of(L"pipe_len", L"36.5", L"40"),
                        item_of(L"40", L"", L"40"),
                        item_of(L"jt", L"jt", L"41"),
                        item_of(L"", L"", L"41"),
                        item_of(L"a", L"b"),
                        {L"n", L"", L"v", L"", L"", L"", L"k", L""}};
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", stored);
  ASSERT_EQ(items.read(id), Acad::eOk);
  CDimRecord record;
  CDimRecordIterator cursor;
  ASSERT_EQ(record.open(id, AcDb::kForRead, false), Acad::eOk);
  ASSERT_EQ(record.newIterator(cursor), Acad::eOk);
  std::size_t i = 0;
  for (cursor.start(); !cursor.done(); cursor.step(), ++i)
    EXPECT_EQ(items.is_text(i), cursor.isText() != 0) << i;
  EXPECT_EQ(items.size(), i);
}

TEST_F(StoredItems, OfARecordOpenForWritingCannotBeRead) {
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1")});
  const dim::Opened<AcDbXrecord> writer(id, AcDb::kForWrite);
  EXPECT_EQ(items.read(id), Acad::eWasOpenForWrite);
}

TEST_F(StoredItems, OfWhatIsNoRecordCannotBeRead) {
  EXPECT_EQ(items.read(plan.id(L"2F")), 46);
  EXPECT_EQ(items.size(), 0u);
}

}  // namespace
