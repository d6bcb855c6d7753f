#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "host/font/glyph.h"
#include "host/geometry/curve.h"
#include "host/gi/world_draw.h"

namespace cad {

/// Characters at their places in a plane: a point (x, y) of theirs is at origin + x_axis x +
/// y_axis y.
struct GlyphRun {
  AcGePoint3d origin;
  AcGeVector3d x_axis;
  AcGeVector3d y_axis;
  std::span<const font::PlacedGlyph> glyphs;
  std::span<const font::Stroke> strokes;
  std::wstring_view text;  ///< what it says, as far as that is known
};

/// What a picture can do beyond the published geometry: true curves as a whole, so that dashes run
/// through corners, areas with holes, glyphs. Entities are drawn with it where a drawing offers it,
/// and with lines, arcs, polygons and texts where not.
class FineGeometry : public AcGiWorldGeometry {
 public:
  /// A bounded curve; `width` in drawing units, 0 for a line as thick as its weight.
  virtual void curve(const Curve& curve, double width) = 0;
  /// Straight pieces of one entity: pairs of ends. A dot has both ends in one place.
  virtual void strokes(std::span<const AcGePoint3d> ends) = 0;
  enum class Rule { kEvenOdd, kNonZero };
  /// What closed curves enclose; each loop is a chain of curves.
  virtual void area(std::span<const std::vector<Curve>> loops, Rule rule) = 0;
  /// Hides what was drawn so far inside.
  virtual void mask(std::span<const AcGePoint3d> corners) = 0;
  /// A POINT with the drawing's point mode and size; see PDMODE and PDSIZE.
  virtual void point(const AcGePoint3d& place, int mode, double size) = 0;
  virtual void glyphs(const GlyphRun& run) = 0;
};

}  // namespace cad
