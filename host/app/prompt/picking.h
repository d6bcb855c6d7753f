#pragma once

#include <optional>
#include <string_view>

#include "host/db/object_id.h"
#include "host/geometry/point3d.h"

namespace cad {

class DocumentSession;

/// The entity of the current space that is picked at a point of the world; null when there is none
/// within the pick box.
AcDbObjectId entity_at(DocumentSession& session, const AcGePoint3d& point);

/// "L" or "Last", and "handle:2F3"; nothing for a text that names no entity.
std::optional<AcDbObjectId> named_entity(DocumentSession& session, std::wstring_view typed);

/// A point of the world that lies on the entity: where it is picked when it is named.
AcGePoint3d place_of(AcDbObjectId entity);

}  // namespace cad
