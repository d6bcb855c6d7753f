#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/geometry/point3d.h"

namespace cad {

class DocumentSession;

/// What names of object snaps ("_end", "mid,cen", "non") ask for: their names, or an empty text for
/// none. Nothing when the text is no such name.
std::optional<std::wstring> snap_modes(std::wstring_view typed);

/// The point nearest to `point` that one of the modes finds on the entities within the aperture;
/// all points in the user's coordinates.
std::optional<AcGePoint3d> snap_point(DocumentSession& session, const AcGePoint3d& point,
                                      std::wstring_view modes);

}  // namespace cad
