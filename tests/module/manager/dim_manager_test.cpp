#include "module/manager/dim_manager.h"

#include <gtest/gtest.h>

#include "module/platform/opened.h"
#include "tests/module/plan.h"

namespace {

class Manager : public PlanTest {
 protected:
  Items items(const wchar_t* type = L"pcgb") { return plan.items(plan.entry(L"2F", type)); }
  bool has_extension_dictionary(const wchar_t* owner) {
    return !dim::Opened<AcDbEntity>(plan.id(owner), AcDb::kForRead)->extensionDictionary().isNull();
  }
  CDimManager pipe() { return CDimManager(plan.id(L"2F")); }
};

TEST_F(Manager, AnEntityWithoutExtensionDictionaryGetsOne) {
  EXPECT_FALSE(has_extension_dictionary(L"2F"));
  const CDimManager manager(plan.id(L"2F"));
  EXPECT_EQ(manager.openStatus(), Acad::eOk);
  EXPECT_TRUE(has_extension_dictionary(L"2F"));
  EXPECT_EQ(manager.getExtensionDictionaryId(), plan.extension_dictionary(L"2F"));
  EXPECT_EQ(CDimManager(plan.id(L"2F")).getExtensionDictionaryId(),
            manager.getExtensionDictionaryId());
}

TEST_F(Manager, AnOpenEntityIsUpgradedAndStaysOpen) {
  const dim::Opened<AcDbEntity> entity(plan.id(L"2F"), AcDb::kForRead);
  CDimManager manager(&*entity);
  EXPECT_EQ(manager.openStatus(), Acad::eOk);
  EXPECT_TRUE(entity->isWriteEnabled());
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"k", CString(L"v")), Acad::eOk);
  EXPECT_TRUE(entity->isWriteEnabled());
}

TEST_F(Manager, AnOpenEntityOnALockedLayerWithoutDictionaryCannotBeUsed) {
  const dim::Opened<AcDbEntity> entity(plan.id(L"31"), AcDb::kForRead);
  const CDimManager manager(&*entity);
  EXPECT_EQ(manager.openStatus(), 374);
  EXPECT_TRUE(manager.getExtensionDictionaryId().isNull());
}

TEST_F(Manager, AnOpenEntityThatCannotBeUpgradedServesWhenItHasADictionary) {
  plan.extension_dictionary(L"2F");
  const dim::Opened<AcDbEntity> entity(plan.id(L"2F"), AcDb::kForRead);
  const dim::Opened<AcDbEntity> another(plan.id(L"2F"), AcDb::kForRead);
  CDimManager manager(&*entity);
  EXPECT_EQ(manager.openStatus(), Acad::eOk);
  EXPECT_FALSE(entity->isWriteEnabled());
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"k", CString(L"v")), Acad::eOk);
}

TEST_F(Manager, AnEntityOfNoDrawingCannotBeUsed) {
  AcDbText entity;
  CDimManager manager(&entity);
  EXPECT_EQ(manager.openStatus(), 374);
  EXPECT_TRUE(manager.getExtensionDictionaryId().isNull());
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"a", L"1")), 1);
}

TEST_F(Manager, AnErasedExtensionDictionaryFailsUntilTheDrawingIsOpenedAgain) {
  const AcDbObjectId dictionary = plan.extension_dictionary(L"2F");
  ASSERT_EQ(dim::Opened<AcDbDictionary>(dictionary, AcDb::kForWrite)->erase(), Acad::eOk);
  EXPECT_EQ(pipe().openStatus(), Acad::eOk);
  EXPECT_EQ(pipe().dimRecEx(L"pcgb", item_of(L"a", L"1")), 1);
  plan.reopen();
  EXPECT_EQ(pipe().dimRecEx(L"pcgb", item_of(L"a", L"1")), Acad::eOk);
  EXPECT_EQ(items(), Items{item_of(L"a", L"1")});
}

TEST_F(Manager, AnEntityThatDoesNotOpenGivesTheHostsStatus) {
  EXPECT_EQ(CDimManager(AcDbObjectId()).openStatus(), Acad::eNullObjectId);
  EXPECT_EQ(CDimManager(plan.id(L"31")).openStatus(), Acad::eOnLockedLayer);
  EXPECT_EQ(CDimManager(plan.id(L"C")).openStatus(), Acad::eNotAnEntity);
  plan.erase(L"30");
  EXPECT_EQ(CDimManager(plan.id(L"30")).openStatus(), Acad::eWasErased);
  EXPECT_EQ(CDimManager(static_cast<AcDbEntity*>(nullptr)).openStatus(), Acad::eNullEntityPointer);
}

TEST_F(Manager, OneThatCouldNotOpenAnswersOne) {
  CDimManager manager((AcDbObjectId()));
  int existing = 5, missing = 5;
  AcDbObjectIdArray entities;
  CString text;
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"a", L"1")), 1);
  EXPECT_EQ(manager.dimTxtRec(L"pcgb", L"a", plan.id(L"40"), L"1", L"", L"", L""), 1);
  EXPECT_EQ(manager.dimEntRec(L"pcgb", plan.id(L"40")), 1);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"k", 1.5), 1);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"k", text), 1);
  EXPECT_EQ(manager.isDimExisted(L"pcgb", existing, missing), 1);
  EXPECT_EQ(existing, 0);
  EXPECT_EQ(missing, 0);
  const Printed printed;
  EXPECT_EQ(manager.getDimEnt(entities), 1);
  EXPECT_EQ(printed.text(), "");
}

TEST_F(Manager, RecordsAnItemAsANewRecord) {
  const StuDim item{L"pipe_len", L"40", L"36.5", L"L=", L"m", L"/", L"", L"x"};
  EXPECT_EQ(pipe().dimRecEx(L"pcgb", item), Acad::eOk);
  EXPECT_EQ(items(), Items{item});
  EXPECT_EQ(plan.keys(L"2F"), Names{L"pcgb"});
}

TEST_F(Manager, RecordsAnItemIntoTheRecordThatIsThere) {
  CDimManager manager = pipe();
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"a", L"1", L"40")), Acad::eOk);
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"b", L"1", L"41")), Acad::eOk);
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"A", L"2", L"42")), Acad::eOk);
  EXPECT_EQ(items(), (Items{item_of(L"A", L"2", L"42"), item_of(L"b", L"1", L"41")}));
}

TEST_F(Manager, RecordsOfTwoTypesStandSideBySide) {
  CDimManager manager = pipe();
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"a", L"1")), Acad::eOk);
  EXPECT_EQ(manager.dimRecEx(L"bzjg", item_of(L"a", L"2")), Acad::eOk);
  EXPECT_EQ(plan.keys(L"2F"), (Names{L"bzjg", L"pcgb"}));
}

TEST_F(Manager, AnItemWithNeitherEntityNorValueIsNotRecordedAndThatIsASuccess) {
  CDimManager manager = pipe();
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"pipe_len", L"", L"40")), Acad::eOk);
  EXPECT_EQ(manager.dimRecEx(L"no type", item_of(L"", L"", L"40")), Acad::eOk);
  EXPECT_EQ(CDimManager(AcDbObjectId()).dimRecEx(L"pcgb", item_of(L"a", L"", L"40")), Acad::eOk);
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(Manager, AnItemNamedAfterItsHandleNeedsNoValue) {
  EXPECT_EQ(pipe().dimRecEx(L"pcgb", item_of(L"4a", L"", L"4A")), Acad::eOk);
  EXPECT_EQ(items(), Items{item_of(L"4a", L"", L"4A")});
}

TEST_F(Manager, ATypeThatIsNotRegisteredIsRefused) {
  CDimManager manager = pipe();
  EXPECT_EQ(manager.dimRecEx(L"PCGB", item_of(L"a", L"1")), 20022);
  EXPECT_EQ(manager.dimRecEx(nullptr, item_of(L"a", L"1")), 20022);
  EXPECT_EQ(manager.dimEntRec(L"nobody", plan.id(L"40")), 20022);
  EXPECT_EQ(manager.dimTxtRec(L"nobody", L"a", plan.id(L"40"), L"1", L"", L"", L""), 20022);
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(Manager, OfAWrongTypeAndAWrongEntityTheFirstOneLookedAtIsTold) {
  CDimManager manager = pipe();
  EXPECT_EQ(manager.dimEntRec(L"nobody", AcDbObjectId()), 20022);
  EXPECT_EQ(manager.dimTxtRec(L"nobody", L"a", AcDbObjectId(), L"1", L"", L"", L""), 1);
}

TEST_F(Manager, ATableThatIsOpenElsewhereFailsTheRecording) {
  CDimManager manager = pipe();
  const dim::Opened<AcDbDictionary> held(manager.getExtensionDictionaryId(), AcDb::kForRead);
  EXPECT_EQ(manager.dimRecEx(L"pcgb", item_of(L"a", L"1")), 1);
}

TEST_F(Manager, ATextIsRecordedWithSuffixBeforePrefix) {
  EXPECT_EQ(pipe().dimTxtRec(L"pcgb", L"pipe_len", plan.id(L"40"), L"36.5", L"m", L"L=", L"/"),
            Acad::eOk);
  EXPECT_EQ(items(), (Items{{L"pipe_len", L"40", L"36.5", L"L=", L"m", L"/", L"", L""}}));
}

TEST_F(Manager, ATextWithoutValueIsASuccessThatStoresNothing) {
  EXPECT_EQ(pipe().dimTxtRec(L"pcgb", L"pipe_len", plan.id(L"40"), L"", L"m", L"L=", L"/"),
            Acad::eOk);
  EXPECT_EQ(
      pipe().dimTxtRec(L"pcgb", L"pipe_len", plan.id(L"40"), nullptr, nullptr, nullptr, nullptr),
      Acad::eOk);
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(Manager, AnAnnotationWithoutHandleTextIsNotRecorded) {
  CDimManager manager = pipe();
  EXPECT_EQ(manager.dimTxtRec(L"pcgb", L"a", AcDbObjectId(), L"1", L"", L"", L""), 1);
  EXPECT_EQ(manager.dimEntRec(L"pcgb", AcDbObjectId()), 1);
  const dim::Opened<AcDbEntity> held(plan.id(L"40"), AcDb::kForWrite);
  EXPECT_EQ(manager.dimEntRec(L"pcgb", plan.id(L"40")), 1);
}

TEST_F(Manager, AnEntityIsRecordedUnderItsHandle) {
  EXPECT_EQ(pipe().dimEntRec(L"pcgb", plan.id(L"4A")), Acad::eOk);
  EXPECT_EQ(items(), Items{item_of(L"4A", L"", L"4A")});
}

TEST_F(Manager, DrawValuesComeBackAsTheyWent) {
  CDimManager manager = pipe();
  const long number = -7;
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"point", AcGePoint3d(1.5, -2.25, 1e6)), Acad::eOk);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"vector", AcGeVector3d(0, 1, 0)), Acad::eOk);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"real", 36.5), Acad::eOk);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"long", number), Acad::eOk);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"text", CString(L"井 1")), Acad::eOk);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"object", plan.id(L"4A")), Acad::eOk);
  EXPECT_EQ(names_of(items()), (Names{L"point", L"vector", L"real", L"long", L"text", L"object"}));

  AcGePoint3d point;
  AcGeVector3d vector;
  double real = 0;
  long whole = 0;
  CString text;
  AcDbObjectId object;
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"POINT", point), Acad::eOk);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"vector", vector), Acad::eOk);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"real", real), Acad::eOk);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"long", whole), Acad::eOk);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"text", text), Acad::eOk);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"object", object), Acad::eOk);
  EXPECT_EQ(point.x, 1.5);
  EXPECT_EQ(point.y, -2.25);
  EXPECT_EQ(point.z, 1e6);
  EXPECT_EQ(vector.y, 1.0);
  EXPECT_EQ(real, 36.5);
  EXPECT_EQ(whole, -7);
  EXPECT_EQ(text, L"井 1");
  EXPECT_EQ(object, plan.id(L"4A"));
}

TEST_F(Manager, ADrawPointReadsBackRoundedToSixDecimals) {
  CDimManager manager = pipe();
  AcGePoint3d point;
  ASSERT_EQ(manager.dimDrawRec(L"pcgb", L"p", AcGePoint3d(1.23456789, 2.0000004, 0)), Acad::eOk);
  ASSERT_EQ(manager.getDimDrawRec(L"pcgb", L"p", point), Acad::eOk);
  EXPECT_EQ(point.x, 1.234568);
  EXPECT_EQ(point.y, 2.0);
}

TEST_F(Manager, ADrawRecordStoresNameAndValueOnly) {
  EXPECT_EQ(pipe().dimDrawRec(L"pcgb", L"k", 0.5), Acad::eOk);
  EXPECT_EQ(items(), Items{item_of(L"k", L"0.500000")});
}

TEST_F(Manager, ADrawValueNeedsARegisteredTypeAndAKey) {
  CDimManager manager = pipe();
  CString text = L"untouched";
  EXPECT_EQ(manager.dimDrawRec(L"nobody", L"k", 1.5), 3);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"", 1.5), 3);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", nullptr, 1.5), 3);
  EXPECT_EQ(manager.getDimDrawRec(L"nobody", L"k", text), 3);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"", text), 3);
  EXPECT_EQ(manager.getDimDrawRec(nullptr, nullptr, text), 3);
  EXPECT_EQ(text, L"untouched");
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(Manager, BadInputIsToldByOneThatCouldNotOpenToo) {
  CDimManager manager((AcDbObjectId()));
  CString text;
  double real = 0;
  EXPECT_EQ(manager.dimDrawRec(L"nobody", L"k", 1.5), 3);
  EXPECT_EQ(manager.dimDrawRec(L"pcgb", L"", 1.5), 3);
  EXPECT_EQ(manager.getDimDrawRec(L"nobody", L"k", text), 3);
  EXPECT_EQ(manager.getDimDrawRec(L"nobody", L"k", real), 1);
}

TEST_F(Manager, AnEmptyDrawTextIsASuccessThatStoresNothing) {
  EXPECT_EQ(pipe().dimDrawRec(L"pcgb", L"k", CString()), Acad::eOk);
  EXPECT_EQ(pipe().dimDrawRec(L"pcgb", L"k", AcDbObjectId()), Acad::eOk);
  EXPECT_EQ(plan.keys(L"2F"), Names{});
}

TEST_F(Manager, AMissingKeyIsToldByTheTextReaderOnly) {
  CDimManager manager = pipe();
  ASSERT_EQ(manager.dimDrawRec(L"pcgb", L"k", 1.5), Acad::eOk);
  CString text = L"untouched";
  double real = 7;
  long whole = 7;
  AcGePoint3d point(7, 7, 7);
  AcGeVector3d vector(7, 7, 7);
  AcDbObjectId object = plan.id(L"40");
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"absent", text), 22);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"absent", real), 1);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"absent", whole), 1);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"absent", point), 1);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"absent", vector), 1);
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"absent", object), 1);
  EXPECT_EQ(text, L"untouched");
  EXPECT_EQ(real, 7.0);
  EXPECT_EQ(whole, 7);
  EXPECT_EQ(point.x, 7.0);
  EXPECT_EQ(vector.x, 7.0);
  EXPECT_EQ(object, plan.id(L"40"));
}

TEST_F(Manager, AMissingRecordFailsEveryReader) {
  CString text;
  double real = 7;
  EXPECT_EQ(pipe().getDimDrawRec(L"bzjg", L"k", text), 1);
  EXPECT_EQ(pipe().getDimDrawRec(L"bzjg", L"k", real), 1);
  EXPECT_EQ(real, 7.0);
}

TEST_F(Manager, AnObjectWhoseHandleIsOfNothingIsBadInput) {
  CDimManager manager = pipe();
  ASSERT_EQ(manager.dimDrawRec(L"pcgb", L"object", CString(L"FFF")), Acad::eOk);
  AcDbObjectId object = plan.id(L"40");
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"object", object), 3);
  EXPECT_EQ(object, plan.id(L"40"));
}

TEST_F(Manager, TellsWhetherAnnotationsAreThereOrMissing) {
  CDimManager manager = pipe();
  int existing = 0, missing = 0;
  plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"40"), item_of(L"b", L"1", L"41")});
  EXPECT_EQ(manager.isDimExisted(L"pcgb", existing, missing), Acad::eOk);
  EXPECT_EQ(existing, 1);
  EXPECT_EQ(missing, 0);
  plan.erase(L"41");
  EXPECT_EQ(manager.isDimExisted(L"PCGB", existing, missing), Acad::eOk);
  EXPECT_EQ(existing, 1);
  EXPECT_EQ(missing, 1);
  plan.erase(L"40");
  EXPECT_EQ(manager.isDimExisted(L"pcgb", existing, missing), Acad::eOk);
  EXPECT_EQ(existing, 0);
  EXPECT_EQ(missing, 1);
}

TEST_F(Manager, ItemsWithoutHandleAreNeitherThereNorMissing) {
  plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1"), item_of(L"b", L"1")});
  int existing = 1, missing = 1;
  EXPECT_EQ(pipe().isDimExisted(L"pcgb", existing, missing), Acad::eOk);
  EXPECT_EQ(existing, 0);
  EXPECT_EQ(missing, 0);
}

TEST_F(Manager, AHandleOfNothingIsMissing) {
  plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"FFF")});
  int existing = 1, missing = 0;
  EXPECT_EQ(pipe().isDimExisted(L"pcgb", existing, missing), Acad::eOk);
  EXPECT_EQ(existing, 0);
  EXPECT_EQ(missing, 1);
}

TEST_F(Manager, ALabelOnALockedLayerIsThere) {
  plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"4B")});
  int existing = 0, missing = 1;
  EXPECT_EQ(pipe().isDimExisted(L"pcgb", existing, missing), Acad::eOk);
  EXPECT_EQ(existing, 1);
  EXPECT_EQ(missing, 0);
}

TEST_F(Manager, AskingForATypeWithoutRecordFails) {
  int existing = 1, missing = 1;
  EXPECT_EQ(pipe().isDimExisted(L"pcgb", existing, missing), 1);
  EXPECT_EQ(existing, 0);
  EXPECT_EQ(missing, 0);
}

TEST_F(Manager, ARecordThatEndsWithinAnItemCannotBeAsked) {
  plan.store_chain(L"2F", L"pcgb", text_chain({L"a", L"40"}).get());
  int existing = 1, missing = 1;
  EXPECT_EQ(pipe().isDimExisted(L"pcgb", existing, missing), 1);
}

TEST_F(Manager, CollectsTheAnnotationsOfAllTypesAndAppends) {
  plan.store_items(L"2F", L"pcgb",
                   {item_of(L"a", L"1", L"40"), item_of(L"b", L"1", L"40"), item_of(L"c", L"1")});
  plan.store_items(L"2F", L"bzjg", {item_of(L"41", L"", L"41"), item_of(L"d", L"1", L"FFF")});
  plan.store_items(L"2F", L"OtherApp", {item_of(L"e", L"1", L"42")});
  plan.erase(L"41");
  AcDbObjectIdArray entities;
  entities.append(plan.id(L"30"));
  EXPECT_EQ(pipe().getDimEnt(entities), Acad::eOk);
  ASSERT_EQ(entities.length(), 4);
  EXPECT_EQ(entities.at(0), plan.id(L"30"));
  EXPECT_EQ(entities.at(1), plan.id(L"41"));
  EXPECT_EQ(entities.at(2), plan.id(L"40"));
  EXPECT_EQ(entities.at(3), plan.id(L"40"));
  EXPECT_EQ(pipe().getDimEnt(entities), Acad::eOk);
  EXPECT_EQ(entities.length(), 7);
}

TEST_F(Manager, OfADamagedRecordTheWholeItemsAreCollected) {
  Texts texts = {L"a", L"40", L"", L"1", L"", L"", L"", L""};
  texts.insert(texts.end(), {L"b", L"41", L""});
  plan.store_chain(L"2F", L"pcgb", text_chain(texts).get());
  AcDbObjectIdArray entities;
  EXPECT_EQ(pipe().getDimEnt(entities), Acad::eOk);
  ASSERT_EQ(entities.length(), 1);
  EXPECT_EQ(entities.at(0), plan.id(L"40"));
}

TEST_F(Manager, ARecordThatCannotBeOpenedFailsTheCollectionAndSaysSo) {
  plan.store_items(L"2F", L"bzjg", {item_of(L"a", L"1", L"41")});
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {item_of(L"a", L"1", L"40")});
  const dim::Opened<AcDbXrecord> held(id, AcDb::kForWrite);
  AcDbObjectIdArray entities;
  const Printed printed;
  EXPECT_EQ(pipe().getDimEnt(entities), 1);
  EXPECT_EQ(entities.length(), 0);
  EXPECT_EQ(printed.text(), "提取标注实体的ID失败!");
}

TEST_F(Manager, ATableThatIsOpenElsewhereFailsTheQueries) {
  ASSERT_EQ(pipe().dimRecEx(L"pcgb", item_of(L"a", L"1", L"40")), Acad::eOk);
  CDimManager manager = pipe();
  const dim::Opened<AcDbDictionary> held(manager.getExtensionDictionaryId(), AcDb::kForRead);
  AcDbObjectIdArray entities;
  CString text;
  int existing = 1, missing = 1;
  EXPECT_EQ(manager.getDimDrawRec(L"pcgb", L"a", text), 1);
  EXPECT_EQ(manager.isDimExisted(L"pcgb", existing, missing), 1);
  const Printed printed;
  EXPECT_EQ(manager.getDimEnt(entities), 1);
  EXPECT_EQ(printed.text(), "提取标注实体的ID失败!");
  EXPECT_EQ(entities.length(), 0);
}

TEST_F(Manager, RecordsComeBackWithTheirOwner) {
  ASSERT_EQ(pipe().dimTxtRec(L"pcgb", L"gdh", plan.id(L"40"), L"W1", L"", L"", L""), Acad::eOk);
  plan.erase(L"2F");
  EXPECT_EQ(pipe().openStatus(), Acad::eWasErased);
  plan.bring_back(L"2F");
  plan.reopen();
  const Printed printed;
  EXPECT_EQ(pipe().updateDim(L"gdh", L"W2"), Acad::eOk);
  EXPECT_EQ(plan.text(L"40"), L"W2");
}

TEST_F(Manager, ACopyWorksOnTheSameEntity) {
  CDimManager manager = pipe();
  CDimManager copy(CDimManager(plan.id(L"30")));
  copy = manager;
  EXPECT_EQ(copy.openStatus(), Acad::eOk);
  EXPECT_EQ(copy.dimDrawRec(L"pcgb", L"k", 1.5), Acad::eOk);
  EXPECT_EQ(items(), Items{item_of(L"k", L"1.500000")});
}

}  // namespace
