#pragma once

#include "host/db/object_id.h"
#include "host/geometry/extents.h"

namespace cad {

/// The box around what is visible of an entity, in the world. False, and `box` as it was, for a
/// kind whose shape is not known (solids, regions, proxies), for one without end (rays, xlines) and
/// for an empty one. Texts count by the boxes of
/// host/db/text_box.h.
bool entity_extents(AcDbObjectId entity, AcDbExtents& box);

}  // namespace cad
