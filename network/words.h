#pragma once

#include <string_view>

#include "network/strings.h"

/// Words of a line and questions about single numbers.
namespace KT {

/// Word `index`, from 0; empty when there is none. Blanks and tabs, taken as separators, may stand
/// in runs and at both ends; any other separator stands once between two words, which may be empty.
///     GetWordFromStr(L"1000 50  1", 2, L' ')  -> 1
///     GetWordFromStr(L"a,,b", 1, L',')        -> (empty)
CString GetWordFromStr(std::wstring_view text, int index, wchar_t separator);

/// Whether the whole text is a decimal number: "36.5", "-.5", "5.", "1e-7". Blanks, hexadecimal and
/// full-width digits are no part of a number.
bool IsNum(std::wstring_view text);

/// Zero within 1e-6.
bool ISZERO(double value);

/// Whether two numbers differ by less than the tolerance.
bool IsDoubleEQ(double a, double b, double tolerance);

}  // namespace KT

namespace KTOLD {

/// Splits at runs of blanks and tabs; no word is empty. Replaces what `words` held and returns how
/// many there are. A full-width blank is a character like any other.
int DisSpaceString(std::wstring_view text, CStringArray& words);

}  // namespace KTOLD
