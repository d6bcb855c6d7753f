#include "labeler/occupancy.h"

#include <algorithm>
#include <cmath>

namespace labeler {
namespace {

/// Boxes that touch, give or take rounding, do not overlap.
constexpr double kTouch = 1e-9;
/// A line is cut into pieces of so many cells, so that a slanted one does not fill its whole
/// bounding box.
constexpr double kCellsPerPiece = 2.0;
/// Lines of more pieces are not filed: no plan is so large.
constexpr double kMostPieces = 1e5;
/// Plans are smaller than that many cells in either direction; what is beyond is not filed.
constexpr double kFarthest = 1e9;

struct Axis {
  double x, y;
};

/// Half of the box's extent in a direction.
double reach(const Box& box, const Axis& along, const Axis& direction) {
  const double across = -along.y * direction.x + along.x * direction.y;
  return box.half_width * std::fabs(along.x * direction.x + along.y * direction.y) +
         box.half_height * std::fabs(across);
}

std::uint64_t key_of(std::int64_t column, std::int64_t row) {
  return (static_cast<std::uint64_t>(column) << 32) ^
         (static_cast<std::uint64_t>(row) & 0xFFFFFFFF);
}

}  // namespace

bool overlap(const Box& a, const Box& b) {
  const double dx = b.centre.x - a.centre.x, dy = b.centre.y - a.centre.y;
  // Most pairs are far apart: circles first.
  const double far =
      std::hypot(a.half_width, a.half_height) + std::hypot(b.half_width, b.half_height);
  if (dx * dx + dy * dy > far * far) return false;
  const Axis along_a{std::cos(a.angle), std::sin(a.angle)};
  const Axis along_b{std::cos(b.angle), std::sin(b.angle)};
  for (const Axis& axis :
       {along_a, Axis{-along_a.y, along_a.x}, along_b, Axis{-along_b.y, along_b.x}}) {
    const double apart = std::fabs(dx * axis.x + dy * axis.y);
    const double reached = reach(a, along_a, axis) + reach(b, along_b, axis);
    if (apart >= reached - kTouch * (1.0 + reached)) return false;
  }
  return true;
}

Box box_of_line(const AcGePoint2d& from, const AcGePoint2d& to) {
  const double dx = to.x - from.x, dy = to.y - from.y;
  return {AcGePoint2d((from.x + to.x) / 2, (from.y + to.y) / 2), std::hypot(dx, dy) / 2, 0.0,
          std::atan2(dy, dx)};
}

Occupancy::Occupancy(double cell) : cell_(cell) {}

Occupancy::CellRange Occupancy::cells_of(const Box& box) const {
  const Axis along{std::cos(box.angle), std::sin(box.angle)};
  const double x = reach(box, along, {1.0, 0.0}), y = reach(box, along, {0.0, 1.0});
  const auto cell = [&](double value) {
    return static_cast<std::int64_t>(std::floor(value / cell_));
  };
  return {cell(box.centre.x - x), cell(box.centre.y - y), cell(box.centre.x + x),
          cell(box.centre.y + y)};
}

/// False as soon as the visit of a cell is.
template <class Visit>
bool Occupancy::for_each_cell(const Box& box, Visit visit) const {
  const CellRange range = cells_of(box);
  for (std::int64_t row = range.bottom; row <= range.top; ++row)
    for (std::int64_t column = range.left; column <= range.right; ++column)
      if (!visit(key_of(column, row))) return false;
  return true;
}

void Occupancy::add(const Box& box, std::uint64_t owner, int weight) {
  const double size = box.half_width + box.half_height;
  const double far = std::fabs(box.centre.x) + std::fabs(box.centre.y) + size;
  if (!(far / cell_ < kFarthest)) return;  // not finite, too
  const double piece = kCellsPerPiece * cell_;
  const double pieces = std::max(std::ceil(2.0 * box.half_width / piece), 1.0);
  if (pieces > kMostPieces) return;
  const double step = 2.0 * box.half_width / pieces;
  const auto index = static_cast<std::uint32_t>(boxes_.size());
  boxes_.push_back(box);
  weights_.push_back(weight);
  if (owner) owned_[owner].push_back(index);
  for (double i = 0.0; i < pieces; ++i) {
    Box part = box;
    part.half_width = step / 2;
    const double along = (i + 0.5) * step - box.half_width;
    part.centre.x += along * std::cos(box.angle);
    part.centre.y += along * std::sin(box.angle);
    for_each_cell(part, [&](std::uint64_t cell) {
      std::vector<std::uint32_t>& filed = cells_[cell];
      if (filed.empty() || filed.back() != index) filed.push_back(index);
      return true;
    });
  }
}

void Occupancy::add(std::span<const Box> boxes, std::uint64_t owner, int weight) {
  for (const Box& box : boxes) add(box, owner, weight);
}

void Occupancy::remove(std::uint64_t owner) {
  const auto owned = owned_.find(owner);
  if (owned == owned_.end()) return;
  for (const std::uint32_t index : owned->second) weights_[index] = 0;
  owned_.erase(owned);
}

int Occupancy::conflicts(std::span<const Box> boxes, int enough) const {
  int weight = 0;
  std::vector<std::uint32_t> met;  // a box may be filed in several cells
  for (const Box& box : boxes) {
    const double far = std::fabs(box.centre.x) + std::fabs(box.centre.y) + box.half_width;
    if (!(far / cell_ < kFarthest)) continue;
    const bool go_on = for_each_cell(box, [&](std::uint64_t cell) {
      const auto found = cells_.find(cell);
      if (found == cells_.end()) return true;
      for (const std::uint32_t index : found->second) {
        if (weights_[index] == 0 || !overlap(box, boxes_[index])) continue;
        if (std::find(met.begin(), met.end(), index) != met.end()) continue;
        met.push_back(index);
        weight += weights_[index];
        if (weight >= enough) return false;
      }
      return true;
    });
    if (!go_on) break;
  }
  return weight;
}

}  // namespace labeler
