#pragma once

#include "module/platform/objects.h"

namespace dim {

/// Thaws, turns on and unlocks a layer, if it is frozen, off or locked. One that does not open
/// stays as it is.
void make_layer_ready(AcDbObjectId layer);
/// Turns on and unlocks a layer, if it is off or locked; whether it was.
bool turn_on_and_unlock(AcDbObjectId layer);

}  // namespace dim
