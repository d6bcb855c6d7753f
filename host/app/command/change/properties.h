#pragma once

#include <vector>

#include "host/app/command/command_line.h"
#include "host/app/command/flow.h"

namespace cad {

/// Asks for properties and their values until Enter, then gives them to the objects: what CHPROP
/// does, and the Properties option of CHANGE, which also takes the elevation.
Flow<> change_properties(CommandLine& line, std::vector<AcDbObjectId> objects,
                         bool with_elevation = false);

}  // namespace cad
