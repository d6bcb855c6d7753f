#include "module/record/text_marks.h"

#include <algorithm>
#include <string_view>

#include "module/record/record_cursor.h"

namespace dim {
namespace {

using Cursor = CDimRecordIterator;

/// A text item's fields; they point into the cursor's chain.
struct Piece {
  std::wstring_view handle;
  std::wstring_view prefix;
  std::wstring_view value;
  std::wstring_view suffix;
  std::wstring_view separator;
};

Piece piece_at(const Cursor& cursor) {
  return {cursor.field(Cursor::posHandle), cursor.field(Cursor::posPrefix),
          cursor.field(Cursor::posValue), cursor.field(Cursor::posSuffix),
          cursor.field(Cursor::posSeparator)};
}

template <class Pieces>
CString joined(Pieces begin, Pieces end) {
  std::size_t size = 0;
  for (Pieces piece = begin; piece != end; ++piece)
    size +=
        piece->prefix.size() + piece->value.size() + piece->suffix.size() + piece->separator.size();
  CString text;
  text.reserve(size);
  for (Pieces piece = begin; piece != end; ++piece) {
    if (!piece->value.empty()) {
      text.append(piece->prefix).append(piece->value).append(piece->suffix);
    }
    if (piece + 1 != end) text.append(piece->separator);
  }
  return text;
}

}  // namespace

bool make_text_marks(Cursor& cursor, std::vector<TextMark>& marks) {
  std::vector<Piece> pieces;
  pieces.reserve(8);  // usually enough
  for (cursor.start(); !cursor.done(); cursor.step()) {
    if (!cursor.stands_on_item()) return false;
    if (cursor.isText()) pieces.push_back(piece_at(cursor));
  }
  // Nearly always they stand in that order, and sorting takes memory even then.
  const auto before = [](const Piece& a, const Piece& b) { return a.handle < b.handle; };
  if (!std::is_sorted(pieces.begin(), pieces.end(), before))
    std::stable_sort(pieces.begin(), pieces.end(), before);
  for (auto begin = pieces.cbegin(); begin != pieces.cend();) {
    const auto end = std::find_if(
        begin, pieces.cend(), [&](const Piece& piece) { return piece.handle != begin->handle; });
    marks.emplace_back(begin->handle, joined(begin, end));
    begin = end;
  }
  return true;
}

}  // namespace dim
