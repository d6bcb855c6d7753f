#include "host/font/characters.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace cad::font {
namespace {

struct Range {
  std::uint32_t first, last;
};

template <std::size_t N>
bool is_in(const Range (&ranges)[N], std::uint32_t c) {
  const Range* const after =
      std::upper_bound(std::begin(ranges), std::end(ranges), c,
                       [](std::uint32_t value, const Range& range) { return value < range.first; });
  return after != std::begin(ranges) && c <= std::prev(after)->last;
}

constexpr Range kFullWidth[] = {
    {0x1100, 0x115F}, {0x2E80, 0xA4CF}, {0xA960, 0xA97C}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE30, 0xFE4F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1B000, 0x1B2FF}, {0x20000, 0x3FFFD},
};
constexpr Range kInvisible[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F}, {0x00AD, 0x00AD}, {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}, {0xE0000, 0xE0FFF},
};
constexpr Range kBlanks[] = {
    {0x0020, 0x0020}, {0x00A0, 0x00A0}, {0x2000, 0x200A},
    {0x202F, 0x202F}, {0x205F, 0x205F}, {0x3000, 0x3000},
};

/// Advances of the characters from blank to "~", in 1/21 of the height of a capital letter: the
/// widths of the Hershey Roman simplex characters, from which the usual font was made.
constexpr std::uint8_t kAdvance[] = {
    // blank ! " # $ % & ' ( ) * + , - . /
    16, 10, 16, 21, 20, 24, 26, 10, 14, 14, 16, 26, 10, 26, 10, 22,
    // 0 to 9, : ; < = > ? @
    20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 10, 10, 24, 26, 24, 18, 27,
    // A to Z
    18, 21, 21, 21, 19, 18, 21, 22, 8, 16, 21, 17, 24, 22, 22, 21, 22, 21, 20, 16, 22, 18, 24, 20,
    18, 20,
    // [ \ ] ^ _ `
    14, 14, 14, 16, 16, 10,
    // a to z
    19, 19, 18, 19, 18, 12, 19, 19, 8, 10, 17, 8, 30, 19, 19, 19, 19, 13, 17, 12, 19, 16, 22, 17,
    16, 17,
    // { | } ~
    14, 8, 14, 24};
static_assert(std::size(kAdvance) == '~' - ' ' + 1);

constexpr double kUnits = 21.0;
constexpr double kXHeight = 14.0 / kUnits;  // of "x"

bool is_one_of(std::wstring_view set, std::uint32_t c) {
  return set.find(static_cast<wchar_t>(c)) != std::wstring_view::npos;
}

}  // namespace

bool is_full_width(std::uint32_t c) { return c >= 0x1100 && is_in(kFullWidth, c); }
bool is_invisible(std::uint32_t c) { return is_in(kInvisible, c); }
bool is_blank(std::uint32_t c) { return is_in(kBlanks, c); }

bool may_break_between(wchar_t before, wchar_t after) {
  const auto a = static_cast<std::uint32_t>(before), b = static_cast<std::uint32_t>(after);
  if (!is_full_width(a) && !is_full_width(b)) return false;
  if (is_blank(b) || before == L'\u00A0') return false;
  constexpr std::wstring_view kClosing = L"),.:;!?]}%、。〉》」』】〕〗！％），．：；？］｝”’…—°‰";
  constexpr std::wstring_view kOpening = L"([{〈《「『【〔〖（［｛“‘￥";
  return !is_one_of(kClosing, b) && !is_one_of(kOpening, a);
}

double stroke_advance(std::uint32_t c) {
  if (c >= ' ' && c <= '~') return kAdvance[c - ' '] / kUnits;
  return is_invisible(c) ? 0.0 : is_full_width(c) ? 1.0 : kStrokeDigit;
}

double stroke_top(std::uint32_t c) {
  return is_one_of(L"acegmnopqrsuvwxyz+-=<>:;,._~", c) ? kXHeight : 1.0;
}

double stroke_bottom(std::uint32_t c) {
  return is_one_of(L"gjpqy,;()[]{}|Q", c) ? -kStrokeDescender : 0.0;
}

}  // namespace cad::font
