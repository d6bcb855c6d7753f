#pragma once

#include <string>
#include <string_view>

namespace cad {

/// The folder this code's library (or program) was loaded from, without a separator at its end.
std::string library_folder();

/// A data folder installed with the program: share/pipenote/`name` beside its libraries, which in a
/// build folder leads to the sources. Empty when there is none.
std::string installed_folder(std::string_view name);

}  // namespace cad
