#pragma once

#include <cstddef>
#include <string_view>

/// The codes that TEXT and MTEXT have in common.
namespace cad::font {

struct Escape {
  std::size_t length = 0;  ///< characters it takes; 0: there is none here
  wchar_t character = 0;   ///< what it shows, or 0
  wchar_t toggle = 0;      ///< 'u', 'o' or 'k' when it switches a line on and off
};

/// %%d %%c %%p %%u %%o %%k %%nnn %%% at `at`, letter case ignored.
Escape percent_code(std::wstring_view text, std::size_t at);
/// \U+XXXX (two of them for a character beyond U+FFFF) or \M+nXXXX at `at`, the backslash included.
Escape character_code(std::wstring_view text, std::size_t at);

}  // namespace cad::font
