#include "host/db/copy_entity.h"

#include <optional>
#include <string>
#include <utility>

#include "host/base/numbers.h"
#include "host/db/block_frame.h"
#include "host/db/cloner.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/object_access.h"
#include "host/db/record.h"

namespace cad {
namespace {

constexpr std::string_view kDimensionPart = "AcDbDimension";

std::string described(const Stub& stub) {
  std::string text(StubStore::drawing_of(stub).kind_name(stub));
  text += " ";
  append_handle(text, stub.handle);
  return text;
}

/// The block or space, of the drawing of `entity`, that `beside` says; see copy_entity.h.
std::optional<ClonePlace> place_for(Drawing& drawing, const Stub* beside, const Stub& entity) {
  const bool is_block =
      beside && (drawing.kind_name(*beside) == "BLOCK" || !drawing.class_of(*beside).entity);
  if (is_block) return place_in_block(drawing, *beside);
  const Stub& source = beside ? *beside : entity;
  if (const Stub* record = drawing.find(source.owner)) return place_in_block(drawing, *record);
  if (source.section == dxf::Section::kEntities) {
    ClonePlace place;
    place.anchor = drawing.section_end(dxf::Section::kEntities);
    return place;
  }
  return std::nullopt;
}

std::wstring block_name(Drawing& drawing, const Stub& record) {
  return Lens(drawing.bytes_of(record), drawing.dialect()).text("AcDbBlockTableRecord", 2);
}

/// A dimension is drawn by a block of its own: so is its copy.
Status copy_dimension_block(Drawing& drawing, AcDbObjectId copy) {
  Stub& stub = *copy.stub();
  const Lens lens(drawing.bytes_of(stub), drawing.dialect());
  const std::wstring name = lens.text(kDimensionPart, 2);
  if (!name.starts_with(L'*')) return {};
  const Stub* record = drawing.table_record("BLOCK_RECORD", name);
  if (!record) return {};
  std::vector<AcDbObjectId> contents;
  for (Stub* piece = drawing.first_in_block(record->handle); piece;
       piece = drawing.next_in_block(record->handle, *piece)) {
    if (drawing.kind_name(*piece) != "DIMENSION") contents.push_back(AcDbObjectId(piece));
  }
  const Result<AcDbObjectId> block =
      make_block(drawing.database(), name.substr(0, 2), AcGePoint3d::kOrigin);
  if (!block) return block.error();
  const auto copies = copy_entities(contents, *block);
  if (!copies) return copies.error();
  std::string text(drawing.bytes_of(stub));
  LensWriter(text, drawing.dialect())
      .set_text(kDimensionPart, 2, block_name(drawing, *block->stub()));
  ObjectAccess::replace_content(drawing.object(stub), std::move(text));
  return {};
}

}  // namespace

Result<std::vector<AcDbObjectId>> copy_entities(const std::vector<AcDbObjectId>& entities,
                                                AcDbObjectId into_block) {
  if (entities.empty()) return std::vector<AcDbObjectId>();
  for (const AcDbObjectId id : entities) {
    if (id.isNull()) return fail("", "there is no entity to copy");
    Stub& stub = *id.stub();
    Drawing& drawing = StubStore::drawing_of(stub);
    if (&drawing != &StubStore::drawing_of(*entities.front().stub())) {
      return fail(described(stub), "belongs to another drawing than the entities before it");
    }
    if (stub.erased()) return fail(described(stub), "is erased");
    const std::string_view kind = record_kind(id);
    if (!is_entity(id) || kind == "BLOCK" || kind == "ENDBLK")
      return fail(described(stub), "is not an entity");
    if (drawing.is_sub_entity(stub)) {
      return fail(described(stub), "is a part of another entity: copy that one");
    }
  }
  Drawing& drawing = StubStore::drawing_of(*entities.front().stub());
  Drawing& to = into_block.isNull() ? drawing : StubStore::drawing_of(*into_block.stub());
  Cloner cloner(drawing, to);
  for (const AcDbObjectId id : entities) {
    const std::optional<ClonePlace> place = place_for(to, into_block.stub(), *id.stub());
    if (!place) return fail(described(*id.stub()), "the block it should be copied into is missing");
    if (place->begin && &to != &drawing)
      cloner.set_block_made(Lens(to.bytes_of(*place->begin), to.dialect()).text(kBlockBegin, 2));
    const std::size_t end = cloner.new_place();
    cloner.set_place(end, *place);
    cloner.add_entity(*id.stub(), end);
  }
  if (Status found = cloner.complete(); !found) return found.error();
  std::vector<AcDbObjectId> copies = cloner.run();
  if (&to != &drawing) return copies;
  for (const AcDbObjectId copy : copies) {
    if (record_kind(copy) != "DIMENSION") continue;
    if (const Status status = copy_dimension_block(drawing, copy); !status) return status.error();
  }
  return copies;
}

Result<AcDbObjectId> copy_entity(AcDbObjectId entity, AcDbObjectId into_block) {
  auto copies = copy_entities({entity}, into_block);
  if (!copies) return copies.error();
  return copies->front();
}

}  // namespace cad
