#include "session.h"

namespace cad::lisp {
namespace {

using LispCallTrace = Session;

TEST_F(LispCallTrace, ShowsTheCallsThatLedToAnError) {
  interp.set_call_trace(true);
  (void)interp.eval_string(
      "(defun c:go () (outer 1 \"a\"))\n"
      "(defun outer (n s / k) (setq k n) (mapcar 'inner (list nil)))\n"
      "(defun inner (n) (+ 1 n))\n"
      "(c:go)",
      "tools.lsp");
  EXPECT_EQ(taken_output(),
            "; error: bad argument type: numberp: nil\n; at tools.lsp:4\n"
            "; in\n;   (+ 1 nil)\n;   (INNER nil)\n;   (OUTER 1 \"a\")\n;   (C:GO)\n");
}

TEST_F(LispCallTrace, IsSilentUnlessAskedFor) {
  value_of("(defun f (n) (car n)) (f 1)");
  EXPECT_EQ(taken_output(), "; error: bad argument type: consp: 1\n");
}

TEST_F(LispCallTrace, EachDepthOfARecursionHasItsOwnArguments) {
  value_of("(defun f (n) (if (= n 0) (vl-bt) (f (1- n)))) (f 2)");
  EXPECT_EQ(taken_output(), "Backtrace:\n;   (F 0)\n;   (F 1)\n;   (F 2)\n");
}

TEST_F(LispCallTrace, ALongOneIsCutInTheMiddle) {
  value_of("(defun f (n) (if (= n 0) (vl-bt) (f (1- n)))) (f 1000)");
  const std::string text = taken_output();
  EXPECT_NE(text.find(";   (F 19)\n;   ... 976 more ...\n;   (F 996)\n"), text.npos) << text;
  EXPECT_EQ(text.find("(F 500)"), text.npos);
}

TEST_F(LispCallTrace, AHandlerSeesTheFailingCallsByVlBt) {
  value_of("(defun *error* (msg) (vl-bt)) (defun f (n) (car n)) (f 7)");
  EXPECT_EQ(taken_output(),
            "Backtrace:\n;   (*ERROR* \"bad argument type: consp: 7\")\n;   (F 7)\n");
}

TEST_F(LispCallTrace, ComesBeforeAHandlerOfTheProgram) {
  value_of("(vl-bt-on) (defun *error* (msg) (princ msg)) (defun f (n) (car n)) (f 7)");
  EXPECT_EQ(taken_output(), "; in\n;   (CAR 7)\n;   (F 7)\nbad argument type: consp: 7");
  value_of("(vl-bt-off) (f 7)");
  EXPECT_EQ(taken_output(), "bad argument type: consp: 7");
}

TEST_F(LispCallTrace, ACaughtErrorLeavesNoMark) {
  interp.set_call_trace(true);
  value_of("(defun f () (vl-catch-all-apply 'car '(1)) (cdr 2)) (f)");
  EXPECT_EQ(taken_output(), "; error: bad argument type: consp: 2\n; in\n;   (CDR 2)\n;   (F)\n");
}

TEST_F(LispCallTrace, TracedFunctionsShowTheirCalls) {
  EXPECT_EQ(value_of("(defun foo (x) (if (> x 0) (foo (1- x)))) (trace foo)"), "FOO");
  value_of("(foo 2)");
  EXPECT_EQ(taken_output(),
            "Entering (FOO 2)\n  Entering (FOO 1)\n    Entering (FOO 0)\n"
            "    Result: nil\n  Result: nil\nResult: nil\n");
  EXPECT_EQ(value_of("(untrace foo)"), "FOO");
  value_of("(foo 2)");
  EXPECT_EQ(taken_output(), "");
  EXPECT_EQ(value_of("(trace)"), "nil");
  EXPECT_EQ(value_of("(trace car)"), "!bad argument type: usubrp: CAR");
}

TEST_F(LispCallTrace, TheIndentStartsAgainAfterAnError) {
  value_of("(defun foo (x) (car x)) (trace foo)");
  value_of("(foo 2)");
  taken_output();
  value_of("(foo nil)");
  EXPECT_EQ(taken_output(), "Entering (FOO nil)\nResult: nil\n");
}

}  // namespace
}  // namespace cad::lisp
