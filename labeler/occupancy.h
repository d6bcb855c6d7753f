#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "module/platform/geometry.h"

/// What is taken in the plan, so that labels keep clear of each other and of pipes.
namespace labeler {

/// A rectangle that may be turned. Half sizes are along its own axes, the angle is in radians.
struct Box {
  AcGePoint2d centre;
  double half_width = 0.0;
  double half_height = 0.0;
  double angle = 0.0;
};

/// Whether two boxes share more than an edge.
bool overlap(const Box& a, const Box& b);

/// A line as a box without height.
Box box_of_line(const AcGePoint2d& from, const AcGePoint2d& to);

/// Boxes filed in square cells: asking costs as much as there is near the box, whatever the size of
/// the plan. Boxes whose numbers are not finite are never taken.
class Occupancy {
 public:
  /// `cell` is the side of a cell, about the size of a label, above 0.
  explicit Occupancy(double cell);
  /// What is added with an owner, a number above 0, can be taken out again. The weight is how bad
  /// it is to lie upon the box.
  void add(const Box& box, std::uint64_t owner = 0, int weight = 1);
  void add(std::span<const Box> boxes, std::uint64_t owner = 0, int weight = 1);
  void remove(std::uint64_t owner);
  /// The weight of all that is filed and overlaps one of the boxes. What is `enough` or more may be
  /// less than all.
  int conflicts(std::span<const Box> boxes, int enough) const;

 private:
  struct CellRange {
    std::int64_t left, bottom, right, top;
  };
  CellRange cells_of(const Box& box) const;
  template <class Visit>
  bool for_each_cell(const Box& box, Visit visit) const;

  double cell_;
  std::vector<Box> boxes_;
  std::vector<int> weights_;  // of the boxes; 0 of those removed
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> cells_;
  std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> owned_;
};

}  // namespace labeler
