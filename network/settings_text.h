#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/base/result.h"

/// Settings files as bytes and as text.
namespace network {

/// How the bytes of a settings file are to be read.
enum class TextEncoding : std::uint8_t { kAnsi936, kUtf8, kUtf8WithMark, kUtf16WithMark };

/// "code page 936", "UTF-8", ...: for people.
const wchar_t* encoding_name(TextEncoding encoding);

/// A mark at the start decides: EF BB BF is UTF-8, FF FE is UTF-16 with the low byte first. Without
/// one the text is UTF-8 when it is valid UTF-8 (a character cut off at the end excepted) and not
/// more likely Chinese of code page 936 that happens to be: such text consists of two-byte
/// characters that are neither Latin-1 nor Greek, which labels never contain.
TextEncoding detect_encoding(std::string_view bytes);

/// How many bytes the mark takes.
std::size_t mark_size(TextEncoding encoding);

/// The text of bytes that carry no mark. Total, see host/base/codepage.h; an odd byte at the end of
/// UTF-16 is left out.
std::wstring decode_settings(std::string_view bytes, TextEncoding encoding);

/// The bytes of a text, '?' for what the encoding cannot hold.
std::string encode_settings(std::wstring_view text, TextEncoding encoding);

/// A settings file larger than this is not read: it is none.
inline constexpr std::size_t kLargestSettingsFile = std::size_t{16} << 20;

/// All bytes of a regular file. The error says why not: no such file, a folder, too large.
cad::Result<std::string> read_settings_file(const std::string& path);

}  // namespace network
