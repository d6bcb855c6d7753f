#pragma once

#include <optional>
#include <vector>

#include "host/app/command/edit/editing.h"
#include "host/geometry/curve.h"

namespace cad {

/// A polyline as commands change it: of flat ones the vertices in its own coordinates, of those in
/// space in the world's.
struct PolylineShape {
  struct Vertex {
    AcGePoint3d point;  ///< of a flat polyline z is the elevation
    double start_width = 0.0;
    double end_width = 0.0;
    double bulge = 0.0;
  };
  std::vector<Vertex> vertices;
  bool closed = false;
  bool continuous_linetype = false;  ///< the pattern goes around corners
  bool flat = true;
  AcGeVector3d normal{0, 0, 1};

  /// Number of segments; params run from 0 to it.
  std::size_t segments() const;
  Curve curve() const;
  /// The part between two params, out of a closed polyline also across its start; in front of the
  /// start and behind the end of an open one its end segments go on.
  PolylineShape part(double from, double to) const;
  void reverse();
};

/// Nothing for what is no polyline, for meshes, and for curve-fit or splined polylines.
std::optional<PolylineShape> polyline_shape(AcDbObjectId object);

/// Gives a polyline another shape. The object that has it then: a POLYLINE with vertices of its own
/// is drawn anew. Null when the command has refused.
AcDbObjectId set_polyline_shape(CommandLine& line, AcDbObjectId object, const PolylineShape& shape);

/// Draws a polyline with the properties of `source`, in the form `source` has when it is one.
AcDbObjectId draw_polyline_like(CommandLine& line, AcDbObjectId source, const PolylineShape& shape,
                                Data data = Data::kLeave);

/// A flat shape out of lines and arcs one behind the other.
PolylineShape shape_of(std::span<const Segment> segments, bool closed, const AcGeVector3d& normal);

}  // namespace cad
