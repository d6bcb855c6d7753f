#pragma once

#include <vector>

#include "host/base/result.h"
#include "host/db/object_id.h"

namespace cad {

/// Adds the pieces of an entity to the block it is in and leaves the entity itself alone:
/// LWPOLYLINE and POLYLINE become lines and arcs, INSERT copies of its block's contents (and of its
/// attributes' definitions), DIMENSION the contents of its block, MTEXT one TEXT a line, HATCH,
/// and every other kind, nothing: an error that says so.
Result<std::vector<AcDbObjectId>> explode_entity(AcDbObjectId entity);

}  // namespace cad
