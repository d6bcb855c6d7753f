#pragma once

#include <string_view>
#include <vector>

#include "host/db/database.h"
#include "host/geometry/point3d.h"

namespace cad {

/// A block by name: its record, or in a drawing without block records (R12) its BLOCK. Null when
/// there is none.
AcDbObjectId find_block(AcDbDatabase& database, std::wstring_view name);
/// Its BLOCK, which holds base point and flags.
AcDbObjectId block_head(AcDbDatabase& database, AcDbObjectId block);
/// Its entities in drawing order, parts of others included.
std::vector<AcDbObjectId> block_contents(AcDbDatabase& database, AcDbObjectId block);
/// All that are no spaces and have names of their own, for lists.
std::vector<std::wstring> block_names(AcDbDatabase& database);

}  // namespace cad
