#include "host/dxf/plain_text.h"

#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cad::dxf {

#if defined(__SSE2__)
namespace {

static_assert(sizeof(wchar_t) == 4);

__m128i load(const void* from) { return _mm_loadu_si128(static_cast<const __m128i*>(from)); }

/// Bits of the bytes that are a caret or a backslash.
__m128i escapes_in(__m128i bytes) {
  return _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('^')),
                      _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')));
}

/// Of saturated bytes, in which characters beyond ASCII are 128 and above: negative.
__m128i not_plain(__m128i bytes) {
  const __m128i outside = _mm_or_si128(_mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')),
                                       _mm_cmpeq_epi8(bytes, _mm_set1_epi8(0x7F)));
  return _mm_or_si128(outside, escapes_in(bytes));
}

/// Returns what is not 0 when one of the eight is not plain.
int narrow_eight(const wchar_t* from, char* to) {
  const __m128i words = _mm_packs_epi32(load(from), load(from + 4));
  const __m128i bytes = _mm_packus_epi16(words, words);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to), bytes);
  return _mm_movemask_epi8(not_plain(bytes));
}

int narrow_four(const wchar_t* from, char* to) {
  const __m128i words = _mm_packs_epi32(load(from), _mm_setzero_si128());
  const __m128i bytes = _mm_packus_epi16(words, words);
  const int four = _mm_cvtsi128_si32(bytes);
  std::memcpy(to, &four, sizeof four);
  return _mm_movemask_epi8(not_plain(bytes)) & 0xF;
}

int widen_sixteen(const char* from, wchar_t* to) {
  const __m128i bytes = load(from);
  const __m128i zero = _mm_setzero_si128();
  const __m128i low = _mm_unpacklo_epi8(bytes, zero);
  const __m128i high = _mm_unpackhi_epi8(bytes, zero);
  const auto store = [&](int at, __m128i four) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), four);
  };
  store(0, _mm_unpacklo_epi16(low, zero));
  store(4, _mm_unpackhi_epi16(low, zero));
  store(8, _mm_unpacklo_epi16(high, zero));
  store(12, _mm_unpackhi_epi16(high, zero));
  return _mm_movemask_epi8(_mm_or_si128(bytes, escapes_in(bytes)));
}

int widen_four(const char* from, wchar_t* to) {
  int four;
  std::memcpy(&four, from, sizeof four);
  const __m128i bytes = _mm_cvtsi32_si128(four);
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to),
                   _mm_unpacklo_epi16(_mm_unpacklo_epi8(bytes, zero), zero));
  return _mm_movemask_epi8(_mm_or_si128(bytes, escapes_in(bytes)));
}

}  // namespace
#endif

bool narrow_plain_text(std::wstring_view text, char* to) {
  const std::size_t size = text.size();
  std::size_t at = 0;
#if defined(__SSE2__)
  int other = 0;
  for (; at + 8 <= size; at += 8) other |= narrow_eight(text.data() + at, to + at);
  if (at + 4 <= size) {
    other |= narrow_four(text.data() + at, to + at);
    at += 4;
  }
  if (other != 0) return false;
#endif
  for (; at < size; ++at) {
    if (!is_plain_character(text[at])) return false;
    to[at] = static_cast<char>(text[at]);
  }
  return true;
}

bool widen_plain_bytes(std::string_view bytes, wchar_t* to) {
  const std::size_t size = bytes.size();
  std::size_t at = 0;
#if defined(__SSE2__)
  int other = 0;
  for (; at + 16 <= size; at += 16) other |= widen_sixteen(bytes.data() + at, to + at);
  for (; at + 4 <= size; at += 4) other |= widen_four(bytes.data() + at, to + at);
  if (other != 0) return false;
#endif
  for (; at < size; ++at) {
    const char c = bytes[at];
    if (static_cast<signed char>(c) < 0 || c == '^' || c == '\\') return false;
    to[at] = static_cast<wchar_t>(c);
  }
  return true;
}

}  // namespace cad::dxf
