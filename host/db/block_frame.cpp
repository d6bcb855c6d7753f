#include "host/db/block_frame.h"

#include "host/base/fold.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

using dxf::Section;

/// BLOCK or ENDBLK.
std::string frame(const dxf::Dialect& dialect, std::string_view kind, std::string_view part,
                  std::uint64_t handle, std::uint64_t owner) {
  std::string out;
  dxf::TagWriter writer(out, dialect);
  writer.raw(0, kind);
  writer.handle(5, handle);
  if (dialect.has_dictionaries()) {
    writer.handle(330, owner);
    writer.raw(100, "AcDbEntity");
  }
  writer.raw(8, "0");
  if (dialect.has_dictionaries()) writer.raw(100, part);
  return out;
}

}  // namespace

bool is_anonymous_block(std::wstring_view name) {
  return name.size() >= 2 && name.front() == L'*' && !is_space_name(name);
}

bool is_space_name(std::wstring_view name) {
  const std::wstring own = folded(name);
  return own.starts_with(L"*model_space") || own.starts_with(L"*paper_space");
}

Stub* block_record_or_begin(Drawing& drawing, std::wstring_view name) {
  if (drawing.table("BLOCK_RECORD")) return drawing.table_record("BLOCK_RECORD", name);
  const Drawing::Block* block = drawing.block_named(name);
  return block ? &drawing.stub_at(block->begin) : nullptr;
}

std::wstring anonymous_block_name(Drawing& drawing, wchar_t letter, std::uint64_t& number) {
  for (;;) {
    std::wstring name = std::wstring(L"*") + letter + std::to_wstring(number++);
    if (!block_record_or_begin(drawing, name)) return name;
  }
}

Stub& add_block_record(Drawing& drawing, std::wstring_view name) {
  Drawing::Table* table = drawing.table("BLOCK_RECORD");
  const std::uint64_t owner = drawing.stub_at(table->stub).handle;
  Stub& record = drawing.add_record("BLOCK_RECORD", owner, Section::kTables, table->end,
                                    [&](std::uint64_t handle) {
                                      std::string out;
                                      dxf::TagWriter writer(out, drawing.dialect());
                                      writer.raw(0, "BLOCK_RECORD");
                                      writer.handle(5, handle);
                                      writer.handle(330, owner);
                                      writer.raw(100, "AcDbSymbolTableRecord");
                                      writer.raw(100, "AcDbBlockTableRecord");
                                      writer.text(2, name);
                                      if (drawing.dialect().release >= dxf::Release::kR2000)
                                        writer.handle(340, 0);
                                      return out;
                                    });
  drawing.add_to_table(*table, record, name);
  return record;
}

Stub& add_block_frame(Drawing& drawing, std::uint64_t owner, std::wstring_view name,
                      const AcGePoint3d& base, std::int64_t flags) {
  const std::uint64_t anchor = drawing.section_end(Section::kBlocks);
  const dxf::Dialect& dialect = drawing.dialect();
  Stub& begin =
      drawing.add_record("BLOCK", owner, Section::kBlocks, anchor, [&](std::uint64_t handle) {
        std::string out = frame(dialect, "BLOCK", kBlockBegin, handle, owner);
        dxf::TagWriter writer(out, dialect);
        writer.text(2, name);
        writer.integer(70, flags);
        writer.point(10, base.x, base.y, base.z);
        writer.text(3, name);
        writer.raw(1, "");
        return out;
      });
  const Stub& end = drawing.add_record(
      "ENDBLK", owner, Section::kBlocks, anchor,
      [&](std::uint64_t handle) { return frame(dialect, "ENDBLK", kBlockEnd, handle, owner); });
  drawing.add_block(begin, end);
  return begin;
}

Stub& add_empty_block(Drawing& drawing, std::wstring_view name, const AcGePoint3d& base,
                      std::int64_t flags) {
  const bool has_records = drawing.table("BLOCK_RECORD") != nullptr;
  Stub* record = has_records ? &add_block_record(drawing, name) : nullptr;
  Stub& begin = add_block_frame(drawing, record ? record->handle : 0, name, base, flags);
  return record ? *record : begin;
}

Stub& empty_block(Drawing& drawing, const Drawing::Block& block, const AcGePoint3d& base,
                  std::int64_t flags) {
  Stub& begin = drawing.stub_at(block.begin);
  const std::vector<std::size_t> added = block.added;
  for (std::size_t i = block.begin + 1; i < block.end; ++i)
    if (!drawing.stub_at(i).erased()) ObjectAccess::turn(drawing, drawing.stub_at(i), true);
  for (const std::size_t i : added)
    if (!drawing.stub_at(i).erased()) ObjectAccess::turn(drawing, drawing.stub_at(i), true);
  AcDbObject& object = drawing.object(begin);
  LensWriter writer(ObjectAccess::writable(object), drawing.dialect());
  writer.set_point(kBlockBegin, 10, base);
  writer.set_integer(kBlockBegin, 70, flags);
  ObjectAccess::changed(object);
  Stub* record = drawing.find(begin.owner);
  return record ? *record : begin;
}

}  // namespace cad
