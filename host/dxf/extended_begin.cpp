#include "host/dxf/extended_begin.h"

#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cad::dxf {
namespace {

constexpr std::string_view kCode = "1001";

/// What stands at an offset where kCode may begin. Lines take turns: a code, its value.
enum class Found { kNothing, kBegin, kUnclear };

unsigned odd_bits(unsigned bits) { return static_cast<unsigned>(std::popcount(bits)) & 1; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// `odd` is 1 when an odd number of lines ends in front of the offset: it stands in a value.
Found look(std::string_view record, std::size_t at, unsigned odd) {
  if (odd != 0 || record.substr(at, kCode.size()) != kCode) return Found::kNothing;
  const std::size_t behind = at + kCode.size();
  if (behind == record.size()) return Found::kUnclear;
  if (is_digit(record[behind])) return Found::kNothing;
  const bool whole_line =
      (record[behind] == '\n' || record[behind] == '\r') && (at == 0 || record[at - 1] == '\n');
  return whole_line ? Found::kBegin : Found::kUnclear;
}

}  // namespace

std::optional<std::size_t> extended_data_begin(std::string_view record) {
  std::size_t at = 0;
  unsigned odd = 0;
#if defined(__SSE2__)
  const auto load = [&](std::size_t from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(record.data() + from));
  };
  constexpr std::size_t kBlock = 16, kLast = 3;
  for (; at + kBlock + kLast <= record.size(); at += kBlock) {
    const __m128i block = load(at);
    const auto ends =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))));
    const __m128i one = _mm_set1_epi8('1');
    auto ones = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_and_si128(_mm_cmpeq_epi8(block, one), _mm_cmpeq_epi8(load(at + kLast), one))));
    for (; ones != 0; ones &= ones - 1) {
      const auto place = static_cast<unsigned>(std::countr_zero(ones));
      const unsigned before = ends & ((1u << place) - 1);
      const Found found = look(record, at + place, odd ^ odd_bits(before));
      if (found == Found::kBegin) return at + place;
      if (found == Found::kUnclear) return std::nullopt;
    }
    odd ^= odd_bits(ends);
  }
#endif
  for (; at < record.size(); ++at) {
    const Found found = look(record, at, odd);
    if (found == Found::kBegin) return at;
    if (found == Found::kUnclear) return std::nullopt;
    odd ^= record[at] == '\n';
  }
  const bool whole = record.empty() || (record.back() == '\n' && odd == 0);
  return whole ? std::optional(record.size()) : std::nullopt;
}

}  // namespace cad::dxf
