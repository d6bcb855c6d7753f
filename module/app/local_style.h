#pragma once

namespace dim {

/// (getDimLocalStyle): the local drawing standard, "CD", "GB", "TJ" or "BJ". RTERROR for every
/// other one. Arguments are ignored.
int getDimLocalStyle();

}  // namespace dim
