#include "host/lisp/reader.h"

#include "session.h"

namespace cad::lisp {
namespace {

class LispReader : public Session {
 protected:
  std::string read(std::string_view text) {
    const std::wstring wide = from_utf8(text);
    Reader reader(interp, wide);
    try {
      const std::optional<Value> form = reader.next();
      return form ? shown(*form) : "nothing";
    } catch (const LispError& error) {
      return "!" + to_utf8(error.message) + " in line " + std::to_string(reader.line());
    }
  }
};

struct Case {
  std::string_view text;
  std::string_view form;
};

TEST_F(LispReader, NumbersHaveTheFormsOfTheHost) {
  constexpr Case kCases[] = {
      {"1", "1"},
      {"+5", "5"},
      {"-12", "-12"},
      {"007", "7"},
      {"2147483647", "2147483647"},
      {"-2147483647", "-2147483647"},
      {"2147483648", "2.14748e+009"},
      {"-2147483648", "-2.14748e+009"},
      {"99999999999999999999", "1.0e+020"},
      {"1.5", "1.5"},
      {"1.", "1.0"},
      {".5", "0.5"},
      {"-.5", "-0.5"},
      {"1e5", "100000.0"},
      {"1E-2", "0.01"},
      {"-1.5e+3", "-1500.0"},
      {"1e999", "1.#INF"},
  };
  for (const Case& c : kCases) EXPECT_EQ(read(c.text), c.form) << c.text;
}

TEST_F(LispReader, WhatIsNoNumberIsASymbol) {
  for (const std::string_view name : {"1+", "1-", "-", "+", "/", "/=", "1E", "1E+", "-E5", "1.2.3",
                                      "C:DIM", "<AND", "12A", "--1", "A.B", "..", "-."}) {
    EXPECT_EQ(read(name), name);
  }
  EXPECT_EQ(read("dimRec"), "DIMREC");
  EXPECT_EQ(read("管线abc"), "管线ABC");
}

TEST_F(LispReader, NilIsTheEmptyListInAnyLetterCase) {
  for (const std::string_view text : {"nil", "NIL", "Nil", "()", "( )"}) {
    EXPECT_EQ(read(text), "nil");
  }
}

TEST_F(LispReader, StringsTakeTheEscapesOfTheHost) {
  constexpr Case kCases[] = {
      {R"("a\"b")", R"("a\"b")"},
      {R"("a\\b")", R"("a\\b")"},
      {R"("\n\r\t\e")", R"("\n\r\t\e")"},
      {R"("\101\60")", R"("A0")"},
      {R"("\1")", R"("\001")"},
      {R"("\U+7BA1\U+5F84")", R"("管径")"},
      {R"("\U+12")", R"("U+12")"},
      {R"("\q")", R"("q")"},
      {R"("")", R"("")"},
      {"\"two\nlines\"", R"("two\nlines")"},
  };
  for (const Case& c : kCases) EXPECT_EQ(read(c.text), c.form) << c.text;
}

TEST_F(LispReader, TokensEndAtParenthesesQuotesAndSemicolons) {
  EXPECT_EQ(read("(a(b)c)"), "(A (B) C)");
  EXPECT_EQ(read("(a\"b\"c)"), "(A \"b\" C)");
  EXPECT_EQ(read("(a'b)"), "(A (QUOTE B))");
  EXPECT_EQ(read("(a;comment\nb)"), "(A B)");
  EXPECT_EQ(read("(1\"x\")"), "(1 \"x\")");
}

TEST_F(LispReader, CommentsMayStandAnywhere) {
  EXPECT_EQ(read("; first\n(a ;| in\nside |; b ; rest )\n)"), "(A B)");
  EXPECT_EQ(read(";| never closed (a"), "nothing");
  EXPECT_EQ(read(";;; | only\n"), "nothing");
}

TEST_F(LispReader, ADotBetweenBlanksMakesAPair) {
  EXPECT_EQ(read("(a . b)"), "(A . B)");
  EXPECT_EQ(read("(0 . \"LINE\")"), "(0 . \"LINE\")");
  EXPECT_EQ(read("(a b . c)"), "(A B . C)");
  EXPECT_EQ(read("(a . (b c))"), "(A B C)");
  EXPECT_EQ(read("(a . nil)"), "(A)");
  EXPECT_EQ(read("(a . 'b)"), "(A QUOTE B)");
  EXPECT_EQ(read("(a .5)"), "(A 0.5)");
}

TEST_F(LispReader, QuotesNest) {
  EXPECT_EQ(read("''x"), "(QUOTE (QUOTE X))");
  EXPECT_EQ(read("'(a 'b)"), "(QUOTE (A (QUOTE B)))");
}

TEST_F(LispReader, BadInputIsAnErrorWithTheLineOfItsForm) {
  constexpr Case kCases[] = {
      {"\n\n(a (b)", "!malformed list on input in line 3"},
      {"(a ;| ... )", "!malformed list on input in line 1"},
      {")", "!extra right paren on input in line 1"},
      {"'", "!malformed list on input in line 1"},
      {"(a ')", "!malformed list on input in line 1"},
      {"\n\"abc", "!malformed string on input in line 2"},
      {"\"abc\\", "!malformed string on input in line 1"},
      {"(a . b c)", "!extra cdrs in dotted pair on input in line 1"},
      {"(a . b . c)", "!misplaced dot on input in line 1"},
      {"(a . )", "!misplaced dot on input in line 1"},
      {"( . a)", "!misplaced dot on input in line 1"},
      {".", "!misplaced dot on input in line 1"},
  };
  for (const Case& c : kCases) EXPECT_EQ(read(c.text), c.form) << c.text;
}

TEST_F(LispReader, CountsLinesOverStringsAndComments) {
  const std::wstring text = L"\"a\nb\"\n;| c\nd |; x\n\ny";
  Reader reader(interp, text);
  reader.next();
  EXPECT_EQ(reader.line(), 1u);
  reader.next();
  EXPECT_EQ(reader.line(), 4u);
  reader.next();
  EXPECT_EQ(reader.line(), 6u);
  EXPECT_FALSE(reader.next());
}

TEST_F(LispReader, ByteOrderMarkAndOldEndOfFileMarkAreBlanks) {
  EXPECT_EQ(read("\xEF\xBB\xBF(a)"), "(A)");
  EXPECT_EQ(read("\x1A"), "nothing");
}

TEST(LispUnfinished, TellsWhetherAPromptShouldAskForMore) {
  EXPECT_FALSE(unfinished(L"(a (b) \")\" ; (\n)"));
  EXPECT_EQ(unfinished(L"(a (b").lists, 2);
  EXPECT_TRUE(unfinished(L"(princ \"a").text);
  EXPECT_TRUE(unfinished(L"(princ \"a\\\"").text);
  EXPECT_TRUE(unfinished(L"(princ \"a\\").text);
  EXPECT_TRUE(unfinished(L";| (").text);
  EXPECT_FALSE(unfinished(L";| ( |; a"));
  EXPECT_FALSE(unfinished(L"a ; ("));
  EXPECT_FALSE(unfinished(L"a))"));
}

}  // namespace
}  // namespace cad::lisp
