#include <numbers>
#include <vector>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/base/codepage.h"

/// Lines of all kinds, and points.
namespace cad {
namespace {

Flow<> line_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify first point: "});
  std::vector<AcGePoint3d> points{first.is_point() ? first.point : line.last_point()};
  std::vector<AcDbObjectId> drawn;
  for (;;) {
    const AcGePoint3d from = points.back();
    const bool may_close = points.size() > 2;
    const Answer next =
        co_await line.point({.text = may_close ? L"Specify next point or [Close/Undo]: "
                                               : L"Specify next point or [Undo]: ",
                             .keywords = may_close ? L"Close Undo" : L"Undo",
                             .from = &from});
    if (next.none()) co_return;
    if (next.is(L"Undo")) {
      if (drawn.empty()) {
        line.print(L"All segments already undone.");
        continue;
      }
      erase_last(drawn);
      points.pop_back();
      line.set_last_point(points.back());
      continue;
    }
    const bool closes = next.is(L"Close");
    const AcGePoint3d to = closes ? points.front() : next.point;
    const AcDbObjectId made = draw_line(line, from, to);
    if (made.isNull() || closes) co_return;
    drawn.push_back(made);
    points.push_back(to);
  }
}

/// The vertices are drawn as one object when the last one is known.
Flow<> polyline3d_command(CommandLine& line) {
  const Answer first =
      co_await line.point({.text = L"Specify start point of polyline: ", .bits = kNoEnter});
  std::vector<AcGePoint3d> points{first.point};
  bool closed = false;
  for (;;) {
    const AcGePoint3d from = points.back();
    const bool may_close = points.size() > 2;
    const Answer next =
        co_await line.point({.text = may_close ? L"Specify endpoint of line or [Close/Undo]: "
                                               : L"Specify endpoint of line or [Undo]: ",
                             .keywords = may_close ? L"Close Undo" : L"Undo",
                             .from = &from});
    if (next.is(L"Undo")) {
      if (points.size() > 1) points.pop_back();
      line.set_last_point(points.back());
      continue;
    }
    closed = next.is(L"Close");
    if (!next.is_point()) break;
    points.push_back(next.point);
  }
  if (points.size() < 2) co_return;
  GroupList groups(L"POLYLINE");
  groups.integer(66, 1).point(10, {}).integer(70, closed ? 9 : 8);
  std::vector<GroupList> parts;
  for (const AcGePoint3d& point : points)
    parts.emplace_back(L"VERTEX").point(10, point).integer(70, 32);
  draw(line, groups, parts);
}

Flow<> ray_command(CommandLine& line) {
  const Answer start = co_await line.point({.text = L"Specify start point: "});
  if (!start.is_point()) co_return;
  for (;;) {
    const Answer through =
        co_await line.point({.text = L"Specify through point: ", .from = &start.point});
    if (!through.is_point()) co_return;
    const AcGeVector3d way = through.point - start.point;
    if (way.isZeroLength()) {
      line.print(L"The through point is the start point.");
      continue;
    }
    GroupList groups(L"RAY");
    groups.point(10, start.point).point(11, AcGePoint3d::kOrigin + way.normal());
    draw(line, groups);
  }
}

/// A construction line through each point, all in one direction.
Flow<> parallel_xlines(CommandLine& line, double angle) {
  const AcGeVector3d way = line.to_world() * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
  for (;;) {
    const Answer through = co_await line.point({.text = L"Specify through point: "});
    if (!through.is_point()) co_return;
    GroupList groups(L"XLINE");
    groups.point(10, through.point).point(11, AcGePoint3d::kOrigin + way.normal());
    draw(line, groups);
  }
}

Flow<> bisecting_xlines(CommandLine& line) {
  const Answer vertex =
      co_await line.point({.text = L"Specify angle vertex point: ", .bits = kNoEnter});
  const Answer start = co_await line.point(
      {.text = L"Specify angle start point: ", .bits = kNoEnter, .from = &vertex.point});
  for (;;) {
    const Answer end =
        co_await line.point({.text = L"Specify angle end point: ", .from = &vertex.point});
    if (!end.is_point()) co_return;
    const AcGeVector3d a = (start.point - vertex.point).normal();
    const AcGeVector3d b = (end.point - vertex.point).normal();
    AcGeVector3d way = a + b;
    if (way.isZeroLength()) way = line.normal().crossProduct(a);
    if (way.isZeroLength()) {
      line.print(L"The points are the same.");
      continue;
    }
    GroupList groups(L"XLINE");
    groups.point(10, vertex.point).point(11, AcGePoint3d::kOrigin + way.normal());
    draw(line, groups);
  }
}

Flow<> xline_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify a point or [Hor/Ver/Ang/Bisect]: ",
                                            .keywords = L"Hor Ver Ang Bisect",
                                            .bits = kNoEnter});
  if (first.is(L"Hor") || first.is(L"Ver")) {
    co_await parallel_xlines(line, first.is(L"Hor") ? 0.0 : std::numbers::pi / 2);
    co_return;
  }
  if (first.is(L"Ang")) {
    const Answer angle = co_await line.orientation({.text = L"Enter angle of xline (0): "});
    co_await parallel_xlines(line, angle.none() ? 0.0 : angle.number);
    co_return;
  }
  if (first.is(L"Bisect")) {
    co_await bisecting_xlines(line);
    co_return;
  }
  for (;;) {
    const Answer through =
        co_await line.point({.text = L"Specify through point: ", .from = &first.point});
    if (!through.is_point()) co_return;
    const AcGeVector3d way = through.point - first.point;
    if (way.isZeroLength()) {
      line.print(L"The through point is the first point.");
      continue;
    }
    GroupList groups(L"XLINE");
    groups.point(10, first.point).point(11, AcGePoint3d::kOrigin + way.normal());
    draw(line, groups);
  }
}

Flow<> point_command(CommandLine& line) {
  const Answer at = co_await line.point({.text = L"Specify a point: ", .bits = kNoEnter});
  GroupList groups(L"POINT");
  groups.point(10, at.point);
  draw(line, WorkPlane(line).flat(groups));
}

constexpr CommandRow kRows[] = {
    {"LINE", "L", line_command, "first point, next points [Close/Undo] ..., Enter",
     "draws line segments"},
    {"3DPOLY", "3P", polyline3d_command, "start point, end points [Close/Undo] ..., Enter",
     "draws a polyline in space", CommandRow::kEndsWithEnter},
    {"RAY", "", ray_command, "start point, through points ..., Enter",
     "draws lines without end from one point"},
    {"XLINE", "XL", xline_command,
     "point, through points ..., Enter | Hor/Ver, through points ... | Ang, angle, through points "
     "... | Bisect, vertex, start, end points ...",
     "draws lines without ends"},
    {"POINT", "PO", point_command, "point", "draws a point"},
};

}  // namespace

std::span<const CommandRow> line_commands() { return kRows; }

}  // namespace cad
