#include "module/record/item_chain.h"

#include <gtest/gtest.h>

#include "module/record/record_cursor.h"
#include "tests/module/plan.h"

namespace {

StuDim full_item() { return {L"n", L"2F", L"36.5", L"L=", L"m", L"/", L"kind", L"extra"}; }

Texts texts_of(const resbuf* chain) {
  Texts texts;
  for (; chain; chain = chain->rbnext) texts.emplace_back(dim::buffer_text(*chain));
  return texts;
}

TEST(ItemChain, AnItemIsStoredAsEightTextsWithThePrefixBeforeTheValue) {
  const dim::ResbufChain chain(dim::new_item(full_item()));
  EXPECT_EQ(texts_of(chain.get()),
            (Texts{L"n", L"2F", L"L=", L"36.5", L"m", L"/", L"kind", L"extra"}));
  for (const resbuf* at = chain.get(); at; at = at->rbnext) EXPECT_EQ(at->restype, 1);
}

TEST(ItemChain, ReadingAnItemBackGivesWhatWasWritten) {
  const dim::ResbufChain chain(dim::new_item(full_item()));
  StuDim item;
  EXPECT_TRUE(dim::read_item(chain.get(), item));
  EXPECT_EQ(item, full_item());
}

TEST(ItemChain, AnItemWithoutTextsIsEightEmptyTexts) {
  const dim::ResbufChain chain(dim::new_item(StuDim()));
  EXPECT_EQ(texts_of(chain.get()), Texts(8));
  StuDim item = full_item();
  EXPECT_TRUE(dim::read_item(chain.get(), item));
  EXPECT_EQ(item, StuDim());
}

TEST(ItemChain, AnItemThatIsCutShortIsNotRead) {
  for (std::size_t count = 0; count < 8; ++count) {
    const dim::ResbufChain chain = text_chain(Texts(count, L"x"));
    StuDim item = full_item();
    EXPECT_FALSE(dim::is_whole_item(chain.get()));
    EXPECT_FALSE(dim::read_item(chain.get(), item));
    EXPECT_EQ(item, full_item());
    EXPECT_EQ(dim::item_field(chain.get(), 7), L"");
  }
}

TEST(ItemChain, ABufferThatHoldsNoTextReadsAsEmpty) {
  dim::ResbufChain chain = text_chain(Texts(8, L"x"));
  resbuf* real = acutNewRb(40);
  real->resval.rreal = 2.5;
  real->rbnext = std::exchange(chain->rbnext->rbnext, nullptr);
  acutRelRb(std::exchange(chain->rbnext, real));
  StuDim item;
  ASSERT_TRUE(dim::read_item(chain.get(), item));
  EXPECT_EQ(item.name, L"x");
  EXPECT_EQ(item.handle, L"");
  EXPECT_EQ(item.prefix, L"x");
}

TEST(ItemChain, TextEndsAtItsFirstNull) {
  const dim::ResbufChain chain(dim::new_item(item_of(std::wstring(L"a\0b", 3))));
  EXPECT_EQ(dim::buffer_text(*chain), L"a");
}

struct TextRow {
  const char* why;
  StuDim item;
  bool is_text;
};

TEST(ItemChain, AnItemIsTextWhenItWritesSomethingIntoAnEntity) {
  StuDim prefix_only = item_of(L"pipe_dia");
  prefix_only.prefix = L"DN";
  StuDim suffix_only = item_of(L"pipe_len");
  suffix_only.suffix = L"m";
  StuDim information = item_of(L"zh_mc", L"K1");
  information.recordKind = dim::kNoEntityKind;
  StuDim named_by_value = item_of(L"36.5", L"36.5");
  named_by_value.prefix = L"L=";
  StuDim nameless = StuDim();
  nameless.prefix = L"L=";
  for (const TextRow& row : {
           TextRow{"a value", item_of(L"pipe_len", L"36.5", L"40"), true},
           TextRow{"a prefix alone", prefix_only, true},
           TextRow{"a suffix alone", suffix_only, true},
           TextRow{"letter case tells value from name", item_of(L"A", L"a"), true},
           TextRow{"nothing to write", item_of(L"pipe_len", L"", L"40"), false},
           TextRow{"an entity", item_of(L"40", L"", L"40"), false},
           TextRow{"value and name alike", named_by_value, false},
           TextRow{"value and name both empty", nameless, false},
           TextRow{"any kind", information, false},
       }) {
    const dim::ResbufChain chain(dim::new_item(row.item));
    EXPECT_EQ(dim::is_text_item(chain.get()), row.is_text) << row.why;
  }
  EXPECT_FALSE(dim::is_text_item(nullptr));
}

TEST(ItemChain, FindingLooksAtWholeItemsAndIgnoresLetterCase) {
  dim::ChainBuilder chain;
  for (const wchar_t* name : {L"a", L"b", L"B"}) chain.add(dim::new_item(item_of(name)));
  chain.add(text_chain({L"rest"}).release());
  const dim::ItemPlace first = dim::find_item(chain.head(), L"A");
  EXPECT_EQ(first.previous, nullptr);
  EXPECT_EQ(first.found, chain.head());
  const dim::ItemPlace second = dim::find_item(chain.head(), L"B");
  EXPECT_EQ(second.previous, first.found);
  EXPECT_EQ(second.found, first.following);
  EXPECT_EQ(dim::buffer_text(*second.following), L"B");
  const dim::ItemPlace none = dim::find_item(chain.head(), L"rest");
  EXPECT_EQ(none.found, nullptr);
  EXPECT_EQ(none.previous, second.following);
  EXPECT_EQ(dim::find_item(nullptr, L"a").found, nullptr);
}

TEST(ItemChain, LinksEndWithTheChain) {
  const dim::ResbufChain chain = text_chain({L"a", L"b"});
  resbuf* first = chain.get();
  EXPECT_EQ(dim::link_to(first, 0), chain.get());
  EXPECT_EQ(dim::link_to(first, 1), chain->rbnext);
  EXPECT_EQ(dim::link_to(first, 8), nullptr);
  EXPECT_EQ(&dim::link_to(first, 8), &chain->rbnext->rbnext);
}

}  // namespace
