#include "session.h"

namespace cad::lisp {
namespace {

using LispErrorHandler = Session;

TEST_F(LispErrorHandler, WithoutOneTheErrorIsPrinted) {
  (void)interp.eval_string("\n(princ \"a\")\n(car 1)", "init.lsp");
  EXPECT_EQ(taken_output(), "a\n; error: bad argument type: consp: 1\n; at init.lsp:3\n");
}

TEST_F(LispErrorHandler, TheResultNamesTheLineOfTheFailingForm) {
  const Result<Value> result =
      interp.eval_string("(setq a 1)\n\n(defun f ()\n (car 1))\n(f)", "p.lsp");
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().message(), "p.lsp:5: bad argument type: consp: 1");
}

TEST_F(LispErrorHandler, SeesTheVariablesOfTheFunctionThatFailed) {
  value_of(
      "(defun c:work (/ *error* saved)"
      "  (defun *error* (msg) (princ (list msg saved)) (princ))"
      "  (setq saved 41)"
      "  (inner))"
      "(defun inner (/ deeper) (setq deeper 1) (exit))");
  EXPECT_EQ(value_of("(c:work)"), "!quit / exit abort");
  EXPECT_EQ(taken_output(), "(quit / exit abort 41)");
  EXPECT_EQ(value_of("(list *error* saved deeper)"), "(nil nil nil)");
}

TEST_F(LispErrorHandler, StaysWhenItIsGlobal) {
  value_of("(defun *error* (msg) (princ \"<\") (princ msg) (princ \">\"))");
  value_of("(car 1)");
  value_of("(nosuch)");
  EXPECT_EQ(taken_output(), "<bad argument type: consp: 1><no function definition: NOSUCH>");
}

TEST_F(LispErrorHandler, ItsOwnErrorIsReportedToo) {
  value_of("(defun *error* (msg) (car 2))");
  EXPECT_EQ(value_of("(car 1)"), "!bad argument type: consp: 1");
  EXPECT_EQ(taken_output(),
            "; error: An error has occurred inside the *error* function: bad argument type: "
            "consp: 2\n; error: bad argument type: consp: 1\n");
}

TEST_F(LispErrorHandler, StopsTheTextAtTheFormThatFailed) {
  EXPECT_EQ(value_of("(setq a 1) (car 1) (setq a 2)"), "!bad argument type: consp: 1");
  EXPECT_EQ(value_of("a"), "1");
}

TEST_F(LispErrorHandler, DoesNotRunForCaughtErrors) {
  value_of("(defun *error* (msg) (princ \"handler\"))");
  EXPECT_EQ(value_of("(setq a 1)"
                     "(defun fails (a) (setq a 3) (car a))"
                     "(setq e (vl-catch-all-apply 'fails '(2)))"
                     "(list a (vl-catch-all-error-p e) (vl-catch-all-error-message e))"),
            "(1 T \"bad argument type: consp: 3\")");
  EXPECT_EQ(taken_output(), "");
}

TEST_F(LispErrorHandler, CatchingGivesTheValueWhenNothingFails) {
  EXPECT_EQ(value_of("(vl-catch-all-apply '+ '(1 2))"), "3");
  EXPECT_EQ(value_of("(vl-catch-all-error-p (vl-catch-all-apply '/ '(1 2)))"), "nil");
  EXPECT_EQ(value_of("(vl-catch-all-error-message (vl-catch-all-apply 'nosuch nil))"),
            "\"no function definition: NOSUCH\"");
  EXPECT_EQ(value_of("(vl-catch-all-error-message 1)"),
            "!bad argument type: catch-all-apply-error: 1");
}

TEST_F(LispErrorHandler, TryApplyRestoresAndDoesNotRunTheHandler) {
  value_of("(defun *error* (msg) (princ \"handler\")) (setq a 1) (defun f (a) (car a))");
  const Value arg = Value::integer(5);
  const Result<Value> result = interp.try_apply(interp.variable(L"F"), {&arg, 1});
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().what, "bad argument type: consp: 5");
  EXPECT_EQ(value_of("a"), "1");
  EXPECT_EQ(taken_output(), "");
}

TEST_F(LispErrorHandler, ExitIsAnErrorWithTheWordsOfTheHost) {
  EXPECT_EQ(value_of("(exit)"), "!quit / exit abort");
  EXPECT_EQ(value_of("(defun f () (quit) (setq after 1)) (f)"), "!quit / exit abort");
  EXPECT_EQ(value_of("after"), "nil");
  EXPECT_EQ(value_of("(vl-catch-all-error-message (vl-catch-all-apply 'exit nil))"),
            "\"quit / exit abort\"");
  EXPECT_EQ(value_of("(vl-exit-with-error \"enough\")"), "!enough");
}

TEST_F(LispErrorHandler, AnExitWithAValueIsNoError) {
  value_of("(defun *error* (msg) (princ msg)) (setq a 1)");
  EXPECT_EQ(value_of("(defun f (a) (vl-exit-with-value (list a 2)) 3) (f 5) (setq b 1)"), "(5 2)");
  EXPECT_EQ(value_of("(list a b)"), "(1 nil)");
  EXPECT_EQ(value_of("(vl-catch-all-apply 'vl-exit-with-value '(7)) 8"), "7");
  EXPECT_EQ(taken_output(), "");
}

TEST_F(LispErrorHandler, ItIsTheLocalOneWhileTheFunctionRuns) {
  value_of(
      "(defun *error* (msg) (princ \"global\"))"
      "(defun f (/ *error*) (defun *error* (msg) (princ \"local\")) (car 1))");
  value_of("(f)");
  EXPECT_EQ(taken_output(), "local");
  value_of("(car 1)");
  EXPECT_EQ(taken_output(), "global");
}

TEST_F(LispErrorHandler, MayCatchErrorsOfItsOwnAndCallOthers) {
  value_of(
      "(defun clean () (setq cleaned T))"
      "(defun *error* (msg) (clean) (vl-catch-all-apply 'car '(1)) (princ (strcat \"<\" msg "
      "\">\")))");
  value_of("(setq x (nth \"a\" nil))");
  EXPECT_EQ(taken_output(), "<bad argument type: fixnump: \"a\">");
  EXPECT_EQ(value_of("cleaned"), "T");
}

TEST_F(LispErrorHandler, MissingFunctionsMayHaveAReason) {
  Services services = collecting(output);
  services.missing_function = [](std::wstring_view name) {
    return name == L"VLA-ADD" ? L"VLA-ADD needs ActiveX" : L"";
  };
  Interpreter told(services);
  const auto message = [&](std::string_view source) {
    const Result<Value> result = told.eval_string(source);
    return result ? shown(*result) : result.error().what;
  };
  EXPECT_EQ(message("(vla-add 1 2)"), "VLA-ADD needs ActiveX");
  EXPECT_EQ(message("(mapcar 'vla-add '(1))"), "VLA-ADD needs ActiveX");
  EXPECT_EQ(message("(other)"), "no function definition: OTHER");
  EXPECT_EQ(message("(defun vla-add (a) a) (vla-add 1)"), "1");
}

TEST_F(LispErrorHandler, CallFunctionRunsAtTopLevel) {
  value_of("(defun c:go () (car 1))");
  EXPECT_FALSE(interp.call_function(interp.variable(L"C:GO"), {}));
  EXPECT_EQ(taken_output(), "; error: bad argument type: consp: 1\n");
}

}  // namespace
}  // namespace cad::lisp
