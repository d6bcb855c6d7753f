// CDimManager::updateDim of one item, wherever the entity has it.

#include "module/manager/dim_manager.h"
#include "module/platform/opened.h"
#include "tests/module/handlers.h"
#include "tests/module/plan.h"

namespace {

/// Items here are of names that no setting rounds.
class UpdateItem : public PlanTest {
 protected:
  CDimManager pipe() { return CDimManager(plan.id(L"2F")); }
  void given(const wchar_t* type, const Items& items) { plan.store_items(L"2F", type, items); }
  Items stored(const wchar_t* type = L"pcgb") { return plan.items(plan.entry(L"2F", type)); }
  StuDim first(const wchar_t* type = L"pcgb") { return stored(type).at(0); }

  const Printed printed;  // there is no installation here, and updating says so
  const StuDim code{L"gdh", L"40", L"W1", L"管", L"号", L"/", L"", L"x"};
};

StuDim wanted(const wchar_t* name, const wchar_t* value) {
  return {name, L"", value, L"P", L"S", L"|", L"", L"e"};
}

TEST_F(UpdateItem, OnlyTheTextChangesWithTheSwitchOff) {
  given(L"pcgb", {code});
  EXPECT_EQ(pipe().updateDim(wanted(L"gdh", L"W2"), 0), Acad::eOk);
  EXPECT_EQ(first(), (StuDim{L"gdh", L"40", L"W2", L"管", L"号", L"/", L"", L"e"}));
  EXPECT_EQ(plan.text(L"40"), L"管W2号");
}

TEST_F(UpdateItem, ThePiecesAreReplacedWithTheSwitchOnAndTheHandleStays) {
  given(L"pcgb", {code});
  EXPECT_EQ(pipe().updateDim(wanted(L"gdh", L"W2"), 1), Acad::eOk);
  EXPECT_EQ(first(), (StuDim{L"gdh", L"40", L"W2", L"P", L"S", L"|", L"", L"e"}));
  EXPECT_EQ(plan.text(L"40"), L"PW2S");
  EXPECT_EQ(pipe().updateDim(item_of(L"gdh", L"W3", L"41"), -5), Acad::eOk);
  EXPECT_EQ(first(), item_of(L"gdh", L"W3", L"40"));
  EXPECT_EQ(plan.text(L"41"), L"label 41");
}

TEST_F(UpdateItem, NameAndValueUpdateWithTheSwitchOff) {
  given(L"pcgb", {code});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(first(), (StuDim{L"gdh", L"40", L"W2", L"管", L"号", L"/", L"", L""}));
  EXPECT_EQ(pipe().updateDim(L"gdh", static_cast<const wchar_t*>(nullptr)), Acad::eOk);
  EXPECT_EQ(first().value, L"");
  EXPECT_EQ(plan.text(L"40"), L"");
}

TEST_F(UpdateItem, TheWholeTextIsMadeAnewFromItsPieces) {
  given(L"pcgb", {code, item_of(L"pipe_gg", L"1x1", L"40"), item_of(L"well_bh", L"7", L"41")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"管W2号/1x1");
  EXPECT_EQ(plan.text(L"41"), L"7");
}

TEST_F(UpdateItem, AnItemIsUpdatedInEveryRecordThatHasIt) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  given(L"bzjg", {item_of(L"well_bh", L"1", L"41")});
  given(L"xzgj", {item_of(L"GDH", L"1", L"42")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"W2");
  EXPECT_EQ(plan.text(L"41"), L"label 41");
  EXPECT_EQ(plan.text(L"42"), L"W2");
  EXPECT_EQ(first(L"xzgj").name, L"gdh");
  EXPECT_EQ(first(L"bzjg"), item_of(L"well_bh", L"1", L"41"));
}

TEST_F(UpdateItem, RecordsUnderNamesThatAreNotRegisteredAreNotLookedAt) {
  given(L"other", {item_of(L"gdh", L"1", L"40")});
  given(L"PCGB", {item_of(L"gdh", L"1", L"41")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(first(L"other").value, L"1");
  EXPECT_EQ(first(L"pcgb").value, L"1");
}

TEST_F(UpdateItem, AnItemThatIsNowhereIsASuccess) {
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  given(L"pcgb", {item_of(L"well_bh", L"1", L"40")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(stored(), Items{item_of(L"well_bh", L"1", L"40")});
}

TEST_F(UpdateItem, ANameThatIsNotKnownIsRefused) {
  given(L"pcgb", {item_of(L"unknown", L"1", L"40")});
  EXPECT_EQ(pipe().updateDim(L"unknown", L"2"), 20022);
  EXPECT_EQ(pipe().updateDim(L"GDH", L"2"), 20022);
  EXPECT_EQ(pipe().updateDim(L"", L"2"), 20022);
  EXPECT_EQ(pipe().updateDim(static_cast<const wchar_t*>(nullptr), L"2"), 20022);
  EXPECT_EQ(first().value, L"1");
}

TEST_F(UpdateItem, ANameThatIsNotKnownRedrawsNothing) {
  Handlers handlers;
  handlers.regist(L"xzgj");
  given(L"xzgj", {item_of(L"pipe_unknown", L"1", L"40")});
  EXPECT_EQ(pipe().updateDim(L"pipe_unknown", L"2"), 20022);
  EXPECT_EQ(handlers.calls(), Names{});
}

TEST_F(UpdateItem, TheKindOfTheCallersItemReplacesTheStoredOne) {
  StuDim other = code;
  other.recordKind = L"other";
  given(L"pcgb", {other});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(first().recordKind, L"");
  EXPECT_EQ(plan.text(L"40"), L"管W2号");
  StuDim information = wanted(L"gdh", L"W3");
  information.recordKind = dim::kNoEntityKind;
  EXPECT_EQ(pipe().updateDim(information, 0), Acad::eOk);
  EXPECT_EQ(first(), (StuDim{L"gdh", L"40", L"W3", L"管", L"号", L"/", dim::kNoEntityKind, L"e"}));
  EXPECT_EQ(plan.text(L"40"), L"管W2号");
}

TEST_F(UpdateItem, ANameBehindAPrefixIsAnItemOfItsOwn) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40"), item_of(L"北@gdh", L"2", L"41")});
  EXPECT_EQ(pipe().updateDim(L"北@gdh", L"3"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"1");
  EXPECT_EQ(plan.text(L"41"), L"3");
}

TEST_F(UpdateItem, InformationTakesTheValueAndNothingIsDrawn) {
  StuDim information = code;
  information.recordKind = dim::kNoEntityKind;
  given(L"pcgb", {information, item_of(L"well_bh", L"7", L"41")});
  EXPECT_EQ(pipe().updateDim(wanted(L"gdh", L"1.23456"), 1), Acad::eOk);
  StuDim expected = information;
  expected.value = L"1.23456";
  EXPECT_EQ(first(), expected);
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(plan.text(L"41"), L"label 41");
}

TEST_F(UpdateItem, InformationThatCannotBeStoredFailsNothing) {
  // The clean-up in front of storing stops at the item that is not whole.
  Texts texts = {L"gdh", L"", L"", L"1", L"", L"", dim::kNoEntityKind, L""};
  texts.push_back(L"cut short");
  const AcDbObjectId id = plan.store_chain(L"2F", L"bzjg", text_chain(texts).get());
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), Acad::eOk);
  EXPECT_EQ(plan.items(id).at(0).value, L"1");
  EXPECT_EQ(plan.text(L"40"), L"2");
}

TEST_F(UpdateItem, ADamagedRecordFailsAndThoseBeforeItStayUpdated) {
  given(L"bzjg", {item_of(L"gdh", L"1", L"40")});
  Texts texts = {L"gdh", L"41", L"", L"1", L"", L"", L"", L"", L"cut short"};
  plan.store_chain(L"2F", L"pcgb", text_chain(texts).get());
  given(L"xzgj", {item_of(L"gdh", L"1", L"42")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), 1);
  EXPECT_EQ(plan.text(L"40"), L"2");
  EXPECT_EQ(plan.text(L"41"), L"label 41");
  EXPECT_EQ(plan.text(L"42"), L"label 42");
}

TEST_F(UpdateItem, ADamagedRecordWithoutTheItemIsPassedOver) {
  plan.store_chain(L"2F", L"bzjg", text_chain({L"gdh", L"41"}).get());
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"2");
}

TEST_F(UpdateItem, ARecordThatIsOpenElsewhereEndsTheWalk) {
  given(L"bzjg", {item_of(L"gdh", L"1", L"40")});
  given(L"pcgb", {item_of(L"gdh", L"1", L"41")});
  const dim::Opened<AcDbObject> held(plan.entry(L"2F", L"pcgb"), AcDb::kForRead);
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), 1);
  EXPECT_EQ(plan.text(L"40"), L"2");
  EXPECT_EQ(plan.text(L"41"), L"label 41");
}

TEST_F(UpdateItem, AnEntryThatIsNoXrecordEndsTheWalk) {
  {
    dim::Opened<AcDbDictionary> table(plan.extension_dictionary(L"2F"), AcDb::kForWrite);
    auto inner = std::make_unique<AcDbDictionary>();
    AcDbObjectId id;
    ASSERT_EQ(table->setAt(L"bzjg", inner.get(), id), Acad::eOk);
    inner.release()->close();
  }
  given(L"pcgb", {item_of(L"gdh", L"1", L"41")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), 1);
  EXPECT_EQ(plan.text(L"41"), L"label 41");
}

TEST_F(UpdateItem, ATableThatIsOpenElsewhereFails) {
  CDimManager manager = pipe();
  const dim::Opened<AcDbDictionary> held(manager.getExtensionDictionaryId(), AcDb::kForRead);
  EXPECT_EQ(manager.updateDim(L"gdh", L"2"), 1);
}

TEST_F(UpdateItem, AnErasedTextIsUpdatedInItsRecordOnly) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40"), item_of(L"well_bh", L"1", L"41")});
  plan.erase(L"40");
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), Acad::eOk);
  EXPECT_EQ(first().value, L"2");
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(plan.text(L"41"), L"1");
}

TEST_F(UpdateItem, ALabelOnALockedLayerIsLeftAndItsItemDroppedWhileTheOthersFollow) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"4B"), item_of(L"well_bh", L"7", L"41"),
                  item_of(L"pipe_gg", L"8", L"42")});
  const TraceLines trace;
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"well_bh", L"pipe_gg"}));
  EXPECT_EQ(plan.text(L"4B"), L"label 4B");
  EXPECT_EQ(plan.text(L"41"), L"7");
  EXPECT_EQ(plan.text(L"42"), L"8");
  EXPECT_EQ(std::count(trace.lines().begin(), trace.lines().end(),
                       L"打开实体失败,删除无用更新数据:gdh !"),
            2);
}

TEST_F(UpdateItem, ALabelThatIsOpenElsewhereIsLeftAndItsItemDropped) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40"), item_of(L"well_bh", L"7", L"41"),
                  item_of(L"pipe_gg", L"8", L"42")});
  const dim::Opened<AcDbEntity> held(plan.id(L"40"), AcDb::kForRead);
  EXPECT_EQ(pipe().updateDim(L"pipe_gg", L"9"), Acad::eOk);
  EXPECT_EQ(names_of(stored()), (Names{L"well_bh", L"pipe_gg"}));
  EXPECT_EQ(plan.text(L"40"), L"label 40");
  EXPECT_EQ(plan.text(L"42"), L"9");
}

TEST_F(UpdateItem, TheOnlyItemOfALabelThatCannotBeWrittenIsLostFromItsRecord) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"4B")});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"2"), Acad::eOk);
  EXPECT_EQ(stored(), Items{});
  EXPECT_EQ(plan.keys(L"2F"), Names{L"pcgb"});
  EXPECT_EQ(pipe().dimRecEx(L"pcgb", item_of(L"gdh", L"3", L"40")), Acad::eOk);
  EXPECT_EQ(stored(), Items{});
  EXPECT_EQ(pipe().deleteDim(L"pcgb"), Acad::eOk);
  EXPECT_EQ(pipe().dimRecEx(L"pcgb", item_of(L"gdh", L"3", L"40")), Acad::eOk);
  EXPECT_EQ(stored(), Items{item_of(L"gdh", L"3", L"40")});
}

TEST_F(UpdateItem, AnOwnerErasedBetweenTheCallsFails) {
  given(L"pcgb", {item_of(L"gdh", L"1", L"40")});
  CDimManager manager = pipe();
  plan.erase(L"2F");
  EXPECT_EQ(manager.updateDim(L"gdh", L"2"), 1);
  EXPECT_EQ(plan.text(L"40"), L"label 40");
}

TEST_F(UpdateItem, AManagerThatCouldNotOpenAnswersOne) {
  CDimManager manager((AcDbObjectId()));
  EXPECT_EQ(manager.updateDim(wanted(L"gdh", L"1"), 0), 1);
  EXPECT_EQ(manager.updateDim(wanted(L"unknown", L"1"), 1), 1);
  EXPECT_EQ(manager.updateDim(L"gdh", L"1"), 1);
}

TEST_F(UpdateItem, WhatWasUpdatedIsThereAfterSavingAndOpening) {
  given(L"pcgb", {code});
  EXPECT_EQ(pipe().updateDim(L"gdh", L"污水 2"), Acad::eOk);
  plan.reopen();
  EXPECT_EQ(plan.text(L"40"), L"管污水 2号");
  EXPECT_EQ(first().value, L"污水 2");
  EXPECT_EQ(pipe().updateDim(L"gdh", L"3"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"管3号");
}

}  // namespace
