#include <algorithm>
#include <cstdint>
#include <string>

#include "host/lisp/interpreter.h"
#include "host/lisp/letters.h"
#include "host/lisp/tables.h"
#include "host/lisp/wildcard.h"

namespace cad::lisp {
namespace {

// An optional start position from 0; 0 when it is missing or nil.
std::size_t start_at(Call& call, std::size_t i) {
  if (!call.arg(i)) return 0;
  if (call.integer(i) < 0) raise_bad_value(L"non-negative", call.arg(i));
  return static_cast<std::size_t>(call.integer(i));
}

Value position(std::size_t at) {
  return at == std::wstring_view::npos ? Value() : Value::integer(static_cast<std::int32_t>(at));
}

Value fn_search(Call& call) {
  return position(call.string(1).find(call.string(0), start_at(call, 2)));
}

// With a fourth argument the last occurrence at or behind the start counts.
Value fn_position_of(Call& call) {
  const auto c = static_cast<wchar_t>(call.integer(0));
  const std::wstring_view text = call.string(1);
  const std::size_t start = start_at(call, 2);
  if (!call.arg(3)) return position(text.find(c, start));
  const std::size_t at = text.rfind(c);
  return position(at != text.npos && at < start ? text.npos : at);
}

Value fn_subst_first(Call& call) {
  const std::wstring_view replacement = call.string(0), pattern = call.string(1);
  const std::size_t at = call.string(2).find(pattern, start_at(call, 3));
  if (at == std::wstring_view::npos) return call.arg(2);
  std::wstring text(call.string(2));
  text.replace(at, pattern.size(), replacement);
  return call.interp().string(text);
}

// Character n of the first set becomes character n of the second; its last one stands in for
// those it lacks.
Value fn_translate(Call& call) {
  const std::wstring_view from = call.string(0), to = call.string(1);
  std::wstring text(call.string(2));
  if (to.empty()) return call.arg(2);
  for (wchar_t& c : text) {
    const std::size_t at = from.find(c);
    if (at != from.npos) c = to[std::min(at, to.size() - 1)];
  }
  return call.interp().string(text);
}

Value fn_mismatch(Call& call) {
  const std::size_t first = start_at(call, 2), second = start_at(call, 3);
  if (first > call.string(0).size()) raise_bad_value(L"string position out of range", call.arg(2));
  if (second > call.string(1).size()) raise_bad_value(L"string position out of range", call.arg(3));
  const std::wstring_view a = call.string(0).substr(first);
  const std::wstring_view b = call.string(1).substr(second);
  const bool no_case = static_cast<bool>(call.arg(4));
  const std::size_t most = std::min(a.size(), b.size());
  std::size_t same = 0;
  while (same < most && (no_case ? to_upper(a[same]) == to_upper(b[same]) : a[same] == b[same])) {
    ++same;
  }
  return Value::integer(static_cast<std::int32_t>(same));
}

Value fn_wcmatch(Call& call) {
  return call.truth(matches_wildcard(call.string(0), call.string(1)));
}

// clang-format off
constexpr Builtin kStringSearchFunctions[] = {
    {"wcmatch",             2, 2, fn_wcmatch,     "(wcmatch text pattern)",                   "T when the text matches: * ? # @ . ~ [] , `"},
    {"vl-string-search",    2, 3, fn_search,      "(vl-string-search pattern text [start])",  "where the pattern stands, from 0; nil if nowhere"},
    {"vl-string-position",  2, 4, fn_position_of, "(vl-string-position code text [start [last]])", "where the character stands, from 0"},
    {"vl-string-subst",     3, 4, fn_subst_first, "(vl-string-subst new old text [start])",   "the text with its first old replaced"},
    {"vl-string-translate", 3, 3, fn_translate,   "(vl-string-translate from to text)",       "each character of from replaced by that of to"},
    {"vl-string-mismatch",  2, 5, fn_mismatch,    "(vl-string-mismatch a b [i [j [nocase]]])", "the length of the common start"},
};
// clang-format on

}  // namespace

std::span<const Builtin> string_search_functions() { return kStringSearchFunctions; }

}  // namespace cad::lisp
