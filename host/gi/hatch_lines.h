#pragma once

#include <span>
#include <vector>

#include "host/geometry/ge.h"

namespace cad {

/// One family of parallel lines of a hatch's pattern, as HATCH stores it: scaled and turned.
struct PatternLines {
  double angle = 0.0;          ///< radians
  AcGePoint2d base;            ///< a point on the first line, where its dashes begin
  AcGeVector2d step;           ///< from a line to the next
  std::vector<double> dashes;  ///< positive drawn, negative not, 0 a dot; none: a whole line
};

/// A straight piece; of a dot both ends are the same.
struct HatchStroke {
  AcGePoint2d from;
  AcGePoint2d to;
};

/// The pieces of the pattern inside of the polygons, even-odd. Of a pattern so dense that there
/// would be more than `most`, every so-manieth line is drawn, and without dashes.
std::vector<HatchStroke> hatch_strokes(std::span<const PatternLines> pattern,
                                       std::span<const std::vector<AcGePoint2d>> polygons,
                                       std::size_t most);

}  // namespace cad
