#include "network/list_text.h"

#include <cstddef>

namespace {

constexpr bool is_blank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }
constexpr bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

/// Position behind the quoted text that begins at `at`.
std::size_t behind_quoted(std::wstring_view text, std::size_t at) {
  const std::size_t end = text.find(L'"', at + 1);
  return end == text.npos ? text.size() : end + 1;
}

/// Position behind the list that begins at `at`.
std::size_t behind_list(std::wstring_view text, std::size_t at) {
  int depth = 0;
  while (at < text.size()) {
    if (text[at] == L'"') {
      at = behind_quoted(text, at);
      continue;
    }
    if (text[at] == L'(') ++depth;
    if (text[at] == L')') --depth;
    ++at;
    if (depth == 0) return at;
  }
  return at;
}

std::size_t behind_word(std::wstring_view text, std::size_t at) {
  while (at < text.size() && !is_blank(text[at]) && text[at] != L'(' && text[at] != L')' &&
         text[at] != L'"') {
    ++at;
  }
  return at;
}

std::size_t behind_element(std::wstring_view text, std::size_t at) {
  if (text[at] == L'"') return behind_quoted(text, at);
  if (text[at] == L'(') return behind_list(text, at);
  return behind_word(text, at);
}

std::wstring_view trimmed(std::wstring_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

/// The text without the parentheses that hold all of it.
std::wstring_view inside(std::wstring_view text) {
  text = trimmed(text);
  if (text.empty() || text.front() != L'(' || behind_list(text, 0) != text.size()) return text;
  text.remove_prefix(1);
  if (!text.empty() && text.back() == L')') text.remove_suffix(1);
  return text;
}

bool is_number_and_comma(std::wstring_view word) {
  if (word.size() < 2 || word.back() != L',') return false;
  for (const wchar_t c : word.substr(0, word.size() - 1)) {
    if (!is_digit(c) && std::wstring_view(L"+-.eE").find(c) == std::wstring_view::npos)
      return false;
  }
  return is_digit(word[word.size() - 2]) || word[word.size() - 2] == L'.';
}

std::wstring element_text(std::wstring_view element, bool unquote) {
  if (unquote && element.front() == L'"') {
    element.remove_prefix(1);
    if (!element.empty() && element.back() == L'"') element.remove_suffix(1);
  } else if (is_number_and_comma(element)) {
    element.remove_suffix(1);
  }
  return std::wstring(element);
}

}  // namespace

namespace network {

ListReader::ListReader(std::wstring_view text, bool unquote)
    : rest_(inside(text)), unquote_(unquote) {}

std::wstring_view ListReader::take() {
  while (!rest_.empty()) {
    if (is_blank(rest_.front()) || rest_.front() == L')') {  // one that closes nothing
      rest_.remove_prefix(1);
      continue;
    }
    const std::wstring_view element = rest_.substr(0, behind_element(rest_, 0));
    rest_.remove_prefix(element.size());
    return element;
  }
  return {};
}

std::wstring ListReader::next() {
  const std::wstring_view element = take();
  return element.empty() ? std::wstring() : element_text(element, unquote_);
}

bool ListReader::skip() { return !take().empty(); }

}  // namespace network

std::wstring KT::Nth(std::wstring_view text, int index, bool unquote) {
  if (index < 0) return {};
  network::ListReader list(text, unquote);
  while (index-- > 0)
    if (!list.skip()) return {};
  return list.next();
}
