#include "labeler/piece.h"

#include <cstddef>
#include <utility>

namespace labeler {
namespace {

bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }
bool is_letter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c > 0x7F;
}

struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// The first number at or behind `from`; empty at the end of the text when there is none.
Span next_number(std::wstring_view text, std::size_t from) {
  std::size_t begin = from;
  while (begin < text.size() && !is_digit(text[begin])) ++begin;
  if (begin == text.size()) return {begin, begin};
  std::size_t end = begin;
  while (end < text.size() && is_digit(text[end])) ++end;
  if (end + 1 < text.size() && text[end] == L'.' && is_digit(text[end + 1])) {
    ++end;
    while (end < text.size() && is_digit(text[end])) ++end;
  }
  const bool has_sign = begin > from && (text[begin - 1] == L'-' || text[begin - 1] == L'+');
  if (has_sign && (begin == 1 || !(is_digit(text[begin - 2]) || is_letter(text[begin - 2]))))
    --begin;
  return {begin, end};
}

/// A value equal to its name would make the item one without text.
Piece kept_as_text(Piece piece) {
  if (piece.value == piece.name && !piece.value.empty()) {
    piece.suffix.insert(0, 1, piece.value.back());
    piece.value.pop_back();
  }
  return piece;
}

Piece split(CString name, std::wstring_view text, Span value) {
  return kept_as_text({std::move(name), CString(text.substr(0, value.begin)),
                       CString(text.substr(value.begin, value.end - value.begin)),
                       CString(text.substr(value.end)), CString()});
}

}  // namespace

CString TextLine::text() const {
  CString joined;
  std::size_t size = 0;
  for (const Piece& piece : pieces)
    size += piece.prefix.size() + piece.value.size() + piece.suffix.size() + piece.separator.size();
  joined.reserve(size);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const Piece& piece = pieces[i];
    if (!piece.value.empty()) joined.append(piece.prefix).append(piece.value).append(piece.suffix);
    if (i + 1 < pieces.size()) joined.append(piece.separator);
  }
  return joined;
}

TextLine line_of(Piece piece) {
  TextLine line;
  line.pieces.push_back(std::move(piece));
  return line;
}

int count_numbers(std::wstring_view text) {
  int count = 0;
  for (Span at = next_number(text, 0); at.begin < at.end; at = next_number(text, at.end)) ++count;
  return count;
}

Piece piece_of(CString name, std::wstring_view text) {
  const Span first = next_number(text, 0);
  const bool is_only = first.begin < first.end && next_number(text, first.end).begin == text.size();
  return split(std::move(name), text, is_only ? first : Span{0, text.size()});
}

Piece piece_ending_with(CString name, std::wstring_view text, std::wstring_view value) {
  if (value.empty() || !text.ends_with(value)) return piece_of(std::move(name), text);
  return split(std::move(name), text, {text.size() - value.size(), text.size()});
}

StuDim item_of(Piece piece, const CString& handle) {
  StuDim item;
  item.name = std::move(piece.name);
  item.handle = handle;
  item.value = std::move(piece.value);
  item.prefix = std::move(piece.prefix);
  item.suffix = std::move(piece.suffix);
  item.separator = std::move(piece.separator);
  return item;
}

}  // namespace labeler
