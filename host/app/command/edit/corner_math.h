#pragma once

#include <optional>

#include "host/app/command/edit/polyline_shape.h"
#include "host/geometry/segment.h"

/// How two curves of the plan meet in a corner. Everything is at one elevation.
namespace cad {

/// An arc that leads from one curve to another, and where it touches them.
struct FilletArc {
  AcGePoint3d first;   ///< on the first curve
  AcGePoint3d second;  ///< on the second
  AcGePoint3d center;
  double radius = 0.0;
};

/// Where two lines meet, prolonged; nothing when they are parallel.
std::optional<AcGePoint3d> corner_of(const Segment& first, const Segment& second);

/// The arc of this radius that is nearest to where both were picked. Lines and arcs of circles,
/// prolonged as needed; of radius 0 the point where they meet.
std::optional<FilletArc> fillet_between(const Segment& first, const AcGePoint3d& first_pick,
                                        const Segment& second, const AcGePoint3d& second_pick,
                                        double radius);

/// Half a circle over the ends of two parallel lines: at the first one's end that is nearer to its
/// pick.
std::optional<FilletArc> fillet_parallel(const Segment& first, const AcGePoint3d& first_pick,
                                         const Segment& second);

/// What a corner between two straight segments of a polyline was turned into.
enum class Cornering { kDone, kTooShort, kParallel, kArc };

/// Rounds, or cuts off, the corner at a vertex; with radius 0 a rounded one becomes sharp.
Cornering fillet_vertex(PolylineShape& shape, std::size_t vertex, double radius);
Cornering chamfer_vertex(PolylineShape& shape, std::size_t vertex, double before, double behind);

/// The vertex between two segments that follow each other.
std::optional<std::size_t> vertex_between(const PolylineShape& shape, std::size_t first,
                                          std::size_t second);

}  // namespace cad
