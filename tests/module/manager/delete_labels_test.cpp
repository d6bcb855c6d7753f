// CDimManager::deleteDim, deleteAllDim and deleteAllDimInfo.

#include "module/manager/dim_manager.h"
#include "module/platform/opened.h"
#include "tests/module/handlers.h"
#include "tests/module/plan.h"

namespace {

constexpr char kWarning[] = "\n警告:清除某个标注失败!";

class DeleteLabels : public PlanTest {
 protected:
  CDimManager pipe() { return CDimManager(plan.id(L"2F")); }
  void given(const wchar_t* type, const wchar_t* handle) {
    plan.store_items(L"2F", type, {item_of(L"gdh", L"1", handle)});
  }
  Names keys() { return plan.keys(L"2F"); }
};

TEST_F(DeleteLabels, LabelsAndRecordOfTheTypeGo) {
  given(L"bzjg", L"40");
  given(L"pcgb", L"41");
  given(L"xzgj", L"42");
  EXPECT_EQ(pipe().deleteDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(keys(), (Names{L"bzjg", L"xzgj"}));
  EXPECT_FALSE(plan.is_erased(L"40"));
  EXPECT_TRUE(plan.is_erased(L"41"));
  EXPECT_FALSE(plan.is_erased(L"42"));
}

TEST_F(DeleteLabels, TheTypeIsFoundWhateverItsLetterCase) {
  given(L"pcgb", L"41");
  EXPECT_EQ(pipe().deleteDim(L"PcGb"), Acad::eOk);
  EXPECT_EQ(keys(), Names{});
}

TEST_F(DeleteLabels, ATypeThatIsNotThereIsASuccess) {
  given(L"pcgb", L"41");
  EXPECT_EQ(pipe().deleteDim(L"bzjg"), Acad::eOk);
  EXPECT_EQ(pipe().deleteDim(L"nobody"), Acad::eOk);
  EXPECT_EQ(pipe().deleteDim(L""), Acad::eOk);
  EXPECT_EQ(keys(), Names{L"pcgb"});
}

TEST_F(DeleteLabels, ANullNameFails) { EXPECT_EQ(pipe().deleteDim(nullptr), 1); }

TEST_F(DeleteLabels, EntriesOfOtherApplicationsStay) {
  given(L"other", L"40");
  given(L"pcgb", L"41");
  EXPECT_EQ(pipe().deleteDim(L"other"), Acad::eOk);
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  EXPECT_EQ(pipe().deleteAllDimInfo(), Acad::eOk);
  EXPECT_EQ(keys(), Names{L"other"});
  EXPECT_FALSE(plan.is_erased(L"40"));
}

TEST_F(DeleteLabels, AllGoThoughEachStepTakesTheEntryItStandsOn) {
  const wchar_t* const types[] = {L"bhbz", L"bjbh", L"bzjg", L"bzzjg", L"gfjbz", L"pcgb", L"zddh"};
  wchar_t handle[] = L"40";
  for (const wchar_t* type : types) {
    given(type, handle);
    ++handle[1];
  }
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  EXPECT_EQ(keys(), Names{});
  for (wchar_t digit = L'0'; digit < L'7'; ++digit) {
    handle[1] = digit;
    EXPECT_TRUE(plan.is_erased(handle));
  }
}

TEST_F(DeleteLabels, SharedLabelsSurviveADeleteAll) {
  Handlers handlers;
  for (const wchar_t* type : {L"GroupDim", L"JCDim", L"OnLine_PipeDim"}) handlers.regist(type);
  given(L"GroupDim", L"40");
  given(L"JCDim", L"41");
  given(L"OnLine_PipeDim", L"42");
  given(L"pcgb", L"43");
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  EXPECT_EQ(keys(), (Names{L"GroupDim", L"JCDim", L"OnLine_PipeDim"}));
  for (const wchar_t* shared : {L"40", L"41", L"42"}) EXPECT_FALSE(plan.is_erased(shared));
  EXPECT_TRUE(plan.is_erased(L"43"));
  EXPECT_EQ(pipe().deleteDim(L"groupdim"), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"40"));
  EXPECT_EQ(pipe().deleteAllDimInfo(), Acad::eOk);
  EXPECT_EQ(keys(), Names{});
  EXPECT_FALSE(plan.is_erased(L"41"));
}

TEST_F(DeleteLabels, SharedTypesAreKnownWhateverTheirLetterCase) {
  Handlers handlers;
  for (const wchar_t* type : {L"groupDIM", L"jcdim", L"ONLINE_PIPEDIM"}) {
    handlers.regist(type);
    given(type, L"40");
  }
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  EXPECT_EQ(keys().size(), 3u);
}

TEST_F(DeleteLabels, RecordsAloneGoAndLabelsStayDrawn) {
  given(L"bzjg", L"40");
  given(L"pcgb", L"41");
  EXPECT_EQ(pipe().deleteAllDimInfo(), Acad::eOk);
  EXPECT_EQ(keys(), Names{});
  EXPECT_FALSE(plan.is_erased(L"40"));
  EXPECT_EQ(plan.text(L"41"), L"label 41");
}

TEST_F(DeleteLabels, ARecordThatDoesNotOpenIsToldAndTheOthersGo) {
  given(L"bzjg", L"40");
  given(L"pcgb", L"41");
  given(L"xzgj", L"42");
  const dim::Opened<AcDbObject> held(plan.entry(L"2F", L"pcgb"), AcDb::kForRead);
  Printed printed;
  EXPECT_EQ(pipe().deleteDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(printed.take(), kWarning);
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  EXPECT_EQ(printed.take(), kWarning);
  EXPECT_EQ(keys(), Names{L"pcgb"});
  EXPECT_TRUE(plan.is_erased(L"42"));
  EXPECT_EQ(pipe().deleteAllDimInfo(), Acad::eOk);
  EXPECT_EQ(printed.take(), kWarning);
  EXPECT_FALSE(plan.is_erased(L"41"));
}

TEST_F(DeleteLabels, LabelsOnALockedLayerStayDrawnAndTheirRecordGoes) {
  plan.store_items(L"2F", L"pcgb",
                   {item_of(L"gdh", L"1", L"4B"), item_of(L"pipe_gg", L"2", L"41")});
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  EXPECT_EQ(keys(), Names{});
  EXPECT_FALSE(plan.is_erased(L"4B"));
  EXPECT_TRUE(plan.is_erased(L"41"));
}

TEST_F(DeleteLabels, ARecordThatNamesItsOwnerEndsTheWalkInOrder) {
  given(L"bzjg", L"2F");
  given(L"pcgb", L"41");
  CDimManager manager = pipe();
  EXPECT_EQ(manager.deleteAllDim(), Acad::eOk);
  EXPECT_TRUE(plan.is_erased(L"2F"));
  EXPECT_FALSE(plan.is_erased(L"41"));
  EXPECT_EQ(manager.deleteAllDim(), 1);
}

TEST_F(DeleteLabels, ATableThatIsOpenElsewhereFails) {
  given(L"pcgb", L"41");
  CDimManager manager = pipe();
  const dim::Opened<AcDbDictionary> held(manager.getExtensionDictionaryId(), AcDb::kForRead);
  EXPECT_EQ(manager.deleteDim(L"pcgb"), 1);
  EXPECT_EQ(manager.deleteAllDim(), 1);
  EXPECT_EQ(manager.deleteAllDimInfo(), 1);
  EXPECT_FALSE(plan.is_erased(L"41"));
}

TEST_F(DeleteLabels, AnOwnerErasedBetweenTheCallsFails) {
  given(L"pcgb", L"41");
  CDimManager manager = pipe();
  plan.erase(L"2F");
  EXPECT_EQ(manager.deleteDim(L"pcgb"), 1);
  EXPECT_EQ(manager.deleteAllDim(), 1);
  EXPECT_EQ(manager.deleteAllDimInfo(), 1);
  EXPECT_FALSE(plan.is_erased(L"41"));
}

TEST_F(DeleteLabels, AManagerThatCouldNotOpenAnswersOne) {
  CDimManager manager((AcDbObjectId()));
  EXPECT_EQ(manager.deleteDim(L"pcgb"), 1);
  EXPECT_EQ(manager.deleteAllDim(), 1);
  EXPECT_EQ(manager.deleteAllDimInfo(), 1);
}

TEST_F(DeleteLabels, WhatIsDeletedIsGoneFromTheFile) {
  given(L"pcgb", L"41");
  given(L"bzjg", L"42");
  plan.reopen();
  EXPECT_EQ(pipe().deleteAllDim(), Acad::eOk);
  plan.reopen();
  EXPECT_EQ(keys(), Names{});
  AcDbObjectId gone;
  EXPECT_NE(plan.database().getAcDbObjectId(gone, false, AcDbHandle(L"41")), Acad::eOk);
}

}  // namespace
