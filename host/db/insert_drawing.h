#pragma once

#include <string_view>

#include "host/base/result.h"
#include "host/db/database.h"

namespace cad {

/// Makes the model space of `from` the block of that name in `into`, with all it needs; see
/// AcDbDatabase::insert(). On failure nothing has changed, and `status` is the number of the
/// reason.
Result<AcDbObjectId> insert_drawing(AcDbDatabase& into, std::wstring_view name, AcDbDatabase& from,
                                    Acad::ErrorStatus& status);

}  // namespace cad
