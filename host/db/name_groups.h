#pragma once

#include <string_view>

namespace cad {

/// The symbol table whose records a text of that group names in an object of that kind ("LAYER" for
/// the 8 of any entity); empty where the text is no such name. In drawings these references are
/// names, not handles.
std::string_view named_table(std::string_view kind, int code);

}  // namespace cad
