#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/db/group_list.h"

namespace cad {

/// The lines of a MTEXT's contents without formatting codes. Lines are broken where the contents
/// say so, and between words where they would be wider than the reference width unless that is 0.
std::vector<std::wstring> plain_lines(std::wstring_view contents, double height,
                                      double reference_width);

/// A TEXT for each line of a MTEXT, at its place.
std::vector<GroupList> lines_of_mtext(AcDbObjectId mtext);

}  // namespace cad
