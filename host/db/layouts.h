#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/db/object_id.h"

namespace cad {

/// A layout of a drawing: a tab with a space of its own.
struct Layout {
  std::wstring name;
  AcDbObjectId id;     ///< the LAYOUT object
  AcDbObjectId block;  ///< block record of its space
  int tab = 0;         ///< order of tabs; the model's is 0
};

/// By tab order. Drawings without layouts (R14 and before) have none.
std::vector<Layout> layouts_of(AcDbDatabase& database);
/// The space of the layout of that name, letter case ignored; "Model" is always there. Null when
/// there is none.
AcDbObjectId layout_space(AcDbDatabase& database, std::wstring_view name);

}  // namespace cad
