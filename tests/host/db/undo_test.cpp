#include "host/db/undo.h"

#include <gmock/gmock.h>

#include "host/db/make_object.h"
#include "tests/host/db/plan.h"

namespace {

using cad::GroupList;

class Undo : public DrawingTest {
 protected:
  cad::UndoLog& log() { return cad::undo_log(database()); }
  void write_text(std::uint64_t handle, const wchar_t* text) {
    AcDbText* object = opened<AcDbText>(handle, AcDb::kForWrite);
    object->setTextString(text);
    object->close();
  }
  AcDbObjectId make_point() {
    return *cad::make_entity(database(), {}, GroupList(L"POINT").point(10, {1, 2, 3}));
  }
};

TEST_F(Undo, TakingEverythingBackLeavesTheFile) {
  for (const Form form : {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary}) {
    SCOPED_TRACE(form_name(form));
    const std::string bytes = spelled(plan_note(), form);
    given(bytes);
    write_text(0x30, L"one");
    log().next_step();
    write_text(0x30, L"two");
    make_point();
    erase(0x33);
    log().next_step();
    file_record(extension(id(0x2F)), L"key", L"value");
    ASSERT_TRUE(database().set_header_variable("$CLAYER", L"frozen"));
    ASSERT_TRUE(cad::make_block(database(), L"NEW", {}));
    ASSERT_TRUE(cad::ensure_layer(database(), L"NEW"));
    const std::string changed = database().save_bytes();
    EXPECT_EQ(log().steps(), 3u);
    EXPECT_EQ(log().undo(9), 3u);
    EXPECT_FALSE(database().is_modified());
    EXPECT_EQ(database().save_bytes(), bytes);
    EXPECT_EQ(log().redo(9), 3u);
    EXPECT_TRUE(database().is_modified());
    EXPECT_EQ(database().save_bytes(), changed);
    EXPECT_EQ(log().undo(9), 3u);
    EXPECT_EQ(database().save_bytes(), bytes);
  }
}

TEST_F(Undo, EachStepIsTakenBackByItself) {
  given_plan();
  const std::wstring before = text_of(0x30);
  write_text(0x30, L"one");
  log().next_step();
  log().next_step();
  write_text(0x30, L"two");
  write_text(0x30, L"three");
  EXPECT_EQ(log().undo(1), 1u);
  EXPECT_EQ(text_of(0x30), L"one");
  EXPECT_EQ(log().undo(1), 1u);
  EXPECT_EQ(text_of(0x30), before);
  EXPECT_EQ(log().undo(1), 0u);
  EXPECT_EQ(log().redo(1), 1u);
  EXPECT_EQ(text_of(0x30), L"one");
  write_text(0x30, L"other");
  EXPECT_EQ(log().redo(1), 0u) << "another change ends doing again";
}

TEST_F(Undo, AGroupIsOneStep) {
  given_plan();
  const std::wstring before = text_of(0x30);
  log().begin_group();
  write_text(0x30, L"one");
  log().next_step();
  log().begin_group();
  write_text(0x30, L"two");
  log().end_group();
  EXPECT_TRUE(log().in_group());
  write_text(0x30, L"three");
  log().end_group();
  EXPECT_FALSE(log().in_group());
  EXPECT_EQ(log().steps(), 1u);
  EXPECT_EQ(log().undo(1), 1u);
  EXPECT_EQ(text_of(0x30), before);
}

TEST_F(Undo, BackGoesToTheMark) {
  given_plan();
  write_text(0x30, L"one");
  log().set_mark();
  write_text(0x30, L"two");
  log().next_step();
  write_text(0x30, L"three");
  EXPECT_TRUE(log().back_to_mark());
  EXPECT_EQ(text_of(0x30), L"one");
  EXPECT_FALSE(log().back_to_mark()) << "the mark is used up";
  EXPECT_EQ(text_of(0x30), L"one");
}

TEST_F(Undo, OpenObjectsAreNotTakenAway) {
  given_plan();
  write_text(0x30, L"one");
  AcDbText* object = opened<AcDbText>(0x30);
  EXPECT_EQ(log().undo(1), 0u);
  object->close();
  EXPECT_EQ(log().undo(1), 1u);
}

TEST_F(Undo, NewObjectsBecomeErasedOnes) {
  given_plan();
  const AcDbObjectId point = make_point();
  const std::uint64_t handle = point.handle();
  log().undo(1);
  EXPECT_TRUE(point.isErased());
  EXPECT_NE(database().last_entity(), point);
  const AcDbObjectId other = make_point();
  EXPECT_NE(other.handle(), AcDbHandle(handle)) << "handles are not used twice";
}

TEST_F(Undo, TablesFollow) {
  given_plan();
  const auto has_layer = [&](const wchar_t* name) {
    AcDbLayerTable* layers = opened<AcDbLayerTable>(database().layerTableId());
    const bool has = layers->has(name);
    layers->close();
    return has;
  };
  ASSERT_TRUE(cad::ensure_layer(database(), L"NEW"));
  EXPECT_TRUE(has_layer(L"NEW"));
  log().undo(1);
  EXPECT_FALSE(has_layer(L"NEW"));
  log().redo(1);
  EXPECT_TRUE(has_layer(L"NEW"));
  log().next_step();
  AcDbLayerTableRecord* layer = opened<AcDbLayerTableRecord>(0x11, AcDb::kForWrite);
  layer->setIsLocked(false);
  layer->close();
  AcDbObjectId line = id(0x31);
  EXPECT_EQ(open_status(line, AcDb::kForWrite), Acad::eOk);
  log().undo(1);
  EXPECT_EQ(open_status(line, AcDb::kForWrite), Acad::eOnLockedLayer);
}

TEST_F(Undo, DictionariesFollow) {
  given_plan();
  const auto before = keys(id(0x50));
  file_record(id(0x50), L"extra", L"x");
  log().next_step();
  erase(0x51);
  EXPECT_EQ(keys(id(0x50)).size(), before.size());
  log().undo(2);
  EXPECT_EQ(keys(id(0x50)), before);
}

TEST_F(Undo, HeaderVariablesFollow) {
  given_plan();
  ASSERT_TRUE(database().set_header_variable("$LTSCALE", 7.0));
  log().next_step();
  ASSERT_TRUE(database().set_header_variable("$LTSCALE", 8.0));
  ASSERT_TRUE(database().set_header_variable("$LTSCALE", 9.0));
  log().undo(1);
  EXPECT_EQ(database().header_value("$LTSCALE"), L"7.0");
  log().undo(1);
  EXPECT_EQ(database().header_value("$LTSCALE"), L"2.5");
  log().redo(2);
  EXPECT_EQ(database().header_value("$LTSCALE"), L"9.0");
}

TEST_F(Undo, NothingIsKeptWithoutRecording) {
  given_plan();
  write_text(0x30, L"one");
  log().set_recording(false);
  EXPECT_EQ(log().steps(), 0u);
  write_text(0x30, L"two");
  log().set_recording(true);
  write_text(0x30, L"three");
  EXPECT_EQ(log().undo(5), 1u);
  EXPECT_EQ(text_of(0x30), L"two");
}

TEST_F(Undo, MovingADictionaryEntryIsTakenBack) {
  given_plan();
  const std::string bytes = database().save_bytes();
  AcDbDictionary* dictionary = opened<AcDbDictionary>(0x50, AcDb::kForWrite);
  EXPECT_EQ(dictionary->remove(L"zeta"), Acad::eOk);
  dictionary->close();
  log().next_step();
  erase(0x51);
  log().undo(9);
  EXPECT_EQ(database().save_bytes(), bytes);
  EXPECT_FALSE(id(0x51).isErased());
}

}  // namespace
