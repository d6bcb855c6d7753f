#pragma once

#include <span>
#include <string>
#include <vector>

#include "host/db/drawing.h"

/// Objects filed in dictionaries below the root, by the keys that lead there:
/// {"ACAD_IMAGE_DICT", "photo"}.
namespace cad {

/// Empty for an object that is not filed there.
std::vector<std::wstring> keys_to(Drawing& drawing, const Stub& object);
/// The object, the root for no keys; null when there is none.
Stub* object_at(Drawing& drawing, std::span<const std::wstring> keys);
/// The dictionary at these keys, made with those on the way to it. Null when something else is
/// there, or the drawing has no dictionaries.
Stub* ensure_dictionary(Drawing& drawing, std::span<const std::wstring> keys);

}  // namespace cad
