// Lines of text and paragraphs.

#include <algorithm>
#include <cmath>

#include "host/db/entity_fields.h"
#include "host/dxf/text.h"
#include "host/font/mtext_layout.h"
#include "host/font/placement.h"
#include "host/geometry/ocs.h"
#include "host/gi/kinds.h"

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

/// One drawing of a MTEXT.
class Paragraphs {
 public:
  Paragraphs(const EntityTags& entity, EntityDrawer& drawer, const TextStyles::Style& style)
      : drawer_(drawer),
        canvas_(drawer.canvas()),
        style_(style),
        fields_(entity.bytes, entity.dialect),
        axes_(ocs_to_wcs(fields_.normal())),
        origin_(fields_.point(10)) {
    const double angle = mtext_rotation(entity, fields_, axes_);
    x_ = axes_ * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
    y_ = axes_ * AcGeVector3d(-std::sin(angle), std::cos(angle), 0.0);
    contents_ = contents_of(entity);
    constexpr int kExactly = 2;
    shape_.height = fields_.real(40);
    shape_.reference_width = fields_.real(41);
    shape_.attachment = std::clamp(fields_.integer(71, 1), 1, 9);
    shape_.line_spacing = fields_.real(44, 1.0);
    shape_.exact_spacing = fields_.integer(73) == kExactly;
    read_background(entity);
    layout_ = font::layout_mtext(contents_, style.font, shape_);
  }

  void draw() {
    if (background_ & kFilled) draw_background();
    // Whoever collects texts is told of those of which nothing is seen.
    if (layout_.runs.empty() && !(shape_.height > 0.0) && canvas_.fine())
      canvas_.fine()->glyphs({origin_, x_, y_, {}, {}, contents_});
    for (const font::MTextRun& run : layout_.runs) {
      const bool colored = run.colour.kind != font::Colour::Kind::kEntity;
      if (run.colour.kind == font::Colour::Kind::kTrue)
        canvas_.traits().setTrueColor(run.colour.value);
      else if (colored)
        drawer_.set_color(static_cast<int>(run.colour.value));
      draw_run(run);
      if (colored) drawer_.restore_color();
    }
  }

 private:
  static constexpr int kFilled = 1 | 2, kFilledLikeWindow = 2, kFramed = 16;

  void read_background(const EntityTags& entity) {
    OwnTags tags(entity.bytes, entity.dialect);
    dxf::Tag tag;
    while (tags.next(tag)) {
      if (tag.code == 90) background_ = static_cast<int>(dxf::int_value(tag, entity.dialect));
      if (tag.code == 421)
        background_true_ = static_cast<std::uint32_t>(dxf::int_value(tag, entity.dialect));
    }
  }

  void draw_background();
  void draw_run(const font::MTextRun& run);
  void draw_words(std::span<const font::PlacedGlyph> glyphs);
  AcGePoint3d at(double x, double y) const { return origin_ + x_ * x + y_ * y; }

  EntityDrawer& drawer_;
  Canvas& canvas_;
  const TextStyles::Style& style_;
  const EntityFields fields_;
  const AcGeMatrix3d axes_;
  const AcGePoint3d origin_;
  AcGeVector3d x_, y_;
  std::wstring contents_;
  font::MTextShape shape_;
  int background_ = 0;
  std::optional<std::uint32_t> background_true_;
  font::MTextLayout layout_;
};

void Paragraphs::draw_background() {
  // The box reaches beyond the text by a share of the height.
  const double margin = (fields_.real(45, 1.5) - 1.0) * shape_.height;
  const font::Box box = layout_.frame;
  const AcGePoint3d corners[] = {
      at(box.left - margin, box.bottom - margin), at(box.right + margin, box.bottom - margin),
      at(box.right + margin, box.top + margin), at(box.left - margin, box.top + margin)};
  if (background_ & kFilledLikeWindow) return canvas_.mask(corners);
  if (background_true_)
    canvas_.traits().setTrueColor(*background_true_);
  else
    drawer_.set_color(fields_.integer(63, 7));
  canvas_.fill(corners);
  drawer_.restore_color();
}

void Paragraphs::draw_run(const font::MTextRun& run) {
  const auto glyphs = std::span(layout_.glyphs).subspan(run.first_glyph, run.glyphs);
  const auto strokes = std::span(layout_.strokes).subspan(run.first_stroke, run.strokes);
  if (FineGeometry* const fine = canvas_.fine()) {
    std::wstring text;
    for (const font::PlacedGlyph& glyph : glyphs) text += glyph.character;
    return fine->glyphs({origin_, x_, y_, glyphs, strokes, text});
  }
  draw_words(glyphs);
  for (const font::Stroke& stroke : strokes) {
    const AcGePoint3d ends[] = {at(stroke.from.x, stroke.from.y), at(stroke.to.x, stroke.to.y)};
    canvas_.outline(ends, false);
  }
}

/// Characters that follow each other without a gap are drawn as one text.
void Paragraphs::draw_words(std::span<const font::PlacedGlyph> glyphs) {
  std::wstring word;
  for (std::size_t i = 0; i < glyphs.size();) {
    const font::PlacedGlyph& first = glyphs[i];
    word.clear();
    for (bool joined = true; joined && i < glyphs.size(); ++i) {
      const font::PlacedGlyph& glyph = glyphs[i];
      word += glyph.character;
      if (i + 1 == glyphs.size()) continue;
      const font::PlacedGlyph& next = glyphs[i + 1];
      const double end = glyph.x + glyph.glyph->advance * glyph.xx;
      joined = next.y == glyph.y && next.xx == glyph.xx && next.yy == glyph.yy &&
               std::abs(next.x - end) <= 0.01 * std::abs(glyph.xx);
    }
    if (first.yy == 0.0) continue;
    const font::LineShape shape{first.yy, first.xx / first.yy, std::atan(first.xy / first.yy),
                                false};
    canvas_.geometry().text(at(first.x, first.y), axes_.column(2), x_, word.c_str(), -1,
                            Adesk::kTrue, published_style(style_.font, shape));
  }
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
                  plane.vector(placed.y_axis), layout.glyphs, layout.strokes, text});
    return;
  }
  AcGiTextStyle published = published_style(style.font, placed.shape);
  published.setBackward(placed.x_axis.x * placed.y_axis.y < placed.x_axis.y * placed.y_axis.x);
  canvas.geometry().text(plane.point(placed.start), plane.axes.column(2),
                         plane.vector(placed.x_axis), text.c_str(), -1, Adesk::kFalse, published);
}

void draw_mtext(const EntityTags& entity, EntityDrawer& drawer) {
  const EntityFields fields(entity.bytes, entity.dialect);
  const TextStyles::Style& style = drawer.styles_of(entity.drawing).style(fields.bytes(7));
  Paragraphs(entity, drawer, style).draw();
}

}  // namespace cad
