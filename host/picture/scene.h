#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "host/font/glyph.h"

/// What a picture shows, seen from above: paths in world coordinates, in the order in which they
/// are painted.
namespace cad::picture {

struct Point {
  double x = 0.0;
  double y = 0.0;
  friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
  friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
  friend Point operator*(Point a, double s) { return {a.x * s, a.y * s}; }
  friend bool operator==(Point a, Point b) { return a.x == b.x && a.y == b.y; }
  double length() const { return std::hypot(x, y); }
};

struct Box {
  static constexpr double kFar = std::numeric_limits<double>::infinity();
  double left = kFar, bottom = kFar, right = -kFar, top = -kFar;
  bool is_empty() const { return !(left <= right && bottom <= top); }
  double width() const { return right - left; }
  double height() const { return top - bottom; }
  void add(Point p) {
    left = std::min(left, p.x), right = std::max(right, p.x);
    bottom = std::min(bottom, p.y), top = std::max(top, p.y);
  }
  void add(const Box& other) {
    if (other.is_empty()) return;
    add(Point{other.left, other.bottom});
    add(Point{other.right, other.top});
  }
};

/// A path: kMove and kLine take one point, kCurve three (the controls and the end of a cubic), kArc
/// four: center, the ends of two half axes counted from it, and as the last one's coordinates the
/// start angle and the sweep in radians. Its start is where the path stands. kClose takes none.
enum class Step : std::uint8_t { kMove, kLine, kCurve, kArc, kClose };
constexpr std::size_t point_count(Step step) {
  return step == Step::kCurve ? 3 : step == Step::kArc ? 4 : step == Step::kClose ? 0 : 1;
}

struct PathView {
  std::span<const Step> steps;
  std::span<const Point> points;
};

struct Path {
  std::vector<Step> steps;
  std::vector<Point> points;
  void clear() { steps.clear(), points.clear(); }
  bool empty() const { return steps.empty(); }
  void move(Point p) { steps.push_back(Step::kMove), points.push_back(p); }
  void line(Point p) { steps.push_back(Step::kLine), points.push_back(p); }
  void close() { steps.push_back(Step::kClose); }
  operator PathView() const { return {steps, points}; }
};

constexpr int kHairline = -1;

/// Colour, line type and weight. Equal inks are kept once.
struct Ink {
  std::uint32_t rgb = 0;    ///< 0xRRGGBB
  bool foreground = false;  ///< black or white, whatever the background is not
  int weight = kHairline;   ///< hundredths of a millimetre
  int dashes = -1;          ///< index in Scene::dashes; -1: a continuous line
  double dash_scale = 1.0;
  bool operator==(const Ink&) const = default;
};

/// A character of a run: its point (x, y) is at (dx + xx x + xy y, dy + yy y) in the run's axes.
struct RunGlyph {
  const font::Glyph* glyph;
  wchar_t character;
  double dx, dy, xx, xy, yy;
};

/// Characters in axes of their own: (x, y) is at origin + x_axis x + y_axis y.
struct Run {
  Point origin, x_axis, y_axis;
  std::size_t first_glyph, glyphs;  ///< in Scene::glyphs
  std::size_t first_text, text;     ///< in Scene::texts, UTF-8
  Point place(double x, double y) const { return origin + x_axis * x + y_axis * y; }
};

struct Item {
  enum class Kind : std::uint8_t {
    kStroke,   ///< a line along the path
    kEvenOdd,  ///< what the path encloses
    kNonZero,
    kMask,  ///< what the path encloses, in the colour of the background
    kRun,   ///< `run`
    kDot,   ///< at the path's only point
    kMark,  ///< the figure of PDMODE there, `width` (PDSIZE) large
    kRay,   ///< from the path's first point through its second, without end
    kXline,
  };
  Kind kind = Kind::kStroke;
  std::uint8_t mode = 0;  ///< PDMODE
  std::uint32_t ink = 0;
  double width = 0.0;  ///< of a stroke, in drawing units; 0: as the ink's weight
  std::size_t first_step = 0, steps = 0, first_point = 0;
  std::size_t run = 0;
  Box box;  ///< around it; of a ray or xline around its two points
};

struct Scene {
  std::vector<Item> items;
  /// Where the items of each highlighted entity begin: from the first on, all are shown again,
  /// marked.
  std::vector<std::size_t> highlights;
  std::vector<Ink> inks;
  /// Lengths drawn and not drawn in turn, in drawing units, beginning with drawn ones.
  std::vector<std::vector<double>> dashes;
  std::vector<Step> steps;
  std::vector<Point> points;
  std::vector<Run> runs;
  std::vector<RunGlyph> glyphs;
  std::string texts;

  std::size_t skipped = 0;      ///< items with coordinates that are no numbers, or absurd ones
  std::size_t empty_texts = 0;  ///< texts without height

  PathView path(const Item& item) const {
    const auto path_steps = std::span(steps).subspan(item.first_step, item.steps);
    return {path_steps, std::span(points).subspan(item.first_point)};
  }
};

}  // namespace cad::picture
