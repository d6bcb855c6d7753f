#pragma once

#include <cstddef>
#include <optional>

#include "host/picture/scene.h"

namespace cad::picture {

/// Which part of the world a picture shows, and how large: x to the right, y down, in pixels.
struct View {
  int width = 1;
  int height = 1;
  double left = 0.0;  ///< of the picture's upper left corner
  double top = 0.0;
  double scale = 1.0;  ///< pixels per drawing unit

  Point place(Point p) const { return {(p.x - left) * scale, (top - p.y) * scale}; }
  Point turn(Point v) const { return {v.x * scale, -v.y * scale}; }
};

struct PictureSize {
  int width = 0;
  int height = 0;
};

struct Frame {
  View view;
  std::size_t far_away = 0;  ///< items left out of the frame because of their distance
};

/// The view that holds `window`, or else the scene but for the few items that are more than fifty
/// times as far from its middle as all others. Without a size the longer side has 1600 pixels.
Frame frame_of(const Scene& scene, std::optional<Box> window, std::optional<PictureSize> size);

}  // namespace cad::picture
