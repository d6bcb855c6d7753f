#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "host/db/object_id.h"
#include "host/geometry/ge.h"

namespace cad {

/// How large texts are. There are no font files here: characters are as wide as in the usual
/// single-stroke font (simplex), Chinese, Japanese and Korean ones as wide as high. For other fonts
/// the result is an estimate.

/// Around the characters of a line, measured from the start of its base line.
struct TextBox {
  double left = 0.0;
  double bottom = 0.0;  ///< below 0 when a character goes below the base line
  double right = 0.0;
  double top = 0.0;
  double width() const { return right - left; }
};

/// A line as TEXT holds it, %% codes included. Oblique: the slant in radians.
TextBox line_box(std::wstring_view text, double height, double width_factor = 1.0,
                 double oblique = 0.0);

/// Width and height of a MTEXT's contents, formatting codes included; lines are broken at the
/// reference width unless that is 0.
struct ParagraphSize {
  double width = 0.0;
  double height = 0.0;
};
ParagraphSize paragraph_size(std::wstring_view contents, double height, double reference_width,
                             double line_spacing = 1.0, double width_factor = 1.0);

/// The corners of the box of a TEXT, MTEXT, ATTRIB or ATTDEF where it stands in the world:
/// counter-clockwise from the lower left of the text. Nothing for other kinds and empty texts.
std::optional<std::array<AcGePoint3d, 4>> text_corners(AcDbObjectId id);

}  // namespace cad
