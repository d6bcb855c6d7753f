// Making the copies that were found.

#include "host/db/cloner.h"

#include <utility>

#include "host/db/block_frame.h"
#include "host/db/clone_spelling.h"
#include "host/db/dictionary.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/named_objects.h"
#include "host/db/object_access.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

using dxf::Section;

constexpr std::string_view kEntityPart = "AcDbEntity";
constexpr std::string_view kBlocks = "BLOCK_RECORD";

void adopt(Drawing& drawing, Stub& stub, std::string tags) {
  AcDbObject* object = drawing.class_of(stub).make({});
  ObjectAccess::attach(*object, stub);
  ObjectAccess::adopt(*object, stub, std::move(tags));
}

}  // namespace

std::vector<AcDbObjectId> Cloner::run() {
  if (!within_) {
    make_records();
    make_blocks();
  }
  for (Place& place : places_) {
    const Stub* const begin = place.where.begin;
    place.target = begin ? to_.block_of(begin->owner) : nullptr;
    const bool is_other = place.target && &to_.stub_at(place.target->begin) != begin;
    if (begin && (!place.target || is_other)) place.target = to_.block_at(*begin);
  }
  for (Item& item : items_)
    if (item.role != Role::kRecord && item.role != Role::kOfBlock) make_stub(item);
  if (!within_) write_blocks();
  std::vector<AcDbObjectId> made;
  for (Item& item : items_) {
    if (item.role == Role::kOfBlock) continue;
    write(item);
    const bool was_added = item.role == Role::kEntity && places_[item.place].block == kNone;
    if (was_added) made.push_back(AcDbObjectId(item.copy));
  }
  return made;
}

Stub& Cloner::new_stub(const Stub& source, std::string_view kind, std::uint64_t owner,
                       Section section, std::uint64_t anchor) {
  Stub& stub = to_.new_stub(kind_now(kind), owner, section, anchor);
  stand_for(source, stub);
  return stub;
}

void Cloner::make_records() {
  // Names that the source uses without defining them; complete() has checked them.
  for (const std::wstring& name : fresh_layers_)
    [[maybe_unused]] const auto layer = ensure_layer(to_.database(), name);
  for (const std::wstring& name : fresh_applications_)
    [[maybe_unused]] const auto application = register_application(to_.database(), name);
  for (Item& item : items_) {
    if (item.role != Role::kRecord) continue;
    const std::string_view kind = from_.kind_name(*item.source);
    Drawing::Table& table = *to_.table(kind);
    item.copy_owner = to_.stub_at(table.stub).handle;
    item.copy = &new_stub(*item.source, kind, item.copy_owner, Section::kTables, table.end);
    const int name_code = 2;
    std::wstring name;
    dxf::Tag tag;
    for (dxf::TagReader tags(from_.bytes_of(*item.source), from_.dialect()); tags.next(tag);) {
      if (tag.code != name_code) continue;
      name = dxf::text_value(tag, from_.dialect());
      break;
    }
    to_.add_to_table(table, *item.copy, name);
  }
}

void Cloner::make_blocks() {
  for (const std::size_t index : block_order_) make_block(block_plans_[index]);
  for (auto& [key, block] : references_.blocks) {
    const auto plan = plan_by_name_.find(key);
    if (plan == plan_by_name_.end()) continue;
    const Stub* record = block_plans_[plan->second].copy_record;
    block.record = record ? record->handle : 0;
  }
}

/// Record and frame; what they hold is written when all handles are known.
void Cloner::make_block(BlockPlan& plan) {
  Drawing::Table* table = to_.table(kBlocks);
  ClonePlace& place = places_[plan.place].where;
  if (!plan.source) {
    Stub& made = add_empty_block(to_, plan.name, AcGePoint3d::kOrigin, 0);
    if (table) plan.copy_record = &made;
    return;
  }
  if (table && plan.record) {
    const std::uint64_t owner = to_.stub_at(table->stub).handle;
    plan.copy_record = &new_stub(*plan.record, kBlocks, owner, Section::kTables, table->end);
    to_.add_to_table(*table, *plan.copy_record, plan.name);
  } else if (table) {
    plan.copy_record = &add_block_record(to_, plan.name);
  }
  const std::uint64_t anchor = to_.section_end(Section::kBlocks);
  const std::uint64_t owner = plan.copy_record ? plan.copy_record->handle : 0;
  plan.copy_begin =
      &new_stub(from_.stub_at(plan.source->begin), "BLOCK", owner, Section::kBlocks, anchor);
  plan.copy_end =
      &new_stub(from_.stub_at(plan.source->end), "ENDBLK", owner, Section::kBlocks, anchor);
  to_.add_block(*plan.copy_begin, *plan.copy_end);
  place = {owner, Section::kBlocks, anchor, plan.copy_begin};
}

void Cloner::write_blocks() {
  for (BlockPlan& plan : block_plans_) {
    if (!plan.source) continue;
    const std::uint64_t owner = places_[plan.place].where.owner;
    if (plan.copy_record && plan.record) {
      const Stub& table = to_.stub_at(to_.table(kBlocks)->stub);
      std::string text = respelled(*plan.record, *plan.copy_record, table.handle);
      LensWriter(text, to_.dialect()).set_text("AcDbBlockTableRecord", 2, plan.name);
      adopt(to_, *plan.copy_record, std::move(text));
    }
    adopt(to_, *plan.copy_begin,
          respelled(from_.stub_at(plan.source->begin), *plan.copy_begin, owner));
    adopt(to_, *plan.copy_end, respelled(from_.stub_at(plan.source->end), *plan.copy_end, owner));
  }
}

void Cloner::make_stub(Item& item) {
  if (item.role == Role::kObject || item.role == Role::kFiled) {
    const std::uint64_t anchor = to_.section_end(Section::kObjects);
    if (item.role == Role::kFiled) {
      const std::span<const std::wstring> keys = item.keys;
      const Stub* dictionary = ensure_dictionary(to_, keys.first(keys.size() - 1));
      item.copy_owner = dictionary ? dictionary->handle : 0;
    } else {
      item.copy_owner = references_.handle(item.owner);
    }
    item.copy = &new_stub(*item.source, kind_of(item), item.copy_owner, Section::kObjects, anchor);
    return;
  }
  const Place& place = places_[item.place];
  item.copy_owner = place.where.owner;
  if (item.role == Role::kPart) {
    const Item& main = items_[item.main];
    const bool owned = within_ ? item.source->owner == main.source->handle : place.where.owner != 0;
    if (owned) item.copy_owner = main.copy->handle;
  }
  const ClonePlace& where = place.where;
  if (item.role == Role::kPart && !item.stand_in.kind.empty()) {  // nothing refers to it
    item.copy = &to_.new_stub(item.stand_in.kind, item.copy_owner, where.section, where.anchor);
  } else {
    item.copy =
        &new_stub(*item.source, kind_of(item), item.copy_owner, where.section, where.anchor);
  }
  const std::size_t index = StubStore::index_of(*item.copy);
  if (place.target) {
    place.target->added.push_back(index);
  } else {
    to_.add_to_space(index);
  }
}

void Cloner::write(Item& item) {
  if (within_) {
    std::string text = spell_copy(to_, *item.source, *item.copy, item.copy_owner, references_);
    if (item.role == Role::kEntity) put_space(item, text);
    return adopt(to_, *item.copy, std::move(text));
  }
  const std::uint64_t reactor = item.role == Role::kFiled ? item.copy_owner : 0;
  declare_class(*item.source, *item.copy);
  std::string text = respell_copy(from_, {kind_of(item), bytes_of(item)}, to_, *item.copy,
                                  item.copy_owner, reactor, references_);
  if (item.role == Role::kEntity) put_space(item, text);
  adopt(to_, *item.copy, std::move(text));
  if (item.role == Role::kFiled) file(item);
}

void Cloner::file(const Item& item) {
  Stub* dictionary = to_.find(item.copy_owner);
  if (!dictionary) return;
  if (auto* opened = AcDbDictionary::cast(&to_.object(*dictionary)))
    ObjectAccess::file_entry(*opened, item.keys.back(), item.copy->handle);
}

std::string Cloner::respelled(const Stub& source, const Stub& copy, std::uint64_t owner) {
  return respell_copy(from_, {from_.kind_name(source), from_.bytes_of(source)}, to_, copy, owner, 0,
                      references_);
}

/// Kinds that the format lacks, and what proxies stand for, are declared in the drawing.
void Cloner::declare_class(const Stub& source, const Stub& copy) {
  if (!to_.dialect().has_dictionaries()) return;
  const auto& classes = from_.classes();
  if (classes.empty()) return;
  const std::string_view kind = from_.kind_name(source);
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (classes[i].kind != kind) continue;
    to_.declare_class(classes[i], from_.dialect(), copy);
    break;
  }
  if (kind != "ACAD_PROXY_ENTITY" && kind != "ACAD_PROXY_OBJECT") return;
  constexpr std::int64_t kFirstClass = 500;
  const Lens lens(from_.bytes_of(source), from_.dialect());
  const std::string_view part = kind == "ACAD_PROXY_ENTITY" ? "AcDbProxyEntity" : "AcDbProxyObject";
  const std::int64_t place = lens.integer(part, 91, 0) - kFirstClass;
  if (place < 0 || place >= static_cast<std::int64_t>(classes.size())) return;
  const auto index = static_cast<std::size_t>(place);
  references_.classes[index] = to_.declare_class(classes[index], from_.dialect(), copy);
}

/// What an entity says of the space it is in, where the copy is in another.
void Cloner::put_space(const Item& item, std::string& text) const {
  const ClonePlace& place = places_[item.place].where;
  const bool stays = within_ && place.owner == item.source->owner;
  if (stays) return;
  const dxf::Dialect& dialect = to_.dialect();
  LensWriter writer(text, dialect);
  for (const int code : {410, 67})
    if (const auto old = Lens(text, dialect).find(kEntityPart, code))
      writer.remove(old->begin, old->end);
  const Stub* paper = to_.table_record(kBlocks, L"*Paper_Space");
  if (place.begin || !paper || paper->handle != place.owner) return;
  const auto layer = Lens(text, dialect).find(kEntityPart, 8);
  std::string flag;
  dxf::TagWriter(flag, dialect).integer(67, 1);
  if (layer) writer.insert(layer->begin, flag);
}

}  // namespace cad
