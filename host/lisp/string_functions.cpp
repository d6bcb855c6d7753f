#include <algorithm>
#include <cstdint>
#include <string>

#include "host/base/numbers.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/letters.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

constexpr std::int32_t kLastCharacter = 0x10FFFF;

Value fn_strcat(Call& call) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < call.size(); ++i) length += call.string(i).size();
  String* result = call.interp().heap().blank_string(length);
  wchar_t* to = result->data();
  for (const Value& piece : call.args()) to = std::ranges::copy(piece.text(), to).out;
  return Value::adopt(result);
}

Value fn_strlen(Call& call) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < call.size(); ++i) length += call.string(i).size();
  return Value::integer(static_cast<std::int32_t>(length));
}

Value fn_substr(Call& call) {
  const std::wstring_view text = call.string(0);
  const std::int32_t start = call.integer(1);
  if (start < 1) raise_bad_value(L"positive", call.arg(1));
  const std::int32_t length = call.has(2) ? call.integer(2) : INT32_MAX;
  if (length < 0) raise_bad_value(L"non-negative", call.arg(2));
  const std::size_t from = std::min<std::size_t>(text.size(), static_cast<std::size_t>(start) - 1);
  return call.interp().string(text.substr(from, static_cast<std::size_t>(length)));
}

Value fn_strcase(Call& call) {
  const bool lower = static_cast<bool>(call.arg(1));
  const std::wstring_view text = call.string(0);
  String* result = call.interp().heap().blank_string(text.size());
  std::ranges::transform(text, result->data(), lower ? to_lower : to_upper);
  return Value::adopt(result);
}

std::int32_t character(const Value& code) {
  if (!code.is_integer()) raise_bad_type(L"fixnump", code);
  if (code.integer() < 0 || code.integer() > kLastCharacter) {
    raise_bad_value(L"character code", code);
  }
  return code.integer();
}

// Code 0 gives the empty text, as in the host.
Value fn_chr(Call& call) {
  const auto c = static_cast<wchar_t>(character(call.arg(0)));
  return call.interp().string(std::wstring_view(&c, c != 0 ? 1 : 0));
}

Value fn_ascii(Call& call) {
  const std::wstring_view text = call.string(0);
  return Value::integer(text.empty() ? 0 : static_cast<std::int32_t>(text[0]));
}

Value fn_atoi(Call& call) { return Value::integer(wtoi(call.string(0))); }
Value fn_atof(Call& call) { return Value::real(wtof(call.string(0))); }
Value fn_itoa(Call& call) { return call.interp().string(std::to_wstring(call.integer(0))); }

Value fn_string_to_list(Call& call) {
  ListBuilder builder(call.interp().heap());
  for (const wchar_t c : call.string(0)) builder.append(Value::integer(c));
  return builder.finish();
}

Value fn_list_to_string(Call& call) {
  std::wstring text;
  for (const Value& code : call.list(0)) text += static_cast<wchar_t>(character(code));
  return call.interp().string(text);
}

Value fn_string_elt(Call& call) {
  const std::wstring_view text = call.string(0);
  const std::int32_t at = call.integer(1);
  if (at < 0 || static_cast<std::size_t>(at) >= text.size()) {
    raise_bad_value(L"string position out of range", call.arg(1));
  }
  return Value::integer(text[static_cast<std::size_t>(at)]);
}

std::wstring_view left_trimmed(std::wstring_view text, std::wstring_view set) {
  return text.substr(std::min(text.find_first_not_of(set), text.size()));
}
std::wstring_view right_trimmed(std::wstring_view text, std::wstring_view set) {
  return text.substr(0, text.find_last_not_of(set) + 1);
}
Value fn_left_trim(Call& call) {
  return call.interp().string(left_trimmed(call.string(1), call.string(0)));
}
Value fn_right_trim(Call& call) {
  return call.interp().string(right_trimmed(call.string(1), call.string(0)));
}
Value fn_trim(Call& call) {
  return call.interp().string(
      right_trimmed(left_trimmed(call.string(1), call.string(0)), call.string(0)));
}

// clang-format off
constexpr Builtin kStringFunctions[] = {
    {"strcat",  0, kMany, fn_strcat,  "(strcat text ...)",              "the texts joined"},
    {"strlen",  0, kMany, fn_strlen,  "(strlen text ...)",              "the number of characters of all texts"},
    {"substr",  2, 3,     fn_substr,  "(substr text start [length])",   "a part; start counts from 1"},
    {"strcase", 1, 2,     fn_strcase, "(strcase text [lower])",         "in capital letters, or small ones when lower is not nil"},
    {"chr",     1, 1,     fn_chr,     "(chr code)",                     "the text of one character"},
    {"ascii",   1, 1,     fn_ascii,   "(ascii text)",                   "the code of the first character"},
    {"atoi",    1, 1,     fn_atoi,    "(atoi text)",                    "the integer at the start of a text, or 0"},
    {"atof",    1, 1,     fn_atof,    "(atof text)",                    "the number at the start of a text as a real, or 0.0"},
    {"itoa",    1, 1,     fn_itoa,    "(itoa i)",                       "an integer as text"},
    {"vl-string->list",      1, 1, fn_string_to_list, "(vl-string->list text)",      "the character codes"},
    {"vl-list->string",      1, 1, fn_list_to_string, "(vl-list->string codes)",     "the text of character codes"},
    {"vl-string-elt",        2, 2, fn_string_elt,     "(vl-string-elt text n)",      "the code of character n, from 0"},
    {"vl-string-trim",       2, 2, fn_trim,           "(vl-string-trim set text)",       "without the characters of set at both ends"},
    {"vl-string-left-trim",  2, 2, fn_left_trim,      "(vl-string-left-trim set text)",  "without the characters of set at the start"},
    {"vl-string-right-trim", 2, 2, fn_right_trim,     "(vl-string-right-trim set text)", "without the characters of set at the end"},
};
// clang-format on

}  // namespace

std::span<const Builtin> string_functions() { return kStringFunctions; }

}  // namespace cad::lisp
