#include <pthread.h>

#include <thread>

#include "session.h"

namespace cad::lisp {
namespace {

// Frames of an optimised build fit the usual stack; the others are larger.
#ifdef NDEBUG
constexpr std::size_t kUsualStack = std::size_t{8} << 20;
#else
constexpr std::size_t kUsualStack = std::size_t{256} << 20;
#endif

class LispLimits : public Session {
 protected:
  static std::string results_on_thread(std::string_view source) {
    struct Job {
      std::string_view source;
      std::string result;
    } job{source, {}};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kUsualStack);
    pthread_t thread;
    const auto run = [](void* data) -> void* {
      auto& asked = *static_cast<Job*>(data);
      std::string text;
      Interpreter own(collecting(text));
      own.set_limits({.stack_bytes = kUsualStack});
      const Result<Value> value = own.eval_string(asked.source);
      asked.result = value ? shown(*value) : value.error().what;
      return nullptr;
    };
    if (pthread_create(&thread, &attributes, run, &job) != 0) return "no thread";
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return job.result;
  }

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
    EXPECT_EQ(value_of(loop), "!step limit of 20000 reached") << loop;
  }
  EXPECT_EQ(value_of("(repeat 1000 (setq b 1))"), "1");
}

TEST_F(LispLimits, StepsAreCountedExactly) {
  limit({.steps = 5});
  EXPECT_EQ(value_of("(list (list 1) (list 2) (list 3) (list 4))"), "((1) (2) (3) (4))");
  EXPECT_EQ(interp.steps(), 5u);
  EXPECT_EQ(value_of("(list (list 1) (list 2) (list 3) (list 4) (list 5))"),
            "!step limit of 5 reached");
}

TEST_F(LispLimits, TheErrorHandlerStillRunsAtTheStepLimit) {
  limit({.steps = 5000});
  value_of("(defun *error* (msg) (repeat 10 (setq done T)) (princ msg))");
  value_of("(while T)");
  EXPECT_EQ(taken_output(), "step limit of 5000 reached");
  EXPECT_EQ(value_of("done"), "T");
  value_of("(defun *error* (msg) (while T))");
  EXPECT_EQ(value_of("(while T)"), "!step limit of 5000 reached");
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

TEST_F(LispLimits, TenThousandCallsWithinCallsAreOrdinaryWork) {
  const std::string results = results_on_thread(
      "(defun f (n) (cond ((= n 0) 0) (T (1+ (f (1- n))))))"
      "(defun g (n / r) (if (= n 0) 0 (progn (foreach x '(1) (setq r (+ x (g (1- n))))) r)))"
      "(list (f 10000) (g 4000))");
  EXPECT_EQ(results, "(10000 4000)");
}

TEST_F(LispLimits, TheHintStandsBehindTheStepLimit) {
  Services services = collecting(output);
  services.step_limit_hint = L"; raise it with --step-limit";
  Interpreter hinted(services);
  hinted.set_limits({.steps = 1000000});
  const Result<Value> result = hinted.eval_string("(while T)");
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().what, "step limit of 1000000 reached; raise it with --step-limit");
}

TEST_F(LispLimits, MemoryReturnsToItsStart) {
  value_of(
      "(defun work (n / l s f) (setq l nil s \"\")"
      "  (repeat n (setq l (cons (list n (strcat s \"x\") (* 1.5 n)) l) s (strcat s \"y\")))"
      "  (setq f (list 'lambda '(x) (list 'cons 'x (list 'quote l))))"
      "  (mapcar f (vl-sort l '(lambda (a b) (< (cadr a) (cadr b)))))"
      "  (vl-catch-all-apply '(lambda () (setq l (reverse l)) (car 5)) nil)"
      "  (read (vl-prin1-to-string l)) (length (append l l)))");
  value_of("(work 50)");
  const std::size_t start = interp.heap().live_bytes();
  EXPECT_EQ(value_of("(repeat 100 (work 50))"), "100");
  EXPECT_EQ(interp.heap().live_bytes(), start);
  value_of("(repeat 10 (work 50) (car 5))");  // errors leave nothing behind either
  EXPECT_EQ(interp.heap().live_bytes(), start);
}

TEST_F(LispLimits, AMillionElementsAreFine) {
  EXPECT_EQ(value_of("(repeat 1000000 (setq l (cons 1 l)))"
                     "(list (length l) (length (mapcar '1+ l)) (apply '+ l) (length (reverse l)))"),
            "(1000000 1000000 1000000 1000000)");
  EXPECT_EQ(
      value_of("(list (length (append l l)) (length (vl-remove 2 l)) (nth 999999 l)"
               "(equal l (reverse l)) (length (subst 2 1 l)) (strlen (vl-princ-to-string l)))"),
      "(2000000 1000000 1 T 1000000 2000001)");
  EXPECT_EQ(
      value_of("(setq i 0 l nil) (repeat 200000 (setq i (rem (+ i 7919) 1000003) l (cons i l)))"
               "(setq l (vl-sort l '<)) (list (length l) (apply '<= l))"),
      "(200000 T)");
  EXPECT_EQ(value_of("(setq l nil)"), "nil");
}

TEST_F(LispLimits, TenThousandNestedListsAreOrdinaryWork) {
  value_of("(setq a nil b nil) (repeat 10000 (setq a (list 1 a) b (list 1 b)))");
  EXPECT_EQ(value_of("(equal a b)"), "T");
  EXPECT_EQ(value_of("(equal a (read (vl-prin1-to-string b)))"), "T");
  EXPECT_EQ(value_of("(strlen (vl-princ-to-string a))"), "40003");
}

}  // namespace
}  // namespace cad::lisp
