#include "host/picture/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace cad::picture {

long long on_grid(double pixels) {
  constexpr double kMost = 1e9;  // nothing so far outside is ever painted
  return std::llround(std::clamp(pixels, -kMost, kMost) * 1000.0);
}

void append_thousandths(long long value, std::string& out) {
  char digits[24];
  char* const end = digits + sizeof digits;
  char* at = end;
  const bool negative = value < 0;
  auto rest = static_cast<unsigned long long>(negative ? -value : value);
  unsigned fraction = static_cast<unsigned>(rest % 1000);
  rest /= 1000;
  if (fraction != 0) {
    for (int place = 0; place < 3; ++place, fraction /= 10) {
      if (at == end && fraction % 10 == 0) continue;
      *--at = static_cast<char>('0' + fraction % 10);
    }
    *--at = '.';
  }
  if (rest == 0 && at == end) *--at = '0';
  for (; rest != 0; rest /= 10) *--at = static_cast<char>('0' + rest % 10);
  if (negative && !(end - at == 1 && *at == '0')) *--at = '-';
  out.append(at, end);
}

void append_factor(double value, std::string& out) {
  constexpr int kDigits = 6, kMostDecimals = 12;
  if (!std::isfinite(value) || value == 0.0) {
    out += '0';
    return;
  }
  const int before = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
  const int decimals = std::clamp(kDigits - before, 0, kMostDecimals);
  char text[400];
  const auto written =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
  char* end = written.ptr;
  if (decimals > 0) {
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
  }
  out.append(text, end);
}

}  // namespace cad::picture
