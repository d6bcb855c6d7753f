#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

#include "host/font/glyph.h"
#include "host/font/mtext_reader.h"
#include "host/font/style.h"

/// The lines of a MTEXT, broken and placed.
namespace cad::font {

struct MTextShape {
  double height = 1.0;           ///< group 40
  double reference_width = 0.0;  ///< group 41; lines are broken there unless 0
  int attachment = 1;            ///< group 71: 1 top left to 9 bottom right, row by row
  double line_spacing = 1.0;     ///< group 44
  bool exact_spacing = false;    ///< group 73 is 2; else a tall line takes more room
};

/// Neighbouring characters that look alike.
struct MTextRun {
  Colour colour;
  std::size_t first_glyph, glyphs;    ///< in MTextLayout::glyphs
  std::size_t first_stroke, strokes;  ///< in MTextLayout::strokes
};

struct MTextLine {
  double left;    ///< where its first character starts
  double base;    ///< y of its base line
  double width;   ///< blanks at its end left out
  double height;  ///< of its tallest capital
  std::size_t first_run, runs;
  std::wstring_view source;  ///< its part of the contents, blanks at which it was broken left out
};

/// Origin: the insertion point; x along the lines, y up.
struct MTextLayout {
  Box frame;  ///< from the top of the first line's capitals to the last base line
  Box ink;    ///< around what is drawn
  std::vector<MTextLine> lines;
  std::vector<MTextRun> runs;
  std::vector<PlacedGlyph> glyphs;
  std::vector<Stroke> strokes;
  std::map<wchar_t, std::size_t> unknown;  ///< codes that nobody knows, and how often they came
};

MTextLayout layout_mtext(std::wstring_view contents, const FontStyle& style,
                         const MTextShape& shape);

}  // namespace cad::font
