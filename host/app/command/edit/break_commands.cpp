// BREAK and LENGTHEN: curves are cut, or changed at one end, by points and lengths.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/app/command/draw/draw.h"
#include "host/app/command/edit/curve_entity.h"
#include "host/app/command/edit/edit_commands.h"

namespace cad {
namespace {

constexpr double kSame = 1e-9;

/// Cuts out what is between two points. Points beside the curve count as the nearest on it, points
/// beyond an end as that end.
void break_between(CommandLine& line, const CurveEntity& entity, const AcGePoint3d& first,
                   const AcGePoint3d& second) {
  EditLog log;
  log.begin_step();
  double from = entity.nearest(first), to = entity.nearest(second);
  if (entity.closed()) {
    if (std::fabs(from - to) < kSame) {
      const bool polyline =
          entity.kind() == Curve::Kind::kPolyline || entity.kind() == Curve::Kind::kPolyline3d;
      if (!polyline) {
        line.print(L"Arc cannot be full 360 degrees.");
        return;
      }
    }
    // Counter-clockwise from the first point to the second goes; the rest stays.
    if (from <= to + kSame) from += entity.end();
    entity.keep(line, std::vector<Span>{{to, from}}, log);
    return;
  }
  if (from > to) std::swap(from, to);
  std::vector<Span> left;
  if (from > entity.start() + kSame) left.push_back({entity.start(), from});
  if (to < entity.end() - kSame) left.push_back({to, entity.end()});
  if (left.empty()) {
    line.print(L"Nothing would be left of the object: use ERASE.");
    return;
  }
  entity.keep(line, left, log);
}

Flow<> break_command(CommandLine& line) {
  const Answer picked = co_await line.entity({.text = L"Select object: "});
  if (!picked.is_entity()) co_return;
  if (on_locked_layer(picked.entity)) {
    line.print(L"Object is on a locked layer.");
    co_return;
  }
  const std::optional<CurveEntity> entity = CurveEntity::of(picked.entity);
  if (!entity) {
    line.print(L"This object cannot be broken.");
    co_return;
  }
  AcGePoint3d first = picked.point;
  line.set_last_point(first);
  Answer second = co_await line.point({.text = L"Specify second break point or [First point]: ",
                                       .keywords = L"First",
                                       .bits = kNoEnter,
                                       .from = &first});
  if (second.is(L"First")) {
    const Answer other =
        co_await line.point({.text = L"Specify first break point: ", .bits = kNoEnter});
    first = other.point;
    second = co_await line.point(
        {.text = L"Specify second break point: ", .bits = kNoEnter, .from = &first});
  }
  break_between(line, *entity, first, second.point);
}

/// How LENGTHEN changes a curve.
struct Lengthening {
  enum class Way { kNone, kBy, kByAngle, kPercent, kTotal, kTotalAngle } way = Way::kNone;
  double value = 0.0;
};

Flow<Lengthening> ask_amount(CommandLine& line, bool total) {
  using Way = Lengthening::Way;
  const Answer given =
      co_await line.distance({.text = total ? L"Specify total length or [Angle] <1.0>: "
                                            : L"Enter delta length or [Angle] <0.0>: ",
                              .keywords = L"Angle"});
  if (!given.is(L"Angle")) {
    const double value = given.none() && total ? 1.0 : given.number;
    co_return Lengthening{total ? Way::kTotal : Way::kBy, value};
  }
  const Answer angle = co_await line.turn(
      {.text = total ? L"Specify total angle <57>: " : L"Enter delta angle <0>: "});
  const double value = angle.none() && total ? 1.0 : angle.number;
  co_return Lengthening{total ? Way::kTotalAngle : Way::kByAngle, value};
}

/// The length by which a curve grows; angles are those of arcs.
std::optional<double> growth(const Curve& curve, const Lengthening& how) {
  using Way = Lengthening::Way;
  const bool arc = curve.kind() == Curve::Kind::kArc;
  const double length = curve.length();
  const double radius = curve.segments()[0].radius();
  switch (how.way) {
    case Way::kBy:
      return how.value;
    case Way::kPercent:
      return length * (how.value / 100.0 - 1.0);
    case Way::kTotal:
      return how.value - length;
    case Way::kByAngle:
      return arc ? std::optional(how.value * radius) : std::nullopt;
    case Way::kTotalAngle:
      return arc ? std::optional(how.value * radius - length) : std::nullopt;
    case Way::kNone:
      break;
  }
  return std::nullopt;
}

/// Changes the end nearer to the point.
bool lengthen(CommandLine& line, AcDbObjectId object, const AcGePoint3d& point,
              const Lengthening& how, EditLog& log) {
  const std::optional<CurveEntity> entity = CurveEntity::of(object);
  if (on_locked_layer(object)) {
    line.print(L"Object is on a locked layer.");
    return false;
  }
  if (!entity || entity->closed() || !entity->curve().is_bounded()) {
    line.print(L"This object cannot be lengthened.");
    return false;
  }
  const Curve& curve = entity->curve();
  const std::optional<double> by = growth(curve, how);
  if (!by) {
    line.print(L"Object is not an arc.");
    return false;
  }
  const double last = entity->end();
  const double length = curve.length();
  if (length + *by <= 0.0 || length == 0.0) {
    line.print(L"Nothing would be left of the object.");
    return false;
  }
  const double nearest = std::clamp(entity->nearest(point), 0.0, last);
  const bool at_end =
      curve.distance_at(curve.closest_param(entity->point_at(nearest))) * 2 >= length;
  const Segment& piece = at_end ? curve.segments().back() : curve.segments().front();
  double place = 0.0;
  if (*by >= 0.0) {
    if (piece.length() == 0.0 || piece.kind() == Segment::Kind::kEllipse) {
      line.print(L"This object cannot be lengthened.");
      return false;
    }
    place = *by / piece.length();
    const bool around = piece.is_arc() &&
                        std::fabs(piece.sweep()) * (1.0 + place) >= 2.0 * std::numbers::pi - 1e-12;
    if (around) {
      line.print(L"An arc cannot turn through 360 degrees or more.");
      return false;
    }
  } else {
    const double rest = at_end ? length + *by : -*by;
    const double at = entity->nearest(curve.point_at(curve.param_at_distance(rest)));
    place = at_end ? at - last : -at;
  }
  log.begin_step();
  const Span kept = at_end ? Span{0.0, last + place} : Span{-place, last};
  return !entity->keep(line, std::vector<Span>{kept}, log).empty();
}

Flow<> lengthen_command(CommandLine& line) {
  Lengthening how;
  while (how.way == Lengthening::Way::kNone) {
    const Answer option =
        co_await line.entity({.text = L"Select an object or [DElta/Percent/Total/DYnamic]: ",
                              .keywords = L"DElta Percent Total DYnamic"});
    if (option.is_entity()) {
      const std::optional<CurveEntity> entity = CurveEntity::of(option.entity);
      line.print(entity ? L"Current length: " + shown(line, entity->curve().length())
                        : L"This object has no length definition.");
    } else if (option.is(L"DElta") || option.is(L"Total")) {
      how = co_await ask_amount(line, option.is(L"Total"));
    } else if (option.is(L"Percent")) {
      const Answer percent = co_await line.real(
          {.text = L"Enter percentage length <100.0>: ", .bits = kNoZero | kNoNegative});
      how = {Lengthening::Way::kPercent, percent.none() ? 100.0 : percent.number};
    } else if (option.is(L"DYnamic")) {
      line.refuse(L"dragging an end needs a screen; use DElta, Percent or Total.");
      co_return;
    } else {
      co_return;
    }
  }
  EditLog log;
  for (;;) {
    const Answer answer = co_await line.entity(
        {.text = L"Select an object to change or [Undo]: ", .keywords = L"Undo", .bits = kMayEnd});
    if (answer.is_entity()) {
      lengthen(line, answer.entity, answer.point, how, log);
    } else if (answer.is(L"Undo")) {
      if (!log.undo()) line.print(L"Command has been completely undone.");
    } else {
      co_return;
    }
    if (line.passing_over()) co_return;
  }
}

constexpr CommandRow kRows[] = {
    {"BREAK", "BR", break_command,
     "object (its pick is the first point), second point or \"@\" | object, First, first point, "
     "second point or \"@\"",
     "cuts a part out of an object, or cuts it in two"},
    {"LENGTHEN", "LEN", lengthen_command,
     "DElta, length or Angle | Percent, number | Total, length or Angle; then objects or Undo ..., "
     "Enter",
     "changes the length of lines and arcs", CommandRow::kEndsWithEnter},
};

}  // namespace

std::span<const CommandRow> break_commands() { return kRows; }

}  // namespace cad
