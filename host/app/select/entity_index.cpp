#include "host/app/select/entity_index.h"

#include <algorithm>
#include <limits>

#include "host/db/entity_fields.h"
#include "host/db/record_groups.h"

namespace cad {
namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();
constexpr EntityIndex::Box kNothing{kFar, kFar, -kFar, -kFar};
constexpr EntityIndex::Box kEverything{-kFar, -kFar, kFar, kFar};
constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

bool is_endless(std::string_view kind) { return kind == "RAY" || kind == "XLINE"; }

bool is_invisible(const Drawing& drawing, const Stub& stub) {
  constexpr int kInvisible = 60;
  OwnTags tags(drawing.bytes_of(stub), drawing.dialect());
  dxf::Tag tag;
  while (tags.next(tag))
    if (tag.code == kInvisible) return dxf::int_value(tag, drawing.dialect()) != 0;
  return false;
}

}  // namespace

EntityIndex::EntityIndex(AcDbDatabase& database) : database_(database), layers_(database) {
  database.drawing().add_listener(*this);
}

EntityIndex::~EntityIndex() { database_.drawing().remove_listener(*this); }

void EntityIndex::object_changed(const Stub& stub) {
  if (!built_) return;
  // So much was changed that measuring everything again is no more work.
  if (changed_.size() > std::max<std::size_t>(1024, entries_.size() / 2)) {
    built_ = false;
    changed_.clear();
    return;
  }
  if (changed_.empty() || changed_.back() != &stub) changed_.push_back(&stub);
}

void EntityIndex::refresh() {
  if (!built_ || database_.currentSpaceId() != space_)
    rebuild();
  else if (!changed_.empty())
    update();
}

bool EntityIndex::is_in_space(const Stub& stub) const {
  if (stub.section != dxf::Section::kEntities) return false;
  if (stub.owner != 0 && !space_.isNull()) return stub.owner == space_.handle();
  // Old drawings leave the owner out: group 67 tells paper from model space.
  const Drawing& drawing = database_.drawing();
  const bool paper = EntityFields(drawing.bytes_of(stub), drawing.dialect()).integer(67) == 1;
  return paper == (database_.header_value("$TILEMODE") == L"0");
}

void EntityIndex::rebuild() {
  space_ = database_.currentSpaceId();
  entries_.clear();
  boxes_.clear();
  places_.clear();
  changed_.clear();
  shapes_.forget();
  layers_.refresh();
  layers_changed_ = blocks_changed_ = false;
  for (AcDbObjectId id = database_.first_entity(); !id.isNull(); id = database_.next_entity(id))
    if (!is_sub_entity(id) && is_in_space(*id.stub())) append(id);
  built_ = true;
}

void EntityIndex::append(AcDbObjectId id) {
  if (!places_.empty()) places_.emplace(id.stub(), static_cast<std::uint32_t>(entries_.size()));
  entries_.push_back({id, 0, false, EntityShapes::is_reference(id)});
  boxes_.push_back(kNothing);
  measure(entries_.size() - 1);
}

void EntityIndex::measure(std::size_t place) {
  Entry& entry = entries_[place];
  const Stub& stub = *entry.id.stub();
  const Drawing& drawing = database_.drawing();
  entry.visible = !stub.erased() && is_in_space(stub) && !is_invisible(drawing, stub);
  boxes_[place] = kNothing;
  if (!entry.visible) return;
  entry.layer = layers_.number_of(entry.id);
  AcDbExtents box;
  if (is_endless(drawing.kind_name(stub)))
    boxes_[place] = kEverything;
  else if (shapes_.extents(entry.id, box))
    boxes_[place] = {box.minPoint().x, box.minPoint().y, box.maxPoint().x, box.maxPoint().y};
}

std::size_t EntityIndex::place_of(const Stub& stub) {
  if (places_.empty() && !entries_.empty()) {
    places_.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i)
      places_.emplace(entries_[i].id.stub(), static_cast<std::uint32_t>(i));
  }
  const auto found = places_.find(&stub);
  return found == places_.end() ? kNowhere : found->second;
}

void EntityIndex::update() {
  Drawing& drawing = database_.drawing();
  std::vector<const Stub*> changed;
  changed.swap(changed_);
  bool layers = false, blocks = false;
  for (const Stub*& stub : changed) {
    if (stub->section == dxf::Section::kTables) {
      layers = layers || drawing.kind_name(*stub) == "LAYER";
    } else if (stub->section == dxf::Section::kBlocks) {
      blocks = true;
    } else if (stub->section == dxf::Section::kEntities && drawing.is_sub_entity(*stub)) {
      const Stub* const main = drawing.find(stub->owner);  // vertices and attributes
      if (!main) built_ = false;
      stub = main ? main : stub;
    }
  }
  if (!built_) return rebuild();
  if (layers) layers_.refresh();
  if (blocks) shapes_.forget();
  std::sort(changed.begin(), changed.end(), [](const Stub* a, const Stub* b) {
    return StubStore::index_of(*a) < StubStore::index_of(*b);
  });
  changed.erase(std::unique(changed.begin(), changed.end()), changed.end());
  for (const Stub* stub : changed) {
    if (stub->section != dxf::Section::kEntities || drawing.is_sub_entity(*stub)) continue;
    const std::size_t place = place_of(*stub);
    if (place != kNowhere) {
      measure(place);
    } else if (!stub->erased() && is_in_space(*stub)) {
      const bool newest = entries_.empty() || StubStore::index_of(*entries_.back().id.stub()) <
                                                  StubStore::index_of(*stub);
      if (!newest) return rebuild();  // brought back into the middle
      append(AcDbObjectId(const_cast<Stub*>(stub)));
    }
  }
  if (!blocks) return;
  for (std::size_t i = 0; i < entries_.size(); ++i)
    if (entries_[i].reference) measure(i);
}

}  // namespace cad
