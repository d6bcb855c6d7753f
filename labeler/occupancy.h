#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "labeler/cell_heads.h"
#include "labeler/list_heads.h"
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
  /// Takes memory for so many boxes at once. What is not used of it costs nothing; growing would
  /// copy all that is filed.
  void reserve(std::size_t boxes);
  /// What is added with an owner, a number above 0, can be taken out again. The weight is how bad
  /// it is to lie upon the box.
  void add(const Box& box, std::uint64_t owner = 0, int weight = 1);
  void add(std::span<const Box> boxes, std::uint64_t owner = 0, int weight = 1);
  void remove(std::uint64_t owner);
  /// The weight of all that is filed and overlaps one of the boxes. What is `enough` or more may be
  /// less than all.
  int conflicts(std::span<const Box> boxes, int enough);

 private:
  /// A box with its directions, which every comparison needs.
  struct Turned {
    explicit Turned(const Box& box);
    double x, y, half_width, half_height;
    double cos, sin;
    double radius;  ///< of the circle about it
  };
  struct Filed {
    Turned box;
    int weight;                ///< 0 of those removed
    std::uint32_t next_owned;  ///< the owner's next box
  };
  /// A box in a cell.
  struct Filing {
    std::uint32_t box;
    std::uint32_t next;  ///< in the cell
  };
  struct CellRange {
    std::int64_t left, bottom, right, top;
  };
  friend bool overlap(const Box& a, const Box& b);
  static bool overlap(const Turned& a, const Turned& b);
  CellRange cells_of(const Turned& box) const;
  template <class Visit>
  bool for_each_cell(const Turned& box, Visit visit) const;

  double cell_;
  std::vector<Filed> boxes_;
  std::vector<Filing> filings_;
  CellHeads cells_;                 // of filings
  ListHeads owners_;                // of boxes
  std::vector<std::uint32_t> met_;  // while conflicts() looks: a box may be filed in several cells
};

}  // namespace labeler
