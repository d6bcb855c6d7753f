#pragma once

#include <optional>
#include <vector>

#include "host/geometry/ge.h"

namespace cad {

class Curve;

/// The curves at a constant distance: to the right of the curve's direction, seen against its
/// normal, for a positive distance. Empty when nothing is left (a circle offset past its center).
std::vector<Curve> offset_curve(const Curve& curve, double distance);

/// The distance, signed as above, at which the offset goes through `point`.
double offset_distance_through(const Curve& curve, const AcGePoint3d& point);

}  // namespace cad
