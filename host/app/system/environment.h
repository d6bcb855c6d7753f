#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cad {

/// An environment variable as LISP programs see it: what they set themselves, else the process's,
/// else what names of the host's own system mean here (TEMP, USERNAME, ...).
std::optional<std::wstring> environment_value(std::wstring_view name);
/// Sets it for LISP programs only, as long as the host lives.
void set_environment_value(std::wstring_view name, std::wstring_view value);

}  // namespace cad
