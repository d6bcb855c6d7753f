#include "host/db/make_object.h"

#include <algorithm>

#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/draft.h"
#include "host/db/drawing.h"
#include "host/db/layouts.h"
#include "host/db/lens.h"
#include "host/db/text.h"
#include "host/db/text_start.h"

namespace cad {
namespace {

using dxf::Section;

/// Where new entities of a block or space go.
struct Target {
  std::uint64_t owner = 0;
  Section section = Section::kEntities;
  std::uint64_t anchor = 0;
  std::vector<std::size_t>* added = nullptr;  // of a block; null for the spaces in ENTITIES
  bool in_paper = false;
};

bool is_paper(Drawing& drawing, const Stub& record) {
  constexpr std::wstring_view kPaper = L"*paper_space";
  const Lens lens(drawing.bytes_of(record), drawing.dialect());
  return folded(lens.text("AcDbBlockTableRecord", 2)).starts_with(kPaper);
}

Result<Target> target_in(Drawing& drawing, AcDbObjectId block) {
  Target target;
  if (block.isNull()) {  // a drawing without block records
    target.anchor = drawing.section_end(Section::kEntities);
    return target;
  }
  Stub& stub = *block.stub();
  if (drawing.kind_name(stub) == "BLOCK_RECORD") {
    target.owner = stub.handle;
    target.in_paper = is_paper(drawing, stub);
    if (drawing.is_space(stub.handle)) {
      target.anchor = drawing.section_end(Section::kEntities);
      return target;
    }
  }
  Drawing::Block* found =
      drawing.kind_name(stub) == "BLOCK" ? drawing.block_at(stub) : drawing.block_of(stub.handle);
  if (!found) return fail("", "the place for new entities is no block");
  target.section = Section::kBlocks;
  target.anchor = found->end_offset;
  target.added = &found->added;
  return target;
}

Result<Target> target_for(AcDbDatabase& database, AcDbObjectId block, const Draft& draft) {
  if (!block.isNull()) return target_in(database.drawing(), block);
  const bool has_records = !database.modelSpaceId().isNull();
  AcDbObjectId space = database.currentSpaceId();
  if (has_records && !draft.layout().empty()) {
    const AcDbObjectId named = layout_space(database, draft.layout());
    if (!named.isNull()) space = named;
  } else if (has_records && draft.wants_paper()) {
    space = AcDbObjectId(database.drawing().table_record("BLOCK_RECORD", L"*Paper_Space"));
  }
  Result<Target> target = target_in(database.drawing(), space);
  const bool old_paper = !has_records && (draft.wants_paper() || !database.tile_mode());
  if (target && old_paper) target->in_paper = true;
  return target;
}

Stub& add(Drawing& drawing, const Draft& draft, const Target& target, std::uint64_t owner) {
  Stub& stub = drawing.add_record(
      draft.kind(), owner, target.section, target.anchor, [&](std::uint64_t handle) {
        return draft.spell(drawing.dialect(), handle, owner, target.in_paper);
      });
  const std::size_t index = StubStore::index_of(stub);
  if (target.added) {
    target.added->push_back(index);
  } else {
    drawing.add_to_space(index);
  }
  return stub;
}

Status ensure_layer_of(AcDbDatabase& database, const Draft& draft) {
  if (!draft.is_entity()) return {};
  const Result<AcDbObjectId> layer = ensure_layer(database, draft.text(8));
  return layer ? Status() : Status(layer.error());
}

/// Bits of a POLYLINE's flags that its vertices repeat in their own way.
std::int64_t vertex_flags(const Draft& polyline) {
  constexpr std::int64_t k3d = 8, kMesh = 16;
  const std::int64_t flags = polyline.integer(70, 0);
  return (flags & k3d) != 0 ? 32 : (flags & kMesh) != 0 ? 64 : 0;
}

bool takes_parts(const Draft& draft) {
  return draft.kind() == "POLYLINE" || (draft.kind() == "INSERT" && draft.integer(66, 0) != 0);
}

/// An entity and its parts, checked and ready to be written.
struct EntityDraft {
  Draft main;
  std::vector<Draft> parts;  // SEQEND included
};

Result<EntityDraft> draft_entity(AcDbDatabase& database, std::span<const GroupView> groups,
                                 std::span<const std::vector<GroupView>> parts) {
  Result<Draft> main = Draft::of(database, groups);
  if (!main) return main.error();
  if (!main->is_entity() || (main->row() && main->row()->place == KindPlace::kSubEntity))
    return fail(main->kind(), "is no entity of its own");
  if (!parts.empty() && main->kind() == "INSERT") main->set_integer(66, 1);
  if (!takes_parts(*main) && !parts.empty()) return fail(main->kind(), "has no parts");
  if (takes_parts(*main) && parts.empty())
    return fail(main->kind(), "needs its parts: at least one VERTEX or ATTRIB");
  EntityDraft entity{std::move(*main), {}};
  const bool polyline = entity.main.kind() == "POLYLINE";
  const std::wstring layer(entity.main.text(8));
  for (const std::vector<GroupView>& part : parts) {
    Result<Draft> draft =
        Draft::of(database, part, layer, polyline ? vertex_flags(entity.main) : 0);
    if (!draft) return draft.error();
    if (draft->kind() == "SEQEND") break;
    if (draft->kind() != (polyline ? "VERTEX" : "ATTRIB"))
      return fail(draft->kind(), "cannot be a part of this " + entity.main.kind());
    entity.parts.push_back(std::move(*draft));
  }
  if (!takes_parts(entity.main)) return entity;
  GroupView kind;  // a draft shows the caller's texts: only what lives on may stand here
  kind.text = L"SEQEND";
  Result<Draft> end = Draft::of(database, std::span(&kind, 1), layer);
  if (!end) return end.error();
  entity.parts.push_back(std::move(*end));
  return entity;
}

}  // namespace

Status check_entity(AcDbDatabase& database, std::span<const GroupView> groups,
                    std::span<const std::vector<GroupView>> parts) {
  const Result<EntityDraft> entity = draft_entity(database, groups, parts);
  return entity ? Status() : Status(entity.error());
}

Status check_part(AcDbDatabase& database, std::span<const GroupView> groups) {
  const Result<Draft> draft = Draft::of(database, groups);
  if (!draft) return draft.error();
  const bool is_part = draft->row() && draft->row()->place == KindPlace::kSubEntity;
  return is_part ? Status() : Status(fail(draft->kind(), "is no part of an entity"));
}

Status check_main(AcDbDatabase& database, std::span<const GroupView> groups) {
  const Result<Draft> draft = Draft::of(database, groups);
  return draft ? Status() : Status(draft.error());
}

Result<AcDbObjectId> make_entity(AcDbDatabase& database, AcDbObjectId block,
                                 std::span<const GroupView> groups,
                                 std::span<const std::vector<GroupView>> parts) {
  Drawing& drawing = database.drawing();
  const Result<EntityDraft> entity = draft_entity(database, groups, parts);
  if (!entity) return entity.error();
  const Result<Target> target = target_for(database, block, entity->main);
  if (!target) return target.error();
  if (Status status = ensure_layer_of(database, entity->main); !status) return status.error();
  for (const Draft& part : entity->parts)
    if (Status status = ensure_layer_of(database, part); !status) return status.error();

  Stub& made = add(drawing, entity->main, *target, target->owner);
  const std::uint64_t owner = target->owner != 0 ? made.handle : 0;
  for (const Draft& part : entity->parts) add(drawing, part, *target, owner);
  const bool justified = entity->main.integer(72, 0) != 0 || entity->main.integer(73, 0) != 0;
  if (justified && entity->main.kind() == "TEXT")
    lay_out_text(*AcDbText::cast(&drawing.object(made)));
  return AcDbObjectId(&made);
}

Result<AcDbObjectId> make_entity(AcDbDatabase& database, AcDbObjectId block,
                                 const GroupList& groups, std::span<const GroupList> parts) {
  std::vector<std::vector<GroupView>> views;
  for (const GroupList& part : parts) views.push_back(views_of(part));
  return make_entity(database, block, views_of(groups), views);
}

Result<AcDbObjectId> make_record(AcDbDatabase& database, std::span<const GroupView> groups) {
  Drawing& drawing = database.drawing();
  const Result<Draft> draft = Draft::of(database, groups);
  if (!draft) return draft.error();
  if (!draft->row() || draft->row()->place != KindPlace::kRecord)
    return fail(draft->kind(), "is no record of a symbol table");
  const std::wstring_view name = draft->text(2);
  if (!is_symbol_name(name, drawing.has_long_names()))
    return fail(draft->kind(), "\"" + to_utf8(name) + "\" cannot be a name (group 2)");
  Drawing::Table* table = drawing.table(draft->kind());
  if (!table) return fail(draft->kind(), "the drawing has no table of this kind");
  if (drawing.table_record(table->name, name))
    return fail(draft->kind(), "the drawing has a record " + to_utf8(name) + " already");
  const std::uint64_t owner = drawing.stub_at(table->stub).handle;
  Stub& stub = drawing.add_record(
      draft->kind(), owner, Section::kTables, table->end,
      [&](std::uint64_t handle) { return draft->spell(drawing.dialect(), handle, owner, false); });
  drawing.add_to_table(*table, stub, name);
  return AcDbObjectId(&stub);
}

Result<AcDbObjectId> make_record(AcDbDatabase& database, const GroupList& groups) {
  return make_record(database, views_of(groups));
}

Result<AcDbObjectId> make_object(AcDbDatabase& database, std::span<const GroupView> groups) {
  Drawing& drawing = database.drawing();
  const Result<Draft> draft = Draft::of(database, groups);
  if (!draft) return draft.error();
  if (draft->is_entity() || (draft->row() && draft->row()->place == KindPlace::kRecord))
    return fail(draft->kind(), "is no object for a dictionary");
  const std::uint64_t anchor = drawing.section_end(Section::kObjects);
  Stub& stub = drawing.add_record(
      draft->kind(), 0, Section::kObjects, anchor,
      [&](std::uint64_t handle) { return draft->spell(drawing.dialect(), handle, 0, false); });
  return AcDbObjectId(&stub);
}

Result<AcDbObjectId> make_object(AcDbDatabase& database, const GroupList& groups) {
  return make_object(database, views_of(groups));
}

bool is_symbol_name(std::wstring_view name, bool long_names) {
  const std::size_t longest = long_names ? 255 : 31;
  if (name.empty() || name.size() > longest || name.front() == L' ' || name.back() == L' ')
    return false;
  const auto allowed = [&](wchar_t c) {
    if (long_names)
      return c >= L' ' && std::wstring_view(L"<>/\\\":;?*|,=`").find(c) == std::wstring_view::npos;
    const bool letter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c > 0x7F;
    return letter || (c >= L'0' && c <= L'9') || c == L'$' || c == L'-' || c == L'_';
  };
  // The records of external drawings are named FILE|NAME; anonymous blocks begin with a star.
  return std::all_of(name.begin(), name.end(), allowed);
}

Result<AcDbObjectId> ensure_layer(AcDbDatabase& database, std::wstring_view name) {
  Drawing& drawing = database.drawing();
  if (Stub* layer = drawing.table_record("LAYER", name)) return AcDbObjectId(layer);
  if (!is_symbol_name(name, drawing.has_long_names()))
    return fail("LAYER", "\"" + to_utf8(name) + "\" cannot be the name of a layer");
  if (!drawing.table("LAYER")) return AcDbObjectId();  // a bare R12 drawing: layers are implied
  GroupList groups(L"LAYER");
  groups.text(2, name);
  // Where layers have a plot style, a new one takes that of layer 0.
  if (const Stub* zero = drawing.table_record("LAYER", L"0")) {
    const Lens lens(drawing.bytes_of(*zero), drawing.dialect());
    const auto style = lens.find("AcDbLayerTableRecord", 390);
    const AcDbObjectId id(style ? drawing.find(dxf::handle_value(*style)) : nullptr);
    if (!id.isNull()) groups.integer(370, -3).object(390, id);
  }
  return make_record(database, groups);
}

Result<AcDbObjectId> register_application(AcDbDatabase& database, std::wstring_view name) {
  return make_record(database, GroupList(L"APPID").text(2, name));
}

}  // namespace cad
