#include "host/font/source.h"

#include <utility>

#include "host/base/codepage.h"
#include "host/base/trace.h"
#include "host/font/characters.h"

namespace cad::font {
namespace {

void add_frame(Outline& outline, const Box& box, bool inner) {
  using Step = Outline::Step;
  outline.steps.insert(outline.steps.end(),
                       {Step::kMove, Step::kLine, Step::kLine, Step::kLine, Step::kClose});
  const Point left_top{box.left, box.top}, right_bottom{box.right, box.bottom};
  outline.points.insert(outline.points.end(), {{box.left, box.bottom},
                                               inner ? left_top : right_bottom,
                                               {box.right, box.top},
                                               inner ? right_bottom : left_top});
}

/// Stands for a character that no font has: a frame.
Glyph box_glyph(std::uint32_t character, double advance) {
  Glyph glyph;
  glyph.advance = advance;
  if (is_blank(character) || advance <= 0.0) return glyph;
  constexpr double kMargin = 0.08, kLine = 0.06;
  const Box outside{kMargin * advance, stroke_bottom(character), (1.0 - kMargin) * advance,
                    stroke_top(character)};
  add_frame(glyph.outline, outside, false);
  add_frame(
      glyph.outline,
      {outside.left + kLine, outside.bottom + kLine, outside.right - kLine, outside.top - kLine},
      true);
  glyph.ink = outside;
  return glyph;
}

/// The point (x, y) of `glyph` goes to (across x, up y + rise).
void scale(Glyph& glyph, double across, double up, double rise) {
  glyph.advance *= across;
  for (Point& p : glyph.outline.points) p = {p.x * across, p.y * up + rise};
  Box& ink = glyph.ink;
  if (!ink.is_empty())
    ink = {ink.left * across, ink.bottom * up + rise, ink.right * across, ink.top * up + rise};
}

}  // namespace

Source::Source(Parts parts) : parts_(std::move(parts)) {
  if (!parts_.main) {
    if (parts_.digit > 0.0) stretch_ = parts_.digit / kStrokeDigit;
    return;
  }
  em_ = 1.0 / parts_.main->capital();
  if (parts_.digit > 0.0) stretch_ = parts_.digit / (parts_.main->digit() * em_);
}

const FontFile* Source::file_of(std::uint32_t character, bool full_width) {
  const FontFile* first = full_width && parts_.big ? parts_.big : parts_.main;
  const FontFile* second = first == parts_.main ? parts_.big : parts_.main;
  for (const FontFile* file : {first, second})
    if (file && file->has(character)) return file;
  const InstalledFont* const other = InstalledFonts::instance().with_character(character);
  if (!other) return nullptr;
  if (tracing() && traced_.insert(other->name()).second)
    trace(L"fonts: " + parts_.wanted + L" -> " + from_utf8(other->name()) +
          L" for characters it lacks");
  return FontFile::of(*other, parts_.bold, parts_.italic);
}

Glyph Source::draw(std::uint32_t character) {
  if (is_invisible(character)) return {};
  const bool full_width = is_full_width(character);
  const FontFile* const file = file_of(character, full_width);
  std::optional<Glyph> glyph = file ? file->glyph(character) : std::nullopt;
  const bool sized = full_width && parts_.full > 0.0;
  if (!glyph) {
    const double advance = stroke_advance(character);
    return box_glyph(character, advance * (sized ? parts_.full : full_width ? 1.0 : stretch_));
  }
  // The ideal cell of a full-width character reaches 0.12 em below the base line; single-stroke
  // fonts stand on it.
  constexpr double kBelow = 0.12;
  if (sized)
    scale(*glyph, parts_.full, parts_.full, kBelow * parts_.full);
  else
    scale(*glyph, full_width ? em_ : em_ * stretch_, em_, 0.0);
  return std::move(*glyph);
}

}  // namespace cad::font
