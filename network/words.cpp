#include "network/words.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr bool is_blank(wchar_t c) { return c == L' ' || c == L'\t'; }
constexpr bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

/// Takes the next run of non-blanks off the text; empty at its end.
std::wstring_view take_word(std::wstring_view& text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  std::size_t end = 0;
  while (end < text.size() && !is_blank(text[end])) ++end;
  const std::wstring_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

/// Takes digits off the text; how many there were.
std::size_t take_digits(std::wstring_view& text) {
  std::size_t count = 0;
  while (count < text.size() && is_digit(text[count])) ++count;
  text.remove_prefix(count);
  return count;
}

bool take_one_of(std::wstring_view& text, std::wstring_view characters) {
  if (text.empty() || characters.find(text.front()) == characters.npos) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

CString KT::GetWordFromStr(std::wstring_view text, int index, wchar_t separator) {
  if (index < 0) return {};
  if (is_blank(separator)) {
    std::wstring_view word = take_word(text);
    while (index-- > 0 && !word.empty()) word = take_word(text);
    return CString(word);
  }
  for (; index > 0; --index) {
    const std::size_t at = text.find(separator);
    if (at == text.npos) return {};
    text.remove_prefix(at + 1);
  }
  return CString(text.substr(0, text.find(separator)));
}

bool KT::IsNum(std::wstring_view text) {
  take_one_of(text, L"+-");
  std::size_t digits = take_digits(text);
  if (take_one_of(text, L".")) digits += take_digits(text);
  if (digits == 0) return false;
  if (take_one_of(text, L"eE")) {
    take_one_of(text, L"+-");
    if (take_digits(text) == 0) return false;
  }
  return text.empty();
}

bool KT::ISZERO(double value) { return std::fabs(value) < 1e-6; }

bool KT::IsDoubleEQ(double a, double b, double tolerance) { return std::fabs(a - b) < tolerance; }

int KTOLD::DisSpaceString(std::wstring_view text, CStringArray& words) {
  words.clear();
  for (std::wstring_view word = take_word(text); !word.empty(); word = take_word(text))
    words.emplace_back(word);
  return static_cast<int>(words.size());
}
