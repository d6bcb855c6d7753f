#include <gmock/gmock.h>

#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;

class Erase : public DrawingTest {
 protected:
  Erase() { given_plan(); }

  Acad::ErrorStatus turned(std::uint64_t handle, bool erasing) {
    AcDbObject* object = opened(id(handle), AcDb::kForWrite, true);
    const Acad::ErrorStatus status = object->erase(erasing);
    object->close();
    return status;
  }
  bool erased(std::uint64_t handle) const { return id(handle).isErased(); }
};

TEST_F(Erase, NeedsAWriter) {
  AcDbObject* object = opened(0x2F);
  EXPECT_EQ(object->erase(), Acad::eNotOpenForWrite);
  EXPECT_FALSE(object->isErased());
  object->close();
  EXPECT_EQ(object->erase(), Acad::eNotOpenForWrite);
}

TEST_F(Erase, ErasingTwiceOrBringingBackALiveObjectIsRefused) {
  EXPECT_EQ(turned(0x2F, false), Acad::eWasNotErased);
  EXPECT_EQ(turned(0x2F, true), Acad::eOk);
  EXPECT_EQ(turned(0x2F, true), Acad::eWasErased);
  EXPECT_EQ(turned(0x2F, false), Acad::eOk);
  EXPECT_FALSE(erased(0x2F));
}

TEST_F(Erase, AnErasedObjectOpensOnlyOnRequest) {
  erase(0x2F);
  for (const AcDb::OpenMode mode : {AcDb::kForRead, AcDb::kForWrite, AcDb::kForNotify}) {
    EXPECT_EQ(open_status(id(0x2F), mode), Acad::eWasErased);
    EXPECT_EQ(open_status(id(0x2F), mode, true), Acad::eOk);
  }
  EXPECT_EQ(open_status(id(0x30), AcDb::kForRead, true), Acad::eOk) << "a live one all the same";
}

TEST_F(Erase, ItsHandleResolvesUntilTheDrawingIsReopened) {
  erase(0x2F);
  EXPECT_FALSE(id(0x2F).isNull());
  EXPECT_TRUE(id(0x2F).isErased());
  reopened();
  EXPECT_TRUE(id(0x2F).isNull());
  EXPECT_FALSE(id(0x30).isNull());
}

TEST_F(Erase, ItsHandleIsNotGivenAgain) {
  const auto seed = database().handseed();
  const AcDbObjectId made = append(new AcDbLine);
  EXPECT_EQ(made.handle(), seed);
  erase(made.handle());
  EXPECT_GT(append(new AcDbLine).handle().value(), made.handle().value());
  reopened();
  EXPECT_GT(database().handseed().value(), seed.value() + 1);
}

TEST_F(Erase, SavingLeavesOutOnlyTheErasedRecord) {
  const std::string before = database().save_bytes();
  erase(0x2F);
  const std::string after = database().save_bytes();
  const std::size_t begin = before.find("  0\nLINE\n  5\n2F\n");
  const std::size_t end = before.find("  0\nTEXT\n  5\n30\n");
  EXPECT_EQ(after, before.substr(0, begin) + before.substr(end));
}

TEST_F(Erase, ErasedAndBroughtBackIsAsItWas) {
  const std::string before = database().save_bytes();
  for (const std::uint64_t handle : {0x2F, 0x33, 0x37, 0x10}) {
    EXPECT_EQ(turned(handle, true), Acad::eOk);
    EXPECT_EQ(turned(handle, false), Acad::eOk);
  }
  EXPECT_EQ(database().save_bytes(), before);
}

TEST_F(Erase, ANewObjectThatIsErasedIsNotSaved) {
  const AcDbObjectId made = append(new AcDbLine);
  AcDbObject* line = opened(made, AcDb::kForWrite);
  line->erase();
  line->close();
  EXPECT_EQ(open_status(made, AcDb::kForRead), Acad::eWasErased);
  const std::uint64_t handle = made.handle();
  reopened();
  EXPECT_TRUE(id(handle).isNull());
}

// What belongs to an object

TEST_F(Erase, VerticesAndAttributesGoAndComeWithTheirMain) {
  for (const bool erasing : {true, false}) {
    EXPECT_EQ(turned(0x33, erasing), Acad::eOk);
    EXPECT_EQ(turned(0x37, erasing), Acad::eOk);
    for (const std::uint64_t handle : {0x34, 0x35, 0x36, 0x38, 0x39}) {
      EXPECT_EQ(erased(handle), erasing) << std::hex << handle;
    }
    EXPECT_FALSE(erased(0x3A));
  }
  erase(0x33);
  erase(0x37);
  reopened();
  for (const std::uint64_t handle : {0x34, 0x35, 0x36, 0x38, 0x39}) {
    EXPECT_TRUE(id(handle).isNull()) << std::hex << handle;
  }
}

TEST_F(Erase, TheExtensionDictionaryAndItsEntriesGoAndComeWithTheirOwner) {
  const AcDbObjectId extension_id = extension(id(0x2F));
  const AcDbObjectId record = file_record(extension_id, L"PIPE", L"x");
  EXPECT_EQ(turned(0x2F, true), Acad::eOk);
  EXPECT_TRUE(extension_id.isErased());
  EXPECT_TRUE(record.isErased());
  EXPECT_EQ(turned(0x2F, false), Acad::eOk);
  EXPECT_FALSE(extension_id.isErased());
  EXPECT_FALSE(record.isErased());
  EXPECT_THAT(keys(extension_id), ElementsAre(L"PIPE"));
  EXPECT_EQ(record_text(record), L"x");
}

TEST_F(Erase, AnExtensionDictionaryOfASubEntityGoesToo) {
  const AcDbObjectId record = file_record(extension(id(0x38)), L"K", L"x");
  erase(0x37);
  EXPECT_TRUE(record.isErased());
}

TEST_F(Erase, ADictionaryTakesWhatItOwnsAlong) {
  EXPECT_EQ(turned(0x50, true), Acad::eOk);
  for (const std::uint64_t handle : {0x51, 0x52, 0x53}) EXPECT_TRUE(erased(handle));
  EXPECT_FALSE(erased(0x54));
  EXPECT_THAT(keys(id(0xC)), ElementsAre(L"ACAD_GROUP"));
}

TEST_F(Erase, OwnersInACircleEnd) {
  std::string note(plan_note());
  // The xrecord 51 becomes a dictionary that lists its own owner, and owns it in turn.
  const std::string from = "0 DICTIONARY\n5 50\n330 C\n";
  note.replace(note.find(from), from.size(), "0 DICTIONARY\n5 50\n330 51\n");
  const std::size_t begin = note.find("0 XRECORD\n5 51\n");
  const std::size_t end = note.find("0 XRECORD\n5 52\n");
  note.replace(
      begin, end - begin,
      "0 DICTIONARY\n5 51\n330 50\n100 AcDbDictionary\n281 1\n3 up\n350 50\n3 me\n350 51\n");
  given(spelled(note, Form::kUtf8));
  EXPECT_EQ(turned(0x50, true), Acad::eOk);
  EXPECT_TRUE(erased(0x51));
  EXPECT_EQ(turned(0x50, false), Acad::eOk);
  EXPECT_FALSE(erased(0x51));
}

TEST_F(Erase, DictionariesMayNestDeeperThanTheStack) {
  std::string note = "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1027\n0 ENDSEC\n0 SECTION\n2 OBJECTS\n";
  constexpr int kDepth = 50000;
  for (int i = 1; i <= kDepth; ++i) {
    char text[200];
    std::snprintf(text, sizeof text,
                  "0 DICTIONARY\n5 %X\n330 %X\n100 AcDbDictionary\n281 1\n3 k\n360 %X\n", i, i - 1,
                  i + 1);
    note += text;
  }
  given(spelled(note + "0 ENDSEC\n0 EOF\n", Form::kUtf8));
  erase(1);
  EXPECT_TRUE(erased(kDepth));
}

// What holds the file together

TEST_F(Erase, TheFramesOfTablesAndBlocksCannotBeErased) {
  for (const std::uint64_t handle : {0x2, 0x1, 0x1B, 0x1C, 0x1F, 0x22}) {
    EXPECT_EQ(turned(handle, true), Acad::eCannotBeErasedByCaller) << std::hex << handle;
    EXPECT_FALSE(erased(handle));
  }
}

TEST_F(Erase, WhateverElseIsErasedTheDrawingReadsAgain) {
  std::vector<std::uint64_t> all;
  database().for_each_object([&](AcDbObjectId each) { all.push_back(each.handle()); });
  for (const std::uint64_t handle : all) {
    given_plan();
    if (open_status(id(handle), AcDb::kForWrite) != Acad::eOk) continue;
    AcDbObject* object = opened(handle, AcDb::kForWrite);
    object->erase();
    object->close();
    reopened();
  }
}

TEST_F(Erase, ErasingTheSecondObjectOfAHandleLeavesTheFirstInItsDictionary) {
  std::string note(plan_note());
  note.replace(note.find("0 GX_NETWORK\n5 54\n330 C\n"), 24, "0 GX_NETWORK\n5 52\n330 50\n");
  given(spelled(note, Form::kUtf8));
  EXPECT_EQ(database().facts().duplicate_handles, 1u);
  AcDbObjectId twin;
  database().for_each_object([&](AcDbObjectId each) {
    if (each.handle() == id(0x52).handle() && each != id(0x52)) twin = each;
  });
  AcDbObject* object = opened(twin, AcDb::kForWrite);
  EXPECT_EQ(object->erase(), Acad::eOk);
  object->close();
  EXPECT_FALSE(erased(0x52));
  EXPECT_THAT(keys(id(0x50)), ElementsAre(L"Alpha", L"beta", L"zeta"));
}

}  // namespace
