#pragma once

#include <string>
#include <string_view>

namespace cad {

/// Why a function cannot be had here, by its name in capital letters: "VLA-ADD needs ActiveX,
/// which this host does not have". Empty for a name that says nothing.
std::wstring reason_of_missing(std::wstring_view name);

}  // namespace cad
