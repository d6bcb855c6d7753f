#pragma once

#include "host/db/object_id.h"

namespace Gx {

/// The layer of that name in the working drawing, letter case ignored. A layer the drawing lacks is
/// made, with the colour of the first pattern in section [Layers] of QrmvPz.ini that its name
/// matches (white without one); see docs/settings.md. Null when no drawing is open, and for a name
/// that cannot be a layer's.
AcDbObjectId GetLayer(const wchar_t* name);

}  // namespace Gx
