#pragma once

#include <cstdarg>
#include <functional>
#include <string>
#include <string_view>

#include "host/db/resbuf.h"

/// The host's command line, where modules and LISP programs print.

/// Prints formatted text as it stands: no line end is added. Returns RTNORM, or RTERROR for a null
/// format. "%s", "%ls" and "%c" take wide text, "%hs" and "%S" bytes in UTF-8; "%ld" and "%lu"
/// print 32 bits, the width of the host's long; numbers do not look at the locale.
int acutPrintf(const ACHAR* format, ...);

namespace cad {

/// The new receiver of everything printed, in UTF-8; an empty function discards it.
void set_console(std::function<void(std::string_view)> sink);
void print_console(std::wstring_view text);

/// The text acutPrintf() prints: what the host's C runtime makes of a wide format. Exact ties round
/// away from zero, exponents have at least three digits; "%n" is ignored.
std::wstring format_wide_list(const ACHAR* format, std::va_list arguments);
/// The same, for the arguments themselves.
std::wstring format_wide(const ACHAR* format, ...);

}  // namespace cad
