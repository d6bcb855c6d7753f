#pragma once

#include <string_view>
#include <vector>

#include "host/font/face.h"
#include "host/font/glyph.h"

/// A line of text as TEXT, ATTRIB and ATTDEF hold it.
///
///     const Face& face = face_for(style);
///     const PlacedLine placed = place_line(text, face, where);  // host/font/placement.h
///     const LineLayout line = layout_line(text, face, placed.shape);
///     for (const PlacedGlyph& glyph : line.glyphs) draw(placed, glyph);
///
/// Codes: %%c %%d %%p (diameter, degree, plus-minus), %%nnn (three decimal digits: that
/// character), %%% (a percent sign), %%u %%o %%k (under, over and through line on or off), \U+XXXX
/// and \M+nXXXX (a character), tab (to the next multiple of four heights). What only looks like
/// one is shown.
namespace cad::font {

/// A height that is no number or not positive gives a line without extent; a width factor that is
/// none or 0 counts as 1.
struct LineShape {
  double height = 1.0;  ///< of a capital letter
  double width_factor = 1.0;
  double oblique = 0.0;  ///< slant in radians, held to 85 degrees
  bool vertical = false;
};

/// The extent of a line whose base line starts at the origin and runs along x. The characters of a
/// vertical one stand below each other, in the middle above and below the origin.
struct LineExtent {
  double advance = 0.0;  ///< where the next character would start; vertical: how far below
  Box ink;               ///< around what is drawn
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
  /// False at the end.
  bool next(wchar_t& character);
  /// Lines under, over and through the character given last, as bits: 1, 2, 4.
  unsigned lines() const { return lines_; }

 private:
  bool read_code(wchar_t& character, bool& shown);

  std::wstring_view text_;
  std::size_t at_ = 0;
  unsigned lines_ = 0;
};

/// Where such lines run, in heights of a capital letter: of bit 1, 2, 4.
inline constexpr double kLineHeights[] = {-0.2, 1.2, 0.5};
/// Tabs stand at multiples of this many heights.
inline constexpr double kTabDistance = 4.0;
inline constexpr double kSteepest = 1.4835298641951802;  // 85 degrees

}  // namespace cad::font
