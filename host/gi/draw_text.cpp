// TEXT, MTEXT and attributes.

#include <cmath>
#include <utility>

#include "host/db/entity_fields.h"
#include "host/db/text_place.h"
#include "host/font/placement.h"
#include "host/geometry/ocs.h"
#include "host/gi/kinds.h"
#include "host/gi/paragraph.h"

namespace cad {
namespace {

/// The plane in which a text's own coordinates are counted.
struct TextPlane {
  AcGeMatrix3d axes;
  double elevation;
  AcGePoint3d point(font::Point p) const { return axes * AcGePoint3d(p.x, p.y, elevation); }
  AcGeVector3d vector(font::Point v) const { return axes * AcGeVector3d(v.x, v.y, 0.0); }
};

/// Where a text stands. One of no drawing stands where it begins: nothing is computed from its
/// alignment.
StoredLine line_of(const EntityTags& entity, const EntityFields& fields,
                   const font::FontStyle& style) {
  StoredLine line = stored_line(entity.kind, fields, style);
  if (entity.is_resident()) return line;
  line.place.across = {};
  line.place.up = {};
  return line;
}

Paragraph::Background background_of(const EntityTags& entity, const EntityFields& fields) {
  Paragraph::Background background;
  background.color = fields.integer(63, 7);
  background.scale = fields.real(45, 1.5);
  OwnTags tags(entity.bytes, entity.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 90) background.flags = static_cast<int>(dxf::int_value(tag, entity.dialect));
    if (tag.code == 421)
      background.true_color = static_cast<std::uint32_t>(dxf::int_value(tag, entity.dialect));
  }
  return background;
}

/// What a line of text says, its codes undone.
std::wstring words_of(std::wstring_view line) {
  std::wstring text;
  font::LineReader reader(line);
  for (wchar_t c; reader.next(c);) text += c;
  return text;
}

}  // namespace

void draw_line_of_text(const EntityTags& entity, EntityDrawer& drawer) {
  const EntityFields fields(entity.bytes, entity.dialect);
  const TextStyle& style = drawer.styles_of(entity.drawing).style(fields.bytes(7));
  const StoredLine line = line_of(entity, fields, style.font);
  const std::wstring& text = line.text;
  if (text.empty()) return;
  const TextPlane plane{ocs_to_wcs(fields.normal()), fields.real(30)};
  const font::PlacedLine placed = font::place_line(text, *style.face, line.place);
  const Canvas& canvas = drawer.canvas();
  if (FineGeometry* const fine = canvas.fine()) {
    const font::LineLayout layout = font::layout_line(text, *style.face, placed.shape);
    fine->glyphs({plane.point(placed.start), plane.vector(placed.x_axis),
                  plane.vector(placed.y_axis), layout.glyphs, layout.strokes, words_of(text)});
    return;
  }
  AcGiTextStyle published = published_style(style.font, placed.shape);
  published.setBackward(placed.x_axis.x * placed.y_axis.y < placed.x_axis.y * placed.y_axis.x);
  canvas.geometry().text(plane.point(placed.start), plane.axes.column(2),
                         plane.vector(placed.x_axis), text.c_str(), -1, Adesk::kFalse, published);
}

void draw_mtext(const EntityTags& entity, EntityDrawer& drawer) {
  const EntityFields fields(entity.bytes, entity.dialect);
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  StoredParagraphs stored = stored_paragraphs(entity.bytes, entity.dialect, axes);
  const double angle = stored.rotation;
  Paragraph paragraph;
  paragraph.origin = fields.point(10);
  paragraph.x = axes * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
  paragraph.y = axes * AcGeVector3d(-std::sin(angle), std::cos(angle), 0.0);
  paragraph.contents = std::move(stored.contents);
  paragraph.shape = stored.shape;
  paragraph.background = background_of(entity, fields);
  draw_paragraph(paragraph, drawer.styles_of(entity.drawing).style(fields.bytes(7)), drawer);
}

}  // namespace cad
