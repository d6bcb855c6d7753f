// Blocks made from groups.

#include <algorithm>

#include "host/base/fold.h"
#include "host/db/draft.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/object_access.h"

namespace cad {
namespace {

using dxf::Section;

constexpr std::string_view kBlockPart = "AcDbBlockBegin";

/// The next free name of an anonymous block: *U1, *U2, ...
std::wstring anonymous_name(Drawing& drawing, wchar_t letter) {
  for (std::uint64_t number = 1;; ++number) {
    std::wstring name = std::wstring(L"*") + letter + std::to_wstring(number);
    if (!drawing.block_named(name)) return name;
  }
}

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

Stub& add_record_of_block(Drawing& drawing, std::wstring_view name) {
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
  table->added.push_back(StubStore::index_of(record));
  drawing.table_changed(table->name);
  return record;
}

Stub& add_frame(Drawing& drawing, std::uint64_t owner, std::wstring_view name,
                const AcGePoint3d& base, std::int64_t flags) {
  const std::uint64_t anchor = drawing.section_end(Section::kBlocks);
  const dxf::Dialect& dialect = drawing.dialect();
  Stub& begin =
      drawing.add_record("BLOCK", owner, Section::kBlocks, anchor, [&](std::uint64_t handle) {
        std::string out = frame(dialect, "BLOCK", kBlockPart, handle, owner);
        dxf::TagWriter writer(out, dialect);
        writer.text(2, name);
        writer.integer(70, flags);
        writer.point(10, base.x, base.y, base.z);
        writer.text(3, name);
        writer.raw(1, "");
        return out;
      });
  const Stub& end =
      drawing.add_record("ENDBLK", owner, Section::kBlocks, anchor, [&](std::uint64_t handle) {
        return frame(dialect, "ENDBLK", "AcDbBlockEnd", handle, owner);
      });
  drawing.add_block(begin, end);
  return begin;
}

/// An entity of the list and the parts behind it.
struct Entity {
  std::vector<GroupView> main;
  std::vector<std::vector<GroupView>> parts;
};

std::wstring_view kind_of(std::span<const GroupView> groups) {
  for (const GroupView& group : groups)
    if (group.code == 0) return group.text;
  return {};
}

std::vector<Entity> entities_of(std::span<const GroupList> lists) {
  std::vector<Entity> entities;
  bool in_parts = false;
  for (const GroupList& list : lists) {
    std::vector<GroupView> groups = views_of(list);
    const std::wstring kind = folded(kind_of(groups));
    if (in_parts && kind == L"seqend") {
      in_parts = false;
    } else if (in_parts) {
      entities.back().parts.push_back(std::move(groups));
    } else {
      const GroupValue* follow = list.find(66);
      const auto* flag = follow ? std::get_if<std::int64_t>(&follow->value) : nullptr;
      in_parts = kind == L"polyline" || (kind == L"insert" && flag && *flag != 0);
      entities.push_back({std::move(groups), {}});
    }
  }
  return entities;
}

/// Whether an entity shows the block itself.
bool shows(std::span<const Entity> entities, std::wstring_view block) {
  return std::any_of(entities.begin(), entities.end(), [&](const Entity& entity) {
    if (folded(kind_of(entity.main)) != L"insert") return false;
    return std::any_of(entity.main.begin(), entity.main.end(), [&](const GroupView& group) {
      return group.code == 2 && equal_no_case(group.text, block);
    });
  });
}

bool defines_attributes(std::span<const Entity> entities) {
  return std::any_of(entities.begin(), entities.end(), [](const Entity& entity) {
    return folded(kind_of(entity.main)) == L"attdef";
  });
}

/// An existing block loses its contents and gets another base point.
AcDbObjectId emptied(Drawing& drawing, const Drawing::Block& block, const AcGePoint3d& base,
                     std::int64_t flags) {
  Stub& begin = drawing.stub_at(block.begin);
  const std::vector<std::size_t> added = block.added;
  for (std::size_t i = block.begin + 1; i < block.end; ++i)
    if (!drawing.stub_at(i).erased()) ObjectAccess::turn(drawing, drawing.stub_at(i), true);
  for (const std::size_t i : added)
    if (!drawing.stub_at(i).erased()) ObjectAccess::turn(drawing, drawing.stub_at(i), true);
  AcDbObject& object = drawing.object(begin);
  LensWriter writer(ObjectAccess::writable(object), drawing.dialect());
  writer.set_point(kBlockPart, 10, base);
  writer.set_integer(kBlockPart, 70, flags);
  ObjectAccess::changed(object);
  Stub* record = drawing.find(begin.owner);
  return AcDbObjectId(record ? record : &begin);
}

}  // namespace

Result<AcDbObjectId> make_block(AcDbDatabase& database, std::wstring_view name,
                                const AcGePoint3d& base, std::span<const GroupList> lists) {
  constexpr std::int64_t kAnonymous = 1, kAttributes = 2;
  Drawing& drawing = database.drawing();
  const bool anonymous = name.size() >= 2 && name.front() == L'*';
  if (!anonymous && !is_symbol_name(name, drawing.has_long_names()))
    return fail("BLOCK", "\"" + to_utf8(name) + "\" cannot be a name (group 2)");
  const std::wstring folded_name = folded(name);
  if (folded_name.starts_with(L"*model_space") || folded_name.starts_with(L"*paper_space"))
    return fail("BLOCK", to_utf8(name) + " is a space of the drawing");
  std::vector<Entity> entities = entities_of(lists);
  for (const Entity& entity : entities)
    if (Status status = check_entity(database, entity.main, entity.parts); !status)
      return status.error();
  if (shows(entities, name)) return fail("BLOCK", to_utf8(name) + " would contain itself");

  const std::int64_t flags =
      (anonymous ? kAnonymous : 0) | (defines_attributes(entities) ? kAttributes : 0);
  AcDbObjectId block;
  if (const Drawing::Block* old = anonymous ? nullptr : drawing.block_named(name)) {
    block = emptied(drawing, *old, base, flags);
  } else {
    const std::wstring own_name = anonymous ? anonymous_name(drawing, name[1]) : std::wstring(name);
    const bool has_records = drawing.table("BLOCK_RECORD") != nullptr;
    Stub* record = has_records ? &add_record_of_block(drawing, own_name) : nullptr;
    Stub& begin = add_frame(drawing, record ? record->handle : 0, own_name, base, flags);
    block = AcDbObjectId(record ? record : &begin);
  }
  for (const Entity& entity : entities) {
    const Result<AcDbObjectId> made = make_entity(database, block, entity.main, entity.parts);
    if (!made) return made.error();
  }
  return block;
}

}  // namespace cad
