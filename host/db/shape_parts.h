#pragma once

#include <vector>

#include "host/db/entity_shape.h"

namespace cad {

/// Appends the parts of an entity that is no reference to a block. False for kinds whose shape is
/// not known.
bool append_parts(AcDbObjectId id, std::vector<ShapePart>& parts);

/// The paths around a hatch.
void append_hatch_paths(std::string_view bytes, const dxf::Dialect& dialect,
                        std::vector<ShapePart>& parts);

}  // namespace cad
