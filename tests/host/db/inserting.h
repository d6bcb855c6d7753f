#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/insert_drawing.h"
#include "host/db/lens.h"
#include "host/db/record.h"
#include "tests/host/db/plan.h"
#include "tests/host/db/shapes.h"

/// A drawing becomes a block of another.
class InsertDrawing : public DrawingTest {
 protected:
  AcDbDatabase& given_source(std::string bytes) {
    source_ = std::make_unique<AcDbDatabase>(false);
    const cad::Status status = source_->read_bytes(std::move(bytes), "symbol.dxf");
    EXPECT_TRUE(status) << status.error().message();
    return *source_;
  }
  AcDbDatabase& source() { return *source_; }

  AcDbObjectId inserted(const wchar_t* name = L"SYMBOL") {
    Acad::ErrorStatus status = Acad::eOk;
    const auto block = cad::insert_drawing(database(), name, *source_, status);
    EXPECT_TRUE(block) << block.error().message();
    EXPECT_EQ(status, Acad::eOk);
    return block ? *block : AcDbObjectId();
  }
  /// The status and the line of an insertion that must fail and change nothing.
  std::string refusal(const wchar_t* name = L"SYMBOL") {
    const std::string before = database().save_bytes();
    const std::uint64_t seed = database().handseed();
    Acad::ErrorStatus status = Acad::eOk;
    const auto block = cad::insert_drawing(database(), name, *source_, status);
    EXPECT_FALSE(block);
    EXPECT_EQ(database().save_bytes(), before);
    EXPECT_EQ(static_cast<std::uint64_t>(database().handseed()), seed);
    return block ? "" : std::to_string(status) + " " + block.error().message();
  }

  static std::string tags(AcDbObjectId object) {
    std::string text(cad::record_tags(object).bytes);
    std::erase(text, '\r');
    return text;
  }
  static std::string hex(AcDbObjectId object) {
    return cad::to_utf8(cad::handle_text(object.handle()));
  }
  AcDbObjectId record(std::string_view table, std::wstring_view name) {
    return AcDbObjectId(database().drawing().table_record(table, name));
  }
  AcDbObjectId begin_of(AcDbObjectId block) {
    cad::Drawing& drawing = database().drawing();
    return AcDbObjectId(&drawing.stub_at(drawing.block_of(block.handle())->begin));
  }
  /// Kinds of a block's entities, parts included.
  std::vector<std::string> kinds(AcDbObjectId block) {
    std::vector<std::string> found;
    cad::Drawing& drawing = database().drawing();
    const cad::Drawing::Block* contents = cad::record_kind(block) == "BLOCK"
                                              ? drawing.block_at(*block.stub())
                                              : drawing.block_of(block.handle());
    for (cad::Stub* at = drawing.first_in(*contents); at; at = drawing.entity_behind(*at))
      found.emplace_back(drawing.kind_name(*at));
    return found;
  }
  AcDbObjectId entity_in(AcDbObjectId block, std::string_view kind) {
    cad::Drawing& drawing = database().drawing();
    for (cad::Stub* at = drawing.first_in(*drawing.block_of(block.handle())); at;
         at = drawing.entity_behind(*at))
      if (drawing.kind_name(*at) == kind) return AcDbObjectId(at);
    ADD_FAILURE() << "no " << kind;
    return {};
  }
  std::wstring text(AcDbObjectId object, std::string_view part, int code) {
    const cad::RecordTags record = cad::record_tags(object);
    return cad::Lens(record.bytes, *record.dialect).text(part, code);
  }
  AcDbObjectId referred(AcDbObjectId object, int code) {
    const cad::RecordTags record = cad::record_tags(object);
    cad::dxf::Tag tag;
    for (cad::dxf::TagReader at(record.bytes, *record.dialect); at.next(tag);)
      if (tag.code == code) return cad::referenced(object, cad::dxf::handle_value(tag));
    return {};
  }

 private:
  std::unique_ptr<AcDbDatabase> source_;
};

inline std::string insert_of(std::string_view name, std::string_view layer = "0") {
  return "0 INSERT\n330 1F\n100 AcDbEntity\n8 " + std::string(layer) +
         "\n100 AcDbBlockReference\n2 " + std::string(name) + "\n10 0.0\n20 0.0\n30 0.0\n";
}

inline constexpr std::string_view kLine =
    "0 LINE\n5 100\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n"
    "21 0.0\n31 0.0\n";
