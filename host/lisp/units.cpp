#include "host/lisp/units.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "host/base/decimal_text.h"
#include "host/base/numbers.h"
#include "host/lisp/letters.h"
#include "host/lisp/printer.h"

namespace cad::lisp {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kMostPrecision = 8;
// Feet, minutes and halvings are counted in 64-bit integers; larger lengths are spelled decimally.
constexpr double kLargestCounted = 1e14;

enum Zeros { kDropLeading = 4, kDropTrailing = 8 };

std::wstring widened(const std::string& text) { return {text.begin(), text.end()}; }

std::wstring fixed(double value, int precision, int zeros = 0) {
  std::string text;
  append_fixed(text, value, precision);
  if ((zeros & kDropTrailing) != 0 && text.find('.') != text.npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  const std::size_t digits = text[0] == '-' ? 1 : 0;
  if ((zeros & kDropLeading) != 0 && text.compare(digits, 2, "0.") == 0) text.erase(digits, 1);
  // What rounds to zero has no sign.
  if (digits == 1 && text.find_first_of("123456789") == text.npos) text.erase(0, 1);
  return widened(text);
}

// Digits beyond the precision round half away from zero, as the C runtime of the host does it.
std::wstring scientific(double value, int precision) {
  constexpr int kExact = 60;  // a tie has fewer digits
  char text[kExact + 16];
  const auto end = std::to_chars(text, text + sizeof text, std::fabs(value),
                                 std::chars_format::scientific, kExact)
                       .ptr;
  const auto kept = static_cast<std::size_t>(precision);
  std::string digits = text[0] + std::string(text + 2, text + 2 + kept);
  const bool up = text[2 + kept] >= '5';
  int exponent = 0;
  const char* const exponent_text = std::find(text, end, 'e') + 1;
  std::from_chars(exponent_text + (*exponent_text == '+' ? 1 : 0), end, exponent);
  std::size_t at = digits.size();
  while (up && at > 0 && digits[at - 1] == '9') digits[--at] = '0';
  if (up && at > 0) ++digits[at - 1];
  if (up && at == 0) {  // 9.99 becomes 10.0
    digits = "1" + std::string(kept, '0');
    ++exponent;
  }
  std::string out = value < 0 ? "-" : "";
  out += digits[0];
  if (kept > 0) out += "." + digits.substr(1);
  out += exponent < 0 ? "E-" : "E+";
  const std::string size = std::to_string(std::abs(exponent));
  return widened(out + (size.size() < 2 ? "0" : "") + size);
}

// Inches in 2^precision parts of one: 3 1/2.
std::wstring fraction(std::int64_t parts, int precision) {
  std::int64_t denominator = std::int64_t{1} << precision;
  const std::int64_t whole = parts / denominator;
  std::int64_t numerator = parts % denominator;
  while (numerator != 0 && numerator % 2 == 0) {
    numerator /= 2;
    denominator /= 2;
  }
  std::wstring text;
  if (whole != 0 || numerator == 0) text = std::to_wstring(whole);
  if (numerator != 0) {
    if (!text.empty()) text += L' ';
    text += std::to_wstring(numerator) + L"/" + std::to_wstring(denominator);
  }
  return text;
}

std::wstring feet_and_inches(std::int64_t feet, const std::wstring& inches, bool zero_inches,
                             int zeros) {
  const int which = zeros & 3;
  const bool keep_zero_feet = which == 1 || which == 2;
  const bool keep_zero_inches = which == 1 || which == 3;
  const bool show_feet = feet != 0 || keep_zero_feet;
  const bool show_inches = !zero_inches || keep_zero_inches || !show_feet;
  std::wstring text;
  if (show_feet) text = std::to_wstring(feet) + L"'";
  if (show_feet && show_inches) text += L'-';
  // A fraction alone follows feet as 1'-0 1/2".
  const bool fraction_only = inches.find(L'/') != inches.npos && inches.find(L' ') == inches.npos;
  if (show_feet && show_inches && fraction_only) text += L"0 ";
  if (show_inches) text += inches + L'"';
  return text;
}

std::wstring engineering(double size, int precision, int zeros) {
  auto feet = static_cast<std::int64_t>(size / 12);
  double inches = size - static_cast<double>(feet) * 12;
  const double unit = std::pow(10.0, -precision);
  if (inches + unit / 2 >= 12) {  // 11.999 prints as the next foot
    ++feet;
    inches = 0;
  }
  return feet_and_inches(feet, fixed(inches, precision, zeros), inches < unit / 2, zeros);
}

std::wstring architectural(double size, int precision, int zeros) {
  const auto parts = static_cast<std::int64_t>(std::llround(std::ldexp(size, precision)));
  const std::int64_t foot = std::int64_t{12} << precision;
  return feet_and_inches(parts / foot, fraction(parts % foot, precision), parts % foot == 0, zeros);
}

std::wstring deg_min_sec(double degrees, int precision) {
  // Whole units of the last place shown, so that 59.99" carries.
  const int decimals = std::max(precision - 4, 0);
  const std::int64_t per_second = std::llround(std::pow(10.0, decimals));
  const std::int64_t per_degree = precision == 0 ? 1 : precision <= 2 ? 60 : 3600 * per_second;
  const std::int64_t units = std::llround(degrees * static_cast<double>(per_degree));
  std::wstring text = std::to_wstring(units / per_degree) + L"d";
  if (precision == 0) return text;
  const std::int64_t rest = units % per_degree;
  if (precision <= 2) return text + std::to_wstring(rest) + L"'";
  text += std::to_wstring(rest / (60 * per_second)) + L"'";
  const auto seconds =
      static_cast<double>(rest % (60 * per_second)) / static_cast<double>(per_second);
  return text + fixed(seconds, decimals) + L"\"";
}

std::wstring surveyor(double degrees, int precision) {
  constexpr const wchar_t* kCardinal[] = {L"E", L"N", L"W", L"S"};
  for (int i = 0; i <= 4; ++i) {
    if (deg_min_sec(std::fabs(degrees - 90.0 * i), precision) == deg_min_sec(0, precision)) {
      return kCardinal[i % 4];
    }
  }
  const bool north = degrees < 180;
  const bool east = degrees < 90 || degrees > 270;
  const double off = std::fabs(north ? 90 - degrees : 270 - degrees);
  return std::wstring(north ? L"N " : L"S ") + deg_min_sec(off, precision) + (east ? L" E" : L" W");
}

// Reads numbers and marks from the left.
class Scanner {
 public:
  explicit Scanner(std::wstring_view text) : text_(text) {}

  bool done() const { return text_.empty(); }
  void skip_blanks() { text_.remove_prefix(std::min(text_.find_first_not_of(L' '), text_.size())); }
  bool take(wchar_t mark) {
    if (text_.empty() || to_lower(text_[0]) != mark) return false;
    text_.remove_prefix(1);
    return true;
  }
  // Digits with at most one point; no sign, no exponent.
  std::optional<double> number() {
    const std::size_t end = std::min(text_.find_first_not_of(L"0123456789."), text_.size());
    const auto value =
        parse_real(std::string(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(end)));
    if (value) text_.remove_prefix(end);
    return value;
  }

 private:
  std::wstring_view text_;
};

std::optional<double> feet_inches_fraction(std::wstring_view text) {
  Scanner scan(text);
  scan.skip_blanks();
  const double sign = scan.take(L'-') ? -1 : 1;
  std::optional<double> number = scan.number();
  if (!number) return std::nullopt;
  double size = 0;
  if (scan.take(L'\'')) {
    size = *number * 12;
    scan.take(L'-');
    scan.skip_blanks();
    number = scan.number();
  }
  while (number) {  // inches, then a fraction of one
    if (scan.take(L'/')) {
      const std::optional<double> below = scan.number();
      if (!below || *below == 0) return std::nullopt;
      size += *number / *below;
      number.reset();
    } else {
      size += *number;
      if (!scan.take(L'-')) scan.skip_blanks();
      number = scan.number();
    }
  }
  scan.take(L'"');
  scan.skip_blanks();
  if (!scan.done()) return std::nullopt;
  return sign * size;
}

// 45 45.5 45d30'15.5" 50g 0.79r, without a sign.
std::optional<double> marked_angle(Scanner& scan, AngleUnits units) {
  std::optional<double> number = scan.number();
  if (!number) return std::nullopt;
  if (scan.take(L'g')) return *number * kPi / 200;
  if (scan.take(L'r')) return *number;
  if (scan.take(L'd')) {
    double degrees = *number;
    number = scan.number();
    if (number && scan.take(L'\'')) {
      degrees += *number / 60;
      number = scan.number();
    }
    if (number) {
      if (!scan.take(L'"')) return std::nullopt;
      degrees += *number / 3600;
    }
    return degrees * kPi / 180;
  }
  switch (units) {
    case AngleUnits::kGrads:
      return *number * kPi / 200;
    case AngleUnits::kRadians:
      return *number;
    default:
      return *number * kPi / 180;
  }
}

}  // namespace

std::wstring length_text(double value, LengthUnits units, int precision, int zeros) {
  if (!std::isfinite(value)) {
    std::wstring text;
    append_real_text(text, value);
    return text;
  }
  precision = std::clamp(precision, 0, kMostPrecision);
  if (units == LengthUnits::kScientific) return scientific(value, precision);
  if (units == LengthUnits::kDecimal || std::fabs(value) > kLargestCounted) {
    return fixed(value, precision, zeros);
  }
  const double size = std::fabs(value);
  std::wstring text;
  switch (units) {
    case LengthUnits::kEngineering:
      text = engineering(size, precision, zeros);
      break;
    case LengthUnits::kArchitectural:
      text = architectural(size, precision, zeros);
      break;
    default:
      text = fraction(std::llround(std::ldexp(size, precision)), precision);
      break;
  }
  const bool is_zero = text.find_first_of(L"123456789") == text.npos;
  return value < 0 && !is_zero ? L"-" + text : text;
}

std::wstring angle_text(double radians, AngleUnits units, int precision) {
  precision = std::clamp(precision, 0, kMostPrecision);
  // An angle that rounds to the full turn is none.
  const auto within_turn = [precision](double angle, double turn) {
    return fixed(angle, precision) == fixed(turn, precision) ? 0.0 : angle;
  };
  const double degrees = radians * 180 / kPi;
  switch (units) {
    case AngleUnits::kDegMinSec: {
      const std::wstring text = deg_min_sec(degrees, precision);
      return text == deg_min_sec(360, precision) ? deg_min_sec(0, precision) : text;
    }
    case AngleUnits::kGrads:
      return fixed(within_turn(radians * 200 / kPi, 400), precision) + L"g";
    case AngleUnits::kRadians:
      return fixed(within_turn(radians, 2 * kPi), precision) + L"r";
    case AngleUnits::kSurveyor:
      return surveyor(degrees, precision);
    case AngleUnits::kDegrees:
      break;
  }
  return fixed(within_turn(degrees, 360), precision);
}

std::optional<double> parse_length(std::wstring_view text, LengthUnits units) {
  const bool is_ascii = std::ranges::all_of(text, [](wchar_t c) { return c > 0 && c < 0x80; });
  if (!is_ascii) return std::nullopt;
  if (const auto plain = parse_real(std::string(text.begin(), text.end()))) return plain;
  if (units == LengthUnits::kScientific || units == LengthUnits::kDecimal) return std::nullopt;
  return feet_inches_fraction(text);
}

std::optional<double> parse_angle(std::wstring_view text, AngleUnits units) {
  Scanner scan(text);
  scan.skip_blanks();
  std::optional<double> angle;
  const bool north = scan.take(L'n');
  if (north || scan.take(L's')) {
    scan.skip_blanks();
    const double base = north ? kPi / 2 : kPi * 3 / 2;
    angle = marked_angle(scan, units);
    scan.skip_blanks();
    if (!angle) {
      angle = base;
    } else if (scan.take(L'e')) {
      angle = north ? base - *angle : base + *angle;
    } else if (scan.take(L'w')) {
      angle = north ? base + *angle : base - *angle;
    } else {
      return std::nullopt;
    }
  } else if (scan.take(L'e')) {
    angle = 0;
  } else if (scan.take(L'w')) {
    angle = kPi;
  } else {
    const double sign = scan.take(L'-') ? -1 : 1;
    angle = marked_angle(scan, units);
    if (angle) *angle *= sign;
  }
  scan.skip_blanks();
  return scan.done() ? angle : std::nullopt;
}

}  // namespace cad::lisp
