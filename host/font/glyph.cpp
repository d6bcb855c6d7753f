#include "host/font/glyph.h"

#include <algorithm>

namespace cad::font {

void Box::add(const Box& other) {
  if (other.is_empty()) return;
  if (is_empty()) {
    *this = other;
    return;
  }
  left = std::min(left, other.left);
  bottom = std::min(bottom, other.bottom);
  right = std::max(right, other.right);
  top = std::max(top, other.top);
}

Box box_of(const PlacedGlyph& placed) {
  const Box& ink = placed.glyph->ink;
  if (ink.is_empty()) return {};
  const auto [left, right] = std::minmax({placed.xx * ink.left, placed.xx * ink.right});
  const auto [low, high] = std::minmax({placed.xy * ink.bottom, placed.xy * ink.top});
  const auto [bottom, top] = std::minmax({placed.yy * ink.bottom, placed.yy * ink.top});
  return {placed.x + left + low, placed.y + bottom, placed.x + right + high, placed.y + top};
}

}  // namespace cad::font
