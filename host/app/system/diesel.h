#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cad {

/// What string expressions ask of their surroundings.
struct DieselSurroundings {
  std::function<std::wstring(std::wstring_view)> variable;         ///< as text; empty for none
  std::function<std::optional<double>(std::wstring_view)> number;  ///< of a numeric variable
  std::function<std::wstring(std::wstring_view)> environment;
};

/// The text with every $(function,argument,...) in it replaced by its value, as menus and
/// (menucmd "M=...") evaluate it. An unknown function gives $(name)??, wrong arguments $(name,??),
/// and an expression left open $?.
std::wstring evaluate_diesel(std::wstring_view text, const DieselSurroundings& surroundings);

}  // namespace cad
