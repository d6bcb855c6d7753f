#pragma once

#include <string_view>

#include "host/base/result.h"
#include "host/db/drawing.h"

namespace cad {

/// Why a record of a table cannot be renamed: everything leans on it, the new name is none, or
/// taken.
Status check_rename(Drawing& drawing, const Drawing::Table& table, std::wstring_view from,
                    std::wstring_view to);

/// Gives every group and header variable that names a record the new name.
void rename_references(Drawing& drawing, const Drawing::Table& table, std::wstring_view from,
                       std::wstring_view to);

}  // namespace cad
