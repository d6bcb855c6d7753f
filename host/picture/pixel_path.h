#pragma once

#include "host/picture/frame.h"
#include "host/picture/scene.h"

namespace cad::picture {

/// Calls `visit` with the three points of each cubic that stands for an arc (its four points, see
/// Step), to a ten-thousandth of its radius.
template <class Visit>
void arc_to_cubics(const Point* arc, Visit&& visit) {
  const double start = arc[3].x, sweep = arc[3].y;
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / 1.0472 - 1e-9)));
  const double step = sweep / pieces;
  const double reach = 4.0 / 3.0 * std::tan(step / 4.0);
  double c = std::cos(start), s = std::sin(start);
  for (int i = 1; i <= pieces; ++i) {
    const double angle = start + step * i, c1 = std::cos(angle), s1 = std::sin(angle);
    const auto at = [&](double x, double y) { return arc[0] + arc[1] * x + arc[2] * y; };
    visit(at(c - reach * s, s + reach * c), at(c1 + reach * s1, s1 - reach * c1), at(c1, s1));
    c = c1, s = s1;
  }
}

/// The end of an arc.
Point end_of_arc(const Point* arc);

/// An item's path in the picture. What reaches far beyond its edges is cut there, curves as chains
/// of lines, so that no painter meets numbers too large for it. `closed`: areas, which stay areas.
void to_pixels(PathView world, const View& view, const Box& world_box, bool closed, Path& pixels);

/// Straight pieces that keep within a twentieth of a pixel of the path.
void flatten(PathView path, Path& lines);

/// The piece of a line without end that is in the picture; false when there is none. `both`: also
/// behind `from`.
bool clip_line(const View& view, Point from, Point second, bool both, Path& pixels);

}  // namespace cad::picture
