#pragma once

#include <string_view>

#include "host/geometry/matrix3d.h"

namespace cad {

class DocumentSession;

/// From the coordinates the user works in to those of the world, and back. The identity unless
/// UCSORG, UCSXDIR and UCSYDIR say otherwise.
AcGeMatrix3d ucs_to_world(DocumentSession& session);
AcGeMatrix3d world_to_ucs(DocumentSession& session);
/// Sets them, and WORLDUCS and UCSNAME with them.
void set_ucs(DocumentSession& session, const AcGeMatrix3d& ucs, std::wstring_view name = {});

}  // namespace cad
