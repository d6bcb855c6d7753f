#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Lines of a few characters, which nearly all lines of a drawing are: read several bytes at once.
namespace cad::dxf {

/// A line that holds a group code.
struct CodeLine {
  int code = 0;
  std::size_t length = 0;  ///< its end included
};

/// By number, the three columns it takes right-aligned, the first in the lowest byte. As long as
/// any three bytes can say by their lower halves, so that reading needs no bounds check.
inline constexpr auto kThreeColumns = [] {
  std::array<std::uint32_t, 15 * 111 + 1> columns{};
  for (std::uint32_t n = 0; n < 1000; ++n) {
    const std::uint32_t hundreds = n >= 100 ? '0' + n / 100 : ' ';
    const std::uint32_t tens = n >= 10 ? '0' + n / 10 % 10 : ' ';
    columns[n] = hundreds | tens << 8 | ('0' + n % 10) << 16;
  }
  return columns;
}();

inline constexpr std::size_t kLongestUsualCodeLine = 6;

/// The code line at `line`, of whose bytes kLongestUsualCodeLine must be readable, where it is
/// spelled as most programs do: in three columns, or in four as those of extended data. False for
/// any other line; `out` is void then.
///
/// Each length stands in a branch of its own, so that the processor guesses it and reads on behind
/// the line before it has looked at the line. Adding it up took half as long again.
inline bool read_usual_code_line(const char* line, CodeLine& out) {
  static_assert(std::endian::native == std::endian::little);
  std::uint32_t text;
  std::memcpy(&text, line, sizeof text);
  const std::uint32_t code = (text & 15) * 100 + (text >> 8 & 15) * 10 + (text >> 16 & 15);
  const bool is_code = kThreeColumns[code] == (text & 0xFFFFFF);
  const std::uint32_t behind = text >> 24;
  if (behind == '\n') {
    out = {static_cast<int>(code), 4};
    return is_code;
  }
  if (behind == '\r') {
    out = {static_cast<int>(code), 5};
    return is_code && line[4] == '\n';
  }
  const std::uint32_t fourth = behind - '0';
  if (line[4] == '\n') {
    out = {static_cast<int>(code * 10 + fourth), 5};
    return is_code && fourth <= 9;
  }
  out = {static_cast<int>(code * 10 + fourth), 6};
  return is_code && fourth <= 9 && line[4] == '\r' && line[5] == '\n';
}

/// The number of a group code in four columns: digits, blanks in front of them where it has fewer.
/// The first column is the lowest byte. Negative for anything else, a number with a sign included.
inline int code_of_columns(std::uint32_t text) {
  const std::uint32_t is_digit = text & 0x10101010;  // a blank lacks this bit
  // A blank behind a digit, and no digit at all.
  const std::uint32_t misplaced =
      (is_digit & ~(is_digit >> 8) & 0x00101010) | (~is_digit & 0x10000000);
  const std::uint32_t digits = (text | 0x10101010) ^ 0x30303030;
  const std::uint32_t allowed = (is_digit >> 4) * 0x0F;  // a byte without the bit must be a blank
  const std::uint32_t wrong = (digits & ~allowed) | ((digits + 0x76767676) & 0x80808080);
  if ((misplaced | wrong) != 0) return -1;
  const std::uint32_t pairs = (digits * 10 + (digits >> 8)) & 0x00FF00FF;
  return static_cast<int>((pairs & 0xFF) * 100 + (pairs >> 16));
}

/// The first line feed at `at` or behind it; null when there is none in front of `end`.
inline const char* find_newline(const char* at, const char* end) {
#if defined(__SSE2__)
  if (end - at >= 16) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const auto found =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))));
    if (found != 0) return at + std::countr_zero(found);
    at += 16;
  }
#endif
  return static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
}

}  // namespace cad::dxf
