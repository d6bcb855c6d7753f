#pragma once

#include <vector>

#include "host/app/command/edit/polyline_shape.h"

namespace cad {

/// A flat shape of a line, arc or polyline; nothing for other kinds, closed ones and lines and arcs
/// that are not parallel to the plan of their normal.
std::optional<PolylineShape> joinable_shape(AcDbObjectId object);

/// Adds those of the objects that go on where the shape, or what was added to it, ends, within a
/// distance. A shape that comes back to its start is closed. The objects that are part of it then.
std::vector<AcDbObjectId> join_to(PolylineShape& shape, const std::vector<AcDbObjectId>& objects,
                                  double fuzz);

}  // namespace cad
