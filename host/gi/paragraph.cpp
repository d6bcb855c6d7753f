#include "host/gi/paragraph.h"

#include <array>
#include <cmath>

#include "host/font/mtext_layout.h"

namespace cad {
namespace {

/// Whether a character follows another without a blank between.
bool is_next(const font::PlacedGlyph& glyph, const font::PlacedGlyph& next, double slack) {
  return std::abs(next.x - (glyph.x + glyph.glyph->advance * glyph.xx)) <=
         slack * std::abs(glyph.xx);
}

/// What placed characters say: layouts leave blanks out.
std::wstring words_of(std::span<const font::PlacedGlyph> glyphs) {
  constexpr double kBlank = 0.15;  // of the height
  std::wstring text;
  for (std::size_t i = 0; i < glyphs.size(); ++i) {
    if (i > 0 && !is_next(glyphs[i - 1], glyphs[i], kBlank)) text += L' ';
    text += glyphs[i].character;
  }
  return text;
}

/// One drawing of a paragraph.
class Drawn {
 public:
  Drawn(const Paragraph& paragraph, const TextStyle& style, EntityDrawer& drawer)
      : drawer_(drawer),
        canvas_(drawer.canvas()),
        style_(style),
        paragraph_(paragraph),
        layout_(font::layout_mtext(paragraph.contents, style.font, paragraph.shape)) {}

  void draw() {
    if (paragraph_.background.flags & kFilled) draw_background();
    if (paragraph_.background.flags & kFramed) canvas_.outline(background_corners(), true);
    // Whoever collects texts is told of those of which nothing is seen.
    if (layout_.runs.empty() && !(paragraph_.shape.height > 0.0) && canvas_.fine())
      canvas_.fine()->glyphs(
          {paragraph_.origin, paragraph_.x, paragraph_.y, {}, {}, paragraph_.contents});
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

  std::array<AcGePoint3d, 4> background_corners() const;
  void draw_background();
  void draw_run(const font::MTextRun& run);
  void draw_words(std::span<const font::PlacedGlyph> glyphs);
  AcGePoint3d at(double x, double y) const {
    return paragraph_.origin + paragraph_.x * x + paragraph_.y * y;
  }

  EntityDrawer& drawer_;
  Canvas& canvas_;
  const TextStyle& style_;
  const Paragraph& paragraph_;
  font::MTextLayout layout_;
};

/// The box reaches beyond the text by a share of the height.
std::array<AcGePoint3d, 4> Drawn::background_corners() const {
  const double margin = (paragraph_.background.scale - 1.0) * paragraph_.shape.height;
  const font::Box box = layout_.frame;
  return {at(box.left - margin, box.bottom - margin), at(box.right + margin, box.bottom - margin),
          at(box.right + margin, box.top + margin), at(box.left - margin, box.top + margin)};
}

void Drawn::draw_background() {
  const std::array<AcGePoint3d, 4> corners = background_corners();
  if (paragraph_.background.flags & kFilledLikeWindow) return canvas_.mask(corners);
  if (paragraph_.background.true_color)
    canvas_.traits().setTrueColor(*paragraph_.background.true_color);
  else
    drawer_.set_color(paragraph_.background.color);
  canvas_.fill(corners);
  drawer_.restore_color();
}

void Drawn::draw_run(const font::MTextRun& run) {
  const auto glyphs = std::span(layout_.glyphs).subspan(run.first_glyph, run.glyphs);
  const auto strokes = std::span(layout_.strokes).subspan(run.first_stroke, run.strokes);
  if (FineGeometry* const fine = canvas_.fine()) {
    return fine->glyphs(
        {paragraph_.origin, paragraph_.x, paragraph_.y, glyphs, strokes, words_of(glyphs)});
  }
  draw_words(glyphs);
  for (const font::Stroke& stroke : strokes) {
    const AcGePoint3d ends[] = {at(stroke.from.x, stroke.from.y), at(stroke.to.x, stroke.to.y)};
    canvas_.outline(ends, false);
  }
}

/// Characters that follow each other without a gap are drawn as one text.
void Drawn::draw_words(std::span<const font::PlacedGlyph> glyphs) {
  std::wstring word;
  for (std::size_t i = 0; i < glyphs.size();) {
    const font::PlacedGlyph& first = glyphs[i];
    word.clear();
    for (bool joined = true; joined && i < glyphs.size(); ++i) {
      const font::PlacedGlyph& glyph = glyphs[i];
      word += glyph.character;
      if (i + 1 == glyphs.size()) continue;
      const font::PlacedGlyph& next = glyphs[i + 1];
      joined = next.y == glyph.y && next.xx == glyph.xx && next.yy == glyph.yy &&
               is_next(glyph, next, 0.01);
    }
    if (first.yy == 0.0) continue;
    const font::LineShape shape{first.yy, first.xx / first.yy, std::atan(first.xy / first.yy),
                                false};
    canvas_.geometry().text(at(first.x, first.y), paragraph_.x.crossProduct(paragraph_.y),
                            paragraph_.x, word.c_str(), -1, Adesk::kTrue,
                            published_style(style_.font, shape));
  }
}

}  // namespace

void draw_paragraph(const Paragraph& paragraph, const TextStyle& style, EntityDrawer& drawer) {
  Drawn(paragraph, style, drawer).draw();
}

}  // namespace cad
