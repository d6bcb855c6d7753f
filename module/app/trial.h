#pragma once

namespace dim {

/// (t1): asks for entities, records a fixed flow under "pcgb" on each and updates it. RTNORM, also
/// when nothing was selected; RTERROR and a printed line at the first entity that refuses.
int t1();

}  // namespace dim
