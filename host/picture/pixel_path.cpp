#include "host/picture/pixel_path.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace cad::picture {
namespace {

constexpr double kDeviation = 0.05;  // pixels

/// The rectangle that cut paths keep within.
Box cutting_box(const View& view) {
  const double beyond = 2.0 * std::max(view.width, view.height);
  return {-beyond, -beyond, view.width + beyond, view.height + beyond};
}

void flatten_cubic(Point from, Point a, Point b, Point to, Path& lines) {
  const double bend = std::max((from - a * 2.0 + b).length(), (a - b * 2.0 + to).length());
  const double pieces = std::clamp(std::ceil(std::sqrt(0.75 * bend / kDeviation)), 1.0, 500.0);
  for (double i = 1.0; i <= pieces; i += 1.0) {
    const double t = i / pieces, s = 1.0 - t;
    lines.line(from * (s * s * s) + a * (3 * s * s * t) + b * (3 * s * t * t) + to * (t * t * t));
  }
}

/// Where the line from `a` to `b` is inside; false when nowhere. `low` and `high` bound how far
/// along it is looked.
bool clip(const Box& box, Point a, Point b, double& low, double& high) {
  const Point d = b - a;
  const double moves[] = {-d.x, d.x, -d.y, d.y};
  const double rooms[] = {a.x - box.left, box.right - a.x, a.y - box.bottom, box.top - a.y};
  for (int side = 0; side < 4; ++side) {
    if (moves[side] == 0.0) {
      if (rooms[side] < 0.0) return false;
      continue;
    }
    const double at = rooms[side] / moves[side];
    if (moves[side] < 0.0)
      low = std::max(low, at);
    else
      high = std::min(high, at);
  }
  return low <= high;
}

void cut_lines(const Path& lines, const Box& box, Path& cut) {
  Point start, at;
  bool joined = false;
  std::size_t next = 0;
  const auto line_to = [&](Point to) {
    double low = 0.0, high = 1.0;
    if (clip(box, at, to, low, high)) {
      if (!joined || low > 0.0) cut.move(at + (to - at) * low);
      cut.line(at + (to - at) * high);
      joined = high == 1.0;
    } else {
      joined = false;
    }
    at = to;
  };
  for (const Step step : lines.steps) {
    if (step == Step::kMove) {
      start = at = lines.points[next++];
      joined = false;
    } else {
      line_to(step == Step::kClose ? start : lines.points[next++]);
    }
  }
}

/// Cuts a polygon at each side in turn.
void cut_polygon(std::vector<Point> polygon, const Box& box, Path& cut) {
  std::vector<Point> rest;
  for (int side = 0; side < 4; ++side) {
    const auto room = [&](Point p) {
      return side == 0   ? p.x - box.left
             : side == 1 ? box.right - p.x
             : side == 2 ? p.y - box.bottom
                         : box.top - p.y;
    };
    rest.clear();
    for (std::size_t i = 0; i < polygon.size(); ++i) {
      const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
      const double in_a = room(a), in_b = room(b);
      if (in_a >= 0.0) rest.push_back(a);
      if ((in_a < 0.0) != (in_b < 0.0)) rest.push_back(a + (b - a) * (in_a / (in_a - in_b)));
    }
    polygon.swap(rest);
  }
  for (std::size_t i = 0; i < polygon.size(); ++i)
    i == 0 ? cut.move(polygon[i]) : cut.line(polygon[i]);
  if (!polygon.empty()) cut.close();
}

void cut_areas(const Path& lines, const Box& box, Path& cut) {
  std::vector<Point> polygon;
  std::size_t next = 0;
  for (const Step step : lines.steps) {
    if (step == Step::kClose) continue;
    if (step == Step::kMove && !polygon.empty()) cut_polygon(std::exchange(polygon, {}), box, cut);
    polygon.push_back(lines.points[next++]);
  }
  if (!polygon.empty()) cut_polygon(std::move(polygon), box, cut);
}

}  // namespace

Point end_of_arc(const Point* arc) {
  const double angle = arc[3].x + arc[3].y;
  return arc[0] + arc[1] * std::cos(angle) + arc[2] * std::sin(angle);
}

void flatten(PathView path, Path& lines) {
  Point at, start;
  const Point* p = path.points.data();
  for (const Step step : path.steps) {
    switch (step) {
      case Step::kMove:
        lines.move(start = at = *p);
        break;
      case Step::kLine:
        lines.line(at = *p);
        break;
      case Step::kCurve:
        flatten_cubic(at, p[0], p[1], p[2], lines);
        at = p[2];
        break;
      case Step::kArc:
        arc_to_cubics(p, [&](Point a, Point b, Point to) {
          flatten_cubic(at, a, b, to, lines);
          at = to;
        });
        break;
      case Step::kClose:
        lines.close();
        at = start;
        break;
    }
    p += point_count(step);
  }
}

void to_pixels(PathView world, const View& view, const Box& world_box, bool closed, Path& pixels) {
  pixels.clear();
  const Point* p = world.points.data();
  for (const Step step : world.steps) {
    pixels.steps.push_back(step);
    if (step == Step::kArc) {
      pixels.points.push_back(view.place(p[0]));
      pixels.points.push_back(view.turn(p[1]));
      pixels.points.push_back(view.turn(p[2]));
      pixels.points.push_back(p[3]);
    } else {
      for (std::size_t i = 0; i < point_count(step); ++i) pixels.points.push_back(view.place(p[i]));
    }
    p += point_count(step);
  }
  const Box box = cutting_box(view);
  const Point low = view.place({world_box.left, world_box.top});
  const Point high = view.place({world_box.right, world_box.bottom});
  if (low.x >= box.left && high.x <= box.right && low.y >= box.bottom && high.y <= box.top) return;
  Path lines, cut;
  flatten(pixels, lines);
  if (closed)
    cut_areas(lines, box, cut);
  else
    cut_lines(lines, box, cut);
  pixels = std::move(cut);
}

bool clip_line(const View& view, Point from, Point second, bool both, Path& pixels) {
  pixels.clear();
  const Point a = view.place(from), b = view.place(second);
  if (a == b) return false;
  double low = both ? -Box::kFar : 0.0, high = Box::kFar;
  if (!clip({-1.0, -1.0, view.width + 1.0, view.height + 1.0}, a, b, low, high)) return false;
  pixels.move(a + (b - a) * low);
  pixels.line(a + (b - a) * high);
  return true;
}

}  // namespace cad::picture
