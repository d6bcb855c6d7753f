#include "network/node_index.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/db/entity_fields.h"
#include "network/wells.h"

namespace network {
namespace {

// Spaces of drawings that do not say who owns an entity.
constexpr std::uint64_t kSomeModelSpace = ~std::uint64_t{0};
constexpr std::uint64_t kSomePaperSpace = kSomeModelSpace - 1;

AcDbObjectId id_of(const cad::Stub& stub) { return AcDbObjectId(const_cast<cad::Stub*>(&stub)); }

/// A few times the tolerance: a query then looks at two cells or so, which hold few nodes each.
constexpr double kCellSize = 4.0 * NodeIndex::kTolerance;
/// Beyond this, cells would not fit their numbers; such coordinates are no drawing's.
constexpr double kFarthest = 1e15;

}  // namespace

std::size_t NodeIndex::CellHash::operator()(const Cell& cell) const {
  const auto column = static_cast<std::uint64_t>(cell.column);
  const auto row = static_cast<std::uint64_t>(cell.row);
  std::uint64_t hash = column * 0x9E3779B97F4A7C15u + row;
  hash = (hash ^ (hash >> 29)) * 0xBF58476D1CE4E5B9u;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

NodeIndex::Cell NodeIndex::cell_of(double x, double y) {
  const auto number = [](double value) {
    if (!(std::abs(value) < kFarthest)) return std::int64_t{0};
    return static_cast<std::int64_t>(std::floor(value / kCellSize));
  };
  return {number(x), number(y)};
}

std::uint64_t NodeIndex::space_of(const cad::Drawing& drawing, const cad::Stub& stub) {
  if (stub.owner != 0) return stub.owner;
  constexpr int kInPaper = 67;
  const cad::EntityFields fields(drawing.bytes_of(stub), drawing.dialect());
  return fields.integer(kInPaper) == 1 ? kSomePaperSpace : kSomeModelSpace;
}

bool NodeIndex::can_be_node(const cad::Stub& stub) const {
  if (stub.section != cad::dxf::Section::kEntities && stub.section != cad::dxf::Section::kBlocks)
    return false;
  const std::string_view kind = drawing_.kind_name(stub);
  return kind == "INSERT" || kind == "POINT" || kind == "CIRCLE";
}

void NodeIndex::object_changed(const cad::Stub& stub) {
  if (built_ && can_be_node(stub) && (changed_.empty() || changed_.back() != &stub))
    changed_.push_back(&stub);
}

void NodeIndex::refresh() {
  if (!built_) {
    for (std::size_t i = 0; i < drawing_.stub_count(); ++i) {
      const cad::Stub& stub = drawing_.stub_at(i);
      if (!stub.has(cad::Stub::kMissing) && can_be_node(stub)) add(stub);
    }
    built_ = true;
  }
  for (const cad::Stub* stub : changed_) {
    remove(*stub);
    add(*stub);
  }
  changed_.clear();
}

void NodeIndex::add(const cad::Stub& stub) {
  if (stub.erased()) return;
  const AcDbObjectId id = id_of(stub);
  const Kind kind = kind_of(id).value_or(Kind::kNone);
  if (!is_node(kind)) return;
  const std::optional<AcGePoint3d> at = position_of(id);
  if (!at || !std::isfinite(at->x) || !std::isfinite(at->y)) return;
  const Cell cell = cell_of(at->x, at->y);
  cells_[cell].push_back({&stub, kind, space_of(drawing_, stub), at->x, at->y});
  places_.emplace(&stub, cell);
}

void NodeIndex::remove(const cad::Stub& stub) {
  const auto place = places_.find(&stub);
  if (place == places_.end()) return;
  const auto cell = cells_.find(place->second);
  std::erase_if(cell->second, [&](const Node& node) { return node.stub == &stub; });
  if (cell->second.empty()) cells_.erase(cell);
  places_.erase(place);
}

NodeIndex::Nearest NodeIndex::nearest(std::uint64_t space, double x, double y,
                                      bool (*fits)(Kind node, Kind pipe), Kind pipe) {
  refresh();
  const Cell first = cell_of(x - kTolerance, y - kTolerance);
  const Cell last = cell_of(x + kTolerance, y + kTolerance);
  const Node* best = nullptr;
  double best_distance = kTolerance;
  double second_distance = INFINITY;
  for (std::int64_t column = first.column; column <= last.column; ++column) {
    for (std::int64_t row = first.row; row <= last.row; ++row) {
      const auto cell = cells_.find({column, row});
      if (cell == cells_.end()) continue;
      for (const Node& node : cell->second) {
        if (node.space != space || !fits(node.kind, pipe)) continue;
        const double distance = std::hypot(node.x - x, node.y - y);
        if (!(distance <= kTolerance)) continue;
        if (!best || distance < best_distance) {
          second_distance = best ? best_distance : INFINITY;
          best_distance = distance;
          best = &node;
        } else {
          second_distance = std::min(second_distance, distance);
        }
      }
    }
  }
  if (!best) return {};
  return {id_of(*best->stub), second_distance - best_distance < kSameDistance};
}

}  // namespace network
