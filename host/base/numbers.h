#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers to and from text. Nothing here looks at the locale of the process. Texts with a given
/// number of decimals: host/base/decimal_text.h.
namespace cad {

/// Whole decimal number. Blanks around it and a leading plus are fine; anything else in the text,
/// no digits, or a number beyond 64 bits is not.
std::optional<std::int64_t> parse_int(std::string_view text);

/// Decimal number: "36.5", "-.5", "5.", "1e-7". Blanks around it and a leading plus are fine; hex,
/// inf and nan are not, nor is a number too large for a double. One too small for a double is 0.
std::optional<double> parse_real(std::string_view text);

/// Appends the shortest text that reads back as the same double (the sign of zero included),
/// always with a point: "0.0", "36.5", "1.0E-10", "1.5E+20". Fixed notation for 1e-5 <= |x| < 1e16.
/// The value must be finite (asserted): a drawing has no text for others, so callers decide.
void append_real(std::string& out, double value);
/// The same text without a string, for hot paths.
class RealDigits {
 public:
  explicit RealDigits(double value);
  std::string_view view() const { return {text_.data(), size_}; }

 private:
  std::array<char, 32> text_;  // the longest: -1.2345678901234567E-308
  std::size_t size_;
};

/// Handle: 1 to 16 hexadecimal digits of either case, no prefix, blanks around are fine.
std::optional<std::uint64_t> parse_handle(std::string_view text);
std::optional<std::uint64_t> parse_handle(std::wstring_view text);

/// Upper-case hexadecimal digits without leading zeros; 0 is "0".
void append_handle(std::string& out, std::uint64_t handle);
std::wstring handle_text(std::uint64_t handle);
/// The same digits without a string, for hot paths.
class HandleDigits {
 public:
  explicit HandleDigits(std::uint64_t handle);
  std::string_view view() const { return {text_.data() + first_, text_.size() - first_}; }

 private:
  std::array<char, 16> text_;
  std::size_t first_;
};

/// The number at the start of a text as the host's C runtime reads it: leading white space, a
/// sign, then the longest prefix that is a number; 0 when there is none. Only ASCII digits count.
/// wtof: the exponent letter may be e E d D; no hex, inf, nan; overflow gives infinity.
/// wtoi, wtol: decimal only; both saturate at 32 bits, the width of the host's long.
double wtof(std::wstring_view text);
int wtoi(std::wstring_view text);
long wtol(std::wstring_view text);

}  // namespace cad
