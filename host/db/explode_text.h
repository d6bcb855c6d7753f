#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/db/group_list.h"
#include "host/font/mtext_layout.h"

namespace cad {

/// A line of a MTEXT as a TEXT holds it: without formatting codes, %% codes kept.
std::wstring plain_line(std::wstring_view contents);

/// A TEXT for each line of a MTEXT, at its place.
std::vector<GroupList> lines_of_mtext(AcDbObjectId mtext);

}  // namespace cad
