#include "host/dxf/text.h"

#include <algorithm>
#include <optional>

#include "host/base/codepage.h"
#include "host/dxf/plain_text.h"

namespace cad::dxf {
namespace {

constexpr std::size_t kUnicodeEscapeLength = 7;    // \U+XXXX
constexpr std::size_t kMultibyteEscapeLength = 8;  // \M+nXXXX
static_assert(kMultibyteEscapeLength == kLongestEscape);

template <class Char>
int hex_digit(Char c) {
  if (c >= '0' && c <= '9') return static_cast<int>(c - '0');
  if (c >= 'A' && c <= 'F') return static_cast<int>(c - 'A') + 10;
  if (c >= 'a' && c <= 'f') return static_cast<int>(c - 'a') + 10;
  return -1;
}

template <class View>
std::optional<unsigned> four_hex_digits(View text, std::size_t at) {
  if (at + 4 > text.size()) return std::nullopt;
  unsigned value = 0;
  for (std::size_t i = at; i < at + 4; ++i) {
    const int digit = hex_digit(text[i]);
    if (digit < 0) return std::nullopt;
    value = value << 4 | static_cast<unsigned>(digit);
  }
  return value;
}

/// The value of \U+XXXX standing at `at`.
template <class View>
std::optional<unsigned> unicode_escape(View text, std::size_t at) {
  if (at + kUnicodeEscapeLength > text.size()) return std::nullopt;
  if (text[at] != '\\' || (text[at + 1] != 'U' && text[at + 1] != 'u') || text[at + 2] != '+') {
    return std::nullopt;
  }
  return four_hex_digits(text, at + 3);
}

struct Multibyte {
  CodePage page;
  unsigned bytes;
};

/// The value of \M+nXXXX standing at `at`.
template <class View>
std::optional<Multibyte> multibyte_escape(View text, std::size_t at) {
  constexpr CodePage kPages[] = {CodePage::k932, CodePage::k950, CodePage::k949, CodePage::k1361,
                                 CodePage::k936};
  if (at + kMultibyteEscapeLength > text.size()) return std::nullopt;
  if (text[at] != '\\' || (text[at + 1] != 'M' && text[at + 1] != 'm') || text[at + 2] != '+' ||
      text[at + 3] < '1' || text[at + 3] > '5') {
    return std::nullopt;
  }
  const auto bytes = four_hex_digits(text, at + 4);
  if (!bytes) return std::nullopt;
  return Multibyte{kPages[static_cast<std::size_t>(text[at + 3] - '1')], *bytes};
}

/// False, and nothing appended, for the null, which would cut the text short: its escapes stay.
bool append_code_point(unsigned value, std::wstring& out) {
  const bool low = value >= 0xDC00 && value <= 0xDFFF;
  if (low && !out.empty() && out.back() >= 0xD800 && out.back() <= 0xDBFF) {
    const auto high = static_cast<unsigned>(out.back());
    out.back() = static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10) + (value - 0xDC00));
    return true;
  }
  if (value == 0) return false;
  out.push_back(static_cast<wchar_t>(value));
  return true;
}

bool append_multibyte(const Multibyte& value, std::wstring& out) {
  const char bytes[] = {static_cast<char>(value.bytes >> 8), static_cast<char>(value.bytes & 0xFF)};
  const std::wstring text = decode({bytes, 2}, value.page);
  if (text.find(L'\0') != std::wstring::npos) return false;
  out += text;
  return true;
}

/// Undoes the escapes of text whose bytes are decoded already. A code page whose second bytes
/// include the backslash must be decoded first.
void append_unescaped(std::wstring_view text, std::wstring& out) {
  for (std::size_t i = 0; i < text.size();) {
    const wchar_t c = text[i];
    if (c == L'^' && i + 1 < text.size()) {
      const wchar_t next = text[i + 1];
      if (next == L' ') {
        out.push_back(L'^');
        i += 2;
        continue;
      }
      if (next > L'@' && next <= L'_') {
        out.push_back(next - L'@');
        i += 2;
        continue;
      }
    }
    if (c == L'\\') {
      if (const auto value = unicode_escape(text, i); value && append_code_point(*value, out)) {
        i += kUnicodeEscapeLength;
        continue;
      }
      if (const auto value = multibyte_escape(text, i); value && append_multibyte(*value, out)) {
        i += kMultibyteEscapeLength;
        continue;
      }
    }
    out.push_back(c);
    ++i;
  }
}

void append_unicode_escape(unsigned value, std::string& out) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  out += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) out.push_back(kDigits[value >> shift & 0xF]);
}

void append_character(wchar_t c, CodePage page, std::string& out) {
  const auto value = static_cast<char32_t>(c);
  if (encode_char(value, page, out)) return;
  if (value > 0x10FFFF) {  // no character at all
    append_unicode_escape(0xFFFD, out);
    return;
  }
  if (value > 0xFFFF) {
    const auto rest = static_cast<unsigned>(value) - 0x10000;
    append_unicode_escape(0xD800 + (rest >> 10), out);
    append_unicode_escape(0xDC00 + (rest & 0x3FF), out);
    return;
  }
  append_unicode_escape(static_cast<unsigned>(value), out);
}

bool is_mark(wchar_t c) { return c >= 0xDC80 && c <= 0xDCFF; }

/// Marks of undecoded bytes (host/base/codepage.h) become their byte, or, with `escape_marks`, an
/// escape like what the code page lacks.
void append_text(std::wstring_view text, const Dialect& dialect, bool escape_marks,
                 std::string& out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const wchar_t c = text[i];
    if (c >= L' ' && c < 0x7F && c != L'^' && c != L'\\') {
      out.push_back(static_cast<char>(c));
    } else if (c == L'^') {
      out += "^ ";
    } else if (c >= 0 && c < L' ') {
      out.push_back('^');
      out.push_back(static_cast<char>(c + '@'));
    } else if (c == L'\\') {
      if (looks_escaped(text, i)) {
        append_unicode_escape('\\', out);
      } else {
        out.push_back('\\');
      }
    } else if (escape_marks && is_mark(c)) {
      append_unicode_escape(static_cast<unsigned>(c), out);
    } else {
      append_character(c, dialect.code_page, out);
    }
  }
}

}  // namespace

void append_decoded(std::string_view bytes, const Dialect& dialect, std::wstring& out) {
  const std::size_t begin = out.size();
  out.resize(begin + bytes.size());
  if (widen_plain_bytes(bytes, out.data() + begin)) return;
  out.resize(begin);
  if (bytes.find_first_of("^\\") == bytes.npos)
    decode_append(bytes, dialect.code_page, out);
  else
    append_unescaped(decode(bytes, dialect.code_page), out);
}

void append_encoded(std::wstring_view text, const Dialect& dialect, std::string& out) {
  const std::size_t begin = out.size();
  out.resize(begin + text.size());
  if (narrow_plain_text(text, out.data() + begin)) return;
  out.resize(begin);
  append_text(text, dialect, false, out);
  if (std::none_of(text.begin(), text.end(), is_mark)) return;
  // A byte that was no character by itself may become one with what now follows it.
  std::wstring read;
  append_decoded(std::string_view(out).substr(begin), dialect, read);
  if (read == text) return;
  out.resize(begin);
  append_text(text, dialect, true, out);
}

bool looks_escaped(std::wstring_view text, std::size_t at) {
  return unicode_escape(text, at) || multibyte_escape(text, at);
}

}  // namespace cad::dxf
