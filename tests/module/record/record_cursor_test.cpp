#include "module/record/record_cursor.h"

#include <gtest/gtest.h>

#include <memory>

#include "module/record/item_chain.h"
#include "module/record/record.h"
#include "module/record/record_factory.h"
#include "module/registry/update_service.h"
#include "tests/module/plan.h"

namespace {

/// The cursor with its searching parts in reach.
class OpenCursor : public CDimRecordIterator {
 public:
  using CDimRecordIterator::find;
  using CDimRecordIterator::nth;
  using CDimRecordIterator::operator=;
};

class RecordCursor : public ::testing::Test {
 protected:
  void given_items(const Names& names) {
    Items items;
    for (const std::wstring& name : names) items.push_back(item_of(name, L"old"));
    record.reset(CDimUpdateServ::getInstance().getDimFactory().CreateDimRec(items));
    ASSERT_EQ(record->newIterator(cursor), Acad::eOk);
  }
  void stand_on(const wchar_t* name) {
    cursor.start();
    while (!cursor.done() && std::wstring(cursor.getDimName()) != name) cursor.step();
    ASSERT_FALSE(cursor.done());
  }
  static Items items_of(CDimRecordIterator& walk) {
    Items items;
    StuDim item;
    for (walk.start(); !walk.done(); walk.step()) {
      EXPECT_EQ(walk.getDim(item), Acad::eOk);
      items.push_back(item);
    }
    return items;
  }
  Names names() { return names_of(items_of(cursor)); }
  Names stored_names() {
    CDimRecordIterator walk;
    EXPECT_EQ(record->newIterator(walk), Acad::eOk);
    return names_of(items_of(walk));
  }

  std::unique_ptr<CDimRecord> record;
  OpenCursor cursor;
};

TEST_F(RecordCursor, ANewOneHasNothingToDo) {
  EXPECT_TRUE(cursor.done());
  cursor.start();
  cursor.step();
  EXPECT_TRUE(cursor.done());
  EXPECT_EQ(cursor.commit(), 1);
  EXPECT_EQ(cursor.deleteThis(), 0);
  EXPECT_EQ(cursor.isText(), 0);
}

TEST_F(RecordCursor, WalksTheItemsInTheirOrder) {
  given_items({L"a", L"b", L"c"});
  EXPECT_STREQ(cursor.getDimName(), L"a");
  EXPECT_EQ(names(), (Names{L"a", L"b", L"c"}));
  EXPECT_EQ(names(), (Names{L"a", L"b", L"c"}));
}

TEST_F(RecordCursor, ReadingWhenDoneFails) {
  given_items({L"a"});
  cursor.step();
  StuDim item = item_of(L"untouched");
  EXPECT_EQ(cursor.getDim(item), 1);
  EXPECT_EQ(item.name, L"untouched");
  EXPECT_EQ(cursor.getDimName(), nullptr);
  EXPECT_EQ(cursor.field(CDimRecordIterator::posValue), L"");
  EXPECT_EQ(cursor.isText(), 0);
  cursor.step();
  EXPECT_TRUE(cursor.done());
}

TEST_F(RecordCursor, ReadsEveryField) {
  const StuDim item{L"n", L"2F", L"36.5", L"L=", L"m", L"/", L"kind", L"extra"};
  record.reset(CDimUpdateServ::getInstance().getDimFactory().CreateDimRec(item));
  ASSERT_EQ(record->newIterator(cursor), Acad::eOk);
  StuDim read;
  EXPECT_EQ(cursor.getDim(read), Acad::eOk);
  EXPECT_EQ(read, item);
  EXPECT_EQ(cursor.field(CDimRecordIterator::posPrefix), L"L=");
  EXPECT_EQ(cursor.field(CDimRecordIterator::posValue), L"36.5");
}

TEST_F(RecordCursor, ReplacingTheMiddleItemKeepsTheOrder) {
  given_items({L"a", L"b", L"c"});
  cursor.start();
  EXPECT_EQ(cursor.setDim(item_of(L"b", L"new")), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"a");
  const Items items = items_of(cursor);
  EXPECT_EQ(names_of(items), (Names{L"a", L"b", L"c"}));
  EXPECT_EQ(items[1].value, L"new");
}

TEST_F(RecordCursor, ReplacingTheLastItemKeepsTheOrder) {
  given_items({L"a", L"b"});
  EXPECT_EQ(cursor.setDim(item_of(L"b", L"new")), Acad::eOk);
  const Items items = items_of(cursor);
  EXPECT_EQ(names_of(items), (Names{L"a", L"b"}));
  EXPECT_EQ(items[1].value, L"new");
}

TEST_F(RecordCursor, ReplacingTheItemItStandsOnKeepsItThere) {
  given_items({L"a", L"b", L"c"});
  stand_on(L"b");
  EXPECT_EQ(cursor.setDim(item_of(L"B", L"new")), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"B");
  cursor.step();
  EXPECT_STREQ(cursor.getDimName(), L"c");
}

TEST_F(RecordCursor, ReplacingTheFirstItemMakesItHeadAndCurrent) {
  given_items({L"pipe_len", L"pipe_dia", L"pipe_i"});
  stand_on(L"pipe_i");
  EXPECT_EQ(cursor.setDim(item_of(L"PIPE_LEN", L"36.5")), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"PIPE_LEN");
  EXPECT_EQ(names(), (Names{L"PIPE_LEN", L"pipe_dia", L"pipe_i"}));
}

TEST_F(RecordCursor, ReplacingTheOnlyItemMakesItHeadAndCurrent) {
  given_items({L"a"});
  EXPECT_EQ(cursor.setDim(item_of(L"A", L"new")), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"A");
  const Items items = items_of(cursor);
  EXPECT_EQ(names_of(items), Names{L"A"});
  EXPECT_EQ(items[0].value, L"new");
}

TEST_F(RecordCursor, ANameThatIsNotThereIsAppended) {
  given_items({L"a", L"b"});
  EXPECT_EQ(cursor.setDim(item_of(L"c", L"new")), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"a");
  EXPECT_EQ(names(), (Names{L"a", L"b", L"c"}));
}

TEST_F(RecordCursor, WritingBehindTheEndOfTheWalkFails) {
  given_items({L"a"});
  cursor.step();
  EXPECT_EQ(cursor.setDim(item_of(L"b", L"new")), 1);
  EXPECT_EQ(names(), Names{L"a"});
}

TEST_F(RecordCursor, AnEmptyRecordTakesNoItem) {
  given_items({});
  cursor.start();
  EXPECT_TRUE(cursor.done());
  EXPECT_EQ(cursor.setDim(item_of(L"a", L"new")), 1);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored_names(), Names{});
}

TEST_F(RecordCursor, DeletingStandsOnTheNextItem) {
  given_items({L"a", L"b", L"c"});
  stand_on(L"b");
  EXPECT_EQ(cursor.deleteThis(), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"c");
  EXPECT_EQ(names(), (Names{L"a", L"c"}));
}

TEST_F(RecordCursor, DeletingTheFirstItemMovesTheHead) {
  given_items({L"a", L"b"});
  EXPECT_EQ(cursor.deleteThis(), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"b");
  EXPECT_EQ(names(), Names{L"b"});
}

TEST_F(RecordCursor, DeletingTheLastItemEndsTheWalk) {
  given_items({L"a", L"b"});
  stand_on(L"b");
  EXPECT_EQ(cursor.deleteThis(), Acad::eOk);
  EXPECT_TRUE(cursor.done());
  EXPECT_EQ(names(), Names{L"a"});
}

TEST_F(RecordCursor, DeletingTheOnlyItemCommitsAnEmptyChain) {
  given_items({L"a"});
  EXPECT_EQ(cursor.deleteThis(), Acad::eOk);
  EXPECT_TRUE(cursor.done());
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored_names(), Names{});
}

TEST_F(RecordCursor, DeletingOneOfTwoItemsOfANameTakesTheFirst) {
  given_items({L"a", L"b", L"A", L"c"});
  stand_on(L"A");
  EXPECT_EQ(cursor.deleteThis(), Acad::eOk);
  EXPECT_STREQ(cursor.getDimName(), L"b");
  EXPECT_EQ(names(), (Names{L"b", L"A", L"c"}));
}

TEST_F(RecordCursor, DeletingWhenDoneIsASuccess) {
  given_items({L"a"});
  cursor.step();
  EXPECT_EQ(cursor.deleteThis(), Acad::eOk);
  EXPECT_EQ(names(), Names{L"a"});
}

TEST_F(RecordCursor, EditsReachTheRecordAtCommit) {
  given_items({L"a"});
  EXPECT_EQ(cursor.setDim(item_of(L"b", L"new")), Acad::eOk);
  EXPECT_EQ(stored_names(), Names{L"a"});
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored_names(), (Names{L"a", L"b"}));
}

TEST_F(RecordCursor, AfterHandingOverOnlyTheReceiverFreesTheChain) {
  given_items({L"a", L"b"});
  OpenCursor receiver;
  receiver = cursor;
  EXPECT_STREQ(receiver.getDimName(), L"a");
  EXPECT_STREQ(cursor.getDimName(), L"a");
  EXPECT_EQ(receiver.setDim(item_of(L"c", L"new")), Acad::eOk);
  EXPECT_EQ(receiver.commit(), Acad::eOk);
  EXPECT_EQ(stored_names(), (Names{L"a", L"b", L"c"}));
}

TEST_F(RecordCursor, AfterHandingOverTheReceiverStandsWhereTheGiverStood) {
  given_items({L"a", L"b"});
  cursor.step();
  OpenCursor receiver;
  receiver = cursor;
  EXPECT_STREQ(receiver.getDimName(), L"b");
  receiver.start();
  EXPECT_STREQ(receiver.getDimName(), L"a");
}

TEST_F(RecordCursor, HandingOverToItselfChangesNothing) {
  given_items({L"a"});
  OpenCursor& same = cursor;
  cursor = same;
  EXPECT_EQ(names(), Names{L"a"});
}

TEST_F(RecordCursor, NamesStayReadableWhenAnotherChainIsTaken) {
  given_items({L"first"});
  const wchar_t* name = cursor.getDimName();
  given_items({L"second"});
  EXPECT_STREQ(name, L"first");
  EXPECT_STREQ(cursor.getDimName(), L"second");
  CDimRecordIterator other;
  ASSERT_EQ(record->newIterator(other), Acad::eOk);
  const wchar_t* second = cursor.getDimName();
  cursor = other;
  const dim::ResbufChain reuse(dim::new_item(item_of(L"third!", L"third!", L"third!")));
  EXPECT_EQ(std::wstring(name), L"first");
  EXPECT_EQ(std::wstring(second), L"second");
}

TEST_F(RecordCursor, ATakenChainIsFreedByACursorThatGaveItsOwnAway) {
  given_items({L"a"});
  OpenCursor receiver;
  receiver = cursor;
  ASSERT_EQ(record->newIterator(cursor), Acad::eOk);
  EXPECT_EQ(names(), Names{L"a"});
}

TEST_F(RecordCursor, FindingGivesTheNeighbours) {
  given_items({L"a", L"b", L"c"});
  resbuf* previous = nullptr;
  resbuf* following = nullptr;
  EXPECT_EQ(cursor.find(previous, L"B", following), 1);
  EXPECT_EQ(dim::buffer_text(*previous), L"a");
  EXPECT_EQ(dim::buffer_text(*following), L"c");
  EXPECT_EQ(cursor.find(previous, L"a", following), 1);
  EXPECT_EQ(previous, nullptr);
  EXPECT_EQ(dim::buffer_text(*following), L"b");
  EXPECT_EQ(cursor.find(previous, L"c", following), 1);
  EXPECT_EQ(following, nullptr);
  EXPECT_EQ(cursor.find(previous, L"d", following), 0);
  EXPECT_EQ(dim::buffer_text(*previous), L"c");
  EXPECT_EQ(cursor.find(previous, nullptr, following), 0);
}

TEST_F(RecordCursor, LinksLeadToEachFieldAndTheNextItem) {
  given_items({L"a", L"b"});
  EXPECT_EQ(dim::buffer_text(*cursor.nth(CDimRecordIterator::posName)), L"a");
  EXPECT_EQ(dim::buffer_text(*cursor.nth(CDimRecordIterator::posValue)), L"old");
  resbuf* second = cursor.nth(CDimRecordIterator::posNext);
  EXPECT_EQ(dim::buffer_text(*second), L"b");
  EXPECT_EQ(&cursor.nth(CDimRecordIterator::posName, second), &second);
  EXPECT_EQ(cursor.nth(CDimRecordIterator::posNext, second), nullptr);
  resbuf* none = nullptr;
  EXPECT_EQ(&cursor.nth(CDimRecordIterator::posValue, none),
            &cursor.nth(CDimRecordIterator::posName));
}

/// Chains as only a damaged drawing holds them.
class DamagedChain : public PlanTest {
 protected:
  void given(const Texts& texts, int extra_reals = 0) {
    dim::ChainBuilder chain;
    chain.add(text_chain(texts).release());
    while (extra_reals-- > 0) {
      resbuf* real = acutNewRb(40);
      real->resval.rreal = 1.5;
      chain.add(real);
    }
    id = plan.store_chain(L"2F", L"pcgb", chain.head());
    ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
    ASSERT_EQ(record.newIterator(cursor), Acad::eOk);
  }
  Texts stored() {
    record.close();
    Texts texts;
    for (const auto& [type, text] : plan.buffers(id)) texts.push_back(text);
    return texts;
  }
  AcDbObjectId id;
  CDimRecord record;
  CDimRecordIterator cursor;
};

const Texts kWhole = {L"a", L"40", L"", L"1", L"", L"", L"", L""};

Texts with_rest(Texts texts, const Texts& rest) {
  texts.insert(texts.end(), rest.begin(), rest.end());
  return texts;
}

TEST_F(DamagedChain, WholeItemsBeforeAShortOneStayReadable) {
  given(with_rest(kWhole, {L"short", L"41", L""}));
  StuDim item;
  EXPECT_EQ(cursor.getDim(item), Acad::eOk);
  EXPECT_EQ(item.name, L"a");
  cursor.step();
  EXPECT_FALSE(cursor.done());
  EXPECT_FALSE(cursor.stands_on_item());
  EXPECT_EQ(cursor.getDim(item), 1);
  EXPECT_STREQ(cursor.getDimName(), L"short");
  EXPECT_EQ(cursor.isText(), 0);
  cursor.step();
  EXPECT_TRUE(cursor.done());
}

TEST_F(DamagedChain, TheShortItemIsKeptOnCommit) {
  const Texts texts = with_rest(kWhole, {L"short", L"41", L""});
  given(texts);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored(), texts);
}

TEST_F(DamagedChain, AnAppendedItemGoesBeforeTheShortOne) {
  given(with_rest(kWhole, {L"short"}));
  EXPECT_EQ(cursor.setDim(item_of(L"short", L"v")), Acad::eOk);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored(), with_rest(with_rest(kWhole, {L"short", L"", L"", L"v", L"", L"", L"", L""}),
                                {L"short"}));
}

TEST_F(DamagedChain, AChainOfAShortItemAloneTakesItemsBeforeIt) {
  given({L"short", L"41"});
  EXPECT_FALSE(cursor.done());
  EXPECT_EQ(cursor.setDim(item_of(L"a", L"v")), Acad::eOk);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored(), (Texts{L"a", L"", L"", L"v", L"", L"", L"", L"", L"short", L"41"}));
}

TEST_F(DamagedChain, TheShortItemCannotBeDeleted) {
  const Texts texts = with_rest(kWhole, {L"a", L"41"});
  given(texts);
  cursor.step();
  EXPECT_EQ(cursor.deleteThis(), 1);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  EXPECT_EQ(stored(), texts);
}

TEST_F(DamagedChain, ABufferWithoutTextIsKeptWhenAnotherItemIsWritten) {
  given(with_rest({L"odd", L"", L"", L"1", L"", L"", L""}, {}), 1);
  StuDim item;
  EXPECT_EQ(cursor.getDim(item), Acad::eOk);
  EXPECT_EQ(item.extra, L"");
  EXPECT_EQ(cursor.setDim(item_of(L"b", L"2")), Acad::eOk);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  record.close();
  const auto buffers = plan.buffers(id);
  ASSERT_EQ(buffers.size(), 16u);
  EXPECT_EQ(buffers[7].first, 40);
  EXPECT_EQ(buffers[8].second, L"b");
}

TEST_F(DamagedChain, ABufferWithoutTextBecomesTextWhenItsItemIsRewritten) {
  given({L"odd", L"", L"", L"1", L"", L"", L""}, 1);
  EXPECT_EQ(cursor.setDim(item_of(L"odd", L"2")), Acad::eOk);
  EXPECT_EQ(cursor.commit(), Acad::eOk);
  record.close();
  for (const auto& [type, text] : plan.buffers(id)) EXPECT_EQ(type, 1);
}

TEST_F(DamagedChain, CommittingThroughARecordOpenForReadingFails) {
  given(kWhole);
  record.close();
  ASSERT_EQ(record.open(id, AcDb::kForRead, false), Acad::eOk);
  ASSERT_EQ(record.newIterator(cursor), Acad::eOk);
  const TraceLines trace;
  EXPECT_EQ(cursor.commit(), 1);
  EXPECT_EQ(trace.lines(), Texts{L"扩展记录指针失效,无法写入!"});
}

TEST_F(DamagedChain, CommittingAfterTheRecordWasClosedFails) {
  given(kWhole);
  record.close();
  EXPECT_EQ(cursor.commit(), 1);
}

}  // namespace
