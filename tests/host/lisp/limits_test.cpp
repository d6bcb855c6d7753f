#include <thread>

#include "session.h"

namespace cad::lisp {
namespace {

class LispLimits : public Session {
 protected:
  void limit(const Limits& limits) { interp.set_limits(limits); }
};

TEST_F(LispLimits, StepsEndEveryKindOfLoop) {
  limit({.steps = 20000});
  for (const std::string_view loop :
       {"(while T)", "(while (setq a 1))", "(repeat 2147483647)", "(while 1 (setq a (not a)))",
        "(defun f () (g)) (defun g () T) (while (f))", "(while T (vl-catch-all-apply 'car '(1)))",
        "(vl-catch-all-apply '(lambda () (while T)) nil)",
        "(setq l '(1)) (repeat 60 (setq l (list l l))) (setq k '(1))"
        "(repeat 60 (setq k (list k k))) (equal l k)",
        "(apply 'while '(T T))"}) {
    EXPECT_EQ(value_of(loop), "!step limit reached") << loop;
  }
  EXPECT_EQ(value_of("(repeat 1000 (setq b 1))"), "1");
}

TEST_F(LispLimits, StepsAreCountedExactly) {
  limit({.steps = 5});
  EXPECT_EQ(value_of("(list (list 1) (list 2) (list 3) (list 4))"), "((1) (2) (3) (4))");
  EXPECT_EQ(interp.steps(), 5u);
  EXPECT_EQ(value_of("(list (list 1) (list 2) (list 3) (list 4) (list 5))"), "!step limit reached");
}

TEST_F(LispLimits, TheErrorHandlerStillRunsAtTheStepLimit) {
  limit({.steps = 5000});
  value_of("(defun *error* (msg) (repeat 10 (setq done T)) (princ msg))");
  value_of("(while T)");
  EXPECT_EQ(taken_output(), "step limit reached");
  EXPECT_EQ(value_of("done"), "T");
  value_of("(defun *error* (msg) (while T))");
  EXPECT_EQ(value_of("(while T)"), "!step limit reached");
}

TEST_F(LispLimits, EndlessRecursionIsAnErrorAndLeavesNothingBound) {
  constexpr std::string_view kError = "!internal stack limit reached (simulated)";
  value_of(
      "(setq n 1) (defun f (n) (+ 1 (f (1+ n)))) (defun g (n) (mapcar 'g (list n)))"
      "(defun h () (eval '(h))) (defun i () (cond ((i) 1)))");
  EXPECT_EQ(value_of("(f 1)"), kError);
  EXPECT_EQ(value_of("(g 1)"), kError);
  EXPECT_EQ(value_of("(h)"), kError);
  EXPECT_EQ(value_of("(i)"), kError);
  EXPECT_EQ(value_of("n"), "1");
}

TEST_F(LispLimits, AStackBudgetEndsRecursionSooner) {
  const std::string_view deep = "(defun f (n) (if (= n 0) 0 (1+ (f (1- n))))) (f 1000)";
  EXPECT_EQ(value_of(deep), "1000");
  limit({.stack_bytes = 64 << 10});
  EXPECT_EQ(value_of(deep), "!internal stack limit reached (simulated)");
}

TEST_F(LispLimits, AThreadWithALittleStackIsSafe) {
  std::string result;
  std::thread([&result] {
    std::string text;
    Interpreter own(collecting(text));
    const Result<Value> value = own.eval_string("(defun f () (1+ (f))) (f)");
    result = value ? "value" : value.error().what;
  }).join();
  EXPECT_EQ(result, "internal stack limit reached (simulated)");
}

TEST_F(LispLimits, MemoryIsBounded) {
  limit({.memory_bytes = 4 << 20});
  EXPECT_EQ(value_of("(setq s \"ab\") (while T (setq s (strcat s s)))"),
            "!insufficient string space");
  EXPECT_EQ(value_of("(setq s nil l nil) (while T (setq l (cons 1 l)))"),
            "!insufficient node space");
  // Names are never freed.
  EXPECT_EQ(value_of("(setq l nil) (setq i 0)"
                     "(while T (read (strcat \"name\" (itoa (setq i (1+ i))))))")
                .substr(0, 14),
            "!insufficient ");
}

TEST_F(LispLimits, AProgramMayGoOnAfterRunningOutOfMemory) {
  limit({.memory_bytes = 4 << 20});
  value_of("(defun fill (/ l) (while T (setq l (cons 1 l))))");
  value_of("(fill)");
  EXPECT_EQ(value_of("(setq e (vl-catch-all-apply 'fill nil)) (vl-catch-all-error-message e)"),
            "\"insufficient node space\"");
  EXPECT_EQ(value_of("(length (list 1 2 3))"), "3");
}

TEST_F(LispLimits, AnInterruptStopsTheProgram) {
  Services services = collecting(output);
  Interpreter* running = nullptr;
  services.output = [&](std::wstring_view) { running->interrupt(); };
  Interpreter stopped(services);
  running = &stopped;
  const Result<Value> result = stopped.eval_string(
      "(defun *error* (msg) (setq told msg)) (princ \"now\") (while T (vl-catch-all-apply 'car "
      "'(1)))");
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().what, "Function cancelled");
  EXPECT_EQ(shown(stopped.variable(L"TOLD")), "\"Function cancelled\"");
}

TEST_F(LispLimits, DeepNestingIsReadAndFreedWithoutStack) {
  const std::string deep = std::string(100000, '(') + std::string(100000, ')');
  EXPECT_EQ(value_of("(progn (setq a '" + deep + ") T)"), "T");
  EXPECT_EQ(value_of("(setq b '" + deep + ") (equal a b)"), "T");
  EXPECT_EQ(value_of(std::string(10000, '(')), "!malformed list on input");
  EXPECT_EQ(value_of(std::string(100000, '\'') + "a").substr(0, 7), "(QUOTE ");
  value_of(deep);  // evaluating it is an error, not a crash
}

TEST_F(LispLimits, AMillionElementsAreFine) {
  EXPECT_EQ(value_of("(repeat 1000000 (setq l (cons 1 l)))"
                     "(list (length l) (length (mapcar '1+ l)) (apply '+ l) (length (reverse l)))"),
            "(1000000 1000000 1000000 1000000)");
  EXPECT_EQ(value_of("(setq l nil)"), "nil");
}

}  // namespace
}  // namespace cad::lisp
