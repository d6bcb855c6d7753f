#pragma once

#include <string_view>
#include <vector>

#include "host/app/select/selection_filter.h"
#include "host/app/session.h"

namespace cad {

/// What a selection mode ("X", "_L", ":L") selects in the document, filter applied; the newest
/// entity first where the host itself searches. Raises a LISP error for a mode that needs a screen
/// or makes no sense.
std::vector<AcDbObjectId> select(DocumentSession& session, std::wstring_view mode,
                                 const SelectionFilter& filter);

}  // namespace cad
