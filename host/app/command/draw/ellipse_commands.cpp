#include <cmath>
#include <numbers>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/draw/spline_math.h"

/// Ellipses and splines.
namespace cad {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;

struct Ellipse {
  AcGePoint3d centre;  // of the world, like the axis
  AcGeVector3d major;
  double ratio = 1.0;
  double start = 0.0;  // parameters
  double end = kTurn;
};

void draw_ellipse(CommandLine& line, const Ellipse& ellipse) {
  if (ellipse.major.isZeroLength() || !(ellipse.ratio > 0.0) || !std::isfinite(ellipse.ratio)) {
    line.refuse(L"there is no such ellipse");
    return;
  }
  GroupList groups(L"ELLIPSE");
  groups.point(10, ellipse.centre)
      .point(11, AcGePoint3d::kOrigin + ellipse.major)
      .point(210, AcGePoint3d::kOrigin + line.normal())
      .real(40, ellipse.ratio)
      .real(41, ellipse.start)
      .real(42, ellipse.end);
  draw(line, groups);
}

/// The longer of the axes is the major one.
Ellipse with_other_axis(const CommandLine& line, const AcGePoint3d& centre,
                        const AcGeVector3d& axis, double other) {
  Ellipse ellipse{centre, axis, other / axis.length()};
  if (ellipse.ratio > 1.0) {
    ellipse.major = line.normal().crossProduct(axis) * ellipse.ratio;
    ellipse.ratio = 1.0 / ellipse.ratio;
  }
  return ellipse;
}

/// The parameter at which the ellipse is seen from its centre under an angle off its major axis.
double param_at_angle(const Ellipse& ellipse, double angle) {
  return std::atan2(std::sin(angle) / ellipse.ratio, std::cos(angle));
}

/// Start and end of an elliptic arc.
Flow<> ask_ends(CommandLine& line, Ellipse ellipse) {
  const AcGeVector3d major = line.to_user() * ellipse.major;
  const double axis = std::atan2(major.y, major.x);
  const Answer start = co_await line.orientation({.text = L"Specify start angle or [Parameter]: ",
                                                  .keywords = L"Parameter",
                                                  .bits = kNoEnter,
                                                  .from = &ellipse.centre});
  const bool by_parameter = start.is(L"Parameter");
  if (by_parameter) {
    const Answer first =
        co_await line.turn({.text = L"Specify start parameter: ", .bits = kNoEnter});
    const Answer second =
        co_await line.turn({.text = L"Specify end parameter: ", .bits = kNoEnter});
    ellipse.start = first.number;
    ellipse.end = first.number + sweep(first.number, second.number);
    draw_ellipse(line, ellipse);
    co_return;
  }
  // A typed angle counts from the axis; a point shows a direction of the plane.
  const Answer end = co_await line.orientation({.text = L"Specify end angle or [Included angle]: ",
                                                .keywords = L"Included",
                                                .bits = kNoEnter,
                                                .from = &ellipse.centre});
  double included = 0.0;
  if (end.is(L"Included")) {
    const Answer angle =
        co_await line.turn({.text = L"Specify included angle for arc <180>: ", .bits = kNoZero});
    included = angle.none() ? std::numbers::pi : angle.number;
  }
  const double from = start.number - (start.from_points ? axis : 0.0);
  const double to = included != 0.0 ? from + included : end.number - (end.from_points ? axis : 0.0);
  ellipse.start = param_at_angle(ellipse, from);
  if (ellipse.start < 0.0) ellipse.start += kTurn;
  ellipse.end = ellipse.start + sweep(ellipse.start, param_at_angle(ellipse, to));
  draw_ellipse(line, ellipse);
}

Flow<> ellipse_command(CommandLine& line) {
  Answer first = co_await line.point({.text = L"Specify axis endpoint of ellipse or [Arc/Center]: ",
                                      .keywords = L"Arc Center",
                                      .bits = kNoEnter});
  const bool is_arc = first.is(L"Arc");
  if (is_arc)
    first = co_await line.point({.text = L"Specify axis endpoint of elliptical arc or [Center]: ",
                                 .keywords = L"Center",
                                 .bits = kNoEnter});
  AcGePoint3d centre, tip;
  if (first.is(L"Center")) {
    const Answer middle =
        co_await line.point({.text = L"Specify center of ellipse: ", .bits = kNoEnter});
    const Answer end = co_await line.point(
        {.text = L"Specify endpoint of axis: ", .bits = kNoEnter, .from = &middle.point});
    centre = middle.point;
    tip = end.point;
  } else {
    const Answer end = co_await line.point(
        {.text = L"Specify other endpoint of axis: ", .bits = kNoEnter, .from = &first.point});
    centre = first.point + (end.point - first.point) / 2;
    tip = end.point;
  }
  const AcGeVector3d axis = tip - centre;
  if (axis.isZeroLength()) {
    line.refuse(L"the axis has no length");
    co_return;
  }
  const Answer other =
      co_await line.distance({.text = L"Specify distance to other axis or [Rotation]: ",
                              .keywords = L"Rotation",
                              .bits = kNoEnter | kNoZero | kNoNegative,
                              .from = &centre});
  double length = other.number;
  if (other.is(L"Rotation")) {
    const Answer angle =
        co_await line.turn({.text = L"Specify rotation around major axis: ", .bits = kNoEnter});
    length = axis.length() * std::abs(std::cos(angle.number));
  }
  const Ellipse ellipse = with_other_axis(line, centre, axis, length);
  if (is_arc)
    co_await ask_ends(line, ellipse);
  else
    draw_ellipse(line, ellipse);
}

// --- SPLINE

void draw_spline(CommandLine& line, const std::vector<AcGePoint3d>& points, bool closed,
                 const FittedSpline& spline) {
  GroupList groups(L"SPLINE");
  groups.point(210, AcGePoint3d::kOrigin + line.normal())
      .integer(70, closed ? 9 : 8)
      .integer(71, 3)
      .integer(72, static_cast<std::int64_t>(spline.knots.size()))
      .integer(73, static_cast<std::int64_t>(spline.control_points.size()))
      .integer(74, static_cast<std::int64_t>(points.size()))
      .real(42, 1e-10)
      .real(43, 1e-10)
      .real(44, 1e-10)
      .point(12, AcGePoint3d::kOrigin + spline.start_tangent)
      .point(13, AcGePoint3d::kOrigin + spline.end_tangent);
  for (const double knot : spline.knots) groups.real(40, knot);
  for (const AcGePoint3d& point : spline.control_points) groups.point(10, point);
  for (const AcGePoint3d& point : points) groups.point(11, point);
  draw(line, groups);
}

/// The tangent that points away from an end, by a point; nothing for Enter.
std::optional<AcGeVector3d> tangent(const Answer& answer, const AcGePoint3d& end, double sign) {
  if (!answer.is_point()) return std::nullopt;
  const AcGeVector3d way = answer.point - end;
  if (way.isZeroLength()) return std::nullopt;
  return way.normal() * sign;
}

Flow<> spline_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify first point: ", .bits = kNoEnter});
  std::vector<AcGePoint3d> points{first.point};
  bool closed = false;
  while (!closed) {
    const AcGePoint3d from = points.back();
    const bool may_end = points.size() > 1;
    const Answer next = co_await line.point(
        {.text = may_end ? L"Specify next point or [Close/Undo] <start tangent>: "
                         : L"Specify next point: ",
         .keywords = may_end ? L"Close Undo" : L"",
         .bits = may_end ? 0u : static_cast<unsigned>(kNoEnter),
         .from = &from});
    if (next.none()) break;
    if (next.is(L"Undo")) {
      points.pop_back();
      line.set_last_point(points.back());
      continue;
    }
    closed = next.is(L"Close");
    if (next.is_point() && !next.point.isEqualTo(from)) points.push_back(next.point);
  }
  if (closed) {
    const Answer along = co_await line.point({.text = L"Specify tangent: ", .from = &points[0]});
    if (along.is_point()) line.remark(L"A closed spline takes the tangent of its points.");
    draw_spline(line, points, true, fit_spline(points, true, {}, {}));
    co_return;
  }
  const Answer start =
      co_await line.point({.text = L"Specify start tangent: ", .from = &points.front()});
  const Answer end =
      co_await line.point({.text = L"Specify end tangent: ", .from = &points.back()});
  const auto spline = fit_spline(points, false, tangent(start, points.front(), 1.0),
                                 tangent(end, points.back(), -1.0));
  draw_spline(line, points, false, spline);
}

constexpr CommandRow kRows[] = {
    {"ELLIPSE", "EL", ellipse_command,
     "[Arc] axis end, other end, distance [Rotation] | Center, centre, axis end, distance "
     "[Rotation]; of an arc: start angle [Parameter], end angle [Included]",
     "draws an ellipse or an elliptic arc"},
    {"SPLINE", "SPL", spline_command,
     "first point, next points [Close/Undo] ..., Enter, start tangent, end tangent",
     "draws a smooth curve through points", CommandRow::kEndsWithEnter},
};

}  // namespace

std::span<const CommandRow> ellipse_commands() { return kRows; }

}  // namespace cad
