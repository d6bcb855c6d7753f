// TEXT, MTEXT and attributes.

#include <algorithm>
#include <cmath>

#include "host/db/entity_fields.h"
#include "host/dxf/text.h"
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

font::Point flat(const AcGePoint3d& p) { return {p.x, p.y}; }

/// A code that says something else is read as the plain one.
template <class T>
T listed(int code, T last) {
  return code >= 0 && code <= static_cast<int>(last) ? static_cast<T>(code) : T{};
}

font::LinePlace line_place(const EntityTags& entity, const EntityFields& fields,
                           const font::FontStyle& style) {
  constexpr int kBackward = 2, kUpsideDown = 4;
  font::LinePlace place;
  place.first = flat(fields.point(10));
  place.rotation = fields.angle(50);
  place.shape = {fields.real(40), fields.real(41, 1.0), fields.angle(51), style.vertical};
  const int generation = fields.integer(71);
  place.backward = (generation & kBackward) != 0;
  place.upside_down = (generation & kUpsideDown) != 0;
  // Where a text of no drawing stands is not computed from its alignment.
  if (!entity.is_resident() || !fields.has(11)) return place;
  const int kUp = entity.kind == "TEXT" ? 73 : 74;
  place.second = flat(fields.point(11));
  place.across = listed(fields.integer(72), font::Across::kFit);
  place.up = listed(fields.integer(kUp), font::Up::kTop);
  return place;
}

/// Groups 3 and 1 in order, joined.
std::wstring contents_of(const EntityTags& entity) {
  std::string joined;
  OwnTags tags(entity.bytes, entity.dialect);
  dxf::Tag tag;
  while (tags.next(tag))
    if (tag.code == 3 || tag.code == 1) joined += tag.value;
  std::wstring text;
  dxf::append_decoded(joined, entity.dialect, text);
  return text;
}

/// The angle of a MTEXT: whichever of direction (11) and rotation (50) comes later in the record.
double mtext_rotation(const EntityTags& entity, const EntityFields& fields,
                      const AcGeMatrix3d& axes) {
  int last = 0;
  OwnTags tags(entity.bytes, entity.dialect);
  dxf::Tag tag;
  while (tags.next(tag))
    if (tag.code == 11 || tag.code == 50) last = tag.code;
  if (last != 11) return fields.angle(50);
  const AcGeVector3d along = axes.transpose() * fields.vector(11);
  return along.isZeroLength() ? fields.angle(50) : std::atan2(along.y, along.x);
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
  constexpr int kTag = 2, kText = 1;  // a definition shows its tag
  const EntityFields fields(entity.bytes, entity.dialect);
  const std::wstring text = fields.text(entity.kind == "ATTDEF" ? kTag : kText);
  if (text.empty()) return;
  const TextStyles::Style& style = drawer.styles_of(entity.drawing).style(fields.bytes(7));
  const TextPlane plane{ocs_to_wcs(fields.normal()), fields.real(30)};
  const font::PlacedLine placed =
      font::place_line(text, *style.face, line_place(entity, fields, style.font));
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
  constexpr int kExactly = 2;
  const EntityFields fields(entity.bytes, entity.dialect);
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  const double angle = mtext_rotation(entity, fields, axes);
  Paragraph paragraph;
  paragraph.origin = fields.point(10);
  paragraph.x = axes * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
  paragraph.y = axes * AcGeVector3d(-std::sin(angle), std::cos(angle), 0.0);
  paragraph.contents = contents_of(entity);
  paragraph.shape.height = fields.real(40);
  paragraph.shape.reference_width = fields.real(41);
  paragraph.shape.attachment = std::clamp(fields.integer(71, 1), 1, 9);
  paragraph.shape.line_spacing = fields.real(44, 1.0);
  paragraph.shape.exact_spacing = fields.integer(73) == kExactly;
  paragraph.background = background_of(entity, fields);
  draw_paragraph(paragraph, drawer.styles_of(entity.drawing).style(fields.bytes(7)), drawer);
}

}  // namespace cad
