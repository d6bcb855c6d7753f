#include "host/base/decimal_text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace cad {
namespace {

// A double has at most 767 significant decimal digits: with that many, the text is exact.
constexpr int kAllDigits = 767;
// Behind that many decimals the digits of a fraction need more than 128 bits.
constexpr int kMostShortDecimals = 19;

__extension__ using Wide = unsigned __int128;

constexpr std::array<std::uint64_t, kMostShortDecimals + 1> kPowersOfTen = [] {
  std::array<std::uint64_t, kMostShortDecimals + 1> powers{};
  std::uint64_t power = 1;
  for (std::uint64_t& p : powers) {
    p = power;
    power *= 10;
  }
  return powers;
}();

/// What stands for the digits of a value that is no finite number.
std::string_view digits_of_no_number(double value) {
  if (std::isinf(value)) return "1#INF";
  constexpr std::uint64_t kIndefinite = 0xFFF8'0000'0000'0000;  // what 0.0 / 0.0 gives
  constexpr std::uint64_t kQuiet = 0x0008'0000'0000'0000;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  if (bits == kIndefinite) return "1#IND";
  return (bits & kQuiet) != 0 ? "1#QNAN" : "1#SNAN";
}

int decimals_meant(int decimals) { return decimals < 0 ? 6 : std::min(decimals, kMostDecimals); }

}  // namespace

/// Decimal digits d.ddd * 10^exponent.
struct DecimalText::Digits {
  std::array<char, kAllDigits> text;
  int count = 0;
  int exponent = 0;

  /// All digits of the value, its sign apart.
  explicit Digits(double value) {
    if (!std::isfinite(value)) {
      const std::string_view stand_in = digits_of_no_number(value);
      count = static_cast<int>(stand_in.copy(text.data(), stand_in.size()));
      return;
    }
    char all[kAllDigits + 16];  // and the point, and the exponent
    const char* const end = std::to_chars(all, std::end(all), std::fabs(value),
                                          std::chars_format::scientific, kAllDigits - 1)
                                .ptr;
    const char* at = all;
    for (; *at != 'e'; ++at)
      if (*at != '.') text[static_cast<std::size_t>(count++)] = *at;
    at += at[1] == '+' ? 2 : 1;
    std::from_chars(at, end, exponent);
  }

  char at(int index) const {
    return index >= 0 && index < count ? text[static_cast<std::size_t>(index)] : '0';
  }

  /// Keeps so many digits, half away from zero. A number below zero leaves none.
  void round_to(int kept) {
    if (kept >= count) return;
    const bool up = kept >= 0 && at(kept) >= '5';
    count = std::max(kept, 0);
    if (!up) return;
    int last = count;
    while (last > 0 && at(last - 1) == '9') --last;
    if (last == 0) {  // 9.99 became 10: one digit says it
      text[0] = '1';
      count = 1;
      ++exponent;
      return;
    }
    count = last;
    ++text[static_cast<std::size_t>(last - 1)];
  }
};

/// Numbers below 2^63 with few decimals, in integers. Answers false for all others.
bool DecimalText::put_short(double magnitude, int decimals) {
  if (!(magnitude < 0x1p63) || decimals > kMostShortDecimals) return false;
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const int raised = static_cast<int>(bits >> 52);
  // magnitude = mantissa / 2^shift
  const std::uint64_t mantissa =
      (bits & 0xF'FFFF'FFFF'FFFF) | (raised == 0 ? 0 : std::uint64_t{1} << 52);
  const int shift = 1075 - std::max(raised, 1);
  std::uint64_t whole = 0;
  std::uint64_t scaled = 0;  // the fraction times 10^decimals
  const std::uint64_t ten = kPowersOfTen[static_cast<std::size_t>(decimals)];
  if (shift <= 0) {
    whole = mantissa << -shift;
  } else {
    whole = shift < 64 ? mantissa >> shift : 0;
    const std::uint64_t fraction = mantissa - (shift < 64 ? whole << shift : 0);
    // Below 2^53 * 10^19 < 2^117: a larger shift leaves nothing, not even a half.
    if (shift < 120) {
      const Wide product = static_cast<Wide>(fraction) * ten;
      scaled = static_cast<std::uint64_t>(product >> shift) +
               (static_cast<std::uint64_t>(product >> (shift - 1)) & 1);
    }
    if (scaled == ten) {
      scaled = 0;
      ++whole;
    }
  }
  end_ = static_cast<std::size_t>(
      std::to_chars(room_.data() + end_, room_.data() + room_.size(), whole).ptr - room_.data());
  if (decimals == 0) return true;
  put('.');
  end_ += static_cast<std::size_t>(decimals);
  for (std::size_t i = 1; i <= static_cast<std::size_t>(decimals); ++i) {
    room_[end_ - i] = static_cast<char>('0' + scaled % 10);
    scaled /= 10;
  }
  return true;
}

void DecimalText::put_fixed(const Digits& digits, int decimals) {
  for (int place = std::max(digits.exponent, 0); place >= -decimals; --place) {
    if (place == -1) put('.');
    put(digits.at(digits.exponent - place));
  }
}

void DecimalText::put_scientific(const Digits& digits, int decimals, bool point) {
  put(digits.at(0));
  if (decimals > 0 || point) put('.');
  for (int i = 1; i <= decimals; ++i) put(digits.at(i));
  put('e');
  put(digits.exponent < 0 ? '-' : '+');
  const int size = std::abs(digits.exponent);
  for (const int unit : {100, 10, 1}) put(static_cast<char>('0' + size / unit % 10));
}

DecimalText DecimalText::fixed(double value, int decimals, bool point) {
  decimals = decimals_meant(decimals);
  DecimalText text;
  if (std::signbit(value)) text.put('-');
  if (!text.put_short(std::fabs(value), decimals)) {
    Digits digits(value);
    digits.round_to(digits.exponent + 1 + decimals);
    text.put_fixed(digits, decimals);
  }
  if (decimals == 0 && point) text.put('.');
  return text;
}

DecimalText DecimalText::scientific(double value, int decimals, bool point) {
  decimals = decimals_meant(decimals);
  DecimalText text;
  if (std::signbit(value)) text.put('-');
  Digits digits(value);
  digits.round_to(decimals + 1);
  text.put_scientific(digits, decimals, point);
  return text;
}

DecimalText DecimalText::general(double value, int significant, bool whole) {
  significant = std::clamp(decimals_meant(significant), 1, kMostDecimals);
  DecimalText text;
  if (std::signbit(value)) text.put('-');
  Digits digits(value);
  digits.round_to(significant);
  // Zeros at the end are those behind the last digit that counts.
  int shown = significant;
  if (!whole) {
    shown = std::max(std::min(digits.count, significant), 1);
    while (shown > 1 && digits.at(shown - 1) == '0') --shown;
  }
  if (digits.exponent < -4 || digits.exponent >= significant) {
    text.put_scientific(digits, shown - 1, whole);
  } else {
    const int decimals = std::max(shown - 1 - digits.exponent, 0);
    text.put_fixed(digits, decimals);
    if (decimals == 0 && whole) text.put('.');
  }
  return text;
}

}  // namespace cad
