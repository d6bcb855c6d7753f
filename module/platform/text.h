#pragma once

#include <string_view>

#include "host/app/console.h"
#include "host/base/codepage.h"
#include "host/base/decimal_text.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "module/platform/foundation.h"

/// The number a text begins with, 0 when it begins with none.
inline double _wtof(const wchar_t* text) { return cad::wtof(text); }
inline long _wtol(const wchar_t* text) { return cad::wtol(text); }
inline int _wtoi(const wchar_t* text) { return cad::wtoi(text); }

namespace dim {

using cad::append_ascii;
using cad::append_fixed;
using cad::DecimalText;
using cad::equal_no_case;  // A-Z and a-z alike, every other character as it is
using cad::from_utf8;

/// The text of a pointer that may be null, null-terminated.
inline std::wstring_view text_of(const wchar_t* text) { return text ? text : L""; }

/// The text printf would make in the host: "%f" rounds exact ties away from zero, "%ld" has 32
/// bits, "%s" takes wide text.
template <class... Arguments>
CString format_text(const wchar_t* format, Arguments... arguments) {
  return cad::format_wide(format, arguments...);
}

}  // namespace dim
