#pragma once

#include <span>
#include <vector>

#include "host/geometry/curve.h"

namespace cad {

/// Relations in the plan: what is seen along the Z axis, as by someone who draws a window around
/// it. Everything is exact up to `slack`, a length far below what a drawing means (1e-11 of the
/// coordinates); touching counts as meeting, and lying on the border as being inside.

/// Where a segment meets the straight line from a to b, as its parameters u in ascending order;
/// of a stretch that runs along the line, both ends.
std::vector<double> meetings(const Segment& segment, const AcGePoint2d& a, const AcGePoint2d& b);

/// A polygon of the plan; its sides may cross each other, then it is inside wherever a way out
/// crosses its sides an odd number of times.
class PlanArea {
 public:
  explicit PlanArea(std::vector<AcGePoint2d> corners);
  /// The upright rectangle with these opposite corners.
  static PlanArea box(const AcGePoint2d& p, const AcGePoint2d& q);

  const std::vector<AcGePoint2d>& corners() const { return corners_; }
  /// Around the corners; z is that of the plan, 0.
  const AcDbExtents& extents() const { return extents_; }
  bool is_box() const { return is_box_; }

  bool holds(const AcGePoint2d& p) const;
  /// Whether all of it lies inside. A curve without end never does.
  bool holds(const Segment& segment) const;
  bool holds(const Curve& curve) const;
  bool holds(const PlanArea& area) const;
  /// Whether any of it lies inside or on the border.
  bool touches(const Segment& segment) const;
  bool touches(const Curve& curve) const;
  bool touches(const PlanArea& area) const;

 private:
  std::vector<AcGePoint2d> corners_;
  AcDbExtents extents_;
  double slack_ = 0.0;
  bool is_box_ = false;
};

/// Whether a curve meets the straight line from a to b; of a ray or xline all of it.
bool meets(const Curve& curve, const AcGePoint2d& a, const AcGePoint2d& b);

/// A ray's or xline's visible part: a line that passes all of the box, and the whole of every
/// other curve.
Curve clipped(const Curve& curve, const AcDbExtents& box);

}  // namespace cad
