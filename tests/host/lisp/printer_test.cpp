#include "host/lisp/printer.h"

#include <cmath>

#include "session.h"

namespace cad::lisp {
namespace {

using LispPrinter = Session;

TEST_F(LispPrinter, RealsHaveSixDigitsAndAtLeastOneDecimal) {
  struct Case {
    double value;
    std::wstring_view text;
  };
  constexpr Case kCases[] = {
      {0.0, L"0.0"},           {-0.0, L"-0.0"},
      {1.0, L"1.0"},           {3.14159265, L"3.14159"},
      {123456.7, L"123457.0"}, {999999.0, L"999999.0"},
      {1e6, L"1.0e+006"},      {2147483648.0, L"2.14748e+009"},
      {0.0001, L"0.0001"},     {0.00001, L"1.0e-005"},
      {1e-6, L"1.0e-006"},     {-1.5e100, L"-1.5e+100"},
      {1e300, L"1.0e+300"},    {0.1, L"0.1"},
      {HUGE_VAL, L"1.#INF"},   {-HUGE_VAL, L"-1.#INF"},
  };
  for (const Case& c : kCases) {
    std::wstring text;
    append_real_text(text, c.value);
    EXPECT_EQ(text, c.text);
  }
}

TEST_F(LispPrinter, RealsHalfwayBetweenTwoTextsGoAwayFromZero) {
  struct Case {
    double value;
    std::wstring_view text;
  };
  constexpr Case kCases[] = {
      {100000.5, L"100001.0"},      {-100000.5, L"-100001.0"}, {12345.25, L"12345.3"},
      {1000005.0, L"1.00001e+006"}, {999999.5, L"1.0e+006"},   {100000.4999999, L"100000.0"},
      {1.000015, L"1.00002"},  // 1.00001500000000009826...
      {1.000025, L"1.00002"},  // 1.00002499999999994173...
  };
  for (const Case& c : kCases) {
    std::wstring text;
    append_real_text(text, c.value);
    EXPECT_EQ(text, c.text);
  }
}

TEST_F(LispPrinter, Prin1QuotesWhatPrincLeavesAlone) {
  const Value text = interp.string(L"a\"b\\c\n\t\x1b\x01管");
  EXPECT_EQ(to_text(text, Quoting::kPrin1), L"\"a\\\"b\\\\c\\n\\t\\e\\001管\"");
  EXPECT_EQ(to_text(text, Quoting::kPrinc), text.text());
}

TEST_F(LispPrinter, WhatPrin1WritesReadTakesBack) {
  for (const std::string_view form :
       {"(A (B . C) \"x\\\"y\" nil 1 -2.5 (QUOTE D))", "((((1))) . 2)", "(nil)"}) {
    EXPECT_EQ(value_of("(read " + shown(interp.string(from_utf8(form))) + ")"), form);
  }
}

TEST_F(LispPrinter, ObjectsHaveTheFormsOfTheHost) {
  EXPECT_EQ(shown(interp.ename(0x7ffffb05da0)), "<Entity name: 7ffffb05da0>");
  EXPECT_EQ(shown(interp.pickset()), "<Selection set: 1>");
  EXPECT_EQ(shown(interp.pickset()), "<Selection set: 2>");
  EXPECT_EQ(value_of("(vl-catch-all-apply 'exit nil)"), "#<%catch-all-apply-error%>");
  EXPECT_EQ(value_of("(list T nil 'nil pi)"), "(T nil nil 3.14159)");
  const std::string subr = value_of("car");
  EXPECT_EQ(subr.substr(0, 8), "#<SUBR @");
  EXPECT_EQ(subr.substr(subr.size() - 5), " CAR>");
  const std::string usubr = value_of("(defun f ()) f");
  EXPECT_EQ(usubr.substr(0, 9), "#<USUBR @");
  EXPECT_EQ(usubr.substr(usubr.size() - 3), " F>");
  EXPECT_EQ(value_of("(princ)"), "");
}

TEST_F(LispPrinter, DeepAndLongListsNeedNoStack) {
  EXPECT_EQ(value_of("(repeat 100000 (setq x (list x)))"
                     "(strlen (vl-prin1-to-string x))"),
            "200003");  // 100000 pairs around nil
  EXPECT_EQ(value_of("(setq x nil) (repeat 100000 (setq x (cons 1 x)))"
                     "(strlen (vl-prin1-to-string x))"),
            "200001");
}

TEST_F(LispPrinter, AnEndlessTextIsAnError) {
  value_of("(setq x '(1)) (repeat 60 (setq x (list x x))) T");
  EXPECT_EQ(value_of("(vl-prin1-to-string x)"), "!insufficient string space");
  EXPECT_EQ(value_of("(+ x)").size(), 1032u);  // quotes a thousand characters of it
}

TEST_F(LispPrinter, EchoTakesALineOfItsOwn) {
  interp.echo(Value::integer(5));
  interp.print(L"abc");
  interp.echo(interp.string(L"x"));
  interp.echo(Value::blank());
  EXPECT_EQ(taken_output(), "5\nabc\n\"x\"\n");
}

}  // namespace
}  // namespace cad::lisp
