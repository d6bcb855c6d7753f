#pragma once

#include <type_traits>

#include "host/app/console.h"
#include "network/strings.h"

/// Measured values and the texts made of them.
namespace Gx {

/// Stands for a value that nobody measured.
inline constexpr double kNoData = -999999999.0;

constexpr bool IsInValidData(double value) { return value == kNoData; }
constexpr bool IsValidData(double value) { return !IsInValidData(value); }

/// What printf makes of the arguments in the host, see cad::format_wide(). A CString may stand
/// where "%s" wants text.
template <class... Arguments>
CString Format(const wchar_t* format, const Arguments&... arguments) {
  [[maybe_unused]] const auto plain = [](const auto& argument) {
    if constexpr (std::is_same_v<std::decay_t<decltype(argument)>, CString>) {
      return argument.c_str();
    } else {
      return argument;
    }
  };
  return cad::format_wide(format, plain(arguments)...);
}

}  // namespace Gx
