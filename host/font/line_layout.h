#pragma once

#include <string_view>
#include <vector>

#include "host/font/face.h"
#include "host/font/glyph.h"

/// A line of text as TEXT, ATTRIB and ATTDEF hold it.
///
///     const Face& face = face_for(style);
///     const PlacedLine placed = place_line(text, face, where);          // host/font/placement.h
///     const LineLayout line = layout_line(text, face, placed.shape);
///     for (const PlacedGlyph& glyph : line.glyphs) draw(placed, glyph);
///
/// Codes: %%c %%d %%p (diameter, degree, plus-minus), %%nnn (three decimal digits: that
/// character), %%% (a percent sign), %%u %%o %%k (under, over and through line on or off), \U+XXXX
/// and \M+nXXXX (a character), tab (to the next multiple of four heights). What only looks like
/// one is shown.
namespace cad::font {

struct LineShape {
  double height = 1.0;  ///< of a capital letter; a text of none, or of NaN, has no extent
  double width_factor = 1.0;
  double oblique = 0.0;  ///< slant in radians, held to 85 degrees
  bool vertical = false;
};

/// The extent of a line whose base line starts at the origin and runs along x.
struct LineExtent {
  double advance =
      0.0;  ///< where the next character would start; vertical: how far below, positive
  Box ink;  ///< around what is drawn
};

struct LineLayout : LineExtent {
  std::vector<PlacedGlyph> glyphs;  ///< what is visible: no blanks
  std::vector<Stroke> strokes;
};

LineExtent measure_line(std::wstring_view text, const Face& face, const LineShape& shape);
LineLayout layout_line(std::wstring_view text, const Face& face, const LineShape& shape);

/// Reads the characters of a line, codes undone.
class LineReader {
 public:
  explicit LineReader(std::wstring_view text) : text_(text) {}
  /// False at the end. `under`, `over` and `through` hold for the character given last.
  bool next(wchar_t& character);
  bool under = false;
  bool over = false;
  bool through = false;

 private:
  bool read_percent(wchar_t& character, bool& shows);
  bool read_escape(wchar_t& character);

  std::wstring_view text_;
  std::size_t at_ = 0;
};

}  // namespace cad::font
