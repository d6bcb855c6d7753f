#pragma once

#include <string_view>

/// Texts whose characters are their own bytes in every drawing: nearly all are so, and they are
/// copied several characters at a time.
namespace cad::dxf {

/// Whether a character is its own byte in every drawing: ASCII from the blank on, but the caret,
/// the backslash and the last one.
inline bool is_plain_character(wchar_t c) {
  return c >= L' ' && c < 0x7F && c != L'^' && c != L'\\';
}

/// Writes the characters as bytes to `to`, which has room for them all. False when one of them is
/// not plain; what was written is void then.
bool narrow_plain_text(std::wstring_view text, char* to);

/// Writes the bytes of a file as characters to `to`, which has room for them all. False when some
/// of them are spelled otherwise: beyond ASCII, a caret or a backslash.
bool widen_plain_bytes(std::string_view bytes, wchar_t* to);

}  // namespace cad::dxf
