#pragma once

#include "module/platform/objects.h"

/// The arrows that show which way the water of a pipe flows.
namespace dim {

/// Turns every flow arrow recorded on the pipe (the block reference of an item "jt", in a record of
/// any type) to the direction of flow at its place: along the pipe's centre line, from the end of
/// the higher head or invert to the other. The drawing's scale plays no part in it.
///
/// RTNORM when all records were gone through: arrows stay as they are where the direction cannot be
/// told (a pipe without wells or heights). RTERROR, and the arrows turned so far stay turned, when
/// the pipe cannot be opened, or at the first record whose arrow is erased, absent, no block
/// reference or not to be written (a locked layer).
int turn_flow_arrows(AcDbObjectId pipe);

}  // namespace dim
