#pragma once

#include <string_view>
#include <vector>

#include "module/platform/foundation.h"
#include "module/record/dim_item.h"

/// The pieces a label's text is made of. A piece is what the annotation record keeps as an item:
/// others may change its value alone, and the text is joined anew.
namespace labeler {

struct Piece {
  CString name;  ///< of the item: "pipe_dia"; of one pipe among several "2F3@pipe_dia"
  CString prefix;
  CString value;
  CString suffix;
  CString separator;  ///< behind the piece when another one follows

  friend bool operator==(const Piece&, const Piece&) = default;
};

/// The pieces of one text entity.
struct TextLine {
  std::vector<Piece> pieces;
  /// Joined as the annotation record joins them.
  CString text() const;
  friend bool operator==(const TextLine&, const TextLine&) = default;
};

/// A text of one piece.
TextLine line_of(Piece piece);

/// The text as one piece that joins to exactly this text: when it holds exactly one number, prefix,
/// number and suffix; else all of it is the value. "L=35.2m" is "L=", "35.2" and "m". A sign counts
/// as part of the number where no letter or digit stands before it.
Piece piece_of(CString name, std::wstring_view text);

/// The text with that ending as the value, if it ends so and more is in front; else as above.
Piece piece_ending_with(CString name, std::wstring_view text, std::wstring_view value);

/// How many numbers there are in the text.
int count_numbers(std::wstring_view text);

/// The record's item of a piece.
StuDim item_of(Piece piece, const CString& handle);

}  // namespace labeler
