#include "session.h"

namespace cad::lisp {
namespace {

using LispEvaluate = Session;

TEST_F(LispEvaluate, VariablesOfCallersAreSeenAndRestored) {
  value_of("(setq a 1) (defun show () a) (defun f (a) (show)) (defun g (/ a) (show))");
  EXPECT_EQ(value_of("(list (f 2) (g) a)"), "(2 nil 1)");
}

TEST_F(LispEvaluate, ALambdaCapturesNothing) {
  value_of("(defun make (n) (lambda () n)) (setq n 7 f (make 1))");
  EXPECT_EQ(value_of("(f)"), "7");
}

TEST_F(LispEvaluate, FunctionsAndVariablesShareTheirNames) {
  EXPECT_EQ(value_of("(setq list 5) (list 1 2)"), "!bad function: 5");
  EXPECT_EQ(value_of("(setq plus +) (plus 1 2)"), "3");
}

TEST_F(LispEvaluate, AFunctionMayRedefineItselfWhileItRuns) {
  value_of("(defun f () (setq f nil) (list 1 2 3))");
  EXPECT_EQ(value_of("(f)"), "(1 2 3)");
  EXPECT_EQ(value_of("(f)"), "!no function definition: F");
  EXPECT_EQ(value_of("(defun + (a b) (setq + nil) (strcat a b)) (+ \"a\" \"b\")"), "\"ab\"");
}

TEST_F(LispEvaluate, ABuiltinMayBeReplacedWhileItsArgumentsAreEvaluated) {
  EXPECT_EQ(value_of("(strcat \"a\" (progn (setq strcat nil) \"b\"))"), "\"ab\"");
}

TEST_F(LispEvaluate, ListsThatDescribeFunctionsCanBeCalled) {
  EXPECT_EQ(value_of("((lambda (x / y) (setq y x) (* y 2)) 4)"), "8");
  EXPECT_EQ(value_of("(setq f '(lambda (x) (1+ x))) (f 1)"), "2");
  EXPECT_EQ(value_of("(setq f '((x) (1+ x))) (f 1)"), "2");
  EXPECT_EQ(value_of("(apply '(lambda (x) (1+ x)) '(1))"), "2");
  EXPECT_EQ(value_of("((if T 'car 'cdr) '(1 2))"), "1");
  EXPECT_EQ(value_of("(setq f '(a b)) (f)"), "!bad function: (A B)");
}

TEST_F(LispEvaluate, SpecialFormsCanBeApplied) {
  EXPECT_EQ(value_of("(apply 'and '(t nil))"), "nil");
  EXPECT_EQ(value_of("(apply 'or '(nil a))"), "T");
  EXPECT_EQ(value_of("(mapcar 'setq '(u v) '(1 w)) (list u v)"), "(1 W)");
  EXPECT_EQ(value_of("(mapcar 'if '(nil 1) '(a b) '(c d))"), "(C B)");
  EXPECT_EQ(value_of("(apply 'progn '(a (car b)))"), "(CAR B)");
}

TEST_F(LispEvaluate, ArgumentsAreEvaluatedBeforeTheirTypesMatter) {
  EXPECT_EQ(value_of("(+ nil (setq seen 1))"), "!bad argument type: numberp: nil");
  EXPECT_EQ(value_of("seen"), "1");
}

TEST_F(LispEvaluate, WrongNumbersOfArgumentsAreErrors) {
  value_of("(defun f (a b / c) (list a b c))");
  EXPECT_EQ(value_of("(f 1 2)"), "(1 2 nil)");
  for (const std::string_view call : {"(f 1)", "(car)", "(if)", "(if 1)", "(quote)", "(setq a)",
                                      "(setq a 1 b)", "(while)", "(foreach a)", "(defun f)"}) {
    EXPECT_EQ(value_of(call), "!too few arguments") << call;
  }
  for (const std::string_view call :
       {"(f 1 2 3)", "(car 1 2)", "(if 1 2 3 4)", "(quote a b)", "(princ 1 nil 3)"}) {
    EXPECT_EQ(value_of(call), "!too many arguments") << call;
  }
}

TEST_F(LispEvaluate, ErrorsAreWordedAsInTheHost) {
  struct Case {
    std::string_view source;
    std::string_view error;
  };
  constexpr Case kCases[] = {
      {"(nosuch 1)", "no function definition: NOSUCH"},
      {"(1 2)", "bad function: 1"},
      {"(\"a\")", "bad function: \"a\""},
      {"(nil)", "no function definition: nil"},
      {"(1+ \"a\")", "bad argument type: numberp: \"a\""},
      {"(strcat \"a\" 1)", "bad argument type: stringp: 1"},
      {"(nth 1.0 '(a))", "bad argument type: fixnump: 1.0"},
      {"(length 1)", "bad argument type: listp: 1"},
      {"(length '(1 . 2))", "bad list: (1 . 2)"},
      {"(car 'a)", "bad argument type: consp: A"},
      {"(set 1 2)", "bad argument type: symbolp: 1"},
      {"(setq nil 2)", "bad argument type: symbolp: nil"},
      {"(/ 1 0)", "divide by zero"},
      {"(rem 1.5 0)", "divide by zero"},
      {"(< 1 nil)", "bad argument type for compare: 1 nil"},
      {"(list 1 . 2)", "bad list: (1 . 2)"},
      {"(defun f (1) 2)", "bad formal argument list: (1)"},
      {"(defun f (a / b / c) 2)", "bad formal argument list: (A / B / C)"},
      {"(exit)", "quit / exit abort"},
      {"(quit)", "quit / exit abort"},
      {"(sqrt -1)", "function undefined for argument: -1"},
      {"(distance 1 2)", "bad argument type: 2D/3D point: 1"},
      {"(chr -1)", "bad argument value: character code: -1"},
      {"(load \"no such file\")", "LOAD failed: \"no such file\""},
      {"(car '", "malformed list on input"},
      {"(close (car 1))", "bad argument type: consp: 1"},
      {"(foreach x 1 x)", "bad argument type: listp: 1"},
      {"(repeat \"a\" 1)", "bad argument type: fixnump: \"a\""},
  };
  for (const Case& c : kCases)
    EXPECT_EQ(value_of(c.source), "!" + std::string(c.error)) << c.source;
}

TEST_F(LispEvaluate, MemoryReturnsToItsStart) {
  const std::string_view work =
      "(defun work (n / l s) (repeat n (setq l (cons (list n (strcat \"a\" \"b\")) l)"
      " s (strcat (itoa n) \"x\") f (lambda (x) (list x l))) (vl-catch-all-apply 'car '(1))"
      " (mapcar '(lambda (x) (f x)) '(1 2))) (setq f nil))";
  value_of(work);
  value_of("(work 5)");
  const std::size_t before = interp.heap().live_bytes();
  value_of("(work 2000)");
  EXPECT_EQ(interp.heap().live_bytes(), before);
}

TEST_F(LispEvaluate, ArgumentsBeyondOneBlockOfTheArgumentStackAreFine) {
  EXPECT_EQ(value_of("(repeat 100000 (setq l (cons 1 l))) (apply '+ l)"), "100000");
  // The frame of the outer call stays where it is while inner ones need a new block.
  EXPECT_EQ(value_of("(list 1 (apply '+ l) 2 (apply '+ l) 3)"), "(1 100000 2 100000 3)");
}

TEST_F(LispEvaluate, TheValueOfATextIsThatOfItsLastForm) {
  EXPECT_EQ(value_of(""), "nil");
  EXPECT_EQ(value_of("1 2 \"three\""), "\"three\"");
}

TEST_F(LispEvaluate, VariablesAreReachedByName) {
  interp.set_variable(L"DimH", Value::real(2.5));
  EXPECT_EQ(value_of("dimh"), "2.5");
  value_of("(setq other '(1 2))");
  EXPECT_EQ(shown(interp.variable(L"OTHER")), "(1 2)");
  EXPECT_TRUE(interp.variable(L"never-named").is_nil());
  EXPECT_EQ(interp.find_symbol(L"never-named"), nullptr);
}

TEST_F(LispEvaluate, TwoInterpretersShareNothing) {
  std::string other_output;
  Interpreter other(collecting(other_output));
  value_of("(setq a 1)");
  EXPECT_TRUE(other.variable(L"A").is_nil());
}

}  // namespace
}  // namespace cad::lisp
