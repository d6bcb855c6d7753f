#pragma once

#include <vector>

#include "host/geometry/ge.h"

namespace cad {

class Curve;

/// Which of two curves is taken as going on beyond its ends: lines straight, arcs around.
enum class Extend { kNeither, kFirst, kSecond, kBoth };

/// The points two curves have in common, in the order of the first; where they run along each other
/// none, except shared ends.
std::vector<AcGePoint3d> intersections(const Curve& first, const Curve& second,
                                       Extend extend = Extend::kNeither);

}  // namespace cad
