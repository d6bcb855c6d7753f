#include <numbers>
#include <vector>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/arc_math.h"
#include "host/app/command/draw/draw.h"

namespace cad {
namespace {

/// A polyline while it is being drawn; points in the user's coordinates.
struct Drawing {
  explicit Drawing(CommandLine& command_line) : line(command_line), plane(command_line) {}

  CommandLine& line;
  WorkPlane plane;
  std::vector<DrawnVertex> vertices = {};
  double width = 0.0;      // at the start of the next segment
  double end_width = 0.0;  // at its end
  bool arcs = false;
  bool closed = false;

  const AcGePoint3d& last() const { return vertices.back().point; }
  AcGePoint3d last_in_world() const { return plane.world(last()); }
  AcGePoint3d user(const Answer& answer) const { return plane.user(answer.point); }

  /// The direction in which the next segment leaves.
  double leaving() const {
    if (vertices.size() < 2) return 0.0;
    const DrawnVertex& from = vertices[vertices.size() - 2];
    return direction(from.point, last()) + 2 * std::atan(from.bulge);
  }
  void add(const AcGePoint3d& point, double bulge) {
    DrawnVertex& from = vertices.back();
    from.bulge = bulge;
    from.start_width = width;
    from.end_width = end_width;
    width = end_width;
    vertices.push_back({.point = {point.x, point.y, vertices.front().point.z}});
    line.set_last_point(last_in_world());
  }
  /// False, and told, for an arc there is not.
  bool add(const std::optional<DrawnArc>& arc) {
    if (!arc) {
      line.print(L"Invalid: there is no such arc.");
      return false;
    }
    add(arc->end, arc->bulge());
    return true;
  }
  void undo() {
    if (vertices.size() == 1) {
      line.print(L"All segments already undone.");
      return;
    }
    vertices.pop_back();
    vertices.back().bulge = 0.0;
    width = vertices.back().start_width;
    end_width = vertices.back().end_width;
    line.set_last_point(last_in_world());
  }
};

Flow<> ask_width(Drawing& drawing, double factor) {
  const wchar_t* const what = factor == 2.0 ? L"half-width" : L"width";
  const std::wstring start_text = std::wstring(L"Specify starting ") + what + L" <" +
                                  shown(drawing.line, drawing.width / factor) + L">: ";
  const AcGePoint3d from = drawing.last_in_world();
  const Answer start =
      co_await drawing.line.distance({.text = start_text, .bits = kNoNegative, .from = &from});
  if (start.is_number()) drawing.width = start.number * factor;
  const std::wstring end_text = std::wstring(L"Specify ending ") + what + L" <" +
                                shown(drawing.line, drawing.width / factor) + L">: ";
  const Answer end =
      co_await drawing.line.distance({.text = end_text, .bits = kNoNegative, .from = &from});
  drawing.end_width = end.is_number() ? end.number * factor : drawing.width;
  drawing.line.set_variable(L"PLINEWID", drawing.end_width);
}

// --- Arcs by their options

Flow<> arc_of_angle(Drawing& drawing) {
  CommandLine& line = drawing.line;
  const AcGePoint3d start = drawing.last(), from = drawing.last_in_world();
  const Answer angle =
      co_await line.turn({.text = L"Specify included angle: ", .bits = kNoEnter | kNoZero});
  const Answer end = co_await line.point({.text = L"Specify endpoint of arc or [CEnter/Radius]: ",
                                          .keywords = L"CEnter Radius",
                                          .bits = kNoEnter,
                                          .from = &from});
  if (end.is(L"CEnter")) {
    const Answer centre = co_await line.point(
        {.text = L"Specify center point of arc: ", .bits = kNoEnter, .from = &from});
    drawing.add(arc_about_by_angle(start, drawing.user(centre), angle.number));
  } else if (end.is(L"Radius")) {
    const Answer radius = co_await line.distance({.text = L"Specify radius of arc: ",
                                                  .bits = kNoEnter | kNoZero | kNoNegative,
                                                  .from = &from});
    const Answer chord = co_await line.orientation(
        {.text = L"Specify direction of chord for arc <0>: ", .from = &from});
    const double length = 2 * radius.number * std::abs(std::sin(angle.number / 2));
    const AcGePoint3d to = polar(start, chord.none() ? 0.0 : chord.number, length);
    drawing.add(arc_by_angle(start, to, angle.number));
  } else {
    drawing.add(arc_by_angle(start, drawing.user(end), angle.number));
  }
}

Flow<> arc_of_centre(Drawing& drawing) {
  CommandLine& line = drawing.line;
  const AcGePoint3d start = drawing.last(), from = drawing.last_in_world();
  const Answer centre = co_await line.point(
      {.text = L"Specify center point of arc: ", .bits = kNoEnter, .from = &from});
  const AcGePoint3d about = drawing.user(centre);
  const Answer end = co_await line.point({.text = L"Specify endpoint of arc or [Angle/Length]: ",
                                          .keywords = L"Angle Length",
                                          .bits = kNoEnter,
                                          .from = &centre.point});
  if (end.is(L"Angle")) {
    const Answer angle =
        co_await line.turn({.text = L"Specify included angle: ", .bits = kNoEnter | kNoZero});
    drawing.add(arc_about_by_angle(start, about, angle.number));
  } else if (end.is(L"Length")) {
    const Answer chord = co_await line.distance(
        {.text = L"Specify length of chord: ", .bits = kNoEnter | kNoZero, .from = &from});
    drawing.add(arc_about_by_chord(start, about, chord.number));
  } else {
    drawing.add(arc_about(start, about, drawing.user(end)));
  }
}

Flow<> arc_of_direction(Drawing& drawing) {
  const AcGePoint3d start = drawing.last(), from = drawing.last_in_world();
  const Answer leaving = co_await drawing.line.orientation(
      {.text = L"Specify the tangent direction for the start point of arc: ",
       .bits = kNoEnter,
       .from = &from});
  const Answer end = co_await drawing.line.point(
      {.text = L"Specify endpoint of the arc: ", .bits = kNoEnter, .from = &from});
  drawing.add(arc_by_direction(start, drawing.user(end), leaving.number));
}

Flow<> arc_of_radius(Drawing& drawing) {
  CommandLine& line = drawing.line;
  const AcGePoint3d start = drawing.last(), from = drawing.last_in_world();
  const Answer radius = co_await line.distance(
      {.text = L"Specify radius of arc: ", .bits = kNoEnter | kNoZero, .from = &from});
  const Answer end = co_await line.point({.text = L"Specify endpoint of arc or [Angle]: ",
                                          .keywords = L"Angle",
                                          .bits = kNoEnter,
                                          .from = &from});
  if (end.is(L"Angle")) {
    const Answer angle =
        co_await line.turn({.text = L"Specify included angle: ", .bits = kNoEnter | kNoZero});
    const Answer chord = co_await line.orientation(
        {.text = L"Specify direction of chord for arc <0>: ", .from = &from});
    const double length = 2 * std::abs(radius.number * std::sin(angle.number / 2));
    const AcGePoint3d to = polar(start, chord.none() ? 0.0 : chord.number, length);
    drawing.add(arc_by_angle(start, to, angle.number));
    co_return;
  }
  // It bends to the side on which its end lies.
  const AcGePoint3d to = drawing.user(end);
  const bool left = std::sin(direction(start, to) - drawing.leaving()) >= 0.0;
  drawing.add(arc_by_radius(start, to, radius.number, left));
}

Flow<> arc_of_second_point(Drawing& drawing) {
  const AcGePoint3d start = drawing.last(), from = drawing.last_in_world();
  const Answer second = co_await drawing.line.point(
      {.text = L"Specify second point on arc: ", .bits = kNoEnter, .from = &from});
  const Answer end = co_await drawing.line.point(
      {.text = L"Specify end point of arc: ", .bits = kNoEnter, .from = &second.point});
  drawing.add(arc_through(start, drawing.user(second), drawing.user(end)));
}

Flow<> ask_length(Drawing& drawing) {
  const AcGePoint3d from = drawing.last_in_world();
  const Answer length = co_await drawing.line.distance(
      {.text = L"Specify length of line: ", .bits = kNoEnter | kNoZero, .from = &from});
  drawing.add(polar(drawing.last(), drawing.leaving(), length.number), 0.0);
}

/// Options by name. Those without a flow of their own are handled where they are asked for.
struct Option {
  const wchar_t* name;
  Flow<> (*flow)(Drawing&);
};
constexpr Option kArcOptions[] = {
    {L"Angle", arc_of_angle},   {L"CEnter", arc_of_centre},       {L"Direction", arc_of_direction},
    {L"Radius", arc_of_radius}, {L"Second", arc_of_second_point},
};

auto arc_option(const Answer& answer) -> Flow<> (*)(Drawing&) {
  for (const Option& option : kArcOptions)
    if (answer.is(option.name)) return option.flow;
  return nullptr;
}

Ask next_vertex(const Drawing& drawing, const AcGePoint3d& from) {
  const bool may_close = drawing.vertices.size() > 2;
  if (drawing.arcs && may_close)
    return {.text =
                L"Specify endpoint of arc or [Angle/CEnter/CLose/Direction/Halfwidth/Line/"
                L"Radius/Second pt/Undo/Width]: ",
            .keywords = L"Angle CEnter CLose Direction Halfwidth Line Radius Second Undo Width",
            .from = &from};
  if (drawing.arcs)
    return {.text =
                L"Specify endpoint of arc or [Angle/CEnter/Direction/Halfwidth/Line/Radius/"
                L"Second pt/Undo/Width]: ",
            .keywords = L"Angle CEnter Direction Halfwidth Line Radius Second Undo Width",
            .from = &from};
  if (may_close)
    return {.text = L"Specify next point or [Arc/Close/Halfwidth/Length/Undo/Width]: ",
            .keywords = L"Arc Close Halfwidth Length Undo Width",
            .from = &from};
  return {.text = L"Specify next point or [Arc/Halfwidth/Length/Undo/Width]: ",
          .keywords = L"Arc Halfwidth Length Undo Width",
          .from = &from};
}

void close(Drawing& drawing) {
  drawing.closed = true;
  DrawnVertex& last = drawing.vertices.back();
  last.start_width = drawing.width;
  last.end_width = drawing.end_width;
  if (!drawing.arcs) return;
  const auto arc = arc_by_direction(last.point, drawing.vertices.front().point, drawing.leaving());
  last.bulge = arc ? arc->bulge() : 0.0;
}

void add_point(Drawing& drawing, const Answer& answer) {
  const AcGePoint3d to = drawing.user(answer);
  if (drawing.arcs)
    drawing.add(arc_by_direction(drawing.last(), to, drawing.leaving()));
  else
    drawing.add(to, 0.0);
}

Flow<> polyline_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify start point: ", .bits = kNoEnter});
  Drawing drawing(line);
  drawing.vertices.push_back({.point = drawing.user(first)});
  drawing.width = drawing.end_width = line.real_variable(L"PLINEWID");
  line.remark(L"Current line-width is " + shown(line, drawing.width));
  while (!drawing.closed) {
    const AcGePoint3d from = drawing.last_in_world();
    const Answer next = co_await line.point(next_vertex(drawing, from));
    if (next.none()) break;
    if (next.is_point()) add_point(drawing, next);
    if (next.is(L"Close") || next.is(L"CLose")) close(drawing);
    if (next.is(L"Arc")) drawing.arcs = true;
    if (next.is(L"Line")) drawing.arcs = false;
    if (next.is(L"Undo")) drawing.undo();
    if (next.is(L"Width")) co_await ask_width(drawing, 1.0);
    if (next.is(L"Halfwidth")) co_await ask_width(drawing, 2.0);
    if (next.is(L"Length")) co_await ask_length(drawing);
    if (const auto option = arc_option(next)) co_await option(drawing);
  }
  if (drawing.vertices.size() > 1) draw_polyline(line, drawing.vertices, drawing.closed);
}

constexpr CommandRow kRows[] = {
    {"PLINE", "PL", polyline_command,
     "start point, next points [Arc/Close/Halfwidth/Length/Undo/Width] ..., Enter; in Arc: "
     "[Angle/CEnter/CLose/Direction/Halfwidth/Line/Radius/Second/Undo/Width]",
     "draws a polyline of lines and arcs", CommandRow::kEndsWithEnter},
};

}  // namespace

std::span<const CommandRow> polyline_commands() { return kRows; }

}  // namespace cad
