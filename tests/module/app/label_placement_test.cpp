#include "module/app/label_placement.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/module/app/lisp_host.h"

namespace {

bool g_results_refused = false;

}  // namespace

/// Stands before the host's own, which it calls.
int acedRetList(const resbuf* chain) {
  using RetList = int (*)(const resbuf*);
  static const auto host_call =
      reinterpret_cast<RetList>(::dlsym(RTLD_NEXT, "_Z11acedRetListPK6resbuf"));
  return g_results_refused ? RTERROR : host_call(chain);
}

namespace {

/// The LINE 30 stands for the well, the TEXTs 40 and 41 for its label.
class LabelPlacement : public LispHost {
 protected:
  struct Recorded {
    std::string name;
    std::string value;
  };
  static std::vector<Recorded> complete() {
    return {{"zh_mc", "K1+020"}, {"ang_yx", "0.5"},   {"dist_jgbz", "12"},
            {"ang_wz", "-1.25"}, {"czfx_jgbz", "雨"}, {"xfdh", "3"}};
  }
  /// The label's entities, and what is recorded beside them.
  void given_label(const std::vector<Recorded>& placement) {
    for (const char* label : {"40", "41"})
      ASSERT_EQ(eval("(dimGeRec (list (e \"30\") \"bzjg\") (e \"" + std::string(label) + "\"))"),
                "");
    for (const auto& [name, value] : placement)
      ASSERT_EQ(eval("(dimUserRec (list (e \"30\") \"bzjg\") \"" + name + "\" \"" + value + "\")"),
                "");
  }
  void given_label_with(const std::string& name, const std::string& value) {
    std::vector<Recorded> placement = complete();
    for (Recorded& item : placement)
      if (item.name == name) item.value = value;
    given_label(placement);
  }
  void given_label_without(const std::string& name) {
    std::vector<Recorded> placement = complete();
    std::erase_if(placement, [&](const Recorded& item) { return item.name == name; });
    given_label(placement);
  }
  std::string placement() { return eval("(jgbzUpInfo (e \"30\"))"); }
  std::string value_of(const std::string& name) {
    return eval("(cadr (assoc \"" + name + "\" (jgbzUpInfo (e \"30\"))))");
  }
};

TEST_F(LabelPlacement, IsAListOfSixPairsInTheirOrder) {
  given_label(complete());
  EXPECT_EQ(placement(),
            "((\"zh_mc\" \"K1+020\") (\"ang_yx\" 0.5) (\"dist_jgbz\" 12.0) (\"ang_wz\" -1.25) "
            "(\"czfx_jgbz\" \"雨\") (\"xfdh\" \"3\"))");
  EXPECT_EQ(printed.text(), "");
}

TEST_F(LabelPlacement, TheOrderOfRecordingDoesNotMatter) {
  std::vector<Recorded> backwards = complete();
  std::reverse(backwards.begin(), backwards.end());
  given_label(backwards);
  EXPECT_EQ(eval("(mapcar 'car (jgbzUpInfo (e \"30\")))"),
            "(\"zh_mc\" \"ang_yx\" \"dist_jgbz\" \"ang_wz\" \"czfx_jgbz\" \"xfdh\")");
}

TEST_F(LabelPlacement, AMissingStakeNameIsNil) {
  given_label_without("zh_mc");
  EXPECT_EQ(value_of("zh_mc"), "nil");
  EXPECT_EQ(eval("(length (jgbzUpInfo (e \"30\")))"), "6");
}

TEST_F(LabelPlacement, TheWordNullInAnyLetterCaseIsNil) {
  for (const char* word : {"NULL", "null", "Null"}) {
    given_label_with("zh_mc", word);
    EXPECT_EQ(value_of("zh_mc"), "nil") << word;
    given_label_with("czfx_jgbz", word);
    EXPECT_EQ(value_of("czfx_jgbz"), "nil") << word;
  }
  given_label_with("zh_mc", "NULL1");
  EXPECT_EQ(value_of("zh_mc"), "\"NULL1\"");
}

TEST_F(LabelPlacement, TheProgramNumberIsATextEvenWhenItReadsNull) {
  given_label_with("xfdh", "null");
  EXPECT_EQ(value_of("xfdh"), "\"null\"");
}

TEST_F(LabelPlacement, NumbersAreWhatTheirTextsBeginWith) {
  given_label_with("ang_yx", "east");
  EXPECT_EQ(value_of("ang_yx"), "0.0");
  given_label_with("ang_yx", " 1.5rad");
  EXPECT_EQ(value_of("ang_yx"), "1.5");
  given_label_with("dist_jgbz", "1e2");
  EXPECT_EQ(value_of("dist_jgbz"), "100.0");
  given_label_with("ang_wz", "NULL");
  EXPECT_EQ(value_of("ang_wz"), "0.0");
}

TEST_F(LabelPlacement, EachRequiredItemThatIsMissingIsNamed) {
  for (const std::string name : {"ang_yx", "dist_jgbz", "ang_wz", "czfx_jgbz", "xfdh"}) {
    given(Plan::bytes());
    given_label_without(name);
    EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "\n获取" + name + "失败!");
  }
}

TEST_F(LabelPlacement, TheFirstMissingItemIsTheOneThatIsNamed) {
  given_label({});
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "\n获取ang_yx失败!");
}

TEST_F(LabelPlacement, AWellWithoutRecordsIsToldApart) {
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "\n目标检查井不包括标注信息!");
}

TEST_F(LabelPlacement, AWellWithoutSuchARecordGivesNoValueAndSucceeds) {
  ASSERT_EQ(eval("(dimGeRec (list (e \"30\") \"bjbh\") (e \"40\"))"), "");
  std::string value;
  EXPECT_EQ(said("(jgbzUpInfo (e \"30\"))", value), "");
  EXPECT_EQ(value, "");
  EXPECT_EQ(eval("(if (jgbzUpInfo (e \"30\")) 1 2)"), "1") << "the blank value is not nil";
}

TEST_F(LabelPlacement, ALabelWhoseEntitiesAreAllErasedFailsWithoutAMessage) {
  given_label(complete());
  eval("(entdel (e \"40\"))");
  EXPECT_NE(placement(), "error") << "one entity is still there";
  eval("(entdel (e \"41\"))");
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "");
  reopen();
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "") << "their handles lead nowhere now";
}

TEST_F(LabelPlacement, EntitiesOfOtherTypesMayBeGone) {
  given_label(complete());
  // One type before it in the table, one behind.
  for (const char* type : {"bjbh", "xzgj"})
    eval("(dimGeRec (list (e \"30\") \"" + std::string(type) + "\") (e \"42\"))");
  eval("(entdel (e \"42\"))");
  EXPECT_EQ(value_of("zh_mc"), "\"K1+020\"");
}

TEST_F(LabelPlacement, ARecordOfInformationAloneHasNoEntities) {
  for (const auto& [name, value] : complete())
    ASSERT_EQ(eval("(dimUserRec (list (e \"30\") \"bzjg\") \"" + name + "\" \"" + value + "\")"),
              "");
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "");
}

TEST_F(LabelPlacement, ARecordWithoutItemsHasNoEntities) {
  given_label({});
  AcDbObjectId record;
  dim::Opened<AcDbDictionary>(extension_dictionary(L"30"), AcDb::kForRead)->getAt(L"bzjg", record);
  dim::store_chain(*dim::Opened<AcDbXrecord>(record, AcDb::kForWrite), nullptr);
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "");
}

TEST_F(LabelPlacement, AnEntityOpenOnALockedLayerIsThere) {
  ASSERT_EQ(eval("(dimGeRec (list (e \"30\") \"bzjg\") (e \"4B\"))"), "");
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "\n获取ang_yx失败!");
}

TEST_F(LabelPlacement, OfATypeInOtherLetterCaseIsFoundAndNotListed) {
  // The look-up ignores letter case; the walk sees registered names only, and those exactly.
  given_label(complete());
  eval(
      "(setq d (cdr (assoc 360 (entget (e \"30\")))))"
      "(setq r (cdr (assoc -1 (dictsearch d \"bzjg\")))) (dictrename d \"bzjg\" \"BZJG\")");
  std::string value;
  EXPECT_EQ(said("(jgbzUpInfo (e \"30\"))", value), "");
  EXPECT_EQ(value, "");
}

TEST_F(LabelPlacement, WhatIsNoRecordUnderTheTypeFails) {
  ASSERT_EQ(eval("(dimGeRec (list (e \"30\") \"bjbh\") (e \"40\"))"), "");
  ASSERT_NE(eval("(dictadd (cdr (assoc 360 (entget (e \"30\")))) \"bzjg\""
                 " (entmakex '((0 . \"DICTIONARY\") (100 . \"AcDbDictionary\"))))"),
            "nil");
  const TraceLines trace;
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "");
  EXPECT_EQ(trace.lines(), Texts{L"打开实体失败!"});
}

TEST_F(LabelPlacement, OfAnErasedWellCannotBeRead) {
  given_label(complete());
  eval("(setq well (e \"30\")) (entdel well)");
  EXPECT_EQ(failure("(jgbzUpInfo well)"), "\n打开实体失败!");
}

TEST_F(LabelPlacement, OfRecordsThatAreOpenElsewhereCannotBeRead) {
  given_label(complete());
  {
    const dim::Opened<AcDbDictionary> held(extension_dictionary(L"30"), AcDb::kForRead);
    EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "\n打开实体失败!");
  }
  EXPECT_NE(placement(), "error");
}

TEST_F(LabelPlacement, OfAWellOnALockedLayerCanBeRead) {
  EXPECT_EQ(failure("(jgbzUpInfo (e \"31\"))"), "\n目标检查井不包括标注信息!");
}

TEST_F(LabelPlacement, WithoutAWellIsTracedAndNotPrinted) {
  for (const char* call : {"(jgbzUpInfo)", "(jgbzUpInfo nil)", "(jgbzUpInfo \"30\")",
                           "(jgbzUpInfo (list (e \"30\")))"}) {
    const TraceLines trace;
    EXPECT_EQ(failure(call), "") << call;
    EXPECT_EQ(trace.lines(), Texts{L"没有指定检查井的实体名!"}) << call;
  }
}

TEST_F(LabelPlacement, ThatTheHostDoesNotTakeIsAFailure) {
  given_label(complete());
  g_results_refused = true;
  EXPECT_EQ(failure("(jgbzUpInfo (e \"30\"))"), "\n返回井管标注更新信息表失败!");
  g_results_refused = false;
  EXPECT_NE(placement(), "error");
}

TEST_F(LabelPlacement, ReadingItChangesNothing) {
  given_label(complete());
  const std::string before = document->database()->save_bytes();
  EXPECT_NE(placement(), "error");
  EXPECT_EQ(document->database()->save_bytes(), before);
}

}  // namespace
