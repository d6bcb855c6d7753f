#pragma once

#include <cstdint>
#include <vector>

#include "host/db/object_id.h"

namespace cad {

class Drawing;

/// The entities of a space, those below first: as they follow each other in the drawing, or as the
/// space's table of draw orders says (SORTENTSTABLE).
std::vector<AcDbObjectId> entities_in_draw_order(Drawing& drawing, std::uint64_t block_record);

}  // namespace cad
