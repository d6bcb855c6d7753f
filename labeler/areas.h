#pragma once

#include <cstdint>

#include "labeler/cell_heads.h"
#include "module/platform/geometry.h"

namespace labeler {

/// Rectangles of the plan, kept as the coarse square cells they touch: asking costs the same
/// however many there are. Only x and y count.
class Areas {
 public:
  /// `cell` is the side of a cell, above 0: a rectangle up to that far beside an area may count as
  /// meeting it.
  explicit Areas(double cell) : cell_(cell) {}
  void add(const AcDbExtents& area);
  /// Whether the rectangle meets an area, which several threads may ask; true of one whose numbers
  /// are not finite or that is too large to be looked up.
  bool meet(const AcDbExtents& rectangle) const;

 private:
  /// False as soon as the visit of a cell is, and for a rectangle of too many cells.
  template <class Visit>
  bool for_each_cell(const AcDbExtents& rectangle, Visit visit) const;

  double cell_;
  CellHeads cells_;  // those that are there have a head
  bool all_ = false;
};

}  // namespace labeler
