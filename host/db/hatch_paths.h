#pragma once

#include <string_view>
#include <vector>

#include "host/dxf/dialect.h"
#include "host/geometry/curve.h"

namespace cad {

/// One closed path of the boundary of a hatch: a polyline, or edges one behind the other. In world
/// coordinates.
struct HatchPath {
  int flags = 0;  ///< group 92: 1 external, 2 a polyline, 8 a text's box, 16 outermost
  std::vector<Curve> edges;
};

std::vector<HatchPath> hatch_paths(std::string_view record, const dxf::Dialect& dialect);

}  // namespace cad
