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

/// Stores that point in group 10 of a text whose tags were written as such. Nothing happens to a
/// text that is placed by its left end or between two points, or that lacks its alignment point.
void lay_out_text(AcDbText& text);

}  // namespace cad
