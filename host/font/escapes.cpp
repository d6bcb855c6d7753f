#include "host/font/escapes.h"

#include <cstdint>
#include <optional>

#include "host/base/codepage.h"
#include "host/base/fold.h"

namespace cad::font {
namespace {

/// `count` hexadecimal digits.
std::optional<std::uint32_t> hexadecimal(std::wstring_view text, std::size_t at,
                                         std::size_t count) {
  if (at > text.size() || text.size() - at < count) return std::nullopt;
  std::uint32_t value = 0;
  for (const wchar_t c : text.substr(at, count)) {
    const wchar_t low = fold_ascii(c);
    const bool digit = low >= L'0' && low <= L'9';
    if (!digit && (low < L'a' || low > L'f')) return std::nullopt;
    value = value * 16 + static_cast<std::uint32_t>(digit ? low - L'0' : low - L'a' + 10);
  }
  return value;
}

constexpr std::size_t kUnicodeLength = 7;  // \U+XXXX
std::optional<std::uint32_t> unicode_code(std::wstring_view text, std::size_t at) {
  if (text.substr(std::min(at, text.size()), 3) != L"\\U+") return std::nullopt;
  return hexadecimal(text, at + 3, 4);
}

constexpr bool is_high(std::uint32_t c) { return c >= 0xD800 && c < 0xDC00; }
constexpr bool is_low(std::uint32_t c) { return c >= 0xDC00 && c < 0xE000; }

}  // namespace

Escape percent_code(std::wstring_view text, std::size_t at) {
  if (text.size() - at < 3 || text[at] != L'%' || text[at + 1] != L'%') return {};
  const wchar_t code = fold_ascii(text[at + 2]);
  switch (code) {
    case L'd':
      return {3, L'\u00B0'};
    case L'p':
      return {3, L'\u00B1'};
    case L'c':
      return {3, L'\u00D8'};
    case L'%':
      return {3, L'%'};
    case L'u':
    case L'o':
    case L'k':
      return {3, 0, code};
    default:
      break;
  }
  constexpr std::size_t kDigits = 3;
  if (text.size() - at < 2 + kDigits) return {};
  std::uint32_t number = 0;
  for (const wchar_t c : text.substr(at + 2, kDigits)) {
    if (c < L'0' || c > L'9') return {};
    number = number * 10 + static_cast<std::uint32_t>(c - L'0');
  }
  return {2 + kDigits, static_cast<wchar_t>(number)};
}

Escape character_code(std::wstring_view text, std::size_t at) {
  if (const auto first = unicode_code(text, at)) {
    const auto second = is_high(*first) ? unicode_code(text, at + kUnicodeLength) : std::nullopt;
    if (!second || !is_low(*second)) return {kUnicodeLength, static_cast<wchar_t>(*first)};
    const std::uint32_t whole = 0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00);
    return {2 * kUnicodeLength, static_cast<wchar_t>(whole)};
  }
  constexpr std::size_t kLength = 8;  // \M+nXXXX
  if (text.size() - at < kLength || text.substr(at, 3) != L"\\M+") return {};
  constexpr CodePage kPages[] = {CodePage::k932, CodePage::k950, CodePage::k949, CodePage::k1361,
                                 CodePage::k936};
  const wchar_t page = text[at + 3];
  const auto bytes = hexadecimal(text, at + 4, 4);
  if (!bytes || page < L'1' || page > L'5') return {};
  const char pair[] = {static_cast<char>(*bytes >> 8), static_cast<char>(*bytes & 0xFF)};
  const std::wstring decoded = decode({pair, 2}, kPages[page - L'1']);
  return {kLength, decoded.size() == 1 ? decoded[0] : L'\uFFFD'};
}

}  // namespace cad::font
