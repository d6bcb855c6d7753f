#include <gmock/gmock.h>

#include "tests/host/db/plan.h"

namespace {

using testing::UnorderedElementsAre;

class OpenClose : public DrawingTest {
 protected:
  OpenClose() { given_plan(); }

  /// Holds LINE 2F in a mode and says what opening it in another gives.
  Acad::ErrorStatus while_open(AcDb::OpenMode held, AcDb::OpenMode wanted) {
    AcDbObject* holder = opened(0x2F, held);
    const Acad::ErrorStatus status = open_status(id(0x2F), wanted);
    holder->close();
    return status;
  }
};

struct Row {
  AcDb::OpenMode held;
  AcDb::OpenMode wanted;
  Acad::ErrorStatus status;
};

constexpr Row kRows[] = {
    {AcDb::kForRead, AcDb::kForRead, Acad::eOk},
    {AcDb::kForRead, AcDb::kForWrite, Acad::eWasOpenForRead},
    {AcDb::kForRead, AcDb::kForNotify, Acad::eOk},
    {AcDb::kForWrite, AcDb::kForRead, Acad::eWasOpenForWrite},
    {AcDb::kForWrite, AcDb::kForWrite, Acad::eWasOpenForWrite},
    {AcDb::kForWrite, AcDb::kForNotify, Acad::eOk},
    {AcDb::kForNotify, AcDb::kForRead, Acad::eWasOpenForNotify},
    {AcDb::kForNotify, AcDb::kForWrite, Acad::eWasOpenForNotify},
    {AcDb::kForNotify, AcDb::kForNotify, Acad::eWasOpenForNotify},
};

TEST_F(OpenClose, WhatIsOpenDecidesWhatElseMayOpen) {
  for (const Row& row : kRows) {
    EXPECT_EQ(while_open(row.held, row.wanted), row.status) << row.held << " " << row.wanted;
    EXPECT_EQ(open_status(id(0x2F), AcDb::kForWrite), Acad::eOk) << "all is given back";
  }
}

TEST_F(OpenClose, TwoHundredAndFiftySixMayReadAtOnce) {
  std::vector<AcDbObject*> readers;
  for (int i = 0; i < 256; ++i) readers.push_back(opened(0x2F));
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForRead), Acad::eAtMaxReaders);
  readers.back()->close();
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForRead), Acad::eOk);
  for (std::size_t i = 1; i < readers.size(); ++i) {
    EXPECT_EQ(open_status(id(0x2F), AcDb::kForWrite), Acad::eWasOpenForRead);
    readers[i]->close();
  }
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForWrite), Acad::eOk);
}

TEST_F(OpenClose, TheNullIdDoesNotOpen) {
  for (const AcDb::OpenMode mode : {AcDb::kForRead, AcDb::kForWrite, AcDb::kForNotify}) {
    EXPECT_EQ(open_status(AcDbObjectId::kNull, mode), Acad::eNullObjectId);
  }
}

TEST_F(OpenClose, OnFailureThePointerIsNull) {
  AcDbObject* holder = opened(0x2F, AcDb::kForWrite);
  AcDbObject* object = holder;
  EXPECT_EQ(acdbOpenAcDbObject(object, id(0x2F), AcDb::kForRead), Acad::eWasOpenForWrite);
  EXPECT_EQ(object, nullptr);
  auto* entity = reinterpret_cast<AcDbEntity*>(holder);
  EXPECT_EQ(acdbOpenAcDbEntity(entity, id(0x2F), AcDb::kForRead), Acad::eWasOpenForWrite);
  EXPECT_EQ(entity, nullptr);
  holder->close();
}

TEST_F(OpenClose, AWrongClassIsRefusedAndLeavesNothingOpen) {
  AcDbText* text = nullptr;
  EXPECT_EQ(acdbOpenObject(text, id(0x2F), AcDb::kForRead), Acad::eNotThatKindOfClass);
  EXPECT_EQ(text, nullptr);
  AcDbEntity* entity = nullptr;
  EXPECT_EQ(acdbOpenAcDbEntity(entity, id(0x51), AcDb::kForRead), Acad::eNotAnEntity);
  EXPECT_EQ(entity, nullptr);
  EXPECT_TRUE(database().open_objects().empty());
}

TEST_F(OpenClose, ObjectsOpenAsTheirClass) {
  struct Class {
    std::uint64_t handle;
    const wchar_t* name;
  };
  constexpr Class kClasses[] = {{0x2F, L"AcDbLine"},
                                {0x30, L"AcDbText"},
                                {0x32, L"AcDbMText"},
                                {0x3B, L"AcDbEntity"},
                                {0x54, L"AcDbObject"},
                                {0x51, L"AcDbXrecord"},
                                {0xC, L"AcDbDictionary"},
                                {0x10, L"AcDbLayerTableRecord"},
                                {0x16, L"AcDbRegAppTableRecord"},
                                {0x18, L"AcDbBlockTableRecord"},
                                {0x2, L"AcDbLayerTable"},
                                {0x1, L"AcDbBlockTable"},
                                {0x3, L"AcDbTextStyleTable"},
                                {0x9, L"AcDbRegAppTable"},
                                {0xA, L"AcDbSymbolTable"},
                                {0x17, L"AcDbSymbolTableRecord"}};
  for (const Class& row : kClasses) {
    EXPECT_STREQ(id(row.handle).objectClass()->name(), row.name);
    AcDbObject* object = opened(row.handle);
    EXPECT_STREQ(object->isA()->name(), row.name);
    object->close();
  }
}

TEST_F(OpenClose, StateTestsFollowTheMode) {
  AcDbObject* object = opened(0x2F);
  EXPECT_TRUE(object->isReadEnabled());
  EXPECT_FALSE(object->isWriteEnabled());
  EXPECT_FALSE(object->isNotifyEnabled());
  object->close();

  opened(0x2F, AcDb::kForWrite);
  EXPECT_TRUE(object->isReadEnabled());
  EXPECT_TRUE(object->isWriteEnabled());
  object->close();

  opened(0x2F, AcDb::kForNotify);
  EXPECT_FALSE(object->isReadEnabled());
  EXPECT_TRUE(object->isNotifyEnabled());
  object->close();

  EXPECT_FALSE(object->isReadEnabled());
  EXPECT_FALSE(object->isWriteEnabled());
  EXPECT_FALSE(object->isNotifyEnabled());
  EXPECT_FALSE(object->isNewObject());
}

TEST_F(OpenClose, ASecondCloseIsHarmlessAndNeverSaysNotInDatabase) {
  AcDbObject* object = opened(0x2F);
  EXPECT_EQ(object->close(), Acad::eOk);
  EXPECT_EQ(object->close(), Acad::eNotOpenForRead);
  EXPECT_EQ(object->close(), Acad::eNotOpenForRead);
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForWrite), Acad::eOk);
}

// Upgrading

TEST_F(OpenClose, TheOnlyReaderMayBecomeTheWriter) {
  AcDbObject* object = opened(0x2F);
  EXPECT_EQ(object->upgradeOpen(), Acad::eOk);
  EXPECT_TRUE(object->isWriteEnabled());
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForRead), Acad::eWasOpenForWrite);
  EXPECT_EQ(object->upgradeOpen(), Acad::eWasOpenForWrite);
  EXPECT_EQ(object->close(), Acad::eOk) << "one close is enough";
  EXPECT_EQ(object->upgradeOpen(), Acad::eNotOpenForRead);
}

TEST_F(OpenClose, OneOfManyReadersMayNot) {
  AcDbObject* first = opened(0x2F);
  AcDbObject* second = opened(0x2F);
  EXPECT_EQ(first->upgradeOpen(), Acad::eHadMultipleReaders);
  EXPECT_TRUE(first->isReadEnabled());
  EXPECT_FALSE(first->isWriteEnabled());
  second->close();
  EXPECT_EQ(first->upgradeOpen(), Acad::eOk);
  first->close();
}

TEST_F(OpenClose, TheWriterMayBecomeAReader) {
  AcDbObject* object = opened(0x2F, AcDb::kForWrite);
  EXPECT_EQ(object->downgradeOpen(), Acad::eOk);
  EXPECT_TRUE(object->isReadEnabled());
  EXPECT_FALSE(object->isWriteEnabled());
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(object->downgradeOpen(), Acad::eNotOpenForWrite);
  object->close();
  EXPECT_EQ(object->downgradeOpen(), Acad::eNotOpenForWrite);
}

// Locked layers

TEST_F(OpenClose, AnEntityOnALockedLayerOpensForReadOnly) {
  EXPECT_EQ(open_status(id(0x31), AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(open_status(id(0x31), AcDb::kForWrite), Acad::eOnLockedLayer);
  EXPECT_EQ(open_status(id(0x31), AcDb::kForWrite, true), Acad::eOnLockedLayer);
  EXPECT_EQ(int{Acad::eOnLockedLayer}, 87);
  AcDbObject* line = opened(0x31);
  EXPECT_EQ(line->upgradeOpen(), Acad::eOnLockedLayer);
  EXPECT_TRUE(line->isReadEnabled());
  EXPECT_FALSE(line->isWriteEnabled());
  line->close();
}

TEST_F(OpenClose, UnlockingTheLayerFreesItsEntities) {
  auto* layer = opened<AcDbLayerTableRecord>(0x11, AcDb::kForWrite);
  EXPECT_EQ(layer->setIsLocked(false), Acad::eOk);
  layer->close();
  EXPECT_EQ(open_status(id(0x31), AcDb::kForWrite), Acad::eOk);
  layer = opened<AcDbLayerTableRecord>(0x10, AcDb::kForWrite);
  layer->setIsLocked(true);
  layer->close();
  EXPECT_EQ(open_status(id(0x2F), AcDb::kForWrite), Acad::eOnLockedLayer);
}

TEST_F(OpenClose, LayersThatDifferInAChineseLetterAreDifferent) {
  // In ANSI_936 the second bytes of these two are 41 and 61, an ASCII letter in both cases.
  std::string bytes = spelled(plan_note(), Form::kChinese);
  const auto replace = [&](std::string_view from, std::string_view to) {
    bytes.replace(bytes.find(from), from.size(), to);
  };
  replace("LOCKED", "\x81\x41");
  replace("locked", "\x81\x61");
  given(bytes);
  EXPECT_EQ(open_status(id(0x31), AcDb::kForWrite), Acad::eOk);
}

TEST_F(OpenClose, ALayerMayBeSpelledWithEscapes) {
  std::string bytes = spelled(plan_note(), Form::kUtf8);
  const auto replace = [&](std::string_view from, std::string_view to) {
    bytes.replace(bytes.find(from), from.size(), to);
  };
  replace("LOCKED", "\\U+7BA1x");
  replace("locked", "\u7BA1X");
  given(bytes);
  EXPECT_EQ(open_status(id(0x31), AcDb::kForWrite), Acad::eOnLockedLayer);
}

// New objects

TEST_F(OpenClose, ANewObjectCountsAsOpenForWriteAndBelongsToItsMaker) {
  const auto record = std::make_unique<AcDbXrecord>();
  EXPECT_TRUE(record->isNewObject());
  EXPECT_TRUE(record->isReadEnabled());
  EXPECT_TRUE(record->isWriteEnabled());
  EXPECT_TRUE(record->objectId().isNull());
  EXPECT_EQ(record->database(), nullptr);
  EXPECT_EQ(record->close(), Acad::eNotInDatabase);
  EXPECT_EQ(int{Acad::eNotInDatabase}, 137);
  EXPECT_TRUE(record->isWriteEnabled()) << "nothing has happened";
  EXPECT_EQ(record->close(), Acad::eNotInDatabase);
  EXPECT_EQ(record->erase(), Acad::eNotInDatabase);
  EXPECT_EQ(record->createExtensionDictionary(), Acad::eNotInDatabase);
}

TEST_F(OpenClose, AnAddedObjectStaysOpenUntilItIsClosed) {
  auto* record = new AcDbXrecord;
  AcDbObjectId made;
  EXPECT_EQ(database().addAcDbObject(made, record), Acad::eOk);
  EXPECT_EQ(made, record->objectId());
  EXPECT_TRUE(record->isNewObject());
  EXPECT_EQ(record->database(), &database());
  EXPECT_EQ(open_status(made, AcDb::kForRead), Acad::eWasOpenForWrite);
  AcDbObjectId again;
  EXPECT_EQ(database().addAcDbObject(again, record), Acad::eAlreadyInDb);
  EXPECT_EQ(record->close(), Acad::eOk);
  EXPECT_FALSE(record->isNewObject());
  EXPECT_EQ(record->close(), Acad::eNotOpenForRead);
}

TEST_F(OpenClose, AnObjectIsNewUntilTheFirstCloseWhateverItsMode) {
  auto* record = new AcDbXrecord;
  AcDbObjectId made;
  database().addAcDbObject(made, record);
  EXPECT_EQ(record->downgradeOpen(), Acad::eOk);
  EXPECT_TRUE(record->isNewObject());
  record->close();
  EXPECT_FALSE(record->isNewObject());
}

TEST_F(OpenClose, AnObjectIsModifiedWhenItWasWrittenToSinceItsOpening) {
  auto* text = opened<AcDbText>(0x30, AcDb::kForWrite);
  EXPECT_FALSE(text->isModified());
  text->setTextString(L"x");
  EXPECT_TRUE(text->isModified());
  text->close();
  opened(0x30, AcDb::kForWrite);
  EXPECT_FALSE(text->isModified());
  text->close();

  erase(0x51);  // its dictionary is written to while nobody has it open
  AcDbObject* dictionary = opened(0x50);
  EXPECT_FALSE(dictionary->isModified());
  dictionary->close();
}

// Leaks

TEST_F(OpenClose, WhatIsOpenIsListed) {
  AcDbObject* reader = opened(0x2F);
  AcDbObject* writer = opened(0x30, AcDb::kForWrite);
  AcDbObject* listener = opened(0x32, AcDb::kForNotify);
  auto* fresh = new AcDbXrecord;
  AcDbObjectId made;
  database().addAcDbObject(made, fresh);
  EXPECT_THAT(database().open_objects(), UnorderedElementsAre(id(0x2F), id(0x30), id(0x32), made));
  for (AcDbObject* object : {reader, writer, listener, static_cast<AcDbObject*>(fresh)}) {
    object->close();
  }
  EXPECT_TRUE(database().open_objects().empty());
}

TEST_F(OpenClose, AnObjectOpenTwiceIsListedUntilTheLastClose) {
  AcDbObject* first = opened(0x2F);
  opened(0x2F);
  opened(0x2F, AcDb::kForNotify);
  first->close();
  first->close();
  EXPECT_EQ(database().open_objects().size(), 1u);
  first->close();
  EXPECT_TRUE(database().open_objects().empty());
}

// Ids and handles

TEST_F(OpenClose, HandlesResolveToTheObject) {
  AcDbObjectId found;
  EXPECT_EQ(database().getAcDbObjectId(found, false, AcDbHandle(L"2f")), Acad::eOk);
  EXPECT_EQ(found, id(0x2F));
  EXPECT_EQ(found.database(), &database());
  EXPECT_EQ(database().getAcDbObjectId(found, false, AcDbHandle(L"FFF")), Acad::eUnknownHandle);
  EXPECT_TRUE(found.isNull());
  EXPECT_EQ(database().getAcDbObjectId(found, false, AcDbHandle(L"0")), Acad::eNullHandle);
  EXPECT_EQ(database().getAcDbObjectId(found, false, AcDbHandle(L"2G")), Acad::eNullHandle);
}

TEST_F(OpenClose, OwnersAreFound) {
  AcDbObject* line = opened(0x2F);
  EXPECT_EQ(line->ownerId(), id(0x18));
  line->close();
  AcDbObject* root = opened(0xC);
  EXPECT_TRUE(root->ownerId().isNull());
  root->close();
}

TEST_F(OpenClose, EntityNamesAndIdsAreTwoFormsOfOne) {
  ads_name name;
  AcDbObjectId back;
  EXPECT_EQ(acdbGetAdsName(name, id(0x2F)), Acad::eOk);
  EXPECT_EQ(acdbGetObjectId(back, name), Acad::eOk);
  EXPECT_EQ(back, id(0x2F));
  EXPECT_EQ(acdbGetAdsName(name, AcDbObjectId()), Acad::eNullObjectId);
  EXPECT_EQ(acdbGetObjectId(back, name), Acad::eNullObjectId);
}

}  // namespace
