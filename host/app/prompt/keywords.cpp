#include "host/app/prompt/keywords.h"

#include <algorithm>

#include "host/base/fold.h"

namespace cad {
namespace {

bool is_capital(wchar_t c) {
  return (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'-' || c > 0x7F;
}

std::vector<std::wstring> words_of(std::wstring_view text) {
  std::vector<std::wstring> words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(L' '), text.size());
    if (end > 0) words.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

/// A keyword, and what stands for it behind a comma.
std::pair<std::wstring, std::wstring> split(const std::wstring& word) {
  const std::size_t comma = word.find(L',');
  if (comma == std::wstring::npos) return {word, {}};
  return {word.substr(0, comma), word.substr(comma + 1)};
}

bool starts_with_no_case(std::wstring_view text, std::wstring_view start) {
  return start.size() <= text.size() && equal_no_case(text.substr(0, start.size()), start);
}

/// The stretch of capitals a keyword is abbreviated to.
struct Capitals {
  std::size_t begin = 0;
  std::size_t end = 0;
};
Capitals capitals_of(std::wstring_view word) {
  const auto first = std::find_if(word.begin(), word.end(), is_capital);
  const auto last = std::find_if_not(first, word.end(), is_capital);
  return {static_cast<std::size_t>(first - word.begin()),
          static_cast<std::size_t>(last - word.begin())};
}

bool means(std::wstring_view typed, std::wstring_view word, std::wstring_view abbreviation) {
  if (typed.empty()) return false;
  if (equal_no_case(typed, word)) return true;
  if (!abbreviation.empty())
    return typed.size() >= abbreviation.size() &&
           (equal_no_case(typed, abbreviation) ||
            (starts_with_no_case(word, typed) && starts_with_no_case(word, abbreviation)));
  const Capitals capitals = capitals_of(word);
  if (capitals.begin == capitals.end) return false;
  if (typed.size() >= capitals.end && starts_with_no_case(word, typed)) return true;
  // "X", "Xi" for "eXit".
  return typed.size() >= capitals.end - capitals.begin &&
         starts_with_no_case(word.substr(capitals.begin), typed);
}

}  // namespace

Keywords::Keywords(std::wstring_view list) {
  std::vector<std::wstring> local = words_of(list), global;
  const auto mark = std::find_if(local.begin(), local.end(),
                                 [](const std::wstring& word) { return word.front() == L'_'; });
  if (mark != local.end()) {
    global.assign(mark, local.end());
    global.front().erase(0, 1);
    if (global.front().empty()) global.erase(global.begin());
    local.erase(mark, local.end());
    if (local.empty()) local = global;
  }
  for (std::size_t i = 0; i < local.size(); ++i) {
    const auto [word, abbreviation] = split(local[i]);
    if (word.empty()) continue;
    words_.push_back({word, abbreviation, split(i < global.size() ? global[i] : word).first});
  }
}

std::optional<std::wstring> Keywords::match(std::wstring_view typed) const {
  const bool wants_global = typed.starts_with(L"_");
  if (wants_global) typed.remove_prefix(1);
  // What is spelled in full comes before any abbreviation of another word.
  for (const Word& word : words_)
    if (equal_no_case(typed, wants_global ? word.global : word.local)) return word.global;
  for (const Word& word : words_) {
    const bool found = wants_global ? means(typed, word.global, {}) || means(typed, word.local, {})
                                    : means(typed, word.local, word.abbreviation);
    if (found) return word.global;
  }
  return std::nullopt;
}

}  // namespace cad
