#include "host/db/copy_entity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/object_access.h"
#include "host/db/record.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

constexpr std::string_view kExtensionGroup = "{ACAD_XDICTIONARY";
constexpr std::string_view kReactorGroup = "{ACAD_REACTORS";
constexpr std::string_view kEntityPart = "AcDbEntity";
constexpr std::string_view kDimensionPart = "AcDbDimension";

std::string described(const Stub& stub) {
  std::string text(StubStore::drawing_of(stub).kind_name(stub));
  text += " ";
  append_handle(text, stub.handle);
  return text;
}

/// Handles of these groups follow what they name; 320 to 329 stay as they are by definition.
bool is_translated(int code) {
  return dxf::value_type(code) == dxf::ValueType::kHandle && code != 5 && code != 105 &&
         (code < 320 || code > 329);
}

bool is_owning(int code) { return code >= 350 && code <= 369; }

/// Where copies go: the end of a space or of a block.
struct Place {
  std::uint64_t owner = 0;
  dxf::Section section = dxf::Section::kEntities;
  std::uint64_t anchor = 0;
  Drawing::Block* block = nullptr;  // null for a space
};

std::optional<Place> place_in(Drawing& drawing, const Stub* block, const Stub& copied) {
  const bool r12_block = block && drawing.kind_name(*block) == "BLOCK";
  const bool beside = !block || (!r12_block && drawing.class_of(*block).entity);
  const Stub& source = beside && block ? *block : copied;
  const std::uint64_t owner = beside ? source.owner : r12_block ? block->owner : block->handle;
  Place place;
  place.owner = owner;
  const bool space = owner == 0 ? !r12_block && source.section == dxf::Section::kEntities
                                : drawing.is_space(owner);
  if (space) {
    place.anchor = drawing.section_end(dxf::Section::kEntities);
    return place;
  }
  place.section = dxf::Section::kBlocks;
  place.block = r12_block ? drawing.block_at(*block) : drawing.block_of(owner);
  if (!place.block) return std::nullopt;
  place.anchor = place.block->end_offset;
  return place;
}

/// One run of copying: first everything that is copied gets its new handle, then it is written.
class Copier {
 public:
  explicit Copier(Drawing& drawing) : drawing_(drawing) {}

  Status add(Stub& entity, const Stub* block) {
    const std::optional<Place> place = place_in(drawing_, block, entity);
    if (!place) return fail(described(entity), "the block it should be copied into is missing");
    items_.push_back({&entity, *place, 0});
    for (Stub* part : drawing_.sub_entities(entity)) {
      if (!part->erased()) items_.push_back({part, *place, entity.handle});
    }
    return {};
  }

  /// The copies of what was added, in that order, parts left out.
  std::vector<AcDbObjectId> run() {
    const std::size_t graphics = items_.size();
    for (std::size_t i = 0; i < items_.size(); ++i) add_owned(*items_[i].source);
    for (std::size_t i = 0; i < items_.size(); ++i) make_stub(items_[i], i < graphics);
    std::vector<AcDbObjectId> made;
    for (Item& item : items_) {
      write(item);
      if (item.main == 0 && item.is_graphic) made.push_back(AcDbObjectId(item.copy));
    }
    return made;
  }

 private:
  struct Item {
    Stub* source;
    Place place;
    std::uint64_t main;  ///< handle of the entity it is a part of, or 0
    Stub* copy = nullptr;
    bool is_graphic = false;
  };

  /// The extension dictionary, the entries of dictionaries, and what else an object owns.
  void add_owned(const Stub& source) {
    dxf::TagReader tags(drawing_.bytes_of(source), drawing_.dialect());
    dxf::Tag tag;
    bool extension = false;
    while (tags.next(tag)) {
      if (tag.code == 102) extension = tag.value == kExtensionGroup;
      if (!is_owning(tag.code)) continue;
      Stub* owned = drawing_.find(dxf::handle_value(tag));
      if (!owned || owned->erased() || owned->section != dxf::Section::kObjects) continue;
      if (!extension && owned->owner != source.handle) continue;
      if (!listed_.emplace(owned->handle, true).second) continue;
      Place place;
      place.owner = source.handle;
      place.section = dxf::Section::kObjects;
      items_.push_back({owned, place, 0});
    }
  }

  void make_stub(Item& item, bool graphic) {
    item.is_graphic = graphic;
    if (!graphic) {
      item.place.anchor = drawing_.section_end(dxf::Section::kObjects);
      item.place.owner = translated(item.place.owner);
    } else if (item.main != 0 && item.source->owner == item.main) {
      item.place.owner = translated(item.main);
    }
    Stub& stub = drawing_.new_stub(drawing_.kind_name(*item.source), item.place.owner,
                                   item.place.section, item.place.anchor);
    item.copy = &stub;
    if (item.source->handle != 0) copies_.emplace(item.source->handle, stub.handle);
    if (!graphic) return;
    if (item.place.block) {
      item.place.block->added.push_back(StubStore::index_of(stub));
    } else {
      drawing_.add_to_space(StubStore::index_of(stub));
    }
  }

  std::uint64_t translated(std::uint64_t handle) const {
    const auto found = copies_.find(handle);
    return found == copies_.end() ? handle : found->second;
  }
  bool is_copied(std::uint64_t handle) const { return copies_.contains(handle); }

  void write(Item& item) {
    std::string text = spelled(item);
    if (item.is_graphic) put_space(item, text);
    AcDbObject* object = drawing_.class_of(*item.copy).make({});
    ObjectAccess::attach(*object, *item.copy);
    ObjectAccess::adopt(*object, *item.copy, std::move(text));
  }

  std::string spelled(const Item& item) const {
    const std::string_view bytes = drawing_.bytes_of(*item.source);
    std::string out;
    out.reserve(bytes.size() + 16);
    dxf::TagWriter writer(out, drawing_.dialect());
    dxf::TagReader tags(bytes, drawing_.dialect());
    dxf::Tag tag;
    bool in_frame = true;
    bool has_handle = false, has_owner = false;
    while (tags.next(tag)) {
      if (tag.code == 100 || tag.code >= 1000) in_frame = false;
      if (in_frame && tag.code == 102 &&
          (tag.value == kExtensionGroup || tag.value == kReactorGroup)) {
        copy_group(tag, tags, bytes, out);
      } else if (in_frame && !has_handle && tag.code == 5) {
        has_handle = true;
        writer.handle(5, item.copy->handle);
      } else if (in_frame && !has_owner && tag.code == 330) {
        has_owner = true;
        writer.handle(330, item.place.owner);
      } else if (is_translated(tag.code) && is_copied(dxf::handle_value(tag))) {
        writer.handle(tag.code, translated(dxf::handle_value(tag)));
      } else {
        out += bytes.substr(tag.begin, tag.end - tag.begin);
      }
    }
    return out;
  }

  /// Of a group in braces, the references to what is copied; without any, nothing.
  void copy_group(const dxf::Tag& opening, dxf::TagReader& tags, std::string_view bytes,
                  std::string& out) const {
    std::string group(bytes.substr(opening.begin, opening.end - opening.begin));
    dxf::TagWriter writer(group, drawing_.dialect());
    bool any = false;
    dxf::Tag tag;
    while (tags.next(tag) && tag.code != 102) {
      const std::uint64_t handle = dxf::handle_value(tag);
      if (!is_copied(handle)) continue;
      any = true;
      writer.handle(tag.code, translated(handle));
    }
    if (!any) return;
    group += bytes.substr(tag.begin, tag.end - tag.begin);
    out += group;
  }

  /// What an entity says of the space it is in, where the copy is in another.
  void put_space(const Item& item, std::string& text) const {
    if (item.main != 0 || item.place.owner == item.source->owner) return;
    LensWriter writer(text, drawing_.dialect());
    for (const int code : {410, 67}) {
      if (const auto old = Lens(text, drawing_.dialect()).find(kEntityPart, code)) {
        writer.remove(old->begin, old->end);
      }
    }
    const Stub* paper = drawing_.table_record("BLOCK_RECORD", L"*Paper_Space");
    if (item.place.block || !paper || paper->handle != item.place.owner) return;
    const auto layer = Lens(text, drawing_.dialect()).find(kEntityPart, 8);
    std::string flag;
    dxf::TagWriter(flag, drawing_.dialect()).integer(67, 1);
    if (layer) writer.insert(layer->begin, flag);
  }

  Drawing& drawing_;
  std::vector<Item> items_;
  std::unordered_map<std::uint64_t, bool> listed_;
  std::unordered_map<std::uint64_t, std::uint64_t> copies_;
};

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
    if (!is_entity(id) || drawing.is_frame(stub)) return fail(described(stub), "is not an entity");
    if (drawing.is_sub_entity(stub)) {
      return fail(described(stub), "is a part of another entity: copy that one");
    }
  }
  Drawing& drawing = StubStore::drawing_of(*entities.front().stub());
  Copier copier(drawing);
  for (const AcDbObjectId id : entities) {
    if (const Status status = copier.add(*id.stub(), into_block.stub()); !status) {
      return status.error();
    }
  }
  std::vector<AcDbObjectId> copies = copier.run();
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
