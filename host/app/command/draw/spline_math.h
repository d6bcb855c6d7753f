#pragma once

#include <optional>
#include <vector>

#include "host/geometry/point3d.h"

namespace cad {

/// A cubic B-spline through points, as a drawing stores it.
struct FittedSpline {
  std::vector<double> knots;
  std::vector<AcGePoint3d> control_points;
  AcGeVector3d start_tangent;  ///< of length 1
  AcGeVector3d end_tangent;
};

/// The smooth curve through the points, which differ from their neighbours. Where no tangent is
/// given an end is straight; a closed curve goes on to its first point and has no ends.
FittedSpline fit_spline(std::vector<AcGePoint3d> points, bool closed,
                        std::optional<AcGeVector3d> start_tangent,
                        std::optional<AcGeVector3d> end_tangent);

}  // namespace cad
