#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/block.h"
#include "host/db/database.h"
#include "host/db/dictionary.h"
#include "host/db/line.h"
#include "host/db/open.h"
#include "host/db/symbol_table.h"
#include "host/db/text.h"
#include "host/db/xrecord.h"

/// The forms of a drawing file that differ in how tags or texts are spelled.
enum class Form { kUtf8, kChinese, kBinary, kOldBinary, kR12 };
inline constexpr Form kFormsWithDictionaries[] = {Form::kUtf8, Form::kChinese, Form::kBinary,
                                                  Form::kOldBinary};
std::string_view form_name(Form form);

/// One tag per line, see tests/host/dxf/written.h, in that form. "@" stands for the version text.
std::string spelled(std::string_view note, Form form);

/// A small drawing of everything, as a note. Handles:
///   layers 10 "0", 11 LOCKED, 12 FROZEN, 13 OFF; style 14; applications 15 ACAD, 16 PN;
///   block records 18 model, 19 paper space, 1A WELL; block WELL: 1F BLOCK, 20 CIRCLE, 21 LINE
///   model space: 2F LINE, 30 TEXT (reactor C), 31 LINE on LOCKED, 32 MTEXT, 33 POLYLINE with 34,
///   35 VERTEX and 36 SEQEND, 37 INSERT with 38 ATTRIB and 39 SEQEND, 3A CIRCLE with data of PN,
///   3B ACAD_PROXY_ENTITY, 3D LINE; paper space: 3C TEXT
///   dictionaries: C root, D ACAD_GROUP, 50 "PN" with the xrecords 51 "zeta", 52 "Alpha", 53
///   "beta"; 54 an object of an unknown kind that C does not list
std::string_view plan_note();

/// A drawing to open, change, save and open again. At the end of a test nothing may be left open.
class DrawingTest : public testing::Test {
 protected:
  ~DrawingTest() override { close_drawing(); }

  AcDbDatabase& given(std::string bytes);
  AcDbDatabase& given_plan(Form form = Form::kUtf8) { return given(spelled(plan_note(), form)); }
  /// What saving would write, opened as a new drawing in place of this one. Ids end with the
  /// drawing.
  AcDbDatabase& reopened() { return given(database().save_bytes()); }
  AcDbDatabase& database() const { return *database_; }
  void close_drawing();

  /// Null when the handle leads nowhere.
  AcDbObjectId id(std::uint64_t handle) const;
  /// Opens what must open.
  template <class T = AcDbObject>
  T* opened(AcDbObjectId object_id, AcDb::OpenMode mode = AcDb::kForRead,
            bool open_erased = false) const {
    T* object = nullptr;
    EXPECT_EQ(acdbOpenObject(object, object_id, mode, open_erased), Acad::eOk);
    return object;
  }
  template <class T = AcDbObject>
  T* opened(std::uint64_t handle, AcDb::OpenMode mode = AcDb::kForRead) const {
    return opened<T>(id(handle), mode);
  }
  Acad::ErrorStatus open_status(AcDbObjectId object_id, AcDb::OpenMode mode,
                                bool open_erased = false) const;

  void erase(std::uint64_t handle);
  /// Appends to model space and closes the entity.
  AcDbObjectId append(AcDbEntity* entity, std::uint64_t block_record = 0x18);
  /// The object's extension dictionary, made when it has none; null when that fails.
  AcDbObjectId extension(AcDbObjectId owner);
  /// Files a new xrecord holding one text under `key` and closes it.
  AcDbObjectId file_record(AcDbObjectId dictionary, const wchar_t* key, const wchar_t* text);
  /// The first text of an xrecord.
  std::wstring record_text(AcDbObjectId xrecord) const;
  /// Keys in iteration order.
  std::vector<std::wstring> keys(AcDbObjectId dictionary) const;
  std::wstring text_of(std::uint64_t handle) const;
  std::vector<std::uint64_t> entities(std::uint64_t block_record) const;

 private:
  std::unique_ptr<AcDbDatabase> database_;
};

/// A chain's types and values, readable.
std::vector<std::string> shown(const resbuf* chain);
