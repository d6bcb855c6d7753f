#include <cmath>
#include <numbers>
#include <vector>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/app/session.h"

/// Closed polylines of known shape: rectangles, polygons, rings.
namespace cad {
namespace {

constexpr double kRight = std::numbers::pi / 2;

// --- RECTANG

/// What RECTANG keeps from one use to the next lies in the drawing's session.
struct Rectangle {
  double chamfer_a = 0.0;
  double chamfer_b = 0.0;
  double fillet = 0.0;
  double width = 0.0;
};

/// The corners with their cut or rounded edges, counter-clockwise or not.
std::vector<DrawnVertex> outline(const std::vector<AcGePoint3d>& corners, const Rectangle& style) {
  const double before = style.fillet > 0.0 ? style.fillet : style.chamfer_a;
  const double after = style.fillet > 0.0 ? style.fillet : style.chamfer_b;
  const double shortest =
      std::min(flat_distance(corners[0], corners[1]), flat_distance(corners[1], corners[2]));
  const bool plain = before + after <= 0.0 || before + after > shortest;
  const AcGeVector3d first = corners[1] - corners[0], second = corners[2] - corners[1];
  const bool turns_left = first.x * second.y - first.y * second.x > 0.0;
  const double bulge = std::tan(kRight / 4) * (turns_left ? 1.0 : -1.0);
  std::vector<DrawnVertex> vertices;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const AcGePoint3d& corner = corners[i];
    if (plain) {
      vertices.push_back({corner, style.width, style.width});
      continue;
    }
    const AcGePoint3d& previous = corners[(i + 3) % 4];
    const AcGePoint3d& next = corners[(i + 1) % 4];
    vertices.push_back({polar(corner, direction(corner, previous), before), style.width,
                        style.width, style.fillet > 0.0 ? bulge : 0.0});
    vertices.push_back({polar(corner, direction(corner, next), after), style.width, style.width});
  }
  return vertices;
}

Flow<> ask_chamfer(CommandLine& line, Rectangle& style) {
  const Answer a = co_await line.distance(
      {.text = L"Specify first chamfer distance for rectangles <0>: ", .bits = kNoNegative});
  const Answer b = co_await line.distance(
      {.text = L"Specify second chamfer distance for rectangles <0>: ", .bits = kNoNegative});
  style.fillet = 0.0;
  style.chamfer_a = a.number;
  style.chamfer_b = b.none() ? a.number : b.number;
}

/// Length and width of a rectangle whose other corner is not given by a point.
struct Size {
  double length = 0.0;
  double width = 0.0;
};

Flow<Size> ask_dimensions(CommandLine& line) {
  const Answer length = co_await line.distance(
      {.text = L"Specify length for rectangles <10>: ", .bits = kNoZero | kNoNegative});
  const Answer width = co_await line.distance(
      {.text = L"Specify width for rectangles <10>: ", .bits = kNoZero | kNoNegative});
  co_return Size{length.none() ? 10.0 : length.number, width.none() ? 10.0 : width.number};
}

Flow<Size> ask_area(CommandLine& line) {
  const Answer given = co_await line.real(
      {.text = L"Enter area of rectangle in current units <100>: ", .bits = kNoZero | kNoNegative});
  const Answer which = co_await line.keyword(
      {.text = L"Calculate rectangle dimensions based on [Length/Width] <Length>: ",
       .keywords = L"Length Width"});
  const bool by_width = which.is(L"Width");
  const Answer side = co_await line.distance(
      {.text = by_width ? L"Enter rectangle width <10>: " : L"Enter rectangle length <10>: ",
       .bits = kNoZero | kNoNegative});
  const double area = given.none() ? 100.0 : given.number;
  const double known = side.none() ? 10.0 : side.number;
  co_return by_width ? Size{area / known, known} : Size{known, area / known};
}

Flow<> draw_rectangle(CommandLine& line, AcGePoint3d first, Rectangle style) {
  const WorkPlane plane(line);
  const AcGePoint3d a = plane.user(first);
  double angle = 0.0;
  std::optional<Size> size;
  for (;;) {
    const Answer other =
        co_await line.corner({.text = L"Specify other corner point or [Area/Dimensions/Rotation]: ",
                              .keywords = L"Area Dimensions Rotation",
                              .bits = kNoEnter,
                              .from = &first});
    if (other.is(L"Rotation")) {
      const Answer turned =
          co_await line.orientation({.text = L"Specify rotation angle <0>: ", .from = &first});
      angle = turned.none() ? 0.0 : turned.number;
      continue;
    }
    if (other.is(L"Area")) {
      size = co_await ask_area(line);
      break;
    }
    if (other.is(L"Dimensions")) {
      const Size given = co_await ask_dimensions(line);
      const Answer side =
          co_await line.point({.text = L"Specify other corner point: ", .from = &first});
      size = given;
      if (side.is_point()) {
        const AcGePoint3d towards = plane.user(side.point);
        const double way = direction(a, towards) - angle;
        if (std::cos(way) < 0.0) size->length = -size->length;
        if (std::sin(way) < 0.0) size->width = -size->width;
      }
      break;
    }
    const AcGePoint3d b = plane.user(other.point);
    const double way = direction(a, b) - angle, far = flat_distance(a, b);
    size = Size{far * std::cos(way), far * std::sin(way)};
    if (angle == 0.0) size = Size{b.x - a.x, b.y - a.y};
    break;
  }
  if (size->length == 0.0 || size->width == 0.0) {
    line.refuse(L"the corners of a rectangle lie apart in both directions");
    co_return;
  }
  const AcGePoint3d b = polar(a, angle, size->length);
  const AcGePoint3d c = polar(b, angle + kRight, size->width);
  const AcGePoint3d d = polar(a, angle + kRight, size->width);
  if (angle == 0.0) {
    // No rounding where there is nothing to turn.
    const double x = a.x + size->length, y = a.y + size->width;
    draw_polyline(line, outline({a, {x, a.y, a.z}, {x, y, a.z}, {a.x, y, a.z}}, style), true);
  } else {
    draw_polyline(line, outline({a, b, c, d}, style), true);
  }
}

Flow<> rectangle_command(CommandLine& line) {
  Rectangle style;
  for (;;) {
    const Answer first = co_await line.point(
        {.text = L"Specify first corner point or [Chamfer/Elevation/Fillet/Thickness/Width]: ",
         .keywords = L"Chamfer Elevation Fillet Thickness Width",
         .bits = kNoEnter});
    if (first.is_point()) {
      co_await draw_rectangle(line, first.point, style);
      co_return;
    }
    if (first.is(L"Chamfer")) co_await ask_chamfer(line, style);
    if (first.is(L"Fillet")) {
      const Answer radius = co_await line.distance(
          {.text = L"Specify fillet radius for rectangles <0>: ", .bits = kNoNegative});
      style.fillet = radius.number;
    }
    if (first.is(L"Width")) {
      const Answer width = co_await line.distance(
          {.text = L"Specify line width for rectangles <0>: ", .bits = kNoNegative});
      style.width = width.number;
    }
    if (first.is(L"Elevation") || first.is(L"Thickness")) {
      line.refuse(
          L"Elevation and Thickness are not offered: set the variables ELEVATION and "
          L"THICKNESS");
      co_return;
    }
  }
}

// --- POLYGON

void draw_polygon(CommandLine& line, const AcGePoint3d& centre, int sides, double radius,
                  double angle) {
  std::vector<DrawnVertex> vertices;
  for (int i = 0; i < sides; ++i)
    vertices.push_back({.point = polar(centre, angle + i * 2 * std::numbers::pi / sides, radius)});
  draw_polyline(line, vertices, true);
}

Flow<> polygon_by_edge(CommandLine& line, int sides) {
  const Answer a =
      co_await line.point({.text = L"Specify first endpoint of edge: ", .bits = kNoEnter});
  const Answer b = co_await line.point(
      {.text = L"Specify second endpoint of edge: ", .bits = kNoEnter, .from = &a.point});
  const WorkPlane plane(line);
  const AcGePoint3d p = plane.user(a.point), q = plane.user(b.point);
  const double half = std::numbers::pi / sides;
  const double radius = flat_distance(p, q) / (2 * std::sin(half));
  const AcGePoint3d centre = polar(p, direction(p, q) + kRight - half, radius);
  if (radius > 0.0)
    draw_polygon(line, centre, sides, radius, direction(centre, p));
  else
    line.refuse(L"the edge has no length");
}

Flow<> polygon_command(CommandLine& line) {
  const Answer count = co_await line.integer(
      {.text = L"Enter number of sides <4>: ", .bits = kNoZero | kNoNegative});
  const int sides = count.none() ? 4 : count.integer();
  if (sides < 3 || sides > 1024) {
    line.refuse(L"Requires an integer between 3 and 1024.");
    co_return;
  }
  const Answer centre = co_await line.point(
      {.text = L"Specify center of polygon or [Edge]: ", .keywords = L"Edge", .bits = kNoEnter});
  if (centre.is(L"Edge")) {
    co_await polygon_by_edge(line, sides);
    co_return;
  }
  const Answer way = co_await line.keyword(
      {.text = L"Enter an option [Inscribed in circle/Circumscribed about circle] <I>: ",
       .keywords = L"Inscribed Circumscribed"});
  const Answer given = co_await line.distance({.text = L"Specify radius of circle: ",
                                               .bits = kNoEnter | kNoZero | kNoNegative,
                                               .from = &centre.point});
  const WorkPlane plane(line);
  const AcGePoint3d middle = plane.user(centre.point);
  const double half = std::numbers::pi / sides;
  const bool outside = way.is(L"Circumscribed");
  const double radius = outside ? given.number / std::cos(half) : given.number;
  // A point shows where a corner (or the middle of a side) is; else the bottom side is level.
  const double level = -kRight - half;
  const double shown_way = direction(middle, plane.user(given.point)) + (outside ? half : 0.0);
  draw_polygon(line, middle, sides, radius, given.from_points ? shown_way : level);
}

// --- DONUT

Flow<> donut_command(CommandLine& line) {
  const Answer inside = co_await line.distance(
      {.text = L"Specify inside diameter of donut <0.5>: ", .bits = kNoNegative});
  const Answer outside = co_await line.distance(
      {.text = L"Specify outside diameter of donut <1>: ", .bits = kNoZero | kNoNegative});
  double inner = inside.none() ? 0.5 : inside.number;
  double outer = outside.none() ? 1.0 : outside.number;
  if (inner > outer) std::swap(inner, outer);
  const double width = (outer - inner) / 2, radius = (outer + inner) / 4;
  for (;;) {
    const Answer centre = co_await line.point({.text = L"Specify center of donut or <exit>: "});
    if (!centre.is_point()) co_return;
    const AcGePoint3d at = WorkPlane(line).user(centre.point);
    const DrawnVertex left{{at.x - radius, at.y, at.z}, width, width, 1.0};
    const DrawnVertex right{{at.x + radius, at.y, at.z}, width, width, 1.0};
    draw_polyline(line, std::vector{left, right}, true);
  }
}

constexpr CommandRow kRows[] = {
    {"RECTANG", "REC RECTANGLE", rectangle_command,
     "[Chamfer/Fillet/Width] first corner, other corner [Area/Dimensions/Rotation]",
     "draws a rectangle as a polyline"},
    {"POLYGON", "POL", polygon_command,
     "number of sides, centre, Inscribed or Circumscribed, radius | Edge, two points",
     "draws a regular polygon as a polyline"},
    {"DONUT", "DO DOUGHNUT", donut_command, "inside diameter, outside diameter, centres ..., Enter",
     "draws filled rings"},
};

}  // namespace

std::span<const CommandRow> shape_commands() { return kRows; }

}  // namespace cad
