#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/lisp/builtin.h"

namespace cad::lisp {

/// The path of an existing file a program names, as the application finds it.
std::optional<std::string> find_file(Interpreter& interp, std::wstring_view name);

/// The path under which a file a program names is to be made.
std::string place_file(Interpreter& interp, std::wstring_view name);

/// Prints to the file in argument i, or to the command line when that is nil or missing.
void print_to(Call& call, std::size_t i, std::wstring_view text);

}  // namespace cad::lisp
