#include "host/db/insert_drawing.h"

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/db/block_frame.h"
#include "host/db/cloner.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/object_access.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

constexpr std::string_view kExtensionGroup = "{ACAD_XDICTIONARY";

/// The entities of model space in drawing order, parts of others left out.
std::vector<Stub*> model_space(Drawing& drawing) {
  std::vector<Stub*> found;
  const auto keep = [&](Stub& stub) {
    if (drawing.kind_name(stub) != "VIEWPORT") found.push_back(&stub);
  };
  if (const std::uint64_t space = drawing.model_space(); space != 0) {
    for (Stub* stub = drawing.first_in_block(space); stub;
         stub = drawing.next_in_block(space, *stub))
      keep(*stub);
    return found;
  }
  for (Stub* stub = drawing.first_entity(); stub; stub = drawing.entity_behind(*stub)) {
    if (drawing.is_sub_entity(*stub)) continue;
    const Lens lens(drawing.bytes_of(*stub), drawing.dialect());
    if (lens.integer("AcDbEntity", 67, 0) == 0) keep(*stub);
  }
  return found;
}

/// An attribute that every reference of the block asks a value for.
bool asks_value(Drawing& drawing, const Stub& entity) {
  constexpr std::int64_t kConstant = 2;
  if (drawing.kind_name(entity) != "ATTDEF") return false;
  const Lens lens(drawing.bytes_of(entity), drawing.dialect());
  return (lens.integer("AcDbAttributeDefinition", 70, 0) & kConstant) == 0;
}

/// The block's record says in which unit its drawing is.
void set_units(Drawing& drawing, Stub& record, std::wstring_view units) {
  const auto unit = parse_int(to_utf8(units));
  if (drawing.dialect().release < dxf::Release::kR2007 || !unit) return;
  constexpr std::string_view kPart = "AcDbBlockTableRecord";
  const std::string_view bytes = drawing.bytes_of(record);
  if (Lens(bytes, drawing.dialect()).integer(kPart, 70, 0) == *unit) return;
  AcDbObject& object = drawing.object(record);
  LensWriter(ObjectAccess::writable(object), drawing.dialect()).set_integer(kPart, 70, *unit);
  ObjectAccess::changed(object);
}

void set_extension(Drawing& drawing, Stub& record, std::uint64_t dictionary) {
  if (dictionary == 0) return;
  AcDbObject& object = drawing.object(record);
  std::string& tags = ObjectAccess::writable(object);
  const dxf::Dialect& dialect = drawing.dialect();
  std::string group;
  dxf::TagWriter writer(group, dialect);
  writer.raw(102, kExtensionGroup);
  writer.handle(360, dictionary);
  writer.raw(102, "}");
  LensWriter(tags, dialect).insert(Lens(tags, dialect).behind_handle(), group);
  ObjectAccess::changed(object);
}

/// The block ready for its new contents: a new one, or one that lost its old ones.
Stub& prepared_block(Drawing& drawing, std::wstring_view name, Stub* old, const AcGePoint3d& base,
                     std::int64_t flags) {
  if (!old) return add_empty_block(drawing, name, base, flags);
  const bool is_begin = drawing.kind_name(*old) == "BLOCK";
  const Drawing::Block* block = is_begin ? drawing.block_at(*old) : drawing.block_of(old->handle);
  if (block) return empty_block(drawing, *block, base, flags);
  add_block_frame(drawing, old->handle, name, base, flags);
  return *old;
}

}  // namespace

Result<AcDbObjectId> insert_drawing(AcDbDatabase& into, std::wstring_view name, AcDbDatabase& from,
                                    Acad::ErrorStatus& status) {
  Drawing& to = into.drawing();
  Drawing& source = from.drawing();
  const auto refuse = [&](Acad::ErrorStatus why, std::string where, std::string what) {
    status = why;
    return fail(std::move(where), std::move(what));
  };
  const std::string shown = "block " + to_utf8(name);
  const bool anonymous = name.size() == 2 && is_anonymous_block(name);
  if (!anonymous && !is_symbol_name(name, to.has_long_names()))
    return refuse(Acad::eInvalidBlockName, shown, "this cannot be the name of a block");
  if (&to == &source) return refuse(Acad::eSelfReference, shown, "a drawing cannot hold itself");
  if (!anonymous && block_record_or_begin(source, name))
    return refuse(Acad::eSelfReference, shown,
                  source.name() + " contains a block of that name itself");

  Cloner cloner(source, to);
  if (!anonymous) cloner.set_block_made(name);
  const std::size_t place = cloner.new_place();
  bool has_attributes = false;
  for (Stub* entity : model_space(source)) {
    cloner.add_entity(*entity, place);
    has_attributes |= asks_value(source, *entity);
  }
  const Stub* space = source.find(source.model_space());
  Stub* const old = anonymous ? nullptr : block_record_or_begin(to, name);
  const bool has_extension =
      old && Lens(to.bytes_of(*old), to.dialect()).group(kExtensionGroup).has_value();
  if (space && !has_extension && to.table("BLOCK_RECORD")) cloner.add_extension(*space);
  if (Status found = cloner.complete(); !found) {
    status = cloner.fault();
    return found.error();
  }

  std::uint64_t number = 1;
  const std::wstring own_name =
      anonymous ? anonymous_block_name(to, name[1], number) : std::wstring(name);
  const std::int64_t flags =
      (anonymous ? kAnonymousBlock : 0) | (has_attributes ? kBlockWithAttributes : 0);
  Stub& block = prepared_block(to, own_name, old, from.header_point("$INSBASE"), flags);
  if (space) cloner.stand_for(*space, block);
  cloner.set_place(place, *place_in_block(to, block));
  cloner.run();
  if (to.kind_name(block) == "BLOCK_RECORD") {
    set_extension(to, block, cloner.extension());
    set_units(to, block, from.header_value("$INSUNITS"));
  }
  status = Acad::eOk;
  return AcDbObjectId(&block);
}

}  // namespace cad
