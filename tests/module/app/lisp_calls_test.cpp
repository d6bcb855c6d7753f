#include <gtest/gtest.h>

#include <string>

#include "module/app/entry.h"
#include "module/app/lisp_functions.h"
#include "tests/module/app/lisp_host.h"

namespace {

class LispCalls : public LispHost {
 protected:
  std::string eval_in(AcApDocument* where, const std::string& program) {
    const auto value = host.eval_string(where, program);
    return value ? cad::Host::printed(*value) : "error";
  }
};

constexpr char kPipe[] = "(list (handent \"2F\") \"pcgb\")";
std::string call(const std::string& function, const std::string& rest) {
  return "(" + function + " " + kPipe + " " + rest + ")";
}

TEST_F(LispCalls, RecordingATextKeepsItsPieces) {
  EXPECT_EQ(eval(call("dimRec", "(handent \"40\") \"pipe_len\" \"36.5\" \"L=\" \"m\" \"/\"")), "");
  EXPECT_EQ(items(), (Items{{L"pipe_len", L"40", L"36.5", L"L=", L"m", L"/", L"", L""}}));
  EXPECT_EQ(printed.text(), "");
}

TEST_F(LispCalls, ASecondTextOfTheTypeJoinsTheRecord) {
  eval(call("dimRec", "(handent \"40\") \"pipe_len\" \"36.5\" nil nil nil"));
  eval(call("dimRec", "(handent \"40\") \"PIPE_LEN\" \"40\" nil nil nil"));
  eval(call("dimRec", "(handent \"41\") \"管径\" \"300\" \"DN\" nil nil"));
  EXPECT_EQ(names_of(items()), (Names{L"PIPE_LEN", L"管径"}));
}

TEST_F(LispCalls, RecordingSucceedsWithTheBlankValueWhichIsNotNil) {
  EXPECT_EQ(eval("(if " + call("dimGeRec", "(handent \"40\")") + " 1 2)"), "1");
}

TEST_F(LispCalls, FiveNilsAreASuccessThatStoresNothing) {
  EXPECT_EQ(eval(call("dimRec", "(handent \"40\") nil nil nil nil nil")), "");
  EXPECT_EQ(items(), Items{});
  EXPECT_EQ(printed.text(), "");
}

TEST_F(LispCalls, RecordingAnEntityNamesItAfterItsHandle) {
  EXPECT_EQ(eval(call("dimGeRec", "(handent \"4A\")")), "");
  EXPECT_EQ(items(), Items{item_of(L"4A", L"", L"4A")});
}

TEST_F(LispCalls, RecordingInformationMarksIt) {
  EXPECT_EQ(eval(call("dimUserRec", "\"zh_mc\" \"K1+020\"")), "");
  EXPECT_EQ(items(), (Items{{L"zh_mc", L"", L"K1+020", L"", L"", L"", L"非实体性记录信息!", L""}}));
}

TEST_F(LispCalls, FunctionNamesHaveNoLetterCase) {
  EXPECT_EQ(eval(call("DIMGEREC", "(handent \"4A\")")), "");
  EXPECT_EQ(items().size(), 1u);
}

struct Refusal {
  const char* why;
  std::string program;
  const char* said;
};

TEST_F(LispCalls, ARefusedCallSaysWhyAndRecordsNothing) {
  const std::string texts = " \"a\" \"1\" nil nil nil";
  for (const Refusal& row : {
           Refusal{"no arguments", "(dimRec)", "\n参数格式不对!"},
           Refusal{"the annotation before the list",
                   "(dimRec (handent \"40\") " + std::string(kPipe) + texts + ")",
                   "\n参数格式不对!"},
           Refusal{"a type in other letter case",
                   "(dimRec (list (handent \"2F\") \"PCGB\") (handent \"40\")" + texts + ")",
                   "\n参数格式不对!"},
           Refusal{"a list that goes on",
                   "(dimRec (list (handent \"2F\") \"pcgb\" 1) (handent \"40\")" + texts + ")",
                   "\n参数格式不对!"},
           Refusal{"no texts", call("dimRec", "(handent \"40\")"), "\n参数格式非法!"},
           Refusal{"a number for a text", call("dimRec", "(handent \"40\") \"a\" 1 nil nil nil"),
                   "\n参数格式非法!"},
           Refusal{"no annotation", call("dimGeRec", ""), "\n参数格式不对!"},
           Refusal{"nil for information", call("dimUserRec", "\"zh_mc\" nil"), "\n参数格式不对!"},
           Refusal{"an unknown type, before the entity is opened",
                   "(dimGeRec (list (handent \"31\") \"no type\") (handent \"40\"))",
                   "\n参数格式不对!"},
           Refusal{"an entity on a locked layer",
                   "(dimGeRec (list (handent \"31\") \"pcgb\") (handent \"40\"))",
                   "\n打开实体失败!"},
       }) {
    EXPECT_EQ(failure(row.program), row.said) << row.why;
    EXPECT_EQ(items(), Items{}) << row.why;
  }
}

TEST_F(LispCalls, ARecordThatCannotBeWrittenFails) {
  ASSERT_EQ(eval(call("dimUserRec", "\"a\" \"1\"")), "");
  // No item may be written nameless.
  EXPECT_EQ(failure(call("dimUserRec", "\"\" \"\"")), "\n记录实体信息失败!");
}

TEST_F(LispCalls, AFailureCanBeCaught) {
  EXPECT_EQ(eval("(vl-catch-all-error-p (vl-catch-all-apply 'dimRec nil))"), "T");
}

TEST_F(LispCalls, EachDrawingHasItsOwnDefinitions) {
  AcApDocument* const first = document;
  given(Plan::bytes());
  AcApDocument* const second = document;
  document = first;
  EXPECT_EQ(eval_in(second, "(setq dimRec nil)"), "nil");
  EXPECT_EQ(eval_in(second, call("dimRec", "(handent \"40\") \"a\" \"1\" nil nil nil")), "error");
  EXPECT_EQ(eval(call("dimRec", "(handent \"40\") \"a\" \"1\" nil nil nil")), "");
  EXPECT_EQ(items().size(), 1u);
}

TEST_F(LispCalls, LabelsAreThoseOfTheDrawingOfTheCall) {
  // The same handles in both drawings.
  AcApDocument* const first = document;
  eval(call("dimRec", "(handent \"40\") \"pipe_flow\" \"1\" nil nil nil"));
  given(Plan::bytes());
  eval(call("dimRec", "(handent \"40\") \"pipe_flow\" \"1\" nil nil nil"));
  ASSERT_EQ(eval("(dimupdate (e \"2F\") \"pipe_flow\" \"2\")"), "");
  EXPECT_EQ(text("40"), "\"2.00\"");
  ASSERT_EQ(eval("(dimDelAll (e \"2F\"))"), "");
  EXPECT_EQ(eval("(entget (e \"40\"))"), "nil");
  document = first;
  EXPECT_EQ(text("40"), "\"label 40\"");
  EXPECT_EQ(items().at(0).value, L"1");
}

TEST_F(LispCalls, TextsOfAnyLengthAndLetterAreKept) {
  ASSERT_EQ(eval("(setq long \"长\") (repeat 16 (setq long (strcat long long))) (strlen long)"),
            "65536");
  ASSERT_EQ(eval(call("dimRec",
                      "(handent \"40\") \"pipe_flow\" long \"𠀀𝄞Δß€\" \"%s%d%%c\" "
                      "\"  \"")),
            "");
  reopen();
  const StuDim item = items().at(0);
  EXPECT_EQ(item.value, std::wstring(65536, L'长'));
  EXPECT_EQ(item.prefix, L"𠀀𝄞Δß€");
  EXPECT_EQ(item.suffix, L"%s%d%%c");
  EXPECT_EQ(item.separator, L"  ");
}

TEST_F(LispCalls, UnloadingTheModuleTakesTheFunctionsAway) {
  ASSERT_TRUE(host.unload_module("pipenote.arx"));  // it unlocked itself
  EXPECT_EQ(eval(call("dimGeRec", "(handent \"40\")")), "error");
  EXPECT_EQ(items(), Items{});
}

TEST_F(LispCalls, WhatIsRecordedIsSavedAndReadAgain) {
  ASSERT_EQ(eval(call("dimRec", "(handent \"40\") \"pipe_len\" \"36.5\" \"长=\" \"m\" nil")), "");
  const Items before = items();
  reopen();
  EXPECT_EQ(items(), before);
}

TEST(LispTable, HasTheFunctionsAtTheirCodes) {
  const auto table = dim::lisp_functions();
  const wchar_t* const names[] = {L"",
                                  L"dimRec",
                                  L"dimGeRec",
                                  L"dimupdate",
                                  L"updatedim",
                                  L"dimDel",
                                  L"t1",
                                  L"jgbzUpInfo",
                                  L"updateJtDirection",
                                  L"dimDelAll",
                                  L"dimUserRec",
                                  L"dimDelAllInfo",
                                  L"getDimLocalStyle",
                                  L"updatePipeInfo",
                                  L"updateWellInfo"};
  ASSERT_EQ(table.size(), std::size(names));
  for (std::size_t code = 0; code < table.size(); ++code) {
    EXPECT_STREQ(table[code].name, names[code]);
    EXPECT_EQ(table[code].register_as_function, 0);
    EXPECT_EQ(table[code].handler == nullptr, code == 0);
  }
}

TEST(Messages, EveryOneIsAnsweredOk) {
  for (int message = AcRx::kNullMsg; message <= AcRx::kEndTabGroupMsg; ++message) {
    EXPECT_EQ(acrxEntryPoint(static_cast<AcRx::AppMsgCode>(message), nullptr), AcRx::kRetOK);
  }
}

TEST(Messages, ACallThatNobodyMadeIsAnError) { EXPECT_EQ(dim::invokeLispFunction(), RTERROR); }

TEST(Messages, DefiningWithoutADrawingIsRefused) {
  EXPECT_EQ(dim::loadLispFunctions(), RTERROR);
  EXPECT_EQ(dim::unloadLispFunctions(), RTNORM);
}

TEST(Messages, TheVersionIsFixed) { EXPECT_EQ(acrxGetApiVersion(), 18); }

}  // namespace
