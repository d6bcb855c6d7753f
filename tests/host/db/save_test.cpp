#include <gmock/gmock.h>

#include "host/base/file.h"
#include "tests/host/base/temporary_folder.h"
#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SaveDrawing : public TemporaryFolder {
 protected:
  std::string given_drawing(const std::string& bytes = spelled(plan_note(), Form::kUtf8)) const {
    return given_file("plan.dxf", bytes);
  }
  static AcDbObjectId id(AcDbDatabase& database, std::uint64_t handle) {
    AcDbObjectId found;
    database.getAcDbObjectId(found, false, AcDbHandle(handle));
    return found;
  }
  static void set_text(AcDbDatabase& database, const wchar_t* string) {
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, id(database, 0x30), AcDb::kForWrite), Acad::eOk);
    text->setTextString(string);
    text->close();
  }
};

TEST_F(SaveDrawing, WritesOverTheFileThatIsMapped) {
  const std::string plan = given_drawing();
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(plan));
  set_text(database, L"first");
  ASSERT_TRUE(database.save_file(plan));
  EXPECT_EQ(content("plan.dxf"), database.save_bytes());
  set_text(database, L"second");
  ASSERT_TRUE(database.save_file(plan)) << "again, from the file that was replaced";
  EXPECT_THAT(content("plan.dxf"), HasSubstr("\n  1\nsecond\n"));
  EXPECT_EQ(content("plan.dxf"), database.save_bytes());
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
}

TEST_F(SaveDrawing, UnchangedToAnotherNameIsACopy) {
  const std::string bytes = spelled(plan_note(), Form::kOldBinary);
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(given_drawing(bytes)));
  ASSERT_TRUE(database.save_file(path("copy.dxf")));
  EXPECT_EQ(content("copy.dxf"), bytes);
}

TEST_F(SaveDrawing, LargeUntouchedStretchesAreCopiedWhole) {
  std::string note(plan_note());
  std::string many;
  for (int i = 0; i < 40000; ++i) {
    char text[120];
    std::snprintf(text, sizeof text,
                  "0 LINE\n5 %X\n330 18\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 1.0\n", 0x1000 + i);
    many += text;
  }
  note.insert(note.find("0 LINE\n5 3D"), many);
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(given_drawing(spelled(note, Form::kUtf8))));
  set_text(database, L"changed");
  ASSERT_TRUE(database.save_file(path("plan.dxf")));
  EXPECT_EQ(content("plan.dxf"), database.save_bytes());
  EXPECT_GT(content("plan.dxf").size(), 2u << 20);
}

TEST_F(SaveDrawing, ChangedAndNewRecordsStandInOrderHoweverTheyWereMade) {
  std::string note(plan_note());
  std::string many;
  for (int i = 0; i < 60; ++i) {
    char text[160];
    std::snprintf(text, sizeof text,
                  "0 TEXT\n5 %X\n330 18\n100 AcDbEntity\n8 0\n100 AcDbText\n10 1.0\n20 0.0\n"
                  "40 2.5\n1 file%d\n100 AcDbText\n",
                  0x1000 + i, i);
    many += text;
  }
  note.insert(note.find("0 LINE\n5 3D"), many);
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(given_drawing(spelled(note, Form::kUtf8))));
  AcDbBlockTableRecord* space = nullptr;
  for (int i = 0; i < 60; ++i) {
    // Backwards, forwards and to and fro, with a new entity and a new object in between.
    const int turn = i % 3 == 0 ? 59 - i : i % 3 == 1 ? i : (i * 37) % 60;
    AcDbText* text = nullptr;
    const std::uint64_t handle = 0x1000 + static_cast<std::uint64_t>(turn);
    ASSERT_EQ(acdbOpenObject(text, id(database, handle), AcDb::kForWrite), Acad::eOk);
    text->setTextString((L"changed" + std::to_wstring(turn)).c_str());
    text->createExtensionDictionary();
    text->close();
    auto* added = new AcDbText;
    added->setTextString((L"new" + std::to_wstring(i)).c_str());
    ASSERT_EQ(acdbOpenObject(space, id(database, 0x18), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId made;
    ASSERT_EQ(space->appendAcDbEntity(made, added), Acad::eOk);
    added->close();
    space->close();
  }
  const std::string saved = database.save_bytes();
  std::size_t at = 0;
  const auto follows = [&](const std::string& text) {
    const std::size_t found = saved.find(text, at);
    EXPECT_NE(found, saved.npos) << text;
    at = std::max(at, found);
  };
  for (int i = 0; i < 60; ++i) {
    char handle[40];
    std::snprintf(handle, sizeof handle, "TEXT\n  5\n%X\n102\n", 0x1000 + i);
    const bool touched = saved.find(handle) != saved.npos;
    if (touched) follows(handle);
    follows("\n  1\n" + std::string(touched ? "changed" : "file") + std::to_string(i) + "\n");
  }
  for (int i = 0; i < 60; ++i) follows("\n  1\nnew" + std::to_string(i) + "\n");
  AcDbDatabase again(false);
  ASSERT_TRUE(again.read_bytes(saved, "again.dxf"));
  EXPECT_EQ(again.save_bytes(), saved);
}

TEST_F(SaveDrawing, KeepsTheOldFileAsABackupOnRequest) {
  const std::string plan = given_drawing();
  const std::string before = content("plan.dxf");
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(plan));
  set_text(database, L"x");
  ASSERT_TRUE(database.save_file(plan, true));
  EXPECT_THAT(names(), ElementsAre("plan.dxf", "plan.dxf.bak"));
  EXPECT_EQ(content("plan.dxf.bak"), before);
}

TEST_F(SaveDrawing, AFailureLeavesTheOldFileAndNothingElse) {
  const std::string plan = given_drawing();
  const std::string before = content("plan.dxf");
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(plan));
  set_text(database, L"x");
  chmod(folder().c_str(), 0555);
  {
    const AsOrdinaryUser user;
    EXPECT_FALSE(database.save_file(plan));
  }
  chmod(folder().c_str(), 0755);
  EXPECT_FALSE(database.save_file(path("nowhere/plan.dxf")));
  EXPECT_THAT(names(), ElementsAre("plan.dxf"));
  EXPECT_EQ(content("plan.dxf"), before);
}

TEST_F(SaveDrawing, TheLockGoesOverToTheNewFile) {
  const std::string plan = given_drawing();
  cad::Result<cad::FileLock> lock = cad::FileLock::acquire(plan);
  ASSERT_TRUE(lock);
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(plan));
  for (const wchar_t* text : {L"one", L"two"}) {
    set_text(database, text);
    ASSERT_TRUE(database.save_file(plan, false, &*lock));
    EXPECT_TRUE(lock->holds(plan));
    EXPECT_FALSE(cad::FileLock::acquire(plan)) << "a second writer is told";
  }
}

TEST_F(SaveDrawing, ADamagedFileNamesItsPlace) {
  const std::string plan = given_drawing("0\nSECTION\n2\nENTITIES\n4O\n1.0\n");
  AcDbDatabase database(false);
  const cad::Status status = database.read_file(plan);
  ASSERT_FALSE(status);
  EXPECT_EQ(status.error().message(), plan + ":5: group code \"4O\" is not a number");
}

TEST_F(SaveDrawing, AMissingFileIsNamed) {
  AcDbDatabase database(false);
  const cad::Status status = database.read_file(path("none.dxf"));
  ASSERT_FALSE(status);
  EXPECT_THAT(status.error().message(), testing::StartsWith(path("none.dxf")));
}

TEST_F(SaveDrawing, ANewDrawingIsWholeAndReadsAgain) {
  const AcDbDatabase made;
  EXPECT_FALSE(made.is_modified());
  ASSERT_TRUE(made.save_file(path("new.dxf")));
  AcDbDatabase read(false);
  ASSERT_TRUE(read.read_file(path("new.dxf")));
  EXPECT_EQ(read.facts().version_name, "R2013");
  EXPECT_EQ(read.facts().duplicate_handles, 0u);
  for (const AcDbObjectId each :
       {read.namedObjectsDictionaryId(), read.blockTableId(), read.layerTableId(),
        read.textStyleTableId(), read.linetypeTableId(), read.regAppTableId(), read.modelSpaceId(),
        read.currentSpaceId(), read.clayer()}) {
    EXPECT_FALSE(each.isNull());
  }
}

TEST_F(SaveDrawing, TheWorkingDrawingIsForgottenWhenItCloses) {
  AcDbHostApplicationServices* services = acdbHostApplicationServices();
  {
    AcDbDatabase database;
    services->setWorkingDatabase(&database);
    EXPECT_EQ(services->workingDatabase(), &database);
    const AcDbDatabase other;
  }
  EXPECT_EQ(services->workingDatabase(), nullptr);
}

TEST_F(SaveDrawing, ObjectsOpenForWriteAreWrittenAsTheyStand) {
  AcDbDatabase database(false);
  ASSERT_TRUE(database.read_file(given_drawing()));
  AcDbText* text = nullptr;
  ASSERT_EQ(acdbOpenObject(text, id(database, 0x30), AcDb::kForWrite), Acad::eOk);
  text->setTextString(L"half way");
  ASSERT_TRUE(database.save_file(path("plan.dxf")));
  text->close();
  EXPECT_THAT(content("plan.dxf"), HasSubstr("\n  1\nhalf way\n"));
}

}  // namespace
