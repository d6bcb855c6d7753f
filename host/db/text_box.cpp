#include "host/db/text_box.h"

#include <algorithm>
#include <cmath>

#include "host/db/drawing.h"
#include "host/db/text_place.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

using Corners = std::array<AcGePoint3d, 4>;

TextBox box_of(const font::LineExtent& extent, bool vertical) {
  const font::Box& ink = extent.ink;
  TextBox box{std::min(0.0, ink.left), std::min(0.0, ink.bottom), std::max(0.0, ink.right),
              std::max(0.0, ink.top)};
  if (vertical)
    box.bottom = std::min(box.bottom, -extent.advance);
  else
    box.right = std::max(box.right, extent.advance);
  return box;
}

/// A box of a text's own axes, placed: the axes turned by `rotation` about `place`.
Corners placed(const TextBox& box, const AcGePoint3d& place, double rotation,
               const AcGeMatrix3d& axes) {
  const double c = std::cos(rotation), s = std::sin(rotation);
  const auto corner = [&](double x, double y) {
    return axes * AcGePoint3d(place.x + x * c - y * s, place.y + x * s + y * c, place.z);
  };
  return {corner(box.left, box.bottom), corner(box.right, box.bottom), corner(box.right, box.top),
          corner(box.left, box.top)};
}

std::optional<Corners> line_corners(std::string_view kind, const EntityFields& fields,
                                    const TextStyleRef& style) {
  const StoredLine stored = stored_line(kind, fields, style->font);
  const font::PlacedLine line = placed_line(stored, style);
  if (line.extent.advance <= 0.0) return std::nullopt;
  TextBox box = box_of(line.extent, line.shape.vertical);
  if (stored.place.backward) box = {-box.right, box.bottom, -box.left, box.top};
  if (stored.place.upside_down) box = {box.left, -box.top, box.right, -box.bottom};
  const int elevated = fields.has(11) && (stored.place.across != font::Across::kLeft ||
                                          stored.place.up != font::Up::kBase)
                           ? 11
                           : 10;
  return placed(box, {line.start.x, line.start.y, fields.point(elevated).z}, line.rotation,
                ocs_to_wcs(fields.normal()));
}

std::optional<Corners> paragraph_corners(std::string_view bytes, const dxf::Dialect& dialect,
                                         const TextStyleRef& style) {
  const EntityFields fields(bytes, dialect);
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  const StoredParagraphs stored = stored_paragraphs(bytes, dialect, axes);
  const font::Box frame = font::layout_mtext(stored.contents, style->font, stored.shape).frame;
  if (frame.width() <= 0.0) return std::nullopt;
  return placed({frame.left, frame.bottom, frame.right, frame.top},
                axes.transpose() * fields.point(10), stored.rotation, axes);
}

}  // namespace

TextBox line_box(std::wstring_view text, double height, double width_factor, double oblique,
                 const TextStyleRef& style) {
  const bool vertical = style->font.vertical;
  return box_of(font::measure_line(text, *style->face, {height, width_factor, oblique, vertical}),
                vertical);
}

ParagraphSize paragraph_size(std::wstring_view contents, double height, double reference_width,
                             double line_spacing, const font::FontStyle& style) {
  if (contents.empty()) return {};
  font::MTextShape shape;
  shape.height = height;
  shape.reference_width = reference_width;
  shape.line_spacing = line_spacing;
  const font::Box frame = font::layout_mtext(contents, style, shape).frame;
  return {frame.width(), frame.height()};
}

std::optional<std::array<AcGePoint3d, 4>> text_corners(AcDbObjectId id) {
  if (id.isNull()) return std::nullopt;
  Drawing& drawing = StubStore::drawing_of(*id.stub());
  const std::string_view kind = drawing.kind_name(*id.stub());
  if (kind != "MTEXT" && kind != "TEXT" && kind != "ATTRIB" && kind != "ATTDEF")
    return std::nullopt;
  const std::string_view bytes = drawing.bytes_of(*id.stub());
  const EntityFields fields(bytes, drawing.dialect());
  const TextStyleRef style = text_style(drawing, fields.bytes(7));
  return kind == "MTEXT" ? paragraph_corners(bytes, drawing.dialect(), style)
                         : line_corners(kind, fields, style);
}

}  // namespace cad
