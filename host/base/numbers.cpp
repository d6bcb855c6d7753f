#include "host/base/numbers.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace cad {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

template <class Char>
constexpr bool is_blank(Char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

template <class Char>
constexpr bool is_digit(Char c) {
  return c >= '0' && c <= '9';
}

template <class Char>
constexpr std::basic_string_view<Char> trimmed(std::basic_string_view<Char> text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

/// from_chars knows no leading plus. "+-1" stays wrong.
std::string_view without_plus(std::string_view text) {
  const bool signed_plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  return signed_plus ? text.substr(1) : text;
}

/// Of a number from_chars found out of range: whether it is too large, not too small. The text is
/// well formed, its exponent letter e or E.
bool is_too_large(std::string_view text) {
  // Position of the first digit that counts, as a power of ten, kept far from overflow.
  constexpr std::int64_t kFar = 1'000'000'000;
  const std::size_t e = std::min(text.find_first_of("eE"), text.size());
  const std::string_view mantissa = text.substr(0, e);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return false;
  const std::int64_t place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  std::int64_t exponent = 0;
  if (e < text.size()) {
    const bool negative = text[e + 1] == '-';
    for (const char c : text.substr(e + 1)) {
      if (is_digit(c)) exponent = std::min(kFar, exponent * 10 + (c - '0'));
    }
    if (negative) exponent = -exponent;
  }
  return place + exponent > 0;
}

/// A plain number of up to 15 digits: both it without its point and the power of ten are doubles,
/// so that one division rounds as it should. Empty for any other text.
std::optional<double> few_digits(std::string_view text) {
  constexpr std::size_t kMostDigits = 15;
  constexpr std::array<double, kMostDigits + 1> kPowers = {
      1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.size() > kMostDigits + 1) return std::nullopt;
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t digits = text.size() - (point < text.size() ? 1 : 0);
  if (digits == 0 || digits > kMostDigits) return std::nullopt;
  std::int64_t units = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i == point) continue;
    if (!is_digit(text[i])) return std::nullopt;
    units = units * 10 + (text[i] - '0');
  }
  const std::size_t decimals = point < text.size() ? text.size() - point - 1 : 0;
  const double value = static_cast<double>(units) / kPowers[decimals];
  return negative ? -value : value;
}

/// All of the text as a number, overflow as an infinity of its sign; empty for anything else.
std::optional<double> whole_real(std::string_view text) {
  if (const std::optional<double> value = few_digits(text)) return value;
  const char* const end = text.data() + text.size();
  double value = 0.0;
  const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::general);
  if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    value = is_too_large(text) ? kInfinity : 0.0;
    return text[0] == '-' ? -value : value;
  }
  return value;
}

template <class Char>
std::optional<std::uint64_t> read_handle(std::basic_string_view<Char> text) {
  text = trimmed(text);
  if (text.empty() || text.size() > 16) return std::nullopt;
  std::uint64_t value = 0;
  for (const Char c : text) {
    unsigned digit = 0;
    if (is_digit(c)) {
      digit = static_cast<unsigned>(c - '0');
    } else if (c >= 'A' && c <= 'F') {
      digit = static_cast<unsigned>(c - 'A' + 10);
    } else if (c >= 'a' && c <= 'f') {
      digit = static_cast<unsigned>(c - 'a' + 10);
    } else {
      return std::nullopt;
    }
    value = value << 4 | digit;
  }
  return value;
}

/// Writes the digits in front of end, answers where they begin.
template <class Char>
Char* write_handle(Char* end, std::uint64_t handle) {
  do {
    *--end = static_cast<Char>("0123456789ABCDEF"[handle & 15]);
    handle >>= 4;
  } while (handle != 0);
  return end;
}

/// Writes a number of up to six decimals, as most in a drawing are, and answers where it ends; null
/// for any other. No two decimals of up to 15 digits are one double, so that the one which divides
/// back is the shortest.
char* write_few_decimals(char* to, double value) {
  constexpr std::uint64_t kScale = 1'000'000;
  constexpr double kMost = 1e15;
  constexpr std::uint64_t kLeast = 10;  // of smaller numbers but zero the text has an exponent
  const double size = std::fabs(value);
  const double scaled = size * static_cast<double>(kScale);
  if (!(scaled < kMost)) return nullptr;
  const auto units = static_cast<std::uint64_t>(scaled + 0.5);
  if (static_cast<double>(units) / static_cast<double>(kScale) != size) return nullptr;
  if (units < kLeast && units != 0) return nullptr;
  if (std::signbit(value)) *to++ = '-';
  to = std::to_chars(to, to + 20, units / kScale).ptr;
  *to++ = '.';
  std::uint64_t decimals = units % kScale;
  char* const first = to;
  for (std::uint64_t place = kScale / 10; decimals != 0; place /= 10) {
    *to++ = static_cast<char>('0' + decimals / place);
    decimals %= place;
  }
  if (to == first) *to++ = '0';
  return to;
}

char* write_shortest(char* to, char* end, double value) {
  const double size = std::fabs(value);
  const bool fixed = size == 0.0 || (size >= 1e-5 && size < 1e16);
  const auto format = fixed ? std::chars_format::fixed : std::chars_format::scientific;
  char* const stop = std::to_chars(to, end, value, format).ptr;
  char* const e = std::find(to, stop, 'e');
  const bool has_point = std::find(to, e, '.') != e;
  if (e != stop) *e = 'E';
  if (has_point) return stop;
  std::copy_backward(e, stop, stop + 2);
  e[0] = '.', e[1] = '0';
  return stop + 2;
}

/// Length of the run of digits that begins at `from`.
std::size_t digits_at(std::wstring_view text, std::size_t from) {
  std::size_t end = from;
  while (end < text.size() && is_digit(text[end])) ++end;
  return end - from;
}

std::wstring_view from_first_ink(std::wstring_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  return text;
}

std::int32_t read_int32(std::wstring_view text) {
  text = from_first_ink(text);
  const bool negative = !text.empty() && text[0] == L'-';
  if (!text.empty() && (text[0] == L'-' || text[0] == L'+')) text.remove_prefix(1);
  using Limits = std::numeric_limits<std::int32_t>;
  std::int64_t value = 0;
  for (const wchar_t c : text.substr(0, digits_at(text, 0))) {
    value = std::min<std::int64_t>(value * 10 + (c - L'0'), std::int64_t{Limits::max()} + 1);
  }
  if (negative) return static_cast<std::int32_t>(-value);
  return static_cast<std::int32_t>(std::min<std::int64_t>(value, Limits::max()));
}

}  // namespace

std::optional<std::int64_t> parse_int(std::string_view text) {
  text = without_plus(trimmed(text));
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return value;
}

std::optional<double> parse_real(std::string_view text) {
  text = without_plus(trimmed(text));
  const std::optional<double> value = whole_real(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

RealDigits::RealDigits(double value) {
  assert(std::isfinite(value));
  char* end = write_few_decimals(text_.data(), value);
  if (!end) end = write_shortest(text_.data(), text_.data() + text_.size(), value);
  size_ = static_cast<std::size_t>(end - text_.data());
}

void append_real(std::string& out, double value) { out += RealDigits(value).view(); }

std::optional<std::uint64_t> parse_handle(std::string_view text) { return read_handle(text); }
std::optional<std::uint64_t> parse_handle(std::wstring_view text) { return read_handle(text); }

HandleDigits::HandleDigits(std::uint64_t handle) {
  char* const end = text_.data() + text_.size();
  first_ = static_cast<std::size_t>(write_handle(end, handle) - text_.data());
}

void append_handle(std::string& out, std::uint64_t handle) { out += HandleDigits(handle).view(); }

std::wstring handle_text(std::uint64_t handle) {
  std::array<wchar_t, 16> text;
  wchar_t* const end = text.data() + text.size();
  return std::wstring(write_handle(end, handle), end);
}

double wtof(std::wstring_view text) {
  text = from_first_ink(text);
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == L'-';
  if (!text.empty() && (text[0] == L'-' || text[0] == L'+')) at = 1;
  const std::size_t start = at;
  std::size_t digits = digits_at(text, at);
  at += digits;
  if (at < text.size() && text[at] == L'.') {
    const std::size_t decimals = digits_at(text, at + 1);
    digits += decimals;
    at += 1 + decimals;
  }
  if (digits == 0) return 0.0;

  std::string number;  // ASCII by now
  for (const wchar_t c : text.substr(start, at - start)) number += static_cast<char>(c);
  if (at < text.size() && std::wstring_view(L"eEdD").find(text[at]) != std::wstring_view::npos) {
    std::size_t from = at + 1;
    const bool minus = from < text.size() && text[from] == L'-';
    if (from < text.size() && (text[from] == L'-' || text[from] == L'+')) ++from;
    if (const std::size_t count = digits_at(text, from); count > 0) {
      number += minus ? "e-" : "e";
      for (const wchar_t c : text.substr(from, count)) number += static_cast<char>(c);
    }
  }
  const double size = whole_real(number).value_or(0.0);
  return negative ? -size : size;
}

int wtoi(std::wstring_view text) { return read_int32(text); }

long wtol(std::wstring_view text) { return read_int32(text); }

}  // namespace cad
