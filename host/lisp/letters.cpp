#include "host/lisp/letters.h"

namespace cad::lisp {
namespace {

// Runs of lower-case letters whose capitals stand at a fixed distance.
struct CaseRange {
  wchar_t first;
  wchar_t last;
  int to_upper;
};
constexpr CaseRange kCaseRanges[] = {
    {L'a', L'z', -32},     {0x00E0, 0x00F6, -32},  // without the division sign between
    {0x00F8, 0x00FE, -32}, {0x03B1, 0x03C1, -32},  // without the final sigma between
    {0x03C3, 0x03CB, -32}, {0x0430, 0x044F, -32}, {0x0450, 0x045F, -80}, {0xFF41, 0xFF5A, -32},
};

}  // namespace

wchar_t to_upper(wchar_t c) {
  for (const CaseRange& range : kCaseRanges) {
    if (c >= range.first && c <= range.last) return c + range.to_upper;
  }
  return c;
}

wchar_t to_lower(wchar_t c) {
  for (const CaseRange& range : kCaseRanges) {
    const wchar_t lower = c - range.to_upper;
    if (lower >= range.first && lower <= range.last) return lower;
  }
  return c;
}

// Characters of scripts without case (Chinese, ...) count as letters.
bool is_letter(wchar_t c) {
  if (c < 0x80) return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
  if (c < 0xC0) return false;
  if (c == 0xD7 || c == 0xF7) return false;
  return c < 0x2000 || (c >= 0x2E80 && c < 0x3000) || (c >= 0x3040 && c < 0xD800) ||
         (c >= 0xF900 && c < 0xFF00) || to_upper(c) != c || to_lower(c) != c;
}

bool is_letter_or_digit(wchar_t c) { return (c >= L'0' && c <= L'9') || is_letter(c); }

}  // namespace cad::lisp
