#include <cmath>
#include <numbers>
#include <vector>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"

/// Filled and flat quadrilaterals.
namespace cad {
namespace {

/// SOLID and 3DFACE go on from their last side: two first points, then pairs.
struct Corners {
  AcGePoint3d points[4];
  bool has_all = false;
};

void draw_solid(CommandLine& line, const Corners& corners) {
  const WorkPlane plane(line);
  GroupList groups(L"SOLID");
  for (int i = 0; i < 4; ++i) {
    const AcGePoint3d& point = corners.points[i == 3 && !corners.has_all ? 2 : i];
    groups.point(10 + i, plane.stored(plane.user(point)));
  }
  draw(line, plane.flat(groups));
}

Flow<> solid_command(CommandLine& line) {
  Corners corners;
  const Answer first = co_await line.point({.text = L"Specify first point: ", .bits = kNoEnter});
  const Answer second = co_await line.point(
      {.text = L"Specify second point: ", .bits = kNoEnter, .from = &first.point});
  corners.points[0] = first.point;
  corners.points[1] = second.point;
  for (;;) {
    const Answer third = co_await line.point({.text = L"Specify third point: "});
    if (!third.is_point()) co_return;
    const Answer fourth =
        co_await line.point({.text = L"Specify fourth point or <exit>: ", .from = &third.point});
    corners.points[2] = third.point;
    corners.points[3] = fourth.point;
    corners.has_all = fourth.is_point();
    draw_solid(line, corners);
    if (!corners.has_all) co_return;
    corners.points[0] = third.point;
    corners.points[1] = fourth.point;
  }
}

// --- 3DFACE

/// A corner, and whether the edge from it is hidden.
struct FaceCorner {
  Answer answer;
  bool hidden = false;
};

Flow<FaceCorner> ask_corner(CommandLine& line, const wchar_t* text, unsigned bits) {
  FaceCorner corner;
  for (;;) {
    corner.answer = co_await line.point({.text = text, .keywords = L"Invisible", .bits = bits});
    if (!corner.answer.is(L"Invisible")) break;
    corner.hidden = true;
  }
  co_return corner;
}

Flow<> face_command(CommandLine& line) {
  FaceCorner a = co_await ask_corner(line, L"Specify first point or [Invisible]: ", kNoEnter);
  FaceCorner b = co_await ask_corner(line, L"Specify second point or [Invisible]: ", kNoEnter);
  for (;;) {
    const FaceCorner c =
        co_await ask_corner(line, L"Specify third point or [Invisible] <exit>: ", 0);
    if (!c.answer.is_point()) co_return;
    const FaceCorner d = co_await ask_corner(
        line, L"Specify fourth point or [Invisible] <create three-sided face>: ", 0);
    const AcGePoint3d last = d.answer.is_point() ? d.answer.point : c.answer.point;
    const int hidden =
        (a.hidden ? 1 : 0) | (b.hidden ? 2 : 0) | (c.hidden ? 4 : 0) | (d.hidden ? 8 : 0);
    GroupList groups(L"3DFACE");
    groups.point(10, a.answer.point)
        .point(11, b.answer.point)
        .point(12, c.answer.point)
        .point(13, last)
        .integer(70, hidden);
    draw(line, groups);
    a.answer.point = last;
    a.hidden = false;
    b.answer.point = c.answer.point;
    b.hidden = c.hidden;
  }
}

// --- TRACE

/// Where the two sides of a band meet a cut at a point between two directions.
void cut(const AcGePoint3d& at, double before, double after, double half, AcGePoint3d& left,
         AcGePoint3d& right) {
  const double turn = std::remainder(after - before, 2 * std::numbers::pi) / 2;
  const double way = before + turn + std::numbers::pi / 2;
  // A band that turns back on itself has no mitre.
  const double reach = std::abs(std::cos(turn)) < 1e-3 ? half : half / std::cos(turn);
  left = polar(at, way, reach);
  right = polar(at, way, -reach);
}

void draw_traces(CommandLine& line, const std::vector<AcGePoint3d>& points, double width) {
  const WorkPlane plane(line);
  std::vector<double> ways;
  for (std::size_t i = 0; i + 1 < points.size(); ++i)
    ways.push_back(direction(points[i], points[i + 1]));
  for (std::size_t i = 0; i < ways.size(); ++i) {
    AcGePoint3d corners[4];
    const double before = i == 0 ? ways[i] : ways[i - 1];
    const double after = i + 1 == ways.size() ? ways[i] : ways[i + 1];
    cut(points[i], before, ways[i], width / 2, corners[0], corners[1]);
    cut(points[i + 1], ways[i], after, width / 2, corners[2], corners[3]);
    GroupList groups(L"TRACE");
    for (int k = 0; k < 4; ++k) groups.point(10 + k, plane.stored(corners[k]));
    if (draw(line, plane.flat(groups)).isNull()) return;
  }
}

Flow<> trace_command(CommandLine& line) {
  const std::wstring text =
      L"Specify trace width <" + shown(line, line.real_variable(L"TRACEWID")) + L">: ";
  const Answer given = co_await line.distance({.text = text, .bits = kNoNegative});
  const double width = given.none() ? line.real_variable(L"TRACEWID") : given.number;
  const Answer first = co_await line.point({.text = L"Specify start point: ", .bits = kNoEnter});
  const WorkPlane plane(line);
  std::vector<AcGePoint3d> points{plane.user(first.point)};
  for (;;) {
    const AcGePoint3d from = plane.world(points.back());
    const Answer next = co_await line.point({.text = L"Specify next point: ", .from = &from});
    if (!next.is_point()) break;
    points.push_back(plane.user(next.point));
  }
  draw_traces(line, points, width);
}

constexpr CommandRow kRows[] = {
    {"SOLID", "SO", solid_command, "first, second, third, fourth point ..., Enter",
     "draws filled triangles and quadrilaterals"},
    {"3DFACE", "3F", face_command, "first, second, third, fourth point [Invisible] ..., Enter",
     "draws faces in space"},
    {"TRACE", "", trace_command, "width, start point, next points ..., Enter", "draws filled bands",
     CommandRow::kEndsWithEnter},
};

}  // namespace

std::span<const CommandRow> face_commands() { return kRows; }

}  // namespace cad
