#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cad::dxf {

/// Finds line ends in bulk: fills an array with the offsets of the next newlines. Looking at 64
/// bytes at once makes this about four times as fast as one memchr() per line, whose call costs
/// more than the six or seven bytes a line of a drawing holds.
class LineSplitter {
 public:
  static constexpr std::size_t kBatch = 2048;

  explicit LineSplitter(std::string_view bytes) : bytes_(bytes) {}

  /// Collects newlines from `position` on, at most kBatch; fewer only at the end of the bytes.
  std::size_t collect(std::size_t position) {
    const char* const data = bytes_.data();
    const std::size_t size = bytes_.size();
    std::size_t count = 0;
    std::size_t at = position;
    for (; at + 64 <= size && count + 64 <= kBatch; at += 64) {
      for (std::uint64_t found = newlines_of_64(data + at); found; found &= found - 1) {
        ends_[count++] = at + static_cast<std::size_t>(std::countr_zero(found));
      }
    }
    if (at + 64 > size) {
      for (; at < size && count < kBatch; ++at) {
        if (data[at] == '\n') ends_[count++] = at;
      }
    }
    return count;
  }

  std::uint64_t end(std::size_t i) const { return ends_[i]; }

 private:
  static std::uint64_t newlines_of_64(const char* data);

  std::string_view bytes_;
  std::array<std::uint64_t, kBatch> ends_;
};

inline std::uint64_t LineSplitter::newlines_of_64(const char* data) {
  std::uint64_t found = 0;
#if defined(__SSE2__)
  const __m128i newline = _mm_set1_epi8('\n');
  for (int i = 0; i < 4; ++i) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16 * i));
    const auto mask = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, newline)));
    found |= static_cast<std::uint64_t>(mask) << (16 * i);
  }
#else
  for (int i = 0; i < 64; ++i) {
    found |= static_cast<std::uint64_t>(data[i] == '\n') << i;
  }
#endif
  return found;
}

}  // namespace cad::dxf
