// Finding what comes along with copied entities.

#include <algorithm>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/base/quoted.h"
#include "host/db/block_frame.h"
#include "host/db/clone_spelling.h"
#include "host/db/cloner.h"
#include "host/db/kind_table.h"
#include "host/db/lens.h"
#include "host/db/make_object.h"
#include "host/db/name_groups.h"
#include "host/db/named_objects.h"

namespace cad {
namespace {

constexpr std::string_view kExtensionGroup = "{ACAD_XDICTIONARY";
constexpr std::string_view kBlocks = "BLOCK_RECORD";

bool is_owning(int code) { return code >= 350 && code <= 369; }
/// Groups whose object has to be there: hard pointers, plot styles, materials.
bool is_needing(int code) {
  return (code >= 340 && code <= 349) || (code >= 390 && code <= 399) || code == 480 || code == 481;
}

/// Names that mean something without a record.
bool is_always_there(std::wstring_view name) {
  const std::wstring own = folded(name);
  return own == L"bylayer" || own == L"byblock" || own == L"continuous" || own == L"standard";
}

/// Objects of which a drawing has its own: references lead to those, or nowhere.
bool never_comes(std::string_view kind) {
  constexpr std::string_view kKinds[] = {"LAYOUT", "PLOTSETTINGS", "GROUP", "DICTIONARY",
                                         "ACDBDICTIONARYWDFLT"};
  return std::find(std::begin(kKinds), std::end(kKinds), kind) != std::end(kKinds);
}

std::string_view name_part(std::string_view table) {
  constexpr std::pair<std::string_view, std::string_view> kParts[] = {
      {"LAYER", "AcDbLayerTableRecord"},    {"STYLE", "AcDbTextStyleTableRecord"},
      {"LTYPE", "AcDbLinetypeTableRecord"}, {"APPID", "AcDbRegAppTableRecord"},
      {kBlocks, "AcDbBlockTableRecord"},    {"DIMSTYLE", "AcDbDimStyleTableRecord"},
      {"UCS", "AcDbUCSTableRecord"},        {"VIEW", "AcDbViewTableRecord"},
      {"VPORT", "AcDbViewportTableRecord"}};
  for (const auto& [name, part] : kParts)
    if (name == table) return part;
  return {};
}

std::wstring name_of(Drawing& drawing, const Stub& record, std::string_view table) {
  return Lens(drawing.bytes_of(record), drawing.dialect()).text(name_part(table), 2);
}

/// The file a text style without name takes its shapes from.
std::wstring shape_file(Drawing& drawing, const Stub& style) {
  return Lens(drawing.bytes_of(style), drawing.dialect()).text(name_part("STYLE"), 3);
}

std::string described(Drawing& drawing, const Stub& stub) {
  std::string text = excerpt(drawing.kind_name(stub));
  text += " ";
  append_handle(text, stub.handle);
  return text;
}

}  // namespace

std::optional<ClonePlace> place_in_block(Drawing& drawing, const Stub& block) {
  const bool is_begin = drawing.kind_name(block) == "BLOCK";
  ClonePlace place;
  place.owner = is_begin ? block.owner : block.handle;
  if (!is_begin && drawing.is_space(place.owner)) {
    place.anchor = drawing.section_end(dxf::Section::kEntities);
    return place;
  }
  const Drawing::Block* found = is_begin ? drawing.block_at(block) : drawing.block_of(block.handle);
  if (!found) return std::nullopt;
  place.section = dxf::Section::kBlocks;
  place.anchor = found->end_offset;
  place.begin = &drawing.stub_at(found->begin);
  return place;
}

void Cloner::refuse(Acad::ErrorStatus status, std::string where, std::string what) {
  if (!status_) return;  // the first reason counts
  fault_ = status;
  status_ = fail(std::move(where), std::move(what));
}

void Cloner::add_entity(Stub& entity, std::size_t place) {
  const std::string_view kind = from_.kind_name(entity);
  if (kind == "BLOCK" || kind == "ENDBLK") return;  // stray ones would end the block it goes to
  if (add_old_polyline(entity, place)) return;
  const std::size_t main = items_.size();
  items_.push_back({.source = &entity, .role = Role::kEntity, .place = place});
  for (Stub* part : from_.sub_entities(entity))
    if (!part->erased())
      items_.push_back({.source = part, .role = Role::kPart, .place = place, .main = main});
}

/// True where the receiving drawing has POLYLINEs only.
bool Cloner::add_old_polyline(Stub& entity, std::size_t place) {
  const bool too_new = !within_ && to_.dialect().release < dxf::Release::kR14;
  if (!too_new || from_.kind_name(entity) != "LWPOLYLINE") return false;
  const std::size_t main = items_.size();
  for (OldRecord& record : old_polyline(from_.bytes_of(entity), from_.dialect())) {
    const bool is_main = items_.size() == main;
    items_.push_back({.source = &entity,
                      .role = is_main ? Role::kEntity : Role::kPart,
                      .place = place,
                      .main = is_main ? kNone : main,
                      .stand_in = std::move(record)});
  }
  return true;
}

void Cloner::stand_for(const Stub& source, const Stub& copy) {
  if (!source.has(Stub::kStrayTwin)) references_.stand_for(source.handle, copy.handle);
}

void Cloner::add_extension(const Stub& owner) {
  if (!to_.dialect().has_dictionaries()) return;
  const std::string_view bytes = from_.bytes_of(owner);
  const auto group = Lens(bytes, from_.dialect()).group(kExtensionGroup);
  if (!group) return;
  dxf::TagReader tags(bytes.substr(0, group->closing), from_.dialect(), group->inside);
  for (dxf::Tag tag; tags.next(tag);) {
    Stub* found = from_.find(dxf::handle_value(tag));
    if (!found || found->erased() || found->section != dxf::Section::kObjects) continue;
    if (!known_objects_.insert(found->handle).second) continue;
    extension_ = found->handle;
    items_.push_back({.source = found, .role = Role::kObject, .owner = owner.handle});
  }
}

Status Cloner::complete() {
  if (!within_) {
    if (const Stub* zero = to_.table_record("LAYER", L"0"))
      if (const auto style = Lens(to_.bytes_of(*zero), to_.dialect()).find(name_part("LAYER"), 390))
        references_.plot_style = dxf::handle_value(*style);
    if (to_.dialect().release < dxf::Release::kR2000) references_.plot_style = 0;
  }
  for (std::size_t i = 0; i < items_.size() && status_; ++i) scan(i);
  if (status_ && !within_) order_blocks();
  if (!status_ || made_.empty()) return status_;
  for (const std::wstring& block : existing_blocks_)
    if (shows_made_block(block))
      refuse(
          Acad::eSelfReference, "block " + to_utf8(made_),
          "contains the block " + to_utf8(block) + ", which in this drawing contains it in turn");
  return status_;
}

/// Looks through the tags of an item for what it owns and needs.
void Cloner::scan(std::size_t index) {
  const Item item = items_[index];  // the list grows
  const std::string_view kind = kind_of(item);
  const bool is_graphic = item.role == Role::kEntity || item.role == Role::kPart;
  if (!within_) check_kind(item, is_graphic);
  if (kind == "SHAPE" && !within_) need_shape_styles();
  const dxf::Dialect& dialect = from_.dialect();
  const bool names_arrows = kind == "DIMSTYLE" && dialect.release < dxf::Release::kR2000;
  bool in_frame = true, is_extension = false;
  dxf::Tag tag;
  for (dxf::TagReader tags(bytes_of(item), dialect); tags.next(tag) && status_;) {
    if (tag.code == 100) in_frame = false;
    if (tag.code == 102) is_extension = in_frame && tag.value == kExtensionGroup;
    if (is_owning(tag.code) && add_owned(item, tag, is_extension)) continue;
    if (within_) continue;
    const dxf::ValueType type = dxf::value_type(tag.code);
    if (type == dxf::ValueType::kText) {
      const std::string_view table = named_table(kind, tag.code);
      if (!table.empty()) need_name(table, dxf::text_value(tag, dialect), kind, item.place);
    } else if (type == dxf::ValueType::kHandle) {
      if (names_arrows && tag.code == 5) {
        const std::wstring name = dxf::text_value(tag, dialect);
        if (!name.empty()) need_block(name, "DIMSTYLE", kNone);
      } else {
        scan_reference(item, kind, tag, is_extension);
      }
    }
    if (names_arrows && (tag.code == 6 || tag.code == 7) && !tag.value.empty())
      need_block(dxf::text_value(tag, dialect), "DIMSTYLE", kNone);
  }
}

void Cloner::scan_reference(const Item& item, std::string_view kind, const dxf::Tag& tag,
                            bool is_extension) {
  const bool in_data = tag.code == 1005;
  if (is_extension || !(in_data || is_needing(tag.code))) {
    // A soft reference brings nothing along, but leads to what the other drawing has.
    if (!is_translated(tag.code)) return;
    Stub* target = from_.find(dxf::handle_value(tag));
    if (target && target->section == dxf::Section::kTables) need_target(*target, true);
    return;
  }
  Stub* target = from_.find(dxf::handle_value(tag));
  if (!target || target->erased() || references_.has(target->handle)) return;
  const bool is_style = tag.code == 390 || tag.code == 348 || (tag.code == 347 && kind == "LAYER");
  if (target->section == dxf::Section::kTables) {
    need_target(*target, false);
  } else if (target->section == dxf::Section::kObjects && !in_data &&
             to_.dialect().has_dictionaries() && target != item.source) {
    need_object(*target, is_style);
  }
}

/// The extension dictionary, the entries of dictionaries, and what else an object owns.
bool Cloner::add_owned(const Item& item, const dxf::Tag& tag, bool is_extension) {
  Stub* owned = from_.find(dxf::handle_value(tag));
  if (!owned || owned->erased() || owned->section != dxf::Section::kObjects) return false;
  if (!is_extension && owned->owner != item.source->handle) return false;
  if (!to_.dialect().has_dictionaries()) return true;
  if (known_objects_.insert(owned->handle).second)
    items_.push_back({.source = owned, .role = Role::kObject, .owner = item.source->handle});
  return true;
}

/// What the drawing's release cannot hold, or no drawing of another form can.
void Cloner::check_kind(const Item& item, bool is_graphic) {
  const std::string_view kind = kind_now(kind_of(item));
  if (std::any_of(kind.begin(), kind.end(), [](char c) { return c >= 0 && c < ' '; }))
    return refuse(Acad::eNotApplicable, described(from_, *item.source),
                  "the name of its kind holds a control character");
  if (!is_graphic) return;
  const dxf::Release release = to_.dialect().release;
  if (release >= dxf::Release::kR2000 || kind == "SHAPE" || kind == "VIEWPORT") return;
  const KindRow* row = kind_row(kind);
  const dxf::Release since = row ? row->since : dxf::Release::kR13;
  if (release >= since) return;
  refuse(Acad::eNotApplicable, described(from_, *item.source),
         "needs a drawing of release " + std::string(dxf::release_name(since)) +
             " or newer; this one is " + std::string(dxf::release_name(release)));
}

void Cloner::check_name(std::string_view table, std::wstring_view name) {
  if (to_.has_long_names() || is_symbol_name(name, false) || is_anonymous_block(name)) return;
  refuse(Acad::eNotApplicable, std::string(table),
         "\"" + to_utf8(name) + "\" cannot be a name in a drawing of release " +
             std::string(dxf::release_name(to_.dialect().release)));
}

void Cloner::need_name(std::string_view table, std::wstring_view name, std::string_view kind,
                       std::size_t place) {
  if (table == kBlocks) {
    if (kind != "BLOCK") need_block(name, kind, place);
    return;
  }
  if (!known_names_.insert(missing_key(table, name)).second) return;
  Stub* record = source_record(table, name);
  if (record) return need_record(table, *record, name);
  if (to_.table_record(table, name)) return;
  const bool is_possible = is_symbol_name(name, to_.has_long_names());
  if (table == "LAYER") {
    if (!to_.table(table)) return;  // a bare drawing: layers are implied
    check_name(table, name);
    if (is_possible) fresh_layers_.emplace_back(name);
    if (!is_possible) references_.missing.insert(missing_key(table, name));
  } else if (table == "APPID" && is_possible) {
    if (to_.table(table)) fresh_applications_.emplace_back(name);
  } else if (!is_always_there(name)) {
    references_.missing.insert(missing_key(table, name));
  }
}

/// A record of the source; none where a damaged table holds something else.
Stub* Cloner::source_record(std::string_view table, std::wstring_view name) {
  Stub* const record = from_.table_record(table, name);
  return record && from_.kind_name(*record) == table ? record : nullptr;
}

void Cloner::need_record(std::string_view table, Stub& record, std::wstring_view name) {
  if (references_.has(record.handle) && record.handle != 0) return;
  if (const Stub* own = to_.table_record(table, name)) return stand_for(record, *own);
  if (!to_.table(table)) {
    if (table != "LAYER" && table != "APPID") references_.missing.insert(missing_key(table, name));
    return;
  }
  if (table == "APPID" && !is_symbol_name(name, to_.has_long_names())) {
    references_.missing.insert(missing_key(table, name));
    return;
  }
  check_name(table, name);
  if (record.handle != 0 && !known_objects_.insert(record.handle).second) return;
  items_.push_back({.source = &record, .role = Role::kRecord});
}

/// A record, or the head, of a symbol table.
void Cloner::need_target(Stub& target, bool maps_only) {
  const std::string_view kind = from_.kind_name(target);
  if (target.erased()) return;
  if (kind == "TABLE") {
    const Drawing::Table* table = from_.table_of(target);
    const Drawing::Table* own = table ? to_.table(table->name) : nullptr;
    if (own) stand_for(target, to_.stub_at(own->stub));
    return;
  }
  const std::wstring name = name_of(from_, target, kind);
  if (kind == kBlocks) {
    if (maps_only || is_space_name(name)) return;
    return need_block(name, {}, kNone);
  }
  if (kind == "STYLE" && name.empty()) return need_shape_styles();
  if (maps_only) {
    const Stub* own = to_.table_record(kind, name);
    if (own) stand_for(target, *own);
    return;
  }
  known_names_.insert(missing_key(kind, name));
  need_record(kind, target, name);
}

/// Text styles without name hold the shapes of a file, by which they are told apart.
void Cloner::need_shape_styles() {
  if (!known_names_.insert(L"STYLE ").second) return;
  Drawing::Table* styles = from_.table("STYLE");
  Drawing::Table* own = to_.table("STYLE");
  if (!styles || !own) return;
  for (const std::size_t index : from_.table_records(*styles)) {
    Stub& style = from_.stub_at(index);
    if (from_.kind_name(style) != "STYLE" || !name_of(from_, style, "STYLE").empty()) continue;
    const std::wstring file = shape_file(from_, style);
    const Stub* same = nullptr;
    for (const std::size_t other : to_.table_records(*own)) {
      const Stub& candidate = to_.stub_at(other);
      if (name_of(to_, candidate, "STYLE").empty() &&
          equal_no_case(shape_file(to_, candidate), file))
        same = &candidate;
    }
    if (same) {
      stand_for(style, *same);
    } else {
      items_.push_back({.source = &style, .role = Role::kRecord});
    }
  }
}

/// An object that something needs: one filed under the same keys stands for it.
void Cloner::need_object(Stub& object, bool maps_only) {
  if (!known_objects_.insert(object.handle).second) return;
  std::vector<std::wstring> keys = keys_to(from_, object);
  if (keys.empty()) {
    known_objects_.erase(object.handle);  // it may come along with its owner
    return;
  }
  if (const Stub* own = object_at(to_, keys)) return stand_for(object, *own);
  if (maps_only || never_comes(from_.kind_name(object))) return;
  items_.push_back({.source = &object, .role = Role::kFiled, .keys = std::move(keys)});
}

const Drawing::Block* Cloner::source_block(std::wstring_view name, const Stub* record) {
  if (record)
    if (const Drawing::Block* block = from_.block_of(record->handle)) return block;
  if (!source_blocks_) {
    source_blocks_.emplace();
    for (const Drawing::Block& block : from_.blocks()) {
      const Stub& begin = from_.stub_at(block.begin);
      if (begin.erased()) continue;
      const Lens lens(from_.bytes_of(begin), from_.dialect());
      source_blocks_->try_emplace(folded(lens.text(kBlockBegin, 2)), &block);
    }
  }
  const auto found = source_blocks_->find(folded(name));
  return found == source_blocks_->end() ? nullptr : found->second;
}

/// `place` is where the block is shown, kNone when it is only referred to.
void Cloner::need_block(std::wstring_view name, std::string_view kind, std::size_t place) {
  const std::wstring key = folded(name);
  if (key.empty()) return;
  if (is_space_name(key)) {
    if (place != kNone) refuse(Acad::eSelfReference, to_utf8(name), "is a space, but is inserted");
    return;
  }
  if (!made_.empty() && equal_no_case(key, made_)) {
    refuse(Acad::eSelfReference, "block " + to_utf8(name), "would contain itself");
    return;
  }
  const auto known = plan_by_name_.find(key);
  if (known != plan_by_name_.end()) {
    if (place != kNone && places_[place].block != kNone)
      block_plans_[places_[place].block].shows.push_back(known->second);
    return;
  }
  if (references_.blocks.contains(key)) return;
  Stub* record = source_record(kBlocks, name);
  const Drawing::Block* source = source_block(name, record);
  const bool anonymous = is_anonymous_block(name);
  const Stub* own = anonymous ? nullptr : block_record_or_begin(to_, name);
  if (own) {
    const bool has_records = to_.kind_name(*own) == kBlocks;
    references_.blocks.emplace(
        key, CloneReferences::Block{std::wstring(name), has_records ? own->handle : 0});
    if (record && has_records) stand_for(*record, *own);
    existing_blocks_.emplace_back(name);
    return;
  }
  if (!source && kind != "INSERT") {  // drawn by a block that is not there
    references_.missing.insert(missing_key(kBlocks, name));
    return;
  }
  plan_block(key, name, record, source);
  if (place != kNone && places_[place].block != kNone)
    block_plans_[places_[place].block].shows.push_back(block_plans_.size() - 1);
}

void Cloner::plan_block(const std::wstring& key, std::wstring_view name, Stub* record,
                        const Drawing::Block* source) {
  std::wstring own_name(name);
  if (is_anonymous_block(name)) {
    std::uint64_t& number = next_anonymous_.try_emplace(name[1], 1).first->second;
    own_name = anonymous_block_name(to_, name[1], number);
  }
  check_name("BLOCK", own_name);
  const std::size_t index = block_plans_.size();
  const std::size_t place = new_place();
  places_[place].block = index;
  block_plans_.push_back({.name = own_name, .record = record, .source = source, .place = place});
  plan_by_name_.emplace(key, index);
  references_.blocks.emplace(key, CloneReferences::Block{own_name, 0});
  // The record and the frame need layers, applications and what they own, too.
  if (record) items_.push_back({.source = record, .role = Role::kOfBlock});
  if (!source) return;
  for (const std::size_t frame : {source->begin, source->end})
    items_.push_back({.source = &from_.stub_at(frame), .role = Role::kOfBlock});
  const auto add = [&](std::size_t stub) {
    Stub& entity = from_.stub_at(stub);
    if (entity.erased() || from_.is_sub_entity(entity)) return;
    add_entity(entity, place);
  };
  for (std::size_t i = source->begin + 1; i < source->end; ++i) add(i);
  for (const std::size_t i : source->added) add(i);
}

/// Blocks in front of those that show them; an error when one shows itself.
void Cloner::order_blocks() {
  enum State : std::uint8_t { kNew, kEntered, kDone };
  std::vector<State> states(block_plans_.size(), kNew);
  std::vector<std::pair<std::size_t, std::size_t>> path;  // block, next of those it shows
  for (std::size_t first = 0; first < block_plans_.size(); ++first) {
    if (states[first] != kNew) continue;
    path.emplace_back(first, 0);
    states[first] = kEntered;
    while (!path.empty()) {
      auto& [block, next] = path.back();
      if (next == block_plans_[block].shows.size()) {
        states[block] = kDone;
        block_order_.push_back(block);
        path.pop_back();
        continue;
      }
      const std::size_t shown = block_plans_[block].shows[next++];
      if (states[shown] == kEntered)
        return refuse(Acad::eSelfReference, "block " + to_utf8(block_plans_[shown].name),
                      "contains itself");
      if (states[shown] == kDone) continue;
      states[shown] = kEntered;
      path.emplace_back(shown, 0);
    }
  }
}

/// Whether a block of the receiving drawing shows, at any depth, the one being made.
bool Cloner::shows_made_block(std::wstring_view block) {
  std::unordered_set<std::wstring> known;
  std::vector<std::wstring> work{folded(block)};
  while (!work.empty()) {
    const std::wstring name = std::move(work.back());
    work.pop_back();
    if (equal_no_case(name, made_)) return true;
    if (!known.insert(name).second) continue;
    const Stub* own = block_record_or_begin(to_, name);
    const Drawing::Block* contents = !own                             ? nullptr
                                     : to_.kind_name(*own) == kBlocks ? to_.block_of(own->handle)
                                                                      : to_.block_at(*own);
    if (!contents) continue;
    const auto look = [&](std::size_t index) {
      const Stub& entity = to_.stub_at(index);
      if (entity.erased() || to_.kind_name(entity) != "INSERT") return;
      const Lens lens(to_.bytes_of(entity), to_.dialect());
      work.push_back(folded(lens.text("AcDbBlockReference", 2)));
    };
    for (std::size_t i = contents->begin + 1; i < contents->end; ++i) look(i);
    for (const std::size_t i : contents->added) look(i);
  }
  return false;
}

}  // namespace cad
