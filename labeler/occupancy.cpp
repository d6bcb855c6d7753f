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

}  // namespace

Occupancy::Turned::Turned(const Box& box)
    : x(box.centre.x),
      y(box.centre.y),
      half_width(box.half_width),
      half_height(box.half_height),
      cos(std::cos(box.angle)),
      sin(std::sin(box.angle)),
      radius(std::hypot(box.half_width, box.half_height)) {}

bool Occupancy::overlap(const Turned& a, const Turned& b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  // Most pairs are far apart: circles first.
  const double far = a.radius + b.radius;
  if (dx * dx + dy * dy > far * far) return false;
  const double along = std::fabs(a.cos * b.cos + a.sin * b.sin);
  const double across = std::fabs(a.cos * b.sin - a.sin * b.cos);
  const auto is_between = [&](double apart, double half_size, double other_along,
                              double other_across) {
    const double reached = half_size + other_along * along + other_across * across;
    return std::fabs(apart) >= reached - kTouch * (1.0 + reached);
  };
  return !is_between(dx * a.cos + dy * a.sin, a.half_width, b.half_width, b.half_height) &&
         !is_between(dy * a.cos - dx * a.sin, a.half_height, b.half_height, b.half_width) &&
         !is_between(dx * b.cos + dy * b.sin, b.half_width, a.half_width, a.half_height) &&
         !is_between(dy * b.cos - dx * b.sin, b.half_height, a.half_height, a.half_width);
}

bool overlap(const Box& a, const Box& b) {
  return Occupancy::overlap(Occupancy::Turned(a), Occupancy::Turned(b));
}

Box box_of_line(const AcGePoint2d& from, const AcGePoint2d& to) {
  const double dx = to.x - from.x, dy = to.y - from.y;
  return {AcGePoint2d((from.x + to.x) / 2, (from.y + to.y) / 2), std::hypot(dx, dy) / 2, 0.0,
          std::atan2(dy, dx)};
}

Occupancy::Occupancy(double cell) : cell_(cell) {}

void Occupancy::reserve(std::size_t boxes) {
  constexpr std::size_t kUsualCells = 4;  // of a box
  boxes_.reserve(boxes);
  filings_.reserve(kUsualCells * boxes);
}

Occupancy::CellRange Occupancy::cells_of(const Turned& box) const {
  const double x = box.half_width * std::fabs(box.cos) + box.half_height * std::fabs(box.sin);
  const double y = box.half_width * std::fabs(box.sin) + box.half_height * std::fabs(box.cos);
  const auto cell = [&](double value) {
    return static_cast<std::int64_t>(std::floor(value / cell_));
  };
  return {cell(box.x - x), cell(box.y - y), cell(box.x + x), cell(box.y + y)};
}

/// False as soon as the visit of a cell is.
template <class Visit>
bool Occupancy::for_each_cell(const Turned& box, Visit visit) const {
  const CellRange range = cells_of(box);
  for (std::int64_t row = range.bottom; row <= range.top; ++row)
    for (std::int64_t column = range.left; column <= range.right; ++column)
      if (!visit(column, row)) return false;
  return true;
}

void Occupancy::add(const Box& box, std::uint64_t owner, int weight) {
  const double size = box.half_width + box.half_height;
  const double far = std::fabs(box.centre.x) + std::fabs(box.centre.y) + size;
  if (!(far / cell_ < kFarthestCell)) return;  // not finite, too
  const double piece = kCellsPerPiece * cell_;
  const double pieces = std::max(std::ceil(2.0 * box.half_width / piece), 1.0);
  if (pieces > kMostPieces) return;
  const auto index = static_cast<std::uint32_t>(boxes_.size());
  const Turned turned(box);
  boxes_.push_back({turned, weight, owner ? owners_.exchange(owner, index) : ListHeads::kNone});
  const double step = 2.0 * box.half_width / pieces;
  Turned part = turned;
  part.half_width = step / 2;
  for (double i = 0.0; i < pieces; ++i) {
    const double along = (i + 0.5) * step - box.half_width;
    part.x = turned.x + along * turned.cos;
    part.y = turned.y + along * turned.sin;
    for_each_cell(part, [&](std::int64_t column, std::int64_t row) {
      std::uint32_t& head = cells_.at(column, row);
      if (head != CellHeads::kNone && filings_[head].box == index) return true;
      filings_.push_back({index, head});
      head = static_cast<std::uint32_t>(filings_.size() - 1);
      return true;
    });
  }
}

void Occupancy::add(std::span<const Box> boxes, std::uint64_t owner, int weight) {
  for (const Box& box : boxes) add(box, owner, weight);
}

void Occupancy::remove(std::uint64_t owner) {
  for (std::uint32_t box = owners_.head(owner); box != ListHeads::kNone;
       box = boxes_[box].next_owned)
    boxes_[box].weight = 0;
}

int Occupancy::conflicts(std::span<const Box> boxes, int enough) {
  int weight = 0;
  met_.clear();
  for (const Box& box : boxes) {
    const double far = std::fabs(box.centre.x) + std::fabs(box.centre.y) + box.half_width;
    if (!(far / cell_ < kFarthestCell)) continue;
    const Turned turned(box);
    const bool go_on = for_each_cell(turned, [&](std::int64_t column, std::int64_t row) {
      for (std::uint32_t at = cells_.head(column, row); at != CellHeads::kNone;
           at = filings_[at].next) {
        const std::uint32_t index = filings_[at].box;
        const Filed& filed = boxes_[index];
        if (filed.weight == 0 || !overlap(turned, filed.box)) continue;
        if (std::find(met_.begin(), met_.end(), index) != met_.end()) continue;
        met_.push_back(index);
        weight += filed.weight;
        if (weight >= enough) return false;
      }
      return true;
    });
    if (!go_on) break;
  }
  return weight;
}

}  // namespace labeler
