#pragma once

#include <string>
#include <string_view>

namespace cad::lisp {

/// Symbol names are compared after this: A-Z, everything else as it is written.
constexpr wchar_t upper_ascii(wchar_t c) { return c >= L'a' && c <= L'z' ? c - (L'a' - L'A') : c; }

/// The symbol name a table row or a program spells.
inline std::wstring symbol_name(std::wstring_view text) {
  std::wstring out(text);
  for (wchar_t& c : out) c = upper_ascii(c);
  return out;
}
inline std::wstring symbol_name(std::string_view ascii) {
  return symbol_name(std::wstring(ascii.begin(), ascii.end()));
}

}  // namespace cad::lisp
