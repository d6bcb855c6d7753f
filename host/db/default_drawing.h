#pragma once

#include <string>

namespace cad {

/// An empty drawing of release R2013 in UTF-8 with everything a CAD program asks of one: the
/// usual tables, model and paper space, and the root dictionary.
std::string default_drawing();

}  // namespace cad
