#pragma once

namespace WDLGX {

/// The scale ratio of the current drawing: 500 means 1:500, which is also the answer when the
/// drawing does not say or none is open. The drawing keeps it in its variable USERI5; numbers below
/// 1 say nothing.
int GetCTBL();

}  // namespace WDLGX

namespace network {

/// Where a drawing's header keeps it.
inline constexpr char kScaleVariable[] = "$USERI5";

}  // namespace network
