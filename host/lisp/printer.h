#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/lisp/value.h"

namespace cad::lisp {

enum class Quoting {
  kPrinc,  // for people: strings as they are
  kPrin1,  // for the reader: strings quoted and escaped
};

/// The text of a value: (1 2.5 "a" (B . C)). Nesting of any depth. Lists share their parts, so a
/// small value may have an endless text: raises "insufficient string space" beyond `most`
/// characters.
inline constexpr std::size_t kLongestText = std::size_t{1} << 26;
std::wstring to_text(const Value& value, Quoting quoting, std::size_t most = kLongestText);

/// The same as prin1 for an error message: only the start of a long text, then "...".
std::wstring quoted_start(const Value& value);

/// A real as the host prints it: six significant digits, a tie rounded away from zero, at least one
/// decimal, exponents of three digits (1.0, 3.14159, 2.14748e+009).
void append_real_text(std::wstring& out, double value);

}  // namespace cad::lisp
