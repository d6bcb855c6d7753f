#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "host/db/object_id.h"
#include "host/db/text_style.h"
#include "host/geometry/ge.h"

namespace cad {

/// How large texts are, as drawn with the fonts of host/font.

/// Around the characters of a line, measured from the start of its base line: from there to where
/// the next character would begin, or to the ink beyond. Empty for an empty text.
struct TextBox {
  double left = 0.0;
  double bottom = 0.0;  ///< below 0 when a character goes below the base line
  double right = 0.0;
  double top = 0.0;
  double width() const { return right - left; }
};

/// A line as TEXT holds it, %% codes included. Oblique: the slant in radians. For the width alone,
/// see font::measure_line().
TextBox line_box(std::wstring_view text, double height, double width_factor = 1.0,
                 double oblique = 0.0, const TextStyleRef& style = plain_text_style());

/// Width and height of a MTEXT's contents, formatting codes included; lines are broken at the
/// reference width unless that is 0.
struct ParagraphSize {
  double width = 0.0;
  double height = 0.0;
};
ParagraphSize paragraph_size(std::wstring_view contents, double height, double reference_width,
                             double line_spacing = 1.0,
                             const font::FontStyle& style = plain_text_style()->font);

/// The corners of the box of a TEXT, MTEXT, ATTRIB or ATTDEF where it stands in the world:
/// counter-clockwise from the lower left of the text. Nothing for other kinds and empty texts.
std::optional<std::array<AcGePoint3d, 4>> text_corners(AcDbObjectId id);

}  // namespace cad
