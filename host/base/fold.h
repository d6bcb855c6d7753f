#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Letter case as symbol names, dictionary keys and keywords want it: A-Z and a-z are the same
/// letters, everything else (Chinese, accents, full-width letters) is compared as it is written.
namespace cad {

/// The lower-case letter of A-Z, any other character unchanged.
constexpr wchar_t fold_ascii(wchar_t c) { return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c; }
constexpr char fold_ascii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// Negative, zero, positive: by folded code points, a prefix before the longer text.
template <class Char>
constexpr int compare_folded(std::basic_string_view<Char> a, std::basic_string_view<Char> b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const Char x = fold_ascii(a[i]), y = fold_ascii(b[i]);
    if (x != y) return std::char_traits<Char>::lt(x, y) ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

constexpr int compare_no_case(std::wstring_view a, std::wstring_view b) {
  return compare_folded(a, b);
}
constexpr int compare_no_case(std::string_view a, std::string_view b) {
  return compare_folded(a, b);
}
constexpr bool equal_no_case(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && compare_folded(a, b) == 0;
}
constexpr bool equal_no_case(std::string_view a, std::string_view b) {
  return a.size() == b.size() && compare_folded(a, b) == 0;
}

/// The whole text folded: a key for hashed and ordered tables.
inline std::wstring folded(std::wstring_view text) {
  std::wstring out(text);
  for (wchar_t& c : out) c = fold_ascii(c);
  return out;
}
inline std::string folded(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = fold_ascii(c);
  return out;
}

/// Order for maps: std::map<std::wstring, T, LessNoCase>. Finds by view without a copy.
struct LessNoCase {
  using is_transparent = void;
  bool operator()(std::wstring_view a, std::wstring_view b) const {
    return compare_folded(a, b) < 0;
  }
  bool operator()(std::string_view a, std::string_view b) const { return compare_folded(a, b) < 0; }
};

/// For hashed tables by names: std::unordered_map<std::wstring, T, HashNoCase, EqualNoCase>. Finds
/// by view without a copy.
struct HashNoCase {
  using is_transparent = void;
  std::size_t operator()(std::wstring_view text) const {
    std::uint64_t hash = text.size();
    for (const wchar_t c : text)
      hash = (hash ^ static_cast<std::uint32_t>(fold_ascii(c))) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(hash ^ hash >> 32);
  }
};
struct EqualNoCase {
  using is_transparent = void;
  bool operator()(std::wstring_view a, std::wstring_view b) const { return equal_no_case(a, b); }
};

}  // namespace cad
