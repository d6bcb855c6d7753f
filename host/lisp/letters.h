#pragma once

namespace cad::lisp {

/// Letter case of the alphabets drawings use (Latin, Greek, Cyrillic, full-width forms), the same
/// in every locale of the process.
wchar_t to_upper(wchar_t c);
wchar_t to_lower(wchar_t c);
/// For the @ and . of wcmatch.
bool is_letter(wchar_t c);
bool is_letter_or_digit(wchar_t c);

}  // namespace cad::lisp
