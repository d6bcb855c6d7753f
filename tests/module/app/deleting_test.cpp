#include "module/app/deleting.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/module/app/lisp_host.h"

namespace {

class DeletingCalls : public LispHost {
 protected:
  void SetUp() override {
    LispHost::SetUp();
    for (const char* recorded : {
             "(dimRec (list (e \"2F\") \"pcgb\") (e \"40\") \"pipe_dia\" \"300\" nil nil nil)",
             "(dimRec (list (e \"2F\") \"pcgb\") (e \"41\") \"pipe_len\" \"36.5\" nil nil nil)",
             "(dimGeRec (list (e \"2F\") \"xdbg\") (e \"42\"))",
             "(dimUserRec (list (e \"2F\") \"xzgj\") \"xfdh\" \"3\")",
             "(dimGeRec (list (e \"30\") \"pcgb\") (e \"43\"))",
         }) {
      ASSERT_EQ(eval(recorded), "") << recorded;
    }
  }
  bool is_there(const std::string& handle) {
    return eval("(entget (e \"" + handle + "\"))") != "nil";
  }
  /// The types recorded on the pipe 2F.
  Names types() {
    Names found;
    const dim::Opened<AcDbDictionary> dictionary(extension_dictionary(L"2F"), AcDb::kForRead);
    if (!dictionary) return found;
    const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
    for (; !walk->done(); walk->next()) found.emplace_back(walk->name());
    return found;
  }
};

TEST_F(DeletingCalls, DeletingATypeErasesItsLabelsAndItsRecord) {
  EXPECT_EQ(eval("(dimDel (e \"2F\") \"pcgb\")"), "");
  EXPECT_FALSE(is_there("40") || is_there("41"));
  EXPECT_TRUE(is_there("42") && is_there("43"));
  EXPECT_EQ(types(), (Names{L"xdbg", L"xzgj"}));
  EXPECT_EQ(printed.text(), "");
}

TEST_F(DeletingCalls, ATypeInOtherLetterCaseIsDeletedToo) {
  EXPECT_EQ(eval("(dimDel (e \"2F\") \"PCGB\")"), "");
  EXPECT_EQ(types(), (Names{L"xdbg", L"xzgj"}));
}

TEST_F(DeletingCalls, ATypeThatIsNotThereIsASuccess) {
  EXPECT_EQ(eval("(dimDel (e \"2F\") \"bzjg\")"), "");
  EXPECT_EQ(eval("(dimDel (e \"2F\") \"no such type\")"), "");
  EXPECT_EQ(types(), (Names{L"pcgb", L"xdbg", L"xzgj"}));
}

TEST_F(DeletingCalls, DeletingAllErasesEveryLabelOfTheEntity) {
  EXPECT_EQ(eval("(dimDelAll (e \"2F\"))"), "");
  EXPECT_FALSE(is_there("40") || is_there("41") || is_there("42"));
  EXPECT_TRUE(is_there("43"));
  EXPECT_EQ(types(), Names{});
}

TEST_F(DeletingCalls, ForgettingAllLeavesTheLabelsDrawn) {
  EXPECT_EQ(eval("(dimDelAllInfo (e \"2F\"))"), "");
  EXPECT_TRUE(is_there("40") && is_there("41") && is_there("42"));
  EXPECT_EQ(types(), Names{});
  EXPECT_EQ(eval("(dimDelAll (e \"2F\"))"), "");  // knows nothing any more
  EXPECT_TRUE(is_there("40"));
}

TEST_F(DeletingCalls, ALabelOnALockedLayerStaysAndTheRestGoes) {
  ASSERT_EQ(eval("(dimGeRec (list (e \"2F\") \"pcgb\") (e \"4B\"))"), "");
  EXPECT_EQ(eval("(dimDelAll (e \"2F\"))"), "");
  EXPECT_TRUE(is_there("4B"));
  EXPECT_FALSE(is_there("40") || is_there("41") || is_there("42"));
  EXPECT_EQ(types(), Names{});
}

TEST_F(DeletingCalls, WhatIsDeletedIsGoneFromTheSavedDrawing) {
  eval("(dimDel (e \"2F\") \"pcgb\")");
  reopen();
  EXPECT_EQ(eval("(e \"40\")"), "nil");
  EXPECT_EQ(types(), (Names{L"xdbg", L"xzgj"}));
}

TEST_F(DeletingCalls, FaultsAreTracedAndNotPrinted) {
  eval("(setq gone (e \"31\"))");
  struct Row {
    const char* call;
    Texts traced;
  };
  for (const Row& row : {
           Row{"(dimDel)", {L"需要指定被标注实体名!"}},
           Row{"(dimDel \"pcgb\" (e \"2F\"))", {L"需要指定被标注实体名!"}},
           Row{"(dimDel (e \"2F\"))", {L"需要指定标注类型名!"}},
           Row{"(dimDel (e \"2F\") nil)", {L"需要指定标注类型名!"}},
           Row{"(dimDel (e \"31\") \"pcgb\")", {}},  // on a locked layer
           Row{"(dimDelAll)", {L"参数格式不正确,需要一个实体名!"}},
           Row{"(dimDelAll \"2F\")", {L"参数格式不正确,需要一个实体名!"}},
           Row{"(dimDelAll (e \"31\"))", {L"打开实体失败!"}},
           Row{"(dimDelAllInfo)", {L"参数格式不正确，需要一个实体名!"}},
           Row{"(dimDelAllInfo nil)", {L"参数格式不正确，需要一个实体名!"}},
           Row{"(dimDelAllInfo (e \"31\"))", {L"打开实体失败!"}},
       }) {
    const TraceLines trace;
    EXPECT_EQ(failure(row.call), "") << row.call;
    EXPECT_EQ(trace.lines(), row.traced) << row.call;
  }
  EXPECT_EQ(types(), (Names{L"pcgb", L"xdbg", L"xzgj"}));
}

TEST_F(DeletingCalls, ForgettingDiffersInItsCommaAlone) {
  const TraceLines trace;
  EXPECT_EQ(failure("(dimDelAll)"), "");
  EXPECT_EQ(failure("(dimDelAllInfo)"), "");
  EXPECT_EQ(trace.lines(),
            (Texts{L"参数格式不正确,需要一个实体名!", L"参数格式不正确，需要一个实体名!"}));
}

TEST_F(DeletingCalls, AnEntityErasedBetweenTwoCallsIsNotOpened) {
  eval("(setq pipe (e \"2F\")) (entdel pipe)");
  for (const char* call : {"(dimDel pipe \"pcgb\")", "(dimDelAll pipe)", "(dimDelAllInfo pipe)"}) {
    EXPECT_EQ(failure(call), "") << call;
  }
  eval("(entdel pipe)");
  EXPECT_EQ(types(), (Names{L"pcgb", L"xdbg", L"xzgj"}));
  EXPECT_TRUE(is_there("40"));
}

}  // namespace
