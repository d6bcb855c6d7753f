#pragma once

#include <string_view>

#include "host/geometry/ge.h"

class AcDbText;

namespace cad {

/// Where the base line of a justified TEXT begins, in the coordinates of its own plane: CAD
/// programs expect it in group 10 and some draw from there. The text must be placed by its
/// alignment point alone; `string` is its text, `anchor` that point
/// in the same coordinates.
AcGePoint3d text_start(const AcDbText& text, std::wstring_view string, const AcGePoint3d& anchor);

}  // namespace cad
