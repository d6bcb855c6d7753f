#include "host/font/line_layout.h"

#include <algorithm>
#include <cmath>

#include "host/font/escapes.h"

namespace cad::font {
namespace {

constexpr double kVerticalStep = 5.0 / 3.0;  // from character to character, as from line to line
constexpr double kLargest = 1e100;           // what follows never overflows

/// The shape in numbers that can be reckoned with.
struct Scales {
  double height;
  double across;  // of a character's own x
  double slant;   // of its own y

  explicit Scales(const LineShape& shape) {
    height = shape.height > 0.0 ? std::min(shape.height, kLargest) : 0.0;
    const bool wide = std::isfinite(shape.width_factor) && shape.width_factor != 0.0;
    across = height * (wide ? std::clamp(shape.width_factor, -kLargest, kLargest) : 1.0);
    slant = std::isfinite(shape.oblique)
                ? height * std::tan(std::clamp(shape.oblique, -kSteepest, kSteepest))
                : 0.0;
  }
};

/// Collects where lines under, over and through the text begin and end.
class Strokes {
 public:
  Strokes(std::vector<Stroke>& out, const Scales& scales) : out_(out), scales_(scales) {}

  void change(unsigned lines, double x) {
    for (unsigned i = 0; i < std::size(kLineHeights); ++i) {
      const unsigned bit = 1U << i;
      if ((lines & bit) == (now_ & bit)) continue;
      if (!(lines & bit) && x != begin_[i]) {
        const double up = kLineHeights[i];
        const double lean = scales_.slant * up, y = scales_.height * up;
        out_.push_back({{begin_[i] + lean, y}, {x + lean, y}});
      }
      begin_[i] = x;
    }
    now_ = lines;
  }

 private:
  std::vector<Stroke>& out_;
  const Scales& scales_;
  unsigned now_ = 0;
  double begin_[std::size(kLineHeights)] = {};
};

/// Gives `each` every character at its place; returns the advance. `turned` is told when the lines
/// drawn with the text change, and last at the end.
template <class Each, class Turned>
double walk(std::wstring_view text, const Face& face, const Scales& scales, bool vertical,
            const Each& each, const Turned& turned) {
  LineReader reader(text);
  double x = 0.0;
  unsigned lines = 0;
  for (wchar_t c; reader.next(c);) {
    if (reader.lines() != lines) turned(lines = reader.lines(), x);
    const Glyph& glyph = face.glyph(c);
    const double step = scales.across * glyph.advance;
    if (vertical) {
      const double y = -x - scales.height;
      each(PlacedGlyph{&glyph, c, -step / 2.0, y, scales.across, scales.slant, scales.height});
      x += kVerticalStep * scales.height;
    } else if (c == L'\t') {
      const double tab = kTabDistance * scales.height;
      if (tab > 0.0) x = (std::floor(x / tab) + 1.0) * tab;
    } else {
      each(PlacedGlyph{&glyph, c, x, 0.0, scales.across, scales.slant, scales.height});
      x += step;
    }
  }
  turned(0U, x);
  return x;
}

void add_stroke(Box& ink, const Stroke& stroke) {
  ink.add({std::min(stroke.from.x, stroke.to.x), stroke.from.y,
           std::max(stroke.from.x, stroke.to.x), stroke.to.y});
}

}  // namespace

LineExtent measure_line(std::wstring_view text, const Face& face, const LineShape& shape) {
  const Scales scales(shape);
  LineExtent extent;
  if (scales.height <= 0.0) return extent;
  std::vector<Stroke> strokes;
  Strokes collected(strokes, scales);
  extent.advance = walk(
      text, face, scales, shape.vertical,
      [&](const PlacedGlyph& glyph) { extent.ink.add(box_of(glyph)); },
      [&](unsigned lines, double x) {
        if (!shape.vertical) collected.change(lines, x);
      });
  for (const Stroke& stroke : strokes) add_stroke(extent.ink, stroke);
  return extent;
}

LineLayout layout_line(std::wstring_view text, const Face& face, const LineShape& shape) {
  const Scales scales(shape);
  LineLayout line;
  if (scales.height <= 0.0) return line;
  line.glyphs.reserve(text.size());
  Strokes collected(line.strokes, scales);
  line.advance = walk(
      text, face, scales, shape.vertical,
      [&](const PlacedGlyph& glyph) {
        if (glyph.glyph->outline.steps.empty()) return;
        line.ink.add(box_of(glyph));
        line.glyphs.push_back(glyph);
      },
      [&](unsigned lines, double x) {
        if (!shape.vertical) collected.change(lines, x);
      });
  for (const Stroke& stroke : line.strokes) add_stroke(line.ink, stroke);
  return line;
}

bool LineReader::next(wchar_t& character) {
  while (at_ < text_.size()) {
    character = text_[at_];
    if (character == L'%' || character == L'\\') {
      bool shown = false;
      if (read_code(character, shown)) {
        if (shown) return true;
        continue;
      }
    }
    ++at_;
    return true;
  }
  return false;
}

bool LineReader::read_code(wchar_t& character, bool& shown) {
  const Escape escape = character == L'%' ? percent_code(text_, at_) : character_code(text_, at_);
  if (escape.length == 0) return false;
  at_ += escape.length;
  shown = escape.toggle == 0;
  if (shown) character = escape.character;
  constexpr std::wstring_view kToggles = L"uok";
  if (!shown) lines_ ^= 1U << kToggles.find(escape.toggle);
  return true;
}

}  // namespace cad::font
