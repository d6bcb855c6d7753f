#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/arc_math.h"
#include "host/app/command/draw/draw.h"
#include "host/app/session.h"
#include "host/db/curve.h"
#include "host/geometry/angle.h"

/// Circles and arcs.
namespace cad {
namespace {

/// In the user's coordinates.
void draw_circle(CommandLine& line, const AcGePoint3d& centre, double radius) {
  if (!(radius > 0.0) || !std::isfinite(radius)) {
    line.refuse(L"there is no such circle");
    return;
  }
  const WorkPlane plane(line);
  GroupList groups(L"CIRCLE");
  groups.point(10, plane.stored(centre)).real(40, radius);
  draw(line, plane.flat(groups));
  line.put_variable(L"CIRCLERAD", radius);
}

void draw_arc(CommandLine& line, const std::optional<DrawnArc>& arc) {
  if (!arc) {
    line.refuse(L"there is no such arc");
    return;
  }
  const WorkPlane plane(line);
  const AcGePoint3d centre = arc->centre();
  const bool clockwise = arc->included < 0.0;
  const double from = direction(centre, clockwise ? arc->end : arc->start);
  const double to = direction(centre, clockwise ? arc->start : arc->end);
  GroupList groups(L"ARC");
  groups.point(10, plane.stored(centre))
      .real(40, arc->radius())
      .real(50, full_turn(plane.stored_angle(from)))
      .real(51, full_turn(plane.stored_angle(to)));
  draw(line, plane.flat(groups));
  line.set_last_point(plane.world(arc->end));
}

Flow<> circle_by_centre(CommandLine& line, AcGePoint3d centre) {
  const double before = line.real_variable(L"CIRCLERAD");
  const std::wstring standard = before > 0.0 ? L" <" + shown(line, before) + L">: " : L": ";
  const std::wstring text = L"Specify radius of circle or [Diameter]" + standard;
  const unsigned bits = kNoZero | kNoNegative | (before > 0.0 ? 0u : kNoEnter);
  const Answer radius = co_await line.distance(
      {.text = text, .keywords = L"Diameter", .bits = bits, .from = &centre});
  const WorkPlane plane(line);
  if (!radius.is(L"Diameter")) {
    draw_circle(line, plane.user(centre), radius.none() ? before : radius.number);
    co_return;
  }
  const Answer diameter = co_await line.distance({.text = L"Specify diameter of circle: ",
                                                  .bits = kNoEnter | kNoZero | kNoNegative,
                                                  .from = &centre});
  draw_circle(line, plane.user(centre), diameter.number / 2);
}

Flow<> circle_by_three_points(CommandLine& line) {
  const Answer a =
      co_await line.point({.text = L"Specify first point on circle: ", .bits = kNoEnter});
  const Answer b = co_await line.point(
      {.text = L"Specify second point on circle: ", .bits = kNoEnter, .from = &a.point});
  const Answer c = co_await line.point(
      {.text = L"Specify third point on circle: ", .bits = kNoEnter, .from = &b.point});
  const WorkPlane plane(line);
  const AcGePoint3d first = plane.user(a.point);
  const auto centre = circle_centre(first, plane.user(b.point), plane.user(c.point));
  if (!centre)
    line.refuse(L"the points are on one line");
  else
    draw_circle(line, *centre, flat_distance(*centre, first));
}

Flow<> circle_by_two_points(CommandLine& line) {
  const Answer a = co_await line.point(
      {.text = L"Specify first end point of circle's diameter: ", .bits = kNoEnter});
  const Answer b = co_await line.point({.text = L"Specify second end point of circle's diameter: ",
                                        .bits = kNoEnter,
                                        .from = &a.point});
  const WorkPlane plane(line);
  const AcGePoint3d p = plane.user(a.point), q = plane.user(b.point);
  draw_circle(line, p + (q - p) / 2, flat_distance(p, q) / 2);
}

// --- Tangent, tangent, radius

/// A line or a circle of the user's plane.
struct Base {
  bool is_line = false;
  AcGePoint3d point;  // on the line; the centre
  double angle = 0.0;
  double radius = 0.0;
};

/// What a circle can touch near the pick: the segment of the curve there.
std::optional<Base> base_of(const WorkPlane& plane, AcDbObjectId id, const AcGePoint3d& pick) {
  const std::optional<Curve> curve = curve_of(id);
  if (!curve) return std::nullopt;
  const double at = curve->closest_param(pick);
  const AcGePoint3d here = plane.user(curve->point_at(at));
  const AcGeVector3d along = curve->first_derivative(at), bend = curve->second_derivative(at);
  const AcGePoint3d ahead = plane.user(curve->point_at(at) + along);
  Base base;
  base.angle = direction(here, ahead);
  base.point = here;
  const double speed = along.length();
  const double turning = along.crossProduct(bend).length();
  if (!(speed > 0.0)) return std::nullopt;
  if (turning <= 1e-12 * speed * speed) {
    base.is_line = true;
    return base;
  }
  base.radius = speed * speed * speed / turning;
  const AcGeVector3d inward = (bend - along * (bend.dotProduct(along) / (speed * speed))).normal();
  base.point = plane.user(curve->point_at(at) + inward * base.radius);
  return base;
}

/// The curves on which the centre lies: parallels, or circles about the same centre.
std::vector<Base> parallels(const Base& base, double radius) {
  std::vector<Base> found;
  for (const double side : {1.0, -1.0}) {
    Base moved = base;
    if (base.is_line)
      moved.point = polar(base.point, base.angle + side * std::numbers::pi / 2, radius);
    else
      moved.radius = std::abs(base.radius + side * radius);
    found.push_back(moved);
  }
  return found;
}

std::vector<AcGePoint3d> meeting_points(const Base& a, const Base& b) {
  std::vector<AcGePoint3d> points;
  if (a.is_line && b.is_line) {
    const double turn = std::sin(b.angle - a.angle);
    if (std::abs(turn) < 1e-12) return points;
    const double x = b.point.x - a.point.x, y = b.point.y - a.point.y;
    const double along = (x * std::sin(b.angle) - y * std::cos(b.angle)) / turn;
    points.push_back(polar(a.point, a.angle, along));
  } else if (a.is_line) {
    const double x = b.point.x - a.point.x, y = b.point.y - a.point.y;
    const double foot = x * std::cos(a.angle) + y * std::sin(a.angle);
    const double off = y * std::cos(a.angle) - x * std::sin(a.angle);
    const double rest = b.radius * b.radius - off * off;
    if (rest < 0.0) return points;
    for (const double side : {1.0, -1.0})
      points.push_back(polar(a.point, a.angle, foot + side * std::sqrt(rest)));
  } else if (b.is_line) {
    return meeting_points(b, a);
  } else {
    const double gap = flat_distance(a.point, b.point);
    if (!(gap > 0.0)) return points;
    const double foot = (gap * gap + a.radius * a.radius - b.radius * b.radius) / (2 * gap);
    const double rest = a.radius * a.radius - foot * foot;
    if (rest < 0.0) return points;
    const double way = direction(a.point, b.point);
    const AcGePoint3d middle = polar(a.point, way, foot);
    for (const double side : {1.0, -1.0})
      points.push_back(polar(middle, way + side * std::numbers::pi / 2, std::sqrt(rest)));
  }
  return points;
}

/// How far the place where the circle touches is from the pick.
double miss(const Base& base, const AcGePoint3d& centre, double radius, const AcGePoint3d& pick) {
  if (!base.is_line) {
    const double way = direction(base.point, centre);
    const AcGePoint3d out = polar(base.point, way, base.radius);
    const AcGePoint3d in = polar(base.point, way, -base.radius);
    const bool touches_out = std::abs(flat_distance(out, centre) - radius) < 1e-6 * (1 + radius);
    return flat_distance(touches_out ? out : in, pick);
  }
  const double x = centre.x - base.point.x, y = centre.y - base.point.y;
  const double foot = x * std::cos(base.angle) + y * std::sin(base.angle);
  return flat_distance(polar(base.point, base.angle, foot), pick);
}

Flow<> circle_by_tangents(CommandLine& line) {
  const Answer first = co_await line.entity(
      {.text = L"Specify point on object for first tangent of circle: ", .bits = kNoEnter});
  const Answer second = co_await line.entity(
      {.text = L"Specify point on object for second tangent of circle: ", .bits = kNoEnter});
  const Answer given = co_await line.distance(
      {.text = L"Specify radius of circle: ", .bits = kNoEnter | kNoZero | kNoNegative});
  const WorkPlane plane(line);
  const auto a = base_of(plane, first.entity, first.point);
  const auto b = base_of(plane, second.entity, second.point);
  if (!a || !b) {
    line.refuse(L"a circle can touch lines, arcs, circles and polylines only");
    co_return;
  }
  double least = std::numeric_limits<double>::infinity();
  AcGePoint3d best;
  for (const Base& near_a : parallels(*a, given.number)) {
    for (const Base& near_b : parallels(*b, given.number)) {
      for (const AcGePoint3d& centre : meeting_points(near_a, near_b)) {
        const double off = miss(*a, centre, given.number, plane.user(first.point)) +
                           miss(*b, centre, given.number, plane.user(second.point));
        if (off < least) best = centre;
        least = std::min(least, off);
      }
    }
  }
  if (std::isinf(least))
    line.refuse(L"Circle does not exist.");
  else
    draw_circle(line, best, given.number);
}

Flow<> circle_command(CommandLine& line) {
  const Answer centre = co_await line.point(
      {.text = L"Specify center point for circle or [3P/2P/Ttr (tan tan radius)]: ",
       .keywords = L"3P 2P Ttr",
       .bits = kNoEnter});
  if (centre.is_point()) co_await circle_by_centre(line, centre.point);
  if (centre.is(L"3P")) co_await circle_by_three_points(line);
  if (centre.is(L"2P")) co_await circle_by_two_points(line);
  if (centre.is(L"Ttr")) co_await circle_by_tangents(line);
}

// --- ARC

/// Start and centre are known, whichever came first.
Flow<> arc_from_centre(CommandLine& line, AcGePoint3d start, AcGePoint3d centre) {
  const Answer end =
      co_await line.point({.text = L"Specify end point of arc or [Angle/chord Length]: ",
                           .keywords = L"Angle Length",
                           .bits = kNoEnter,
                           .from = &centre});
  const WorkPlane plane(line);
  const AcGePoint3d from = plane.user(start), about = plane.user(centre);
  if (end.is(L"Angle")) {
    const Answer angle = co_await line.turn(
        {.text = L"Specify included angle: ", .bits = kNoEnter | kNoZero, .from = &centre});
    draw_arc(line, arc_about_by_angle(from, about, angle.number));
  } else if (end.is(L"Length")) {
    const Answer chord = co_await line.distance(
        {.text = L"Specify length of chord: ", .bits = kNoEnter | kNoZero, .from = &start});
    draw_arc(line, arc_about_by_chord(from, about, chord.number));
  } else {
    draw_arc(line, arc_about(from, about, plane.user(end.point)));
  }
}

/// Start and end are known.
Flow<> arc_between(CommandLine& line, AcGePoint3d start) {
  const Answer end = co_await line.point(
      {.text = L"Specify end point of arc: ", .bits = kNoEnter, .from = &start});
  const Answer rest =
      co_await line.point({.text = L"Specify center point of arc or [Angle/Direction/Radius]: ",
                           .keywords = L"CEnter Angle Direction Radius",
                           .bits = kNoEnter,
                           .from = &start});
  const WorkPlane plane(line);
  const AcGePoint3d from = plane.user(start), to = plane.user(end.point);
  if (rest.is(L"Angle")) {
    const Answer angle = co_await line.turn(
        {.text = L"Specify included angle: ", .bits = kNoEnter | kNoZero, .from = &start});
    draw_arc(line, arc_by_angle(from, to, angle.number));
  } else if (rest.is(L"Direction")) {
    const Answer leaving = co_await line.orientation(
        {.text = L"Specify tangent direction for the start point of arc: ",
         .bits = kNoEnter,
         .from = &start});
    draw_arc(line, arc_by_direction(from, to, leaving.number));
  } else if (rest.is(L"Radius")) {
    const Answer radius = co_await line.distance(
        {.text = L"Specify radius of arc: ", .bits = kNoEnter | kNoZero, .from = &end.point});
    draw_arc(line, arc_by_radius(from, to, radius.number));
  } else {
    Answer centre = rest;
    if (!rest.is_point())
      centre = co_await line.point(
          {.text = L"Specify center point of arc: ", .bits = kNoEnter, .from = &start});
    draw_arc(line, arc_about(from, plane.user(centre.point), to));
  }
}

Flow<> arc_from_start(CommandLine& line, AcGePoint3d start) {
  const Answer next = co_await line.point({.text = L"Specify second point of arc or [Center/End]: ",
                                           .keywords = L"Center End",
                                           .bits = kNoEnter,
                                           .from = &start});
  if (next.is(L"End")) {
    co_await arc_between(line, start);
  } else if (next.is(L"Center")) {
    const Answer centre = co_await line.point(
        {.text = L"Specify center point of arc: ", .bits = kNoEnter, .from = &start});
    co_await arc_from_centre(line, start, centre.point);
  } else {
    const Answer end = co_await line.point(
        {.text = L"Specify end point of arc: ", .bits = kNoEnter, .from = &next.point});
    const WorkPlane plane(line);
    draw_arc(line, arc_through(plane.user(start), plane.user(next.point), plane.user(end.point)));
  }
}

Flow<> arc_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify start point of arc or [Center]: ",
                                            .keywords = L"Center",
                                            .bits = kNoEnter});
  if (first.is_point()) {
    co_await arc_from_start(line, first.point);
    co_return;
  }
  const Answer centre =
      co_await line.point({.text = L"Specify center point of arc: ", .bits = kNoEnter});
  const Answer start = co_await line.point(
      {.text = L"Specify start point of arc: ", .bits = kNoEnter, .from = &centre.point});
  co_await arc_from_centre(line, start.point, centre.point);
}

constexpr CommandRow kRows[] = {
    {"CIRCLE", "C", circle_command,
     "centre, radius [Diameter] | 3P, three points | 2P, two points | Ttr, two objects, radius",
     "draws a circle"},
    {"ARC", "A", arc_command,
     "start, second, end | start, Center, centre, end [Angle/Length] | start, End, end, centre "
     "[Angle/Direction/Radius] | Center, centre, start, end [Angle/Length]",
     "draws an arc"},
};

}  // namespace

std::span<const CommandRow> circle_commands() { return kRows; }

}  // namespace cad
