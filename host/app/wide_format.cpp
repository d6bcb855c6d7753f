#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cwchar>

#include "host/app/console.h"
#include "host/base/codepage.h"
#include "host/base/decimal_text.h"

namespace cad {
namespace {

// Larger widths and precisions are cut: a mistaken "%*d" must not fill the memory.
constexpr int kMostColumns = 1 << 16;

enum class Length { kNone, kByte, kShort, kLong, kLongLong, kLongDouble };

struct Conversion {
  bool left = false, plus = false, blank = false, alternate = false, zeros = false;
  int width = 0;
  int precision = -1;
  Length length = Length::kNone;
  wchar_t letter = 0;
};

/// The arguments, held by reference: a va_list passed by value cannot be read on by the caller.
struct Arguments {
  std::va_list list;
};

int read_number(const ACHAR*& at, Arguments& arguments) {
  if (*at == L'*') {
    ++at;
    return std::clamp(va_arg(arguments.list, int), -kMostColumns, kMostColumns);
  }
  int number = 0;
  for (; *at >= L'0' && *at <= L'9'; ++at)
    number = std::min(number * 10 + static_cast<int>(*at - L'0'), kMostColumns);
  return number;
}

Length read_length(const ACHAR*& at) {
  struct Row {
    const wchar_t* spelling;
    Length length;
  };
  // Longer spellings first.
  static constexpr Row kRows[] = {
      {L"I64", Length::kLongLong}, {L"I32", Length::kNone},     {L"hh", Length::kByte},
      {L"ll", Length::kLongLong},  {L"h", Length::kShort},      {L"l", Length::kLong},
      {L"w", Length::kLong},       {L"L", Length::kLongDouble}, {L"I", Length::kLongLong},
      {L"z", Length::kLongLong},   {L"t", Length::kLongLong},   {L"j", Length::kLongLong},
  };
  for (const Row& row : kRows) {
    const std::size_t size = std::wcslen(row.spelling);
    if (std::wcsncmp(at, row.spelling, size) != 0) continue;
    at += size;
    return row.length;
  }
  return Length::kNone;
}

Conversion read_conversion(const ACHAR*& at, Arguments& arguments) {
  Conversion c;
  for (;; ++at) {
    if (*at == L'-') {
      c.left = true;
    } else if (*at == L'+') {
      c.plus = true;
    } else if (*at == L' ') {
      c.blank = true;
    } else if (*at == L'#') {
      c.alternate = true;
    } else if (*at == L'0') {
      c.zeros = true;
    } else {
      break;
    }
  }
  c.width = read_number(at, arguments);
  if (c.width < 0) {
    c.left = true;
    c.width = -c.width;
  }
  if (*at == L'.') c.precision = read_number(++at, arguments);
  c.length = read_length(at);
  if (*at) c.letter = *at++;
  return c;
}

/// Appends sign and body in the field's width; zeros go between the two.
void append_field(std::wstring& out, const Conversion& c, std::wstring_view sign,
                  std::wstring_view body, bool zeros_allowed) {
  const std::size_t size = sign.size() + body.size();
  const std::size_t width = static_cast<std::size_t>(c.width);
  const std::size_t padding = width > size ? width - size : 0;
  const bool zeros = c.zeros && !c.left && zeros_allowed;
  if (!c.left && !zeros) out.append(padding, L' ');
  out += sign;
  if (zeros) out.append(padding, L'0');
  out += body;
  if (c.left) out.append(padding, L' ');
}

std::wstring_view sign_of(bool negative, const Conversion& c) {
  return negative ? L"-" : c.plus ? L"+" : c.blank ? L" " : L"";
}

std::uint64_t read_unsigned(Length length, Arguments& arguments) {
  switch (length) {
    case Length::kLongLong:
      return va_arg(arguments.list, unsigned long long);
    // A caller's long is 64 bits here and 32 in the host: both give their low half.
    case Length::kLong:
      return static_cast<std::uint32_t>(va_arg(arguments.list, unsigned long));
    case Length::kShort:
      return static_cast<std::uint16_t>(va_arg(arguments.list, unsigned));
    case Length::kByte:
      return static_cast<std::uint8_t>(va_arg(arguments.list, unsigned));
    default:
      return va_arg(arguments.list, unsigned);
  }
}

std::int64_t sign_extended(std::uint64_t bits, Length length) {
  switch (length) {
    case Length::kLongLong:
      return static_cast<std::int64_t>(bits);
    case Length::kShort:
      return static_cast<std::int16_t>(bits);
    case Length::kByte:
      return static_cast<std::int8_t>(bits);
    default:
      return static_cast<std::int32_t>(bits);
  }
}

void append_integer(std::wstring& out, const Conversion& c, Arguments& arguments) {
  std::uint64_t magnitude = read_unsigned(c.length, arguments);
  std::wstring_view sign;
  if (c.letter == L'd' || c.letter == L'i') {
    const std::int64_t value = sign_extended(magnitude, c.length);
    sign = sign_of(value < 0, c);
    magnitude =
        value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
  }
  const int base = c.letter == L'x' || c.letter == L'X' ? 16 : c.letter == L'o' ? 8 : 10;
  char digits[24];
  const auto [end, ignored] = std::to_chars(digits, std::end(digits), magnitude, base);
  std::wstring body(digits, end);
  if (c.letter == L'X')
    for (wchar_t& d : body) d = d >= L'a' ? d - L'a' + L'A' : d;
  if (c.precision == 0 && magnitude == 0) body.clear();
  if (c.precision > static_cast<int>(body.size()))
    body.insert(0, static_cast<std::size_t>(c.precision) - body.size(), L'0');
  if (c.alternate && base == 8 && (body.empty() || body[0] != L'0')) body.insert(0, 1, L'0');
  if (c.alternate && base == 16 && magnitude != 0) sign = c.letter == L'X' ? L"0X" : L"0x";
  append_field(out, c, sign, body, c.precision < 0);
}

DecimalText real_text(double value, const Conversion& c) {
  switch (c.letter) {
    case L'e':
    case L'E':
      return DecimalText::scientific(value, c.precision, c.alternate);
    case L'g':
    case L'G':
      return DecimalText::general(value, c.precision, c.alternate);
    default:
      return DecimalText::fixed(value, c.precision, c.alternate);
  }
}

void append_real_field(std::wstring& out, const Conversion& c, Arguments& arguments) {
  const double value = c.length == Length::kLongDouble
                           ? static_cast<double>(va_arg(arguments.list, long double))
                           : va_arg(arguments.list, double);
  const DecimalText text = real_text(value, c);
  std::string_view digits = text.view();
  const bool negative = digits.front() == '-';
  if (negative) digits.remove_prefix(1);
  std::wstring body(digits.begin(), digits.end());
  if (c.letter == L'E' || c.letter == L'G') std::replace(body.begin(), body.end(), L'e', L'E');
  append_field(out, c, sign_of(negative, c), body, std::isfinite(value));
}

/// Bytes or wide text: plain "%s" is wide, plain "%S" bytes, a length letter decides for both.
bool is_wide(const Conversion& c, bool capital) {
  if (c.length == Length::kShort || c.length == Length::kByte) return false;
  if (c.length != Length::kNone) return true;
  return !capital;
}

void append_text_field(std::wstring& out, const Conversion& c, Arguments& arguments) {
  std::wstring text;
  const std::size_t limit =
      c.precision < 0 ? std::wstring::npos : static_cast<std::size_t>(c.precision);
  if (is_wide(c, c.letter == L'S')) {
    const auto* wide = va_arg(arguments.list, const wchar_t*);
    if (!wide) wide = L"(null)";
    std::size_t size = 0;
    while (size < limit && wide[size]) ++size;  // with a precision the end may be missing
    text.assign(wide, size);
  } else {
    const auto* bytes = va_arg(arguments.list, const char*);
    if (!bytes) bytes = "(null)";
    std::size_t size = 0;
    while (size < limit && bytes[size]) ++size;
    text = from_utf8({bytes, size});
  }
  append_field(out, c, {}, text, false);
}

void append_character_field(std::wstring& out, const Conversion& c, Arguments& arguments) {
  const int code = va_arg(arguments.list, int);
  const wchar_t character =
      is_wide(c, c.letter == L'C') ? static_cast<wchar_t>(code) : static_cast<wchar_t>(code & 0xFF);
  append_field(out, c, {}, std::wstring_view(&character, 1), false);
}

void append_pointer_field(std::wstring& out, Conversion c, Arguments& arguments) {
  auto address = reinterpret_cast<std::uintptr_t>(va_arg(arguments.list, void*));
  std::wstring body(16, L'0');
  for (std::size_t i = body.size(); i-- > 0; address >>= 4)
    body[i] = L"0123456789ABCDEF"[address & 15];
  append_field(out, c, {}, body, false);
}

void append_conversion(std::wstring& out, const Conversion& c, Arguments& arguments) {
  switch (c.letter) {
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X':
      append_integer(out, c, arguments);
      break;
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
      append_real_field(out, c, arguments);
      break;
    case L's':
    case L'S':
      append_text_field(out, c, arguments);
      break;
    case L'c':
    case L'C':
      append_character_field(out, c, arguments);
      break;
    case L'p':
      append_pointer_field(out, c, arguments);
      break;
    case L'n':
      va_arg(arguments.list, void*);
      break;
    case 0:
      break;
    default:
      out += c.letter;
      break;  // "%%", and letters that convert nothing stand for themselves
  }
}

}  // namespace

std::wstring format_wide_list(const ACHAR* format, std::va_list list) {
  Arguments arguments;
  va_copy(arguments.list, list);
  std::wstring out;
  while (*format) {
    if (*format != L'%') {
      out += *format++;
      continue;
    }
    append_conversion(out, read_conversion(++format, arguments), arguments);
  }
  va_end(arguments.list);
  return out;
}

std::wstring format_wide(const ACHAR* format, ...) {
  std::va_list list;
  va_start(list, format);
  std::wstring text = format_wide_list(format, list);
  va_end(list);
  return text;
}

}  // namespace cad
