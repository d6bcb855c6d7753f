#pragma once

#include <span>
#include <vector>

#include "host/geometry/ge.h"

namespace cad {

class Curve;
class Segment;

/// The curves at a constant distance: to the right of the curve's direction, seen against its
/// normal, for a positive distance. Lines, arcs, circles and plane polylines; of a polyline the
/// parts that would come nearer than the distance are left out, which may leave several curves.
/// Empty when nothing is left (a circle offset past its center) and for all other curves.
std::vector<Curve> offset_curve(const Curve& curve, double distance);

/// The distance, signed as above, at which the offset goes through `point`.
double offset_distance_through(const Curve& curve, const AcGePoint3d& point);

/// Lines and arcs one behind the other as a polyline in the plane with this normal.
Curve polyline_of(std::span<const Segment> segments, bool closed, const AcGeVector3d& normal);

/// A quarter of the angle an arc turns through about the normal, as its tangent; 0 of a line.
double bulge_of(const Segment& segment, const AcGeVector3d& normal);

}  // namespace cad
