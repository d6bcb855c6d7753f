#include "network/list_text.h"

#include <gtest/gtest.h>

namespace {

struct Row {
  const wchar_t* text;
  int index;
  const wchar_t* element;
};

TEST(ListText, ElementsAreSeparatedByBlanks) {
  for (const Row& row :
       {Row{L"L= m 2 mm 1", 0, L"L="}, Row{L"L= m 2 mm 1", 4, L"1"}, Row{L"  a\t b  ", 1, L"b"},
        Row{L"(L= m 2)", 2, L"2"}, Row{L" ( L= m 2 ) ", 0, L"L="}}) {
    EXPECT_EQ(KT::Nth(row.text, row.index, true), row.element) << row.index;
  }
}

TEST(ListText, AnElementPastTheEndIsEmpty) {
  for (const Row& row : {Row{L"a b", 2, L""}, Row{L"", 0, L""}, Row{L"()", 0, L""},
                         Row{L"   ", 0, L""}, Row{L"a b", -1, L""}}) {
    EXPECT_EQ(KT::Nth(row.text, row.index, true), row.element) << row.index;
  }
}

TEST(ListText, APointReadsAsItsThreeNumbers) {
  const wchar_t* point = L"( 1.500000, -2.000000, 0.000000 )";
  EXPECT_EQ(KT::Nth(point, 0, true), L"1.500000");
  EXPECT_EQ(KT::Nth(point, 1, true), L"-2.000000");
  EXPECT_EQ(KT::Nth(point, 2, true), L"0.000000");
  EXPECT_EQ(KT::Nth(point, 3, true), L"");
}

TEST(ListText, ACommaThatIsNoPartOfANumberStays) {
  EXPECT_EQ(KT::Nth(L"1 , V", 1, true), L",");
  EXPECT_EQ(KT::Nth(L"a, b", 0, true), L"a,");
  EXPECT_EQ(KT::Nth(L"-, b", 0, true), L"-,");
  EXPECT_EQ(KT::Nth(L"\"1,\" b", 0, true), L"1,");
}

TEST(ListText, AQuotedElementKeepsItsBlanksAndLosesItsQuotes) {
  EXPECT_EQ(KT::Nth(L"\"L = \" m", 0, true), L"L = ");
  EXPECT_EQ(KT::Nth(L"\"L = \" m", 1, true), L"m");
  EXPECT_EQ(KT::Nth(L"\"(\" m", 1, true), L"m");
  EXPECT_EQ(KT::Nth(L"\"L = \" m", 0, false), L"\"L = \"");
}

TEST(ListText, AnEmptyQuotedElementCounts) {
  EXPECT_EQ(KT::Nth(L"\"\" m 2", 0, true), L"");
  EXPECT_EQ(KT::Nth(L"\"\" m 2", 1, true), L"m");
}

TEST(ListText, AListElementComesBackWithItsParentheses) {
  EXPECT_EQ(KT::Nth(L"标高 ((小数位 3))", 1, true), L"((小数位 3))");
  EXPECT_EQ(KT::Nth(L"((小数位 3))", 0, true), L"(小数位 3)");
  EXPECT_EQ(KT::Nth(L"(小数位 3)", 1, true), L"3");
  EXPECT_EQ(KT::Nth(L"(a b) (c d)", 1, true), L"(c d)");
  EXPECT_EQ(KT::Nth(L"((\"管径\" \"Y\") (\"管长\" \"N\"))", 1, true), L"(\"管长\" \"N\")");
}

TEST(ListText, ParenthesesInQuotesAreTextWhereverTheyStand) {
  EXPECT_EQ(KT::Nth(L"((\"a)b\" Y) c)", 0, true), L"(\"a)b\" Y)");
  EXPECT_EQ(KT::Nth(L"((\"a)b\" Y) c)", 1, true), L"c");
  EXPECT_EQ(KT::Nth(L"(\"a)b\" Y)", 0, true), L"a)b");
  EXPECT_EQ(KT::Nth(L"\")(\" m", 0, true), L")(");
}

TEST(ListText, TabsAndLineEndsAreBlanks) {
  EXPECT_EQ(KT::Nth(L"\ta\t\r\nb\r", 0, true), L"a");
  EXPECT_EQ(KT::Nth(L"\ta\t\r\nb\r", 1, true), L"b");
}

TEST(ListText, UnbalancedTextReachesToTheEnd) {
  EXPECT_EQ(KT::Nth(L"(a b", 1, true), L"b");
  EXPECT_EQ(KT::Nth(L"a (b c", 1, true), L"(b c");
  EXPECT_EQ(KT::Nth(L"a \"b c", 1, true), L"b c");
  EXPECT_EQ(KT::Nth(L"a ) b", 1, true), L"b");
  EXPECT_EQ(KT::Nth(L"\"", 0, true), L"");
  EXPECT_EQ(KT::Nth(L"(", 0, true), L"");
}

TEST(ListText, AFullWidthBlankIsACharacterOfTheWord) {
  EXPECT_EQ(KT::Nth(L"L　= m", 0, true), L"L　=");
  EXPECT_EQ(KT::Nth(L"L　= m", 1, true), L"m");
}

TEST(ListText, ListsReadAlikeWithAndWithoutOuterParentheses) {
  for (const wchar_t* text :
       {L"(\"管径\" \"Y\") (\"管长\" \"N\")", L"((\"管径\" \"Y\") (\"管长\" \"N\"))"}) {
    EXPECT_EQ(KT::Nth(KT::Nth(text, 0, true), 0, true), L"管径");
    EXPECT_EQ(KT::Nth(KT::Nth(text, 1, true), 1, true), L"N");
    EXPECT_EQ(KT::Nth(text, 2, true), L"");
  }
}

TEST(ListText, AnEmptyListIsAnElement) {
  EXPECT_EQ(KT::Nth(L"a () b", 1, true), L"()");
  EXPECT_EQ(KT::Nth(L"a () b", 2, true), L"b");
  EXPECT_EQ(KT::Nth(L"(())", 0, true), L"()");
}

TEST(ListText, DeepNestingIsReadWithoutDeepCalls) {
  const std::wstring deep(1000000, L'(');
  EXPECT_EQ(KT::Nth(deep + L"a", 0, true).size(), 1000000u);
}

TEST(ListText, AReaderGivesTheElementsOneByOne) {
  network::ListReader list(L"(a \"\" (b c) d)", true);
  EXPECT_EQ(list.next(), L"a");
  EXPECT_EQ(list.next(), L"") << "an empty text, not the end";
  EXPECT_TRUE(list.skip());
  EXPECT_EQ(list.next(), L"d");
  EXPECT_FALSE(list.skip());
}

}  // namespace
