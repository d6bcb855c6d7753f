// Symbol tables, blocks and the order of entities.

#include <algorithm>

#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

/// Value of a record's first group 2 outside of {...} groups: its symbol name.
std::wstring record_name(std::string_view bytes, const dxf::Dialect& dialect) {
  dxf::TagReader tags(bytes, dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 2) return dxf::text_value(tag, dialect);
  }
  return {};
}

}  // namespace

Drawing::Table* Drawing::table(std::string_view name) {
  for (Table& table : tables_) {
    if (table.name == name) return &table;
  }
  return nullptr;
}

Drawing::Table* Drawing::table_of(const Stub& stub) {
  const std::size_t index = StubStore::index_of(stub);
  for (Table& table : tables_) {
    if (table.stub == index) return &table;
  }
  return nullptr;
}

std::vector<std::size_t> Drawing::table_records(const Table& table) {
  std::vector<std::size_t> records;
  const auto keep = [&](std::size_t index) {
    if (!stubs_[index].erased()) records.push_back(index);
  };
  for (std::size_t i = table.stub + 1; i < table.end_stub; ++i) keep(i);
  for (const std::size_t i : table.added) keep(i);
  return records;
}

void Drawing::add_to_table(Table& table, const Stub& record, std::wstring_view name) {
  const std::size_t index = StubStore::index_of(record);
  table.added.push_back(index);
  const auto names = table_names_.find(table.name);
  // The name may be that of an erased record.
  if (names != table_names_.end()) names->second.insert_or_assign(std::wstring(name), index);
  if (table.name == "LAYER") locked_layers_.reset();
  if (table.name == "BLOCK_RECORD") model_space_.reset();
  current_properties_.reset();
}

const Drawing::CurrentProperties& Drawing::current_properties() {
  if (current_properties_) return *current_properties_;
  CurrentProperties now;
  const auto named = [&](std::string_view variable) { return database_.header_value(variable); };
  now.layer = table_record("LAYER", named("$CLAYER"));
  now.tile_mode = wtoi(named("$TILEMODE").empty() ? L"1" : named("$TILEMODE")) != 0;
  if (const std::wstring color = named("$CECOLOR"); !color.empty()) now.color = wtoi(color);
  const std::wstring style = folded(named("$TEXTSTYLE")), line = folded(named("$CELTYPE"));
  now.standard = table_record("STYLE", L"Standard");
  if (style != L"standard") now.style = table_record("STYLE", style);
  if (line != L"bylayer") now.linetype = table_record("LTYPE", line);
  return current_properties_.emplace(now);
}

void Drawing::table_changed(std::string_view table) {
  current_properties_.reset();
  const auto found = table_names_.find(table);
  if (found != table_names_.end()) table_names_.erase(found);
  if (table == "LAYER") locked_layers_.reset();
  if (table != "BLOCK_RECORD") return;
  blocks_by_record_known_ = false;
  model_space_.reset();
}

void Drawing::record_turned(const Stub& stub) {
  const Stub* owner = find(stub.owner);
  const Table* table = owner ? table_of(*owner) : nullptr;
  table_changed(table ? table->name : kind_name(stub));
}

Stub* Drawing::table_record(std::string_view table_name, std::wstring_view name) {
  auto names = table_names_.find(table_name);
  if (names == table_names_.end()) {
    names = table_names_.emplace(table_name, TableNames()).first;
    for (const Table& table : tables_) {
      if (table.name != table_name) continue;
      for (const std::size_t index : table_records(table)) {
        const auto bytes = bytes_of(stubs_[index]);
        names->second.try_emplace(record_name(bytes, dialect_), index);
      }
    }
  }
  const auto found = names->second.find(name);
  if (found == names->second.end()) return nullptr;
  Stub& stub = stubs_[found->second];
  return stub.erased() ? nullptr : &stub;
}

Stub* Drawing::erased_record(const Table& table, std::wstring_view name) {
  const auto matches = [&](std::size_t index) {
    const Stub& stub = stubs_[index];
    return stub.erased() && equal_no_case(record_name(bytes_of(stub), dialect_), name);
  };
  for (std::size_t i = table.stub + 1; i < table.end_stub; ++i) {
    if (matches(i)) return &stubs_[i];
  }
  for (const std::size_t i : table.added) {
    if (matches(i)) return &stubs_[i];
  }
  return nullptr;
}

Drawing::Block* Drawing::block_of(std::uint64_t block_record) {
  if (!blocks_by_record_known_) {
    blocks_by_record_known_ = true;
    block_by_record_.clear();
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      block_by_record_.try_emplace(stubs_[blocks_[i].begin].owner, i);
    }
    block_by_record_.erase(0);
  }
  const auto found = block_by_record_.find(block_record);
  return found == block_by_record_.end() ? nullptr : &blocks_[found->second];
}

Drawing::Block* Drawing::block_at(const Stub& begin) {
  const std::size_t index = StubStore::index_of(begin);
  for (Block& block : blocks_)
    if (block.begin == index) return &block;
  return nullptr;
}

Drawing::Block* Drawing::block_named(std::wstring_view name) {
  if (const Stub* record = table_record("BLOCK_RECORD", name)) return block_of(record->handle);
  if (table("BLOCK_RECORD")) return nullptr;
  for (Block& block : blocks_) {
    const Stub& begin = stubs_[block.begin];
    if (!begin.erased() && equal_no_case(record_name(bytes_of(begin), dialect_), name))
      return &block;
  }
  return nullptr;
}

void Drawing::add_block(const Stub& begin, const Stub& end) {
  Block block;
  block.begin = StubStore::index_of(begin);
  block.end = StubStore::index_of(end);
  block.end_offset = end.begin;
  blocks_.push_back(std::move(block));
  if (blocks_by_record_known_ && begin.owner != 0)
    block_by_record_.try_emplace(begin.owner, blocks_.size() - 1);
}

std::uint64_t Drawing::space_of(const Stub& stub) const {
  if (stub.owner != 0) return stub.owner;
  // R13 and R14 leave the owner out; the frame's 67 tells paper from model space.
  Drawing& self = const_cast<Drawing&>(*this);
  const Lens lens(bytes_of(stub), dialect_);
  const bool paper = lens.integer("AcDbEntity", 67, 0) == 1;
  const Stub* record = self.table_record("BLOCK_RECORD", paper ? L"*Paper_Space" : L"*Model_Space");
  return record ? record->handle : 0;
}

std::uint64_t Drawing::model_space() {
  if (!model_space_) {
    const Stub* record = table_record("BLOCK_RECORD", L"*Model_Space");
    model_space_ = record ? record->handle : 0;
  }
  return *model_space_;
}

bool Drawing::is_space(std::uint64_t block_record) {
  if (block_record != 0 && block_record == model_space()) return true;
  const Stub* paper = table_record("BLOCK_RECORD", L"*Paper_Space");
  return paper && paper->handle == block_record;
}

Stub* Drawing::skip_to_entity(std::size_t index, std::size_t end) {
  for (; index < end; ++index) {
    if (!stubs_[index].erased()) return &stubs_[index];
  }
  return nullptr;
}

Stub* Drawing::added_behind(const std::vector<std::size_t>& added, std::size_t index) {
  auto next = std::upper_bound(added.begin(), added.end(), index);
  while (next != added.end() && stubs_[*next].erased()) ++next;
  return next == added.end() ? nullptr : &stubs_[*next];
}

Stub* Drawing::first_entity() {
  if (const SectionSpan* span = section(dxf::Section::kEntities)) {
    if (Stub* stub = skip_to_entity(span->first_stub, span->end_stub)) return stub;
  }
  return added_behind(added_entities_, 0);
}

Stub* Drawing::last_entity() {
  for (auto added = added_entities_.rbegin(); added != added_entities_.rend(); ++added) {
    const Stub& stub = stubs_[*added];
    if (!stub.erased() && !is_sub_entity(stub)) return &stubs_[*added];
  }
  const SectionSpan* span = section(dxf::Section::kEntities);
  if (!span) return nullptr;
  for (std::size_t i = span->end_stub; i > span->first_stub; --i) {
    Stub& stub = stubs_[i - 1];
    if (!stub.erased() && !is_sub_entity(stub)) return &stub;
  }
  return nullptr;
}

bool Drawing::is_sub_entity(const Stub& stub) const {
  const std::string_view kind = kind_name(stub);
  return kind == "VERTEX" || kind == "ATTRIB" || kind == "SEQEND";
}

bool Drawing::is_frame(const Stub& stub) const {
  const std::string_view kind = kind_name(stub);
  return stub.section == dxf::Section::kTables
             ? kind == "TABLE"
             : stub.section == dxf::Section::kBlocks && (kind == "BLOCK" || kind == "ENDBLK");
}

Stub* Drawing::entity_behind(const Stub& stub) {
  const std::size_t index = StubStore::index_of(stub);
  if (stub.section == dxf::Section::kBlocks) {
    for (const Block& block : blocks_) {
      if (index < block.begin || index >= block.end) continue;
      if (Stub* next = skip_to_entity(index + 1, block.end)) return next;
      return added_behind(block.added, 0);
    }
    for (const Block& block : blocks_) {
      if (std::binary_search(block.added.begin(), block.added.end(), index)) {
        return added_behind(block.added, index);
      }
    }
    return nullptr;
  }
  const SectionSpan* span = section(dxf::Section::kEntities);
  if (span && index >= span->first_stub && index < span->end_stub) {
    if (Stub* next = skip_to_entity(index + 1, span->end_stub)) return next;
    return added_behind(added_entities_, 0);
  }
  return added_behind(added_entities_, index);
}

Stub* Drawing::first_in_block(std::uint64_t block_record) {
  if (is_space(block_record)) {
    for (Stub* stub = first_entity(); stub; stub = entity_behind(*stub)) {
      if (!is_sub_entity(*stub) && space_of(*stub) == block_record) return stub;
    }
  }
  const Block* block = block_of(block_record);
  if (!block) return nullptr;
  Stub* first = first_in(*block);
  return first && is_sub_entity(*first) ? next_in_block(block_record, *first) : first;
}

Stub* Drawing::first_in(const Block& block) {
  Stub* first = skip_to_entity(block.begin + 1, block.end);
  return first ? first : added_behind(block.added, 0);
}

Stub* Drawing::next_in_block(std::uint64_t block_record, const Stub& stub) {
  const bool space = stub.section == dxf::Section::kEntities;
  Stub* next = entity_behind(stub);
  while (next && (is_sub_entity(*next) || (space && space_of(*next) != block_record))) {
    next = entity_behind(*next);
  }
  return next;
}

std::vector<Stub*> Drawing::sub_entities(const Stub& main) {
  std::vector<Stub*> found;
  const std::string_view kind = kind_name(main);
  if (kind != "POLYLINE" && kind != "INSERT") return found;
  const bool is_new = main.has(Stub::kNew);
  for (std::size_t i = StubStore::index_of(main) + 1; i < stubs_.size(); ++i) {
    Stub& stub = stubs_[i];
    if (stub.section != main.section || stub.has(Stub::kNew) != is_new || !is_sub_entity(stub))
      break;
    if (is_new && stub.owner != 0 && stub.owner != main.handle) break;
    found.push_back(&stub);
    if (kind_name(stub) == "SEQEND") break;
  }
  return found;
}

}  // namespace cad
