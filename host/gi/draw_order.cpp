#include "host/gi/draw_order.h"

#include <algorithm>
#include <unordered_map>

#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/db/lens.h"

namespace cad {
namespace {

using Orders = std::unordered_map<std::uint64_t, std::uint64_t>;  // by an entity's handle

/// The object that a dictionary files under `key`; null when there is none.
Stub* entry(Drawing& drawing, const Stub& dictionary, std::string_view key) {
  bool found = false;
  OwnTags tags(drawing.bytes_of(dictionary), drawing.dialect());
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 3) found = equal_no_case(tag.value, key);
    if (found && (tag.code == 350 || tag.code == 360)) return drawing.find(dxf::handle_value(tag));
  }
  return nullptr;
}

/// The extension dictionary of an object; null when there is none.
Stub* extension(Drawing& drawing, const Stub& object) {
  const std::string_view bytes = drawing.bytes_of(object);
  const auto group = Lens(bytes, drawing.dialect()).group("{ACAD_XDICTIONARY");
  if (!group) return nullptr;
  dxf::TagReader tags(bytes, drawing.dialect(), group->inside);
  dxf::Tag tag;
  return tags.next(tag) ? drawing.find(dxf::handle_value(tag)) : nullptr;
}

/// Pairs of an entity and the handle at whose place it is drawn.
Orders orders_of(Drawing& drawing, std::uint64_t block_record) {
  Orders orders;
  const Stub* const record = drawing.find(block_record);
  const Stub* const extras = record ? extension(drawing, *record) : nullptr;
  const Stub* const table = extras ? entry(drawing, *extras, "ACAD_SORTENTS") : nullptr;
  if (!table || drawing.kind_name(*table) != "SORTENTSTABLE") return orders;
  bool inside = false;  // in front of the class part, group 5 is the table's own handle
  std::uint64_t entity = 0;
  OwnTags tags(drawing.bytes_of(*table), drawing.dialect());
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 100) inside = true;
    if (!inside) continue;
    if (tag.code == 331) entity = dxf::handle_value(tag);
    if (tag.code == 5 && entity != 0) orders[entity] = dxf::handle_value(tag);
  }
  return orders;
}

}  // namespace

std::vector<AcDbObjectId> entities_in_draw_order(Drawing& drawing, std::uint64_t block_record) {
  std::vector<AcDbObjectId> entities;
  for (Stub* stub = drawing.first_in_block(block_record); stub;
       stub = drawing.next_in_block(block_record, *stub))
    entities.emplace_back(stub);
  const Orders orders = orders_of(drawing, block_record);
  if (orders.empty()) return entities;
  const auto place = [&](AcDbObjectId id) {
    const auto found = orders.find(id.handle());
    return found == orders.end() ? static_cast<std::uint64_t>(id.handle()) : found->second;
  };
  std::stable_sort(entities.begin(), entities.end(),
                   [&](AcDbObjectId a, AcDbObjectId b) { return place(a) < place(b); });
  return entities;
}

}  // namespace cad
