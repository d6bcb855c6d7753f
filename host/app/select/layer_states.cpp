#include "host/app/select/layer_states.h"

#include "host/db/entity_fields.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/symbol_table.h"

namespace cad {

std::uint32_t LayerStates::number_of(AcDbObjectId entity) {
  const RecordTags record = record_tags(entity);
  std::string_view bytes = "0";
  std::wstring name = L"0";
  OwnTags tags(record.bytes, *record.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code != 8) continue;
    bytes = tag.value;
    break;
  }
  const auto found = numbers_.find(std::string(bytes));
  if (found != numbers_.end()) return found->second;
  if (tag.code == 8) name = dxf::text_value(tag, *record.dialect);
  const auto number = static_cast<std::uint32_t>(names_.size());
  numbers_.emplace(bytes, number);
  states_.push_back(read(name));
  names_.push_back(std::move(name));
  return number;
}

void LayerStates::refresh() {
  for (std::size_t i = 0; i < names_.size(); ++i) states_[i] = read(names_[i]);
}

LayerStates::State LayerStates::read(const std::wstring& name) const {
  State state;
  AcDbLayerTable* table = nullptr;
  if (database_.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return state;
  AcDbObjectId id;
  AcDbLayerTableRecord* layer = nullptr;
  if (table->getAt(name.c_str(), id) == Acad::eOk &&
      acdbOpenObject(layer, id, AcDb::kForRead) == Acad::eOk) {
    state.locked = layer->isLocked();
    state.frozen = layer->isFrozen();
    state.hidden = state.frozen || layer->isOff();
    layer->close();
  }
  table->close();
  return state;
}

}  // namespace cad
