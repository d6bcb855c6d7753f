#include "module/app/updating.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "module/registry/update_service.h"
#include "tests/module/app/lisp_host.h"

namespace {

class UpdatingCalls : public LispHost {
 protected:
  void SetUp() override {
    LispHost::SetUp();
    record("\"40\"", "\"pipe_dia\" \"300\" \"DN\" \" mm\" \"/\"");
    record("\"40\"", "\"pipe_i\" \"0.003\" \"i=\" \"\" nil");
  }
  void record(const std::string& label, const std::string& texts) {
    ASSERT_EQ(eval("(dimRec (list (e \"2F\") \"pcgb\") (e " + label + ") " + texts + ")"), "");
  }
  /// Prefix, value, suffix and separator of the diameter on the pipe.
  StuDim diameter() { return items().at(0); }
};

// dimupdate

TEST_F(UpdatingCalls, EntityNameAndValueChangeTheValueAlone) {
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\")"), "");
  EXPECT_EQ(diameter(), (StuDim{L"pipe_dia", L"40", L"400", L"DN", L" mm", L"/", L"", L""}));
  EXPECT_EQ(text("40"), "\"DN400 mm/i=0.003\"");
  EXPECT_EQ(printed.text(), "");
}

TEST_F(UpdatingCalls, TReplacesPrefixSuffixAndSeparator) {
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\" T \"D\" nil \"-\")"), "");
  EXPECT_EQ(diameter(), (StuDim{L"pipe_dia", L"40", L"400", L"D", L"", L"-", L"", L""}));
  EXPECT_EQ(text("40"), "\"D400-i=0.003\"");
}

TEST_F(UpdatingCalls, PiecesLeftOutAfterTAreEmpty) {
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\" T \"D\")"), "");
  EXPECT_EQ(diameter(), (StuDim{L"pipe_dia", L"40", L"400", L"D", L"", L"", L"", L""}));
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"500\" T)"), "");
  EXPECT_EQ(diameter(), (StuDim{L"pipe_dia", L"40", L"500", L"", L"", L"", L"", L""}));
  EXPECT_EQ(text("40"), "\"500i=0.003\"");
}

TEST_F(UpdatingCalls, NilForTheFlagKeepsThePieces) {
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\" nil \"D\" \"\" \"-\")"), "");
  EXPECT_EQ(diameter(), (StuDim{L"pipe_dia", L"40", L"400", L"DN", L" mm", L"/", L"", L""}));
}

TEST_F(UpdatingCalls, EveryFlagThatIsNotTCountsAsNil) {
  for (const char* flag : {"1", "1.5", "\"T\"", "(e \"40\")", "'(1.0 2.0)"}) {
    EXPECT_EQ(eval(std::string("(dimupdate (e \"2F\") \"pipe_dia\" \"400\" ") + flag + " \"D\")"),
              "")
        << flag;
    EXPECT_EQ(diameter().prefix, L"DN") << flag;
  }
}

TEST_F(UpdatingCalls, WhatFollowsTheSeparatorIsIgnored) {
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\" T \"D\" \"\" \"-\" 1 '(2) nil)"), "");
  EXPECT_EQ(diameter().prefix, L"D");
}

TEST_F(UpdatingCalls, AnUpdateThatSucceedsIsTraced) {
  const TraceLines trace;
  eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\")");
  ASSERT_FALSE(trace.lines().empty());
  EXPECT_EQ(trace.lines().back(), L"更新标注成功!");
}

TEST_F(UpdatingCalls, AnItemThatTheEntityLacksIsASuccess) {
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_flow\" \"3\")"), "");
  EXPECT_EQ(eval("(dimupdate (e \"30\") \"pipe_dia\" \"3\")"), "");
  EXPECT_EQ(diameter().value, L"300");
}

TEST_F(UpdatingCalls, AnUnknownItemNameIsRefused) {
  EXPECT_EQ(failure("(dimupdate (e \"2F\") \"pipe_diameter\" \"400\")"), "\n更新标注失败!");
  EXPECT_EQ(diameter().value, L"300");
}

TEST_F(UpdatingCalls, ALengthOfZeroIsRefusedAndNothingChanges) {
  record("\"41\"", "\"pipe_len\" \"36.5\" nil \"m\" nil");
  EXPECT_EQ(failure("(dimupdate (e \"2F\") \"pipe_len\" \"0\")"), "\n更新标注失败!");
  EXPECT_EQ(items().at(2).value, L"36.5");
}

TEST_F(UpdatingCalls, WithoutArgumentsItSaysSo) {
  EXPECT_EQ(failure("(dimupdate)"), "\n没有指定参数!");
}

TEST_F(UpdatingCalls, AnOwnerErasedBetweenTwoCallsIsNotOpened) {
  ASSERT_EQ(eval("(setq pipe (e \"2F\")) (dimupdate pipe \"pipe_dia\" \"400\")"), "");
  eval("(entdel pipe)");
  EXPECT_EQ(failure("(dimupdate pipe \"pipe_dia\" \"500\")"), "\n打开实体失败!");
  eval("(entdel pipe)");  // comes back
  EXPECT_EQ(diameter().value, L"400");
  EXPECT_EQ(eval("(dimupdate pipe \"pipe_dia\" \"500\")"), "");
}

TEST_F(UpdatingCalls, AnOwnerOnALockedLayerIsNotOpened) {
  EXPECT_EQ(failure("(dimupdate (e \"31\") \"pipe_dia\" \"400\")"), "\n打开实体失败!");
}

TEST_F(UpdatingCalls, ALabelOfAnotherKindKeepsItsLooksAndTakesTheValue) {
  record("\"30\"", "\"pipe_flow\" \"3\" nil nil nil");  // a line is no text
  const std::string before = eval("(vl-prin1-to-string (entget (e \"30\")))");
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_flow\" \"4\")"), "");
  EXPECT_EQ(items().at(2).value, L"4.00");
  EXPECT_EQ(eval("(vl-prin1-to-string (entget (e \"30\")))"), before);
}

TEST_F(UpdatingCalls, AMultilineTextFollowsToo) {
  record("\"4A\"", "\"pipe_flow\" \"3\" \"Q=\" \"L/s\" nil");
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_flow\" \"4.126\")"), "");
  EXPECT_EQ(text("4A"), "\"Q=4.13L/s\"");
}

TEST_F(UpdatingCalls, ALabelOnALockedLayerIsPassedOverAndTraced) {
  record("\"41\"", "\"pipe_speed\" \"1.5\" nil nil nil");
  record("\"4B\"", "\"pipe_flow\" \"3\" nil nil nil");
  const std::string before = text("4B");
  const TraceLines trace;
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\")"), "");
  EXPECT_EQ(text("40"), "\"DN400 mm/i=0.003\"");
  EXPECT_EQ(text("4B"), before);
  EXPECT_EQ(names_of(items()), (Names{L"pipe_dia", L"pipe_i", L"pipe_speed"}));
  EXPECT_NE(std::find(trace.lines().begin(), trace.lines().end(),
                      L"打开实体失败,删除无用更新数据:pipe_flow !"),
            trace.lines().end());
}

TEST_F(UpdatingCalls, AnErasedLabelKeepsItsItemUntilItIsGoneForGood) {
  eval("(entdel (e \"40\"))");
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\")"), "");
  EXPECT_EQ(diameter().value, L"400");
  eval("(entdel (e \"40\"))");
  EXPECT_EQ(text("40"), "\"label 40\"") << "nobody wrote into an erased text";
  eval("(entdel (e \"40\"))");
  reopen();
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"500\")"), "");
  eval("(dimupdate (e \"2F\") \"pipe_dia\" \"600\")");  // of two in a row a pass drops one
  EXPECT_EQ(items(), Items{});
}

TEST_F(UpdatingCalls, NewTextsAreSavedAndReadAgain) {
  ASSERT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\" T \"管径\" \"\" \"，\")"), "");
  reopen();
  EXPECT_EQ(text("40"), "\"管径400，i=0.003\"");
  ASSERT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"500\")"), "");
  EXPECT_EQ(text("40"), "\"管径500，i=0.003\"");
}

// updatedim

/// What a handler was asked for. A handler may own nothing itself.
struct Asked {
  std::vector<CString> types;
  std::vector<AcDbObjectId> entities;
  int answer = 1;
  bool throws = false;
};
Asked g_asked;

struct Handler : CDimFacade {
  int update(DimUpdateRequest& request) override {
    g_asked.types.push_back(request.dimTypeName);
    for (int i = 0; i < request.entityIds.length(); ++i)
      g_asked.entities.push_back(request.entityIds[i]);
    if (g_asked.throws) throw std::runtime_error("no room");
    return g_asked.answer;
  }
};

class HandledCalls : public UpdatingCalls {
 protected:
  HandledCalls() { g_asked = {}; }
  ~HandledCalls() override {
    for (const CString& type : types_) registry().logout(type);
  }
  static CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }
  void given_handler(const wchar_t* type) {
    types_.emplace_back(type);
    ASSERT_EQ(registry().regist(types_.back(), new Handler), 1);
  }

 private:
  std::vector<CString> types_;
};

TEST_F(HandledCalls, TheHandlerOfTheTypeRedrawsTheEntity) {
  given_handler(L"pcgb");
  EXPECT_EQ(eval("(updatedim \"pcgb\" (e \"2F\"))"), "");
  EXPECT_EQ(g_asked.types, std::vector<CString>{L"pcgb"});
  EXPECT_EQ(g_asked.entities, std::vector<AcDbObjectId>{id(L"2F")});
}

TEST_F(HandledCalls, AFailingHandlerIsNoFailure) {
  given_handler(L"pcgb");
  g_asked.answer = 0;
  const TraceLines trace;
  std::string value;
  EXPECT_EQ(said("(updatedim \"pcgb\" (e \"2F\"))", value), "");
  EXPECT_EQ(value, "");
  EXPECT_EQ(trace.lines().back(), L"pcgb更新没有成功，可能是没有标注!");
}

TEST_F(HandledCalls, AHandlerThatThrowsIsNoFailureEither) {
  given_handler(L"pcgb");
  g_asked.throws = true;
  const TraceLines trace;
  EXPECT_EQ(eval("(updatedim \"pcgb\" (e \"2F\"))"), "");
  EXPECT_EQ(trace.lines(), (Texts{L"no room", L"pcgb更新没有成功，可能是没有标注!"}));
  EXPECT_EQ(eval("(dimupdate (e \"2F\") \"pipe_dia\" \"400\")"), "");
  EXPECT_EQ(diameter().value, L"400");
}

TEST_F(HandledCalls, AnEntityWithoutLabelsOfTheTypeIsNoFailure) {
  given_handler(L"bzjg");
  const TraceLines trace;
  for (const char* owner : {"2F", "30", "40"}) {
    EXPECT_EQ(eval(std::string("(updatedim \"bzjg\" (e \"") + owner + "\"))"), "");
    EXPECT_EQ(trace.lines().back(), L"bzjg更新没有成功，可能是没有标注!");
  }
  EXPECT_TRUE(g_asked.types.empty());
}

TEST_F(UpdatingCalls, ATypeWithoutHandlerIsNoFailure) {
  const TraceLines trace;
  EXPECT_EQ(eval("(updatedim \"pcgb\" (e \"2F\"))"), "");
  EXPECT_EQ(trace.lines().back(), L"pcgb更新没有成功，可能是没有标注!");
  EXPECT_EQ(eval("(updatedim \"no such type\" (e \"2F\"))"), "");
  EXPECT_EQ(trace.lines().back(), L"no such type更新没有成功，可能是没有标注!");
}

TEST_F(UpdatingCalls, AnEntityThatDoesNotOpenIsNoFailure) {
  eval("(setq pipe (e \"2F\")) (entdel pipe)");
  for (const char* call : {"(updatedim \"pcgb\" pipe)", "(updatedim \"pcgb\" (e \"31\"))"}) {
    const TraceLines trace;
    std::string value;
    EXPECT_EQ(said(call, value), "") << call;
    EXPECT_EQ(value, "") << call;
    EXPECT_EQ(trace.lines(), Texts{L"打开实体失败!"}) << call;
  }
}

TEST_F(UpdatingCalls, WrongArgumentsOfUpdatedimAreToldAndGiveNil) {
  struct Row {
    const char* call;
    const char* said;
  };
  for (const Row& row : {
           Row{"(updatedim (e \"2F\") \"pcgb\")", "\n参数格式错误需要一个RTSTR"},
           Row{"(updatedim)", "\n参数格式错误需要一个RTSTR"},
           Row{"(updatedim nil (e \"2F\"))", "\n参数格式错误需要一个RTSTR"},
           Row{"(updatedim (list \"pcgb\" (e \"2F\")))", "\n参数格式错误需要一个RTSTR"},
           Row{"(updatedim \"pcgb\")", "\n参数格式错误需要一个RTENAME"},
           Row{"(updatedim \"pcgb\" nil)", "\n参数格式错误需要一个RTENAME"},
           Row{"(updatedim \"pcgb\" \"2F\")", "\n参数格式错误需要一个RTENAME"},
       }) {
    std::string value;
    EXPECT_EQ(said(row.call, value), row.said) << row.call;
    EXPECT_EQ(value, "nil") << row.call;
  }
}

// updatePipeInfo, updateWellInfo

TEST_F(HandledCalls, APipesTypesAreUpdatedInTheirOrder) {
  for (const wchar_t* type : {L"xdbg_ed", L"xzgj", L"xdgj", L"pcgb", L"bzjg", L"GroupDim"}) {
    given_handler(type);
    const std::string name = eval("(setq type \"" + std::string(type, type + wcslen(type)) + "\")");
    ASSERT_EQ(eval("(dimGeRec (list (e \"2F\") type) (e \"41\"))"), "") << name;
  }
  EXPECT_EQ(eval("(updatePipeInfo (e \"2F\"))"), "");
  EXPECT_EQ(g_asked.types, (std::vector<CString>{L"xzgj", L"xdgj", L"xdbg_ed", L"GroupDim"}));
}

TEST_F(HandledCalls, AWellsTypesAreUpdatedInTheirOrder) {
  for (const wchar_t* type : {L"bzjg", L"bjbh", L"xzgj"}) {
    given_handler(type);
    ASSERT_EQ(
        eval("(dimGeRec (list (e \"2F\") \"" + std::string(type, type + 4) + "\") (e \"41\"))"),
        "");
  }
  g_asked.answer = 0;  // what becomes of each does not matter
  EXPECT_EQ(eval("(updateWellInfo (e \"2F\"))"), "");
  EXPECT_EQ(g_asked.types, (std::vector<CString>{L"bjbh", L"bzjg"}));
}

TEST_F(UpdatingCalls, WithoutHandlersPipesAndWellsAreASuccess) {
  std::string value;
  EXPECT_EQ(said("(updatePipeInfo (e \"2F\"))", value), "");
  EXPECT_EQ(value, "");
  EXPECT_EQ(said("(updateWellInfo (e \"30\"))", value), "");
  EXPECT_EQ(value, "");
}

TEST_F(UpdatingCalls, PipesAndWellsThatDoNotOpenFailSilently) {
  eval("(setq gone (e \"30\")) (entdel gone)");
  for (const char* function : {"updatePipeInfo", "updateWellInfo"}) {
    for (const char* entity : {"gone", "(e \"31\")", "\"2F\"", "nil", ""}) {
      const TraceLines trace;
      EXPECT_EQ(failure(std::string("(") + function + " " + entity + ")"), "") << function;
      EXPECT_EQ(trace.lines(), Texts{}) << function << " " << entity;
    }
  }
}

}  // namespace
