#pragma once

#include <span>
#include <vector>

#include "host/geometry/curve.h"

namespace cad {

/// Width of one segment of a polyline, at its ends.
struct SegmentWidth {
  double start = 0.0;
  double end = 0.0;
};

/// The outlines of a flat polyline's segments as wide as `widths` say, one closed loop for each
/// segment that has width and length. Where straight segments of one width meet, their outlines are
/// mitred as long as the corner is not too sharp. `axis` is the normal of the plane, `deviation`
/// how far the outline of an arc may be from the true one.
std::vector<std::vector<AcGePoint3d>> wide_outlines(const Curve& curve,
                                                    std::span<const SegmentWidth> widths,
                                                    const AcGeVector3d& axis, double deviation);

/// Points along a segment, both ends included, that keep within `deviation` of it; no more than a
/// few hundred.
void append_points(const Segment& segment, double deviation, std::vector<AcGePoint3d>& points);

}  // namespace cad
