#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The one door between bytes and wide text. wchar_t holds a whole code point here.
///
/// Reading is total and loses nothing: a byte that is no part of a character (a cut sequence, an
/// overlong form, an unassigned cell) becomes U+DC00 + byte, and writing turns these marks back
/// into the byte. So for every page and every byte string, encoding what was decoded gives the
/// same bytes. Where a page spells one character in two ways, only the spelling that is written
/// again reads as the character; the other reads as marked bytes.
///
/// 0x00-0x7F are ASCII on every page. Tables are built on the first use of a page; not for use
/// from several threads.
namespace cad {

enum class CodePage : std::uint16_t {
  k437 = 437,
  k850 = 850,
  k852 = 852,
  k855 = 855,
  k857 = 857,
  k860 = 860,
  k861 = 861,
  k862 = 862,
  k863 = 863,
  k864 = 864,
  k865 = 865,
  k866 = 866,
  k869 = 869,
  k874 = 874,
  k932 = 932,
  k936 = 936,
  k949 = 949,
  k950 = 950,
  k1250 = 1250,
  k1251 = 1251,
  k1252 = 1252,
  k1253 = 1253,
  k1254 = 1254,
  k1255 = 1255,
  k1256 = 1256,
  k1257 = 1257,
  k1258 = 1258,
  k1361 = 1361,
  kMacRoman = 10000,
  k8859_1 = 28591,
  k8859_2 = 28592,
  k8859_3 = 28593,
  k8859_4 = 28594,
  k8859_5 = 28595,
  k8859_6 = 28596,
  k8859_7 = 28597,
  k8859_8 = 28598,
  k8859_9 = 28599,
  kUtf8 = 65001,
};

/// The page a drawing names in $DWGCODEPAGE ("ANSI_936", "gb2312", "dos437"; letter case and
/// surrounding blanks ignored); empty for a name nobody uses.
std::optional<CodePage> code_page_from_name(std::string_view dxf_name);

/// The name a drawing writes: "ANSI_936". Lives as long as the program.
std::string_view code_page_name(CodePage page);

/// Appends the text of the bytes. Never fails, see above.
void decode_append(std::string_view bytes, CodePage page, std::wstring& out);
std::wstring decode(std::string_view bytes, CodePage page);

/// Appends the bytes of one character. False, and nothing is appended, when the page cannot hold
/// it; surrogates other than the marks of undecoded bytes are never held.
bool encode_char(char32_t c, CodePage page, std::string& out);

/// Appends the bytes of the whole text, with '?' for what the page cannot hold; false when there
/// was any such character.
bool encode_append(std::wstring_view text, CodePage page, std::string& out);

/// UTF-8 in and out. to_utf8 writes U+FFFD for what is no character (a lone surrogate, a number
/// beyond U+10FFFF) and marked bytes as they were: to_utf8(from_utf8(x)) == x always.
std::string to_utf8(std::wstring_view text);
std::wstring from_utf8(std::string_view bytes);

}  // namespace cad
