#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/dxf/dialect.h"

namespace cad::dxf {

/// Text of a tag between its bytes in the file and characters.
///
/// On top of the code page a drawing spells control characters with a caret (^J is a line feed,
/// "^ " a caret), characters its code page lacks as \U+XXXX, and characters of another multibyte
/// page as \M+nXXXX. Reading undoes all three; writing uses the caret and, where the code page
/// needs it, \U+XXXX. A backslash that would begin such an escape is written as \U+005C, so that
/// every text reads back as it was. Escapes that name the null stay as they are, because texts end
/// at a null. Bytes that are no text are written back as they were where that reads the same.
void append_decoded(std::string_view bytes, const Dialect& dialect, std::wstring& out);
void append_encoded(std::wstring_view text, const Dialect& dialect, std::string& out);

/// Whether characters of `text` look like an escape that begins at `at`. Text written in pieces
/// must not be parted inside: the pieces would be escaped each for itself and read as one.
bool looks_escaped(std::wstring_view text, std::size_t at);
/// The most characters such an escape has.
inline constexpr std::size_t kLongestEscape = 8;

}  // namespace cad::dxf
