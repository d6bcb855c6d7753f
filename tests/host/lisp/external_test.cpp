#include "session.h"

namespace cad::lisp {
namespace {

// Plays the part of the application layer: two modules, functions told apart by their codes.
class LispExternal : public Session {
 public:
  using Session::output;

 protected:
  LispExternal() : host(services()) {
    host.define_external(L"addAll", 1, 10);
    host.define_external(L"fails", 2, 10);
    host.define_external(L"nothing", 3, 11);
    host.define_external(L"callBack", 4, 10);
  }

  Services services() {
    Services result = collecting(output);
    result.owner = this;
    result.call_external = [](Interpreter& caller, const External& function,
                              std::span<const Value> args) -> Result<Value> {
      switch (function.code) {
        case 1: {
          std::int32_t sum = 0;
          for (const Value& arg : args) sum += arg.integer();
          return Value::integer(sum);
        }
        case 3:
          return Value::blank();
        case 4:
          return caller.try_apply(args[0], args.subspan(1));
        default:
          return fail("", "ADS request error");
      }
    };
    return result;
  }
  std::string host_value(std::string_view source) {
    const Result<Value> result = host.eval_string(source);
    return result ? shown(*result) : "!" + result.error().what;
  }

  Interpreter host;
};

TEST_F(LispExternal, TheirValueIsTheValueOfTheCall) {
  EXPECT_EQ(host_value("(addall 1 2 (addall 3 4))"), "10");
  EXPECT_EQ(host_value("(mapcar 'addall '(1 2) '(3 4))"), "(4 6)");
  EXPECT_EQ(host_value("(apply 'addall '(1 2 3))"), "6");
}

TEST_F(LispExternal, TheBlankIsTrueAndPrintsNothing) {
  EXPECT_EQ(host_value("(nothing)"), "");
  EXPECT_EQ(host_value("(if (nothing) 1 2)"), "1");
  EXPECT_EQ(host_value("(type (nothing))"), "SYM");
}

TEST_F(LispExternal, AFailureIsAnErrorOfTheProgram) {
  EXPECT_EQ(host_value("(fails)"), "!ADS request error");
  EXPECT_EQ(host_value("(vl-catch-all-error-message (vl-catch-all-apply 'fails nil))"),
            "\"ADS request error\"");
}

TEST_F(LispExternal, TheTypeNamesTheirKind) {
  EXPECT_EQ(host_value("(type addall)"), "EXRXSUBR");
  EXPECT_EQ(host_value("addall").substr(0, 12), "#<EXRXSUBR @");
}

TEST_F(LispExternal, AModuleCallsBackIntoTheProgram) {
  EXPECT_EQ(host_value("(setq a 1) (callback '(lambda (a) (* a 2)) 21)"), "42");
  EXPECT_EQ(host_value("(callback '(lambda (a) (car a)) 21)"), "!bad argument type: consp: 21");
  EXPECT_EQ(host_value("a"), "1");
}

TEST_F(LispExternal, UndefiningUnsetsOnlyTheSameFunction) {
  EXPECT_FALSE(host.undefine_external(L"ADDALL", 2, 10));
  EXPECT_FALSE(host.undefine_external(L"NOSUCH", 1, 10));
  EXPECT_TRUE(host.undefine_external(L"addall", 1, 10));
  EXPECT_EQ(host_value("(addall 1)"), "!no function definition: ADDALL");
  host_value("(defun fails () 5)");
  EXPECT_FALSE(host.undefine_external(L"FAILS", 2, 10)) << "a later definition wins";
  EXPECT_EQ(host_value("(fails)"), "5");
}

TEST_F(LispExternal, AllFunctionsOfAModuleGoWithIt) {
  host.undefine_externals(10);
  EXPECT_EQ(host_value("(addall 1)"), "!no function definition: ADDALL");
  EXPECT_EQ(host_value("(nothing)"), "");
}

TEST_F(LispExternal, BuiltinsOfTheApplicationReachTheirOwner) {
  static constexpr Builtin kTable[] = {
      {"owner-output", 0, 0,
       [](Call& call) {
         return call.interp().string(from_utf8(call.owner<LispExternal>().output));
       },
       "(owner-output)", "what was printed"},
      {"CAR", 1, 1, [](Call&) { return Value::integer(99); }, "(car x)", "replaced"},
  };
  host.define(kTable);
  host_value("(princ \"seen\")");
  EXPECT_EQ(host_value("(owner-output)"), "\"seen\"");
  EXPECT_EQ(host_value("(car nil)"), "99");
}

TEST_F(LispExternal, GettersWordTheErrorsOfDrawingObjects) {
  static constexpr Builtin kTable[] = {
      {"want-ename", 1, 1,
       [](Call& call) { return Value::real(static_cast<double>(call.ename(0))); }, "(want-ename e)",
       ""},
      {"want-set", 1, 1,
       [](Call& call) {
         call.pickset(0).add(7);
         return call.arg(0);
       },
       "(want-set s)", ""},
  };
  host.define(kTable);
  host.set_variable(L"E", host.ename(12));
  host.set_variable(L"S", host.pickset());
  EXPECT_EQ(host_value("(want-ename e)"), "12.0");
  EXPECT_EQ(host_value("(want-ename nil)"), "!bad argument type: lentityp: nil");
  EXPECT_EQ(host_value("(want-set s)"), "<Selection set: 1>");
  EXPECT_EQ(host_value("(want-set 1)"), "!bad argument type: lselsetp: 1");
  EXPECT_EQ(host.variable(L"S").pickset()->enames.size(), 1u) << "all references see the change";
  host.set_variable(L"E2", host.ename(12));
  EXPECT_EQ(host_value("(list (eq e e2) (equal e e2) (= e e2) (type e) (type s))"),
            "(T T T ENAME PICKSET)");
}

}  // namespace
}  // namespace cad::lisp
