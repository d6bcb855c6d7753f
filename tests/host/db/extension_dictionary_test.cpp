#include <gmock/gmock.h>

#include "host/db/arxdbg_utils.h"
#include "host/db/record.h"
#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ExtensionDictionary : public DrawingTest {
 protected:
  ExtensionDictionary() { given_plan(); }

  Acad::ErrorStatus created(std::uint64_t handle) {
    AcDbObject* object = opened(handle, AcDb::kForWrite);
    const Acad::ErrorStatus status = object->createExtensionDictionary();
    object->close();
    return status;
  }
  Acad::ErrorStatus released(std::uint64_t handle) {
    AcDbObject* object = opened(handle, AcDb::kForWrite);
    const Acad::ErrorStatus status = object->releaseExtensionDictionary();
    object->close();
    return status;
  }
  AcDbObjectId of(std::uint64_t handle) {
    AcDbObject* object = opened(handle);
    const AcDbObjectId found = object->extensionDictionary();
    object->close();
    EXPECT_EQ(cad::extension_dictionary(id(handle)), found) << "the same without opening it";
    return found;
  }
};

TEST_F(ExtensionDictionary, IsMadeOnce) {
  EXPECT_TRUE(of(0x2F).isNull());
  EXPECT_EQ(created(0x2F), Acad::eOk);
  const AcDbObjectId made = of(0x2F);
  ASSERT_FALSE(made.isNull());
  EXPECT_EQ(created(0x2F), Acad::eAlreadyInDb);
  EXPECT_EQ(int{Acad::eAlreadyInDb}, 26);
  EXPECT_EQ(of(0x2F), made);
  EXPECT_TRUE(keys(made).empty());
}

TEST_F(ExtensionDictionary, NeedsAWriter) {
  AcDbObject* object = opened(0x2F);
  EXPECT_EQ(object->createExtensionDictionary(), Acad::eNotOpenForWrite);
  EXPECT_EQ(object->releaseExtensionDictionary(), Acad::eNotOpenForWrite);
  object->close();
}

TEST_F(ExtensionDictionary, StandsDirectlyBehindTheHandleOfItsOwner) {
  created(0x30);
  created(0x3B);
  const std::string bytes = database().save_bytes();
  EXPECT_THAT(bytes, HasSubstr("  0\nTEXT\n  5\n30\n102\n{ACAD_XDICTIONARY\n360\n200\n102\n}\n"
                               "102\n{ACAD_REACTORS\n330\nC\n102\n}\n330\n18\n"));
  EXPECT_THAT(bytes, HasSubstr("ACAD_PROXY_ENTITY\n  5\n3B\n102\n{ACAD_XDICTIONARY\n360\n201\n102\n"
                               "}\n330\n18\n100\nAcDbEntity\n"));
}

TEST_F(ExtensionDictionary, IsAHardOwnerOfItsEntries) {
  file_record(extension(id(0x2F)), L"PIPE", L"x");
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("  0\nDICTIONARY\n  5\n200\n330\n2F\n100\nAcDbDictionary\n280\n     1\n"
                        "281\n     1\n  3\nPIPE\n360\n201\n"));
}

TEST_F(ExtensionDictionary, IsKeptWithItsEntriesInEveryForm) {
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    for (const std::uint64_t owner : {0x2F, 0x38, 0x3B, 0x10, 0x17, 0x51, 0x54, 0xC, 0x2}) {
      file_record(extension(id(owner)), L"PIPE", L"管 ^J");
    }
    reopened();
    for (const std::uint64_t owner : {0x2F, 0x38, 0x3B, 0x10, 0x17, 0x51, 0x54, 0xC, 0x2}) {
      const AcDbObjectId found = of(owner);
      ASSERT_FALSE(found.isNull()) << std::hex << owner;
      auto* dictionary = opened<AcDbDictionary>(found);
      EXPECT_EQ(dictionary->ownerId(), id(owner));
      EXPECT_TRUE(dictionary->isTreatElementsAsHard());
      AcDbObjectId record;
      EXPECT_EQ(dictionary->getAt(L"pipe", record), Acad::eOk);
      dictionary->close();
      EXPECT_EQ(record_text(record), L"管 ^J");
    }
  }
}

TEST_F(ExtensionDictionary, IsReleasedOnlyWhenEmpty) {
  EXPECT_EQ(released(0x2F), Acad::eKeyNotFound);
  const AcDbObjectId made = extension(id(0x2F));
  const AcDbObjectId record = file_record(made, L"PIPE", L"x");
  EXPECT_EQ(released(0x2F), Acad::eContainerNotEmpty);
  EXPECT_EQ(of(0x2F), made);
  erase(record.handle());
  EXPECT_EQ(released(0x2F), Acad::eOk);
  EXPECT_TRUE(made.isErased());
  EXPECT_TRUE(of(0x2F).isNull());
  EXPECT_EQ(created(0x2F), Acad::eOk);
  EXPECT_NE(of(0x2F), made);
}

TEST_F(ExtensionDictionary, ReleasedItLeavesTheOwnersTagsAsTheyWere) {
  const std::string before = database().save_bytes();
  created(0x30);
  EXPECT_EQ(released(0x30), Acad::eOk);
  std::string after = database().save_bytes();
  // Only the handle seed has moved on.
  after.replace(after.find("$HANDSEED\n  5\n201"), 17, "$HANDSEED\n  5\n200");
  EXPECT_EQ(after, before);
}

TEST_F(ExtensionDictionary, MerelyErasedItStaysLinkedUntilTheDrawingIsReopened) {
  const AcDbObjectId made = extension(id(0x2F));
  erase(made.handle());
  EXPECT_EQ(of(0x2F), made);
  EXPECT_EQ(created(0x2F), Acad::eAlreadyInDb);
  EXPECT_EQ(open_status(made, AcDb::kForRead), Acad::eWasErased);
  reopened();
  EXPECT_TRUE(of(0x2F).isNull());
  EXPECT_EQ(created(0x2F), Acad::eOk);
}

TEST_F(ExtensionDictionary, ALinkThatLeadsNowhereIsReplaced) {
  std::string note(plan_note());
  const std::string line = "0 LINE\n5 2F\n";
  for (const char* target : {"FFFF", "2F", "30", "0", "x"}) {
    std::string damaged = note;
    damaged.insert(damaged.find(line) + line.size(),
                   std::string("102 {ACAD_XDICTIONARY\n360 ") + target + "\n102 }\n");
    given(spelled(damaged, Form::kUtf8));
    EXPECT_TRUE(of(0x2F).isNull()) << target;
    EXPECT_EQ(created(0x2F), Acad::eOk);
    reopened();
    const AcDbObjectId found = of(0x2F);
    ASSERT_FALSE(found.isNull()) << target;
    EXPECT_TRUE(keys(found).empty());
    EXPECT_EQ(database().save_bytes().find("FFFF"), std::string::npos);
  }
}

TEST_F(ExtensionDictionary, AnOwnerWhoseHandleStandsElsewhereGetsItInItsFrame) {
  // The handle behind the class marker, as no CAD program writes it.
  std::string note(plan_note());
  const std::string from = "0 LINE\n5 2F\n330 18\n100 AcDbEntity\n";
  note.replace(note.find(from), from.size(), "0 LINE\n330 18\n100 AcDbEntity\n5 2F\n");
  given(spelled(note, Form::kUtf8));
  EXPECT_EQ(created(0x2F), Acad::eOk);
  EXPECT_FALSE(of(0x2F).isNull());
  reopened();
  EXPECT_FALSE(of(0x2F).isNull());
  EXPECT_THAT(entities(0x18), ElementsAre(0x2F, 0x30, 0x31, 0x32, 0x33, 0x37, 0x3A, 0x3B, 0x3D));
}

TEST_F(ExtensionDictionary, AnObjectWithoutAHandleOfItsOwnCannotHaveOne) {
  std::string note(plan_note());
  note.replace(note.find("0 LINE\n5 3D\n"), 12, "0 LINE\n5 2F\n");
  note.replace(note.find("0 CIRCLE\n5 3A\n"), 14, "0 CIRCLE\n");
  given(spelled(note, Form::kUtf8));
  int refused = 0;
  database().for_each_object([&](AcDbObjectId each) {
    const bool twin = each.handle() == id(0x2F).handle() && each != id(0x2F);
    if (!twin && !each.handle().isNull()) return;
    AcDbObject* object = opened(each, AcDb::kForWrite);
    EXPECT_EQ(object->createExtensionDictionary(), Acad::eBrokenHandle);
    object->close();
    ++refused;
  });
  EXPECT_EQ(refused, 2);
}

TEST_F(ExtensionDictionary, AnObjectWithoutAHandleOfItsOwnHasNoHandleText) {
  std::string note(plan_note());
  note.replace(note.find("0 LINE\n5 3D\n"), 12, "0 LINE\n5 2F\n");
  note.replace(note.find("0 CIRCLE\n5 3A\n"), 14, "0 CIRCLE\n");
  given(spelled(note, Form::kUtf8));
  database().for_each_object([&](AcDbObjectId each) {
    std::wstring text;
    AcDbObjectId back;
    ArxDbgUtils::objIdToHandleStr(each, text);
    const Acad::ErrorStatus status = ArxDbgUtils::handleStrToObjId(&database(), text.c_str(), back);
    EXPECT_EQ(text.empty(), status != Acad::eOk);
    EXPECT_TRUE(text.empty() || back == each);
  });
}

TEST_F(ExtensionDictionary, ADrawingWithoutObjectsGetsASectionWithARootInFront) {
  std::string note(plan_note());
  const std::size_t begin = note.find("0 SECTION\n2 OBJECTS");
  for (const bool empty : {false, true}) {
    given(spelled(
        note.substr(0, begin) + (empty ? "0 SECTION\n2 OBJECTS\n0 ENDSEC\n0 EOF\n" : "0 EOF\n"),
        Form::kUtf8));
    EXPECT_TRUE(database().namedObjectsDictionaryId().isNull());
    const AcDbObjectId record = file_record(extension(id(0x2F)), L"PIPE", L"x");
    EXPECT_EQ(record_text(record), L"x");
    const AcDbObjectId root = database().namedObjectsDictionaryId();
    ASSERT_FALSE(root.isNull());
    EXPECT_THAT(keys(root), ElementsAre(L"ACAD_GROUP"));
    EXPECT_NE(root, of(0x2F));
    file_record(root, L"PN", L"y");
    reopened();
    EXPECT_THAT(keys(database().namedObjectsDictionaryId()), ElementsAre(L"ACAD_GROUP", L"PN"));
    EXPECT_THAT(keys(of(0x2F)), ElementsAre(L"PIPE"));
  }
}

}  // namespace
