#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// How a real number is printed: the one place that rounds. Nothing here looks at the locale.
namespace cad {

/// The most decimals that are written; larger numbers mean this many, as in the host's C runtime.
inline constexpr int kMostDecimals = 512;

/// The text the host's C runtime prints for a double, held on the stack.
///     DecimalText::fixed(12.25, 1).view()    -> 12.3     an exact tie rounds away from zero
///     DecimalText::fixed(1.005, 2).view()    -> 1.00     it is 1.00499999999999989...
///     DecimalText::fixed(-0.001, 2).view()   -> -0.00    negative zero keeps its sign
/// Every number of decimals is exact. A negative number of decimals means 6, as if none was given.
/// An infinity is written from the digits 1#INF, what is no number from 1#QNAN, 1#SNAN or 1#IND,
/// and these "digits" are rounded and filled up like any others, as they were in that runtime: with
/// six decimals 1.#INF00, with two 1.#J.
class DecimalText {
 public:
  /// "%.*f"; with `point` also behind a number without decimals ("%#.*f").
  static DecimalText fixed(double value, int decimals, bool point = false);
  /// "%.*e": the exponent has at least three digits.
  static DecimalText scientific(double value, int decimals, bool point = false);
  /// "%.*g": the shorter of the two without zeros at the end; with `whole` they stay ("%#.*g").
  static DecimalText general(double value, int significant, bool whole = false);

  /// ASCII, a "-" in front of a negative number. Valid as long as this object.
  std::string_view view() const { return {room_.data(), end_}; }

 private:
  struct Digits;

  DecimalText() = default;
  void put(char c) { room_[end_++] = c; }
  bool put_short(double magnitude, int decimals);
  void put_fixed(const Digits& digits, int decimals);
  void put_scientific(const Digits& digits, int decimals, bool point);

  // The longest: sign, 309 digits, point, decimals.
  std::array<char, 1 + 309 + 1 + kMostDecimals> room_;
  std::size_t end_ = 0;
};

/// Appends ASCII to text of any width.
template <class String>
void append_ascii(String& out, std::string_view ascii) {
  const std::size_t size = out.size();
  out.resize(size + ascii.size());
  std::copy(ascii.begin(), ascii.end(), out.data() + size);
}

/// Appends the number with so many decimals.
template <class String>
void append_fixed(String& out, double value, int decimals) {
  append_ascii(out, DecimalText::fixed(value, decimals).view());
}

}  // namespace cad
