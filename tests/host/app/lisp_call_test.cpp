#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/app/aced.h"
#include "host/base/codepage.h"
#include "host/db/object_id.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/scripted_module.h"

namespace {

/// LISP on a new drawing, calling functions of a module.
class LispCall : public WithHost {
 protected:
  void SetUp() override {
    // (shape ...) answers what its arguments look like as buffers.
    module.given_function(L"shape", [] {
      acedRetStr(cad::from_utf8(chain_text(acedGetArgs())).c_str());
      return RSRSLT;
    });
    module.given_function(L"answer", [this] { return serve(); });
    document = host.new_drawing();
    ASSERT_TRUE(host.load_module("scripted"));
  }

  std::string chain_of(const std::string& arguments) {
    printed.clear();
    const std::string value = eval("(progn (princ (shape " + arguments + ")) (princ))");
    return value.empty() ? printed : value;
  }
  /// What (answer) is when the module does this.
  std::string answer(std::function<int()> body) {
    serve = std::move(body);
    return eval("(answer)");
  }
  std::string answer_list(cad::ResbufChain chain) {
    return answer([&] { return acedRetList(chain.get()) == RTNORM ? RSRSLT : RSERR; });
  }

  ScriptedModule module;
  std::function<int()> serve;
  AcApDocument* document = nullptr;
};

TEST_F(LispCall, WithoutArgumentsThereIsNoChain) { EXPECT_EQ(chain_of(""), ""); }

TEST_F(LispCall, IntegersAreShortWhenTheyFit) {
  EXPECT_EQ(chain_of("1 -32768 32767 32768 -32769"), "s1 s-32768 s32767 l32768 l-32769");
}

TEST_F(LispCall, AtomsAreSingleBuffers) {
  EXPECT_EQ(chain_of("1.5 \"a 管\" T nil '() (entlast)"), "1.5 \"a 管\" T nil nil nil");
}

TEST_F(LispCall, ListsAreBracketed) {
  EXPECT_EQ(chain_of("'(1 \"a\" (nil) ) 2"), "( s1 \"a\" ( nil ) ) s2");
}

TEST_F(LispCall, TwoOrThreeRealsAreAPoint) {
  EXPECT_EQ(chain_of("'(1.0 2.0) '(1.0 2.0 3.0)"), "<1.0,2.0> <1.0,2.0,3.0>");
  EXPECT_EQ(chain_of("'(1.0 2) '(1.0) '(1.0 2.0 3.0 4.0)"),
            "( 1.0 s2 ) ( 1.0 ) ( 1.0 2.0 3.0 4.0 )");
  EXPECT_EQ(chain_of("'(10 (0.0 0.5))"), "( s10 <0.0,0.5> )");
}

TEST_F(LispCall, DottedPairsKeepTheirDot) {
  EXPECT_EQ(chain_of("'(0 . \"LINE\") '(1 2 . 3)"), "( s0 . \"LINE\" ) ( s1 s2 . s3 )");
}

TEST_F(LispCall, SymbolsAndFunctionsCannotBePassed) {
  EXPECT_EQ(eval("(shape 'foo)"), "error: bad argument type: FOO");
  EXPECT_EQ(eval("(shape '(1 (bar)))"), "error: bad argument type: BAR");
  EXPECT_TRUE(eval("(shape car)").starts_with("error: bad argument type: #<SUBR"));
}

TEST_F(LispCall, DeeplyNestedListsPass) {
  EXPECT_EQ(eval("(progn (setq l nil) (repeat 100000 (setq l (list l))) (strlen (shape l)))"),
            "400003");
}

TEST_F(LispCall, NamesAndSetsArePassedAndComeBack) {
  module.given_function(L"identity",
                        [] { return acedRetVal(acedGetArgs()) == RTNORM ? RSRSLT : RSERR; });
  AcApDocument* other = host.new_drawing();
  EXPECT_EQ(eval(other, "(equal (identity (namedobjdict)) (namedobjdict))"), "T");
  EXPECT_EQ(eval(other, "(progn (setq s (ssadd)) (eq (identity s) s))"), "T");
}

TEST_F(LispCall, FreeingTheArgumentsHasNoEffect) {
  const std::string value = answer([] {
    acutRelRb(acedGetArgs());
    return RSRSLT;
  });
  EXPECT_EQ(value, "nil");
  serve = [] {
    acutRelRb(acedGetArgs());
    acedRetStr(acedGetArgs()->resval.rstring);
    return RSRSLT;
  };
  EXPECT_EQ(eval("(answer \"still here\")"), "\"still here\"");
}

TEST_F(LispCall, WithoutAResultTheValueIsNil) {
  EXPECT_EQ(answer([] { return RSRSLT; }), "nil");
}

TEST_F(LispCall, TheBlankValueIsTrueAndNotEchoed) {
  EXPECT_EQ(answer([] { return acedRetVoid(), RSRSLT; }), "");
  EXPECT_EQ(eval("(if (answer) 1 2)"), "1");
}

TEST_F(LispCall, TheLastResultWins) {
  EXPECT_EQ(answer([] {
              acedRetVoid();
              acedRetInt(1);
              acedRetStr(L"two");
              return RSRSLT;
            }),
            "\"two\"");
}

TEST_F(LispCall, EveryKindOfResult) {
  EXPECT_EQ(answer([] { return acedRetT(), RSRSLT; }), "T");
  EXPECT_EQ(answer([] { return acedRetNil(), RSRSLT; }), "nil");
  EXPECT_EQ(answer([] { return acedRetInt(-70000), RSRSLT; }), "-70000");
  EXPECT_EQ(answer([] { return acedRetReal(2.5), RSRSLT; }), "2.5");
  EXPECT_EQ(answer([] {
              const ads_point point = {1, 2, 3};
              return acedRetPoint(point), RSRSLT;
            }),
            "(1.0 2.0 3.0)");
}

TEST_F(LispCall, ResultsOutsideACallAreRefused) {
  EXPECT_EQ(acedRetVoid(), RTERROR);
  EXPECT_EQ(acedRetStr(L"x"), RTERROR);
  EXPECT_EQ(acedRetList(nullptr), RTERROR);
  EXPECT_EQ(acedGetFunCode(), RTERROR);
  EXPECT_EQ(acedGetArgs(), nullptr);
  resbuf* value = nullptr;
  EXPECT_EQ(acedGetSym(L"PI", &value), RTERROR);
}

TEST_F(LispCall, OneBracketedListIsThatList) {
  EXPECT_EQ(answer_list(cad::ResbufChain(acutBuildList(RTLB, RTSHORT, 1, RTSTR, L"a", RTLE, 0))),
            "(1 \"a\")");
  EXPECT_EQ(
      answer_list(cad::ResbufChain(acutBuildList(RTLB, RTSTR, L"a", RTDOTE, RTSTR, L"b", RTLE, 0))),
      "(\"a\" . \"b\")");
}

TEST_F(LispCall, SeveralItemsBecomeAList) {
  EXPECT_EQ(answer_list(cad::ResbufChain(acutBuildList(RTLB, RTSHORT, 1, RTSHORT, 2, RTSHORT, 3,
                                                       RTLE, RTSHORT, 4, RTSHORT, 5, 0))),
            "((1 2 3) 4 5)");
  EXPECT_EQ(answer_list(cad::ResbufChain(acutBuildList(RTSTR, L"only", 0))), "(\"only\")");
}

TEST_F(LispCall, MalformedListsAreRefused) {
  const auto refused = [&](resbuf* chain) { return answer_list(cad::ResbufChain(chain)); };
  const std::string kError = "error: ADS request error: ANSWER";
  EXPECT_EQ(refused(acutBuildList(RTLB, RTSHORT, 1, 0)), kError);
  EXPECT_EQ(refused(acutBuildList(RTSHORT, 1, RTLE, 0)), kError);
  EXPECT_EQ(refused(acutBuildList(RTLB, RTDOTE, RTSHORT, 1, RTLE, 0)), kError);
  EXPECT_EQ(refused(acutBuildList(RTLB, RTSHORT, 1, RTDOTE, RTLE, 0)), kError);
  EXPECT_EQ(refused(acutBuildList(RTLB, RTLONG, 70000, RTLE, 0)), kError);
  EXPECT_EQ(refused(nullptr), kError);
}

TEST_F(LispCall, AFailingFunctionIsALispError) {
  EXPECT_EQ(answer([] { return RSERR; }), "error: ADS request error: ANSWER");
  EXPECT_EQ(answer([] { return RTERROR; }), "error: ADS request error: ANSWER");
  EXPECT_EQ(answer([] { return 0; }), "error: ADS request error: ANSWER");
}

TEST_F(LispCall, AFailureCanBeCaught) {
  serve = [] { return RSERR; };
  EXPECT_EQ(eval("(vl-catch-all-error-message (vl-catch-all-apply 'answer '()))"),
            "\"ADS request error: ANSWER\"");
}

TEST_F(LispCall, AnExceptionOfTheModuleIsALispError) {
  EXPECT_EQ(answer([]() -> int { throw std::runtime_error("broken"); }), "error: ANSWER: broken");
}

TEST_F(LispCall, ARegisteredFunctionIsCalledDirectly) {
  serve = [] {
    acedRegFunc([] { return acedRetStr(L"direct"); }, 1);
    return RSRSLT;
  };
  EXPECT_EQ(eval("(answer)"), "nil");
  EXPECT_EQ(eval("(answer)"), "\"direct\"");
}

TEST_F(LispCall, SymbolsAreReadAndSet) {
  std::string seen;
  serve = [&] {
    resbuf* value = nullptr;
    for (const wchar_t* name : {L"unset", L"text", L"pair", L"flag"}) {
      EXPECT_EQ(acedGetSym(name, &value), RTNORM);
      seen += value ? chain_text(value) : "null";
      seen += "|";
      acutRelRb(value);
    }
    EXPECT_EQ(acedGetSym(L"car", &value), RTERROR);
    const cad::ResbufChain one(acutBuildList(RTSTR, L"set", 0));
    EXPECT_EQ(acedPutSym(L"given", one.get()), RTNORM);
    EXPECT_EQ(acedPutSym(L"text", nullptr), RTNORM);
    return RSRSLT;
  };
  eval("(setq text \"abc\" pair '(1 . 2) flag T) (answer)");
  EXPECT_EQ(seen, "null|\"abc\"|( s1 . s2 )|T|");
  EXPECT_EQ(eval("(list given text)"), "(\"set\" nil)");
}

TEST_F(LispCall, SelectionSetsOfTheModuleAreCountedAndFreed) {
  serve = [&] {
    ads_name set;
    std::vector<std::int64_t> numbers;
    while (acedSSAdd(nullptr, nullptr, set) == RTNORM) numbers.push_back(set[0]);
    EXPECT_EQ(numbers.size(), 128U);
    std::int32_t length = -1;
    ads_name first = {numbers.front(), 0};
    EXPECT_EQ(acedSSLength(first, &length), RTNORM);
    EXPECT_EQ(length, 0);
    for (const std::int64_t number : numbers) {
      ads_name name = {number, 0};
      EXPECT_EQ(acedSSFree(name), RTNORM);
    }
    EXPECT_EQ(acedSSFree(first), RTERROR);
    EXPECT_EQ(acedSSLength(first, &length), RTERROR);
    return RSRSLT;
  };
  EXPECT_EQ(eval("(answer)"), "nil");
}

TEST_F(LispCall, ALaterDefinitionOfTheNameWins) {
  EXPECT_EQ(eval("(defun answer () 5) (answer)"), "5");
}

TEST_F(LispCall, DefinitionsNeedAModuleAndAName) {
  EXPECT_EQ(acedDefun(L"stray", 1), RTERROR);
  serve = [] {
    EXPECT_EQ(acedDefun(L"", 1), RTERROR);
    EXPECT_EQ(acedDefun(nullptr, 1), RTERROR);
    EXPECT_EQ(acedDefun(L"x", -1), RTERROR);
    EXPECT_EQ(acedDefun(L"C:Later", 1), RTNORM);
    EXPECT_EQ(acedUndef(L"c:later", 2), RTERROR);
    EXPECT_EQ(acedUndef(L"c:later", 1), RTNORM);
    EXPECT_EQ(acedUndef(L"c:later", 1), RTERROR);
    return RSRSLT;
  };
  EXPECT_EQ(eval("(answer)"), "nil");
}

// --- Modules calling LISP

TEST_F(LispCall, ModulesCallFunctionsOfTheDocument) {
  eval("(defun hear (a b) (setq heard (list a b)) (list (1+ a) \"yes\"))");
  EXPECT_EQ(answer([&] {
              const cad::ResbufChain call(
                  acutBuildList(RTSTR, L"HEAR", RTSHORT, 7, RTLB, RTSTR, L"x", RTLE, 0));
              resbuf* result = nullptr;
              EXPECT_EQ(acedInvoke(call.get(), &result), RTNORM);
              const cad::ResbufChain owned(result);
              return acedRetStr(cad::from_utf8(chain_text(result)).c_str()) == RTNORM ? RSRSLT
                                                                                      : RSERR;
            }),
            "\"( s8 \\\"yes\\\" )\"");
  EXPECT_EQ(eval("heard"), "(7 (\"x\"))");
}

TEST_F(LispCall, ALispFunctionCalledByAModuleThatAnswersNilHasNoChain) {
  eval("(defun deaf () nil)");
  const cad::ResbufChain call(acutBuildList(RTSTR, L"deaf", 0));
  resbuf* result = nullptr;
  EXPECT_EQ(acedInvoke(call.get(), &result), RTNORM);
  EXPECT_EQ(result, nullptr);
}

TEST_F(LispCall, CallingWhatIsNoFunctionFails) {
  const cad::ResbufChain call(acutBuildList(RTSTR, L"nobody", 0));
  resbuf* result = nullptr;
  EXPECT_EQ(acedInvoke(call.get(), &result), RTERROR);
  EXPECT_EQ(acedInvoke(nullptr, &result), RTERROR);
  EXPECT_EQ(acedInvoke(call.get(), nullptr), RTERROR);
}

TEST_F(LispCall, AnErrorOfAFunctionCalledByAModuleIsToldAndEndsThere) {
  eval("(defun wrong (/ local) (setq local 1) (car 5))");
  printed.clear();
  const cad::ResbufChain call(acutBuildList(RTSTR, L"wrong", 0));
  resbuf* result = nullptr;
  EXPECT_EQ(acedInvoke(call.get(), &result), RTERROR);
  EXPECT_NE(printed.find("; error: "), std::string::npos) << printed;
  EXPECT_EQ(eval("local"), "nil");
}

}  // namespace
