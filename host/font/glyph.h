#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace cad::font {

struct Point {
  double x = 0.0;
  double y = 0.0;
};

/// Left to right and bottom to top. An empty one is all zero.
struct Box {
  double left = 0.0;
  double bottom = 0.0;
  double right = 0.0;
  double top = 0.0;
  bool is_empty() const { return left >= right && bottom >= top; }
  double width() const { return right - left; }
  double height() const { return top - bottom; }
  /// Grows to hold `other`, unless that is empty.
  void add(const Box& other) {
    if (other.is_empty()) return;
    if (is_empty()) {
      *this = other;
      return;
    }
    left = std::min(left, other.left), right = std::max(right, other.right);
    bottom = std::min(bottom, other.bottom), top = std::max(top, other.top);
  }
};

/// The contours of a character, to be filled by the nonzero rule. The steps take 1 (kMove, kLine),
/// 3 (kCurve: two controls and the end of a cubic) or no points (kClose) each, in order.
struct Outline {
  enum class Step : std::uint8_t { kMove, kLine, kCurve, kClose };
  std::vector<Step> steps;
  std::vector<Point> points;
};

/// A character of a font. Unit: the height of a capital letter; the origin is where the base line
/// enters it. Shared and never changed: glyphs live as long as the program.
struct Glyph {
  double advance = 0.0;  ///< to the next character's origin
  Box ink;               ///< around the outline; empty for a blank
  Outline outline;
};

/// A glyph at its place: its point (x, y) goes to (`x` + xx x + xy y, `y` + yy y). This holds
/// height, width factor, slant and tracking.
struct PlacedGlyph {
  const Glyph* glyph;
  wchar_t character;
  double x, y;
  double xx, xy, yy;
  Point at(Point own) const { return {x + xx * own.x + xy * own.y, y + yy * own.y}; }
};

/// A line drawn with a text: under, over or through it, or of a fraction.
struct Stroke {
  Point from;
  Point to;
};

/// What the glyph covers.
inline Box box_of(const PlacedGlyph& placed) {
  const Box& ink = placed.glyph->ink;
  if (ink.is_empty()) return {};
  const double left = placed.xx * ink.left, right = placed.xx * ink.right;
  const double low = placed.xy * ink.bottom, high = placed.xy * ink.top;
  const double bottom = placed.yy * ink.bottom, top = placed.yy * ink.top;
  return {placed.x + std::min(left, right) + std::min(low, high), placed.y + std::min(bottom, top),
          placed.x + std::max(left, right) + std::max(low, high), placed.y + std::max(bottom, top)};
}

}  // namespace cad::font
