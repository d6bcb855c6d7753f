#include "labeler/areas.h"

#include <cmath>

namespace labeler {
namespace {

/// An area of more cells counts as the whole plan.
constexpr double kMostCells = 10'000.0;

}  // namespace

template <class Visit>
bool Areas::for_each_cell(const AcDbExtents& rectangle, Visit visit) const {
  const double left = std::floor(rectangle.minPoint().x / cell_);
  const double bottom = std::floor(rectangle.minPoint().y / cell_);
  const double right = std::floor(rectangle.maxPoint().x / cell_);
  const double top = std::floor(rectangle.maxPoint().y / cell_);
  for (const double edge : {left, bottom, right, top})
    if (!(std::fabs(edge) < kFarthestCell)) return false;
  if ((right - left + 1.0) * (top - bottom + 1.0) > kMostCells) return false;
  for (auto row = static_cast<std::int64_t>(bottom); row <= static_cast<std::int64_t>(top); ++row)
    for (auto column = static_cast<std::int64_t>(left); column <= static_cast<std::int64_t>(right);
         ++column)
      if (!visit(column, row)) return false;
  return true;
}

void Areas::add(const AcDbExtents& area) {
  const bool fits = for_each_cell(area, [&](std::int64_t column, std::int64_t row) {
    cells_.at(column, row) = 0;
    return true;
  });
  all_ = all_ || !fits;
}

bool Areas::meet(const AcDbExtents& rectangle) const {
  return all_ || !for_each_cell(rectangle, [&](std::int64_t column, std::int64_t row) {
           return cells_.head(column, row) == CellHeads::kNone;
         });
}

}  // namespace labeler
