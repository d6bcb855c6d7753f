#include "host/lisp/wildcard.h"

#include <algorithm>
#include <optional>

#include "host/lisp/letters.h"

namespace cad::lisp {
namespace {

// One element of a pattern: its length, and whether it takes a character.
struct Element {
  std::size_t length;
  bool takes;
};

// [abc] at the start of the pattern; empty when the bracket is not closed.
std::optional<Element> match_set(wchar_t c, std::wstring_view pattern) {
  std::size_t at = 1;
  const bool negated = at < pattern.size() && pattern[at] == L'~';
  at += negated;
  bool found = false;
  for (bool first = true; at < pattern.size(); first = false) {
    if (pattern[at] == L']' && !first) return Element{at + 1, found != negated};
    if (pattern[at] == L'`' && at + 1 < pattern.size()) ++at;
    const wchar_t low = pattern[at];
    wchar_t high = low;
    if (at + 2 < pattern.size() && pattern[at + 1] == L'-' && pattern[at + 2] != L']') {
      high = pattern[at + 2];
      at += 2;
    }
    ++at;
    found = found || (c >= low && c <= high);
  }
  return std::nullopt;
}

Element match_element(wchar_t c, std::wstring_view pattern) {
  switch (pattern[0]) {
    case L'?':
      return {1, true};
    case L'#':
      return {1, c >= L'0' && c <= L'9'};
    case L'@':
      return {1, is_letter(c)};
    case L'.':
      return {1, !is_letter_or_digit(c)};
    case L'[':
      if (const std::optional<Element> set = match_set(c, pattern)) return *set;
      return {1, c == L'['};
    case L'`':
      if (pattern.size() > 1) return {2, c == pattern[1]};
      return {1, c == L'`'};
    default:
      return {1, c == pattern[0]};
  }
}

// One alternative without commas. Going back to the latest * is enough.
bool matches_one(std::wstring_view text, std::wstring_view pattern) {
  const bool negated = !pattern.empty() && pattern[0] == L'~';
  if (negated) pattern.remove_prefix(1);

  std::size_t t = 0, p = 0;
  std::optional<std::size_t> star;  // behind the latest one
  std::size_t retry = 0;            // the text it does not take yet
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == L'*') {
      star = ++p;
      retry = t;
      continue;
    }
    if (p < pattern.size()) {
      const Element element = match_element(text[t], pattern.substr(p));
      if (element.takes) {
        p += element.length;
        ++t;
        continue;
      }
    }
    if (!star) return negated;
    p = *star;
    t = ++retry;
  }
  while (p < pattern.size() && pattern[p] == L'*') ++p;
  return (p == pattern.size()) != negated;
}

// The end of the first alternative: a comma that is neither escaped nor in brackets.
std::size_t alternative_end(std::wstring_view pattern) {
  bool in_set = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    switch (pattern[i]) {
      case L'`':
        ++i;
        break;
      case L'[':
        in_set = in_set || pattern.find(L']', i) != pattern.npos;
        break;
      case L']':
        in_set = false;
        break;
      case L',':
        if (!in_set) return i;
        break;
      default:
        break;
    }
  }
  return pattern.size();
}

}  // namespace

bool matches_wildcard(std::wstring_view text, std::wstring_view pattern) {
  for (;;) {
    const std::size_t end = std::min(alternative_end(pattern), pattern.size());
    if (matches_one(text, pattern.substr(0, end))) return true;
    if (end == pattern.size()) return false;
    pattern.remove_prefix(end + 1);
  }
}

}  // namespace cad::lisp
