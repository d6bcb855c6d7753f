#include <cmath>
#include <numbers>
#include <vector>

#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/settings/records.h"
#include "host/base/numbers.h"
#include "host/db/curve.h"
#include "host/db/record_groups.h"

/// What things measure.
namespace cad {
namespace {

std::wstring shown_point(const CommandLine& line, const AcGePoint3d& point) {
  return L"X = " + shown(line, point.x) + L"  Y = " + shown(line, point.y) + L"  Z = " +
         shown(line, point.z);
}

Flow<> id_command(CommandLine& line) {
  const Answer at = co_await line.point({.text = L"Specify point: ", .bits = kNoEnter});
  line.print(shown_point(line, line.to_user() * at.point));
}

Flow<> dist_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify first point: ", .bits = kNoEnter});
  const Answer second = co_await line.point(
      {.text = L"Specify second point: ", .bits = kNoEnter, .from = &first.point});
  const AcGePoint3d a = line.to_user() * first.point, b = line.to_user() * second.point;
  const double length = a.distanceTo(b), flat = flat_distance(a, b);
  line.put_variable(L"DISTANCE", length);
  line.print(L"Distance = " + shown(line, length) + L",  Angle in XY Plane = " +
             shown_angle(line, direction(a, b)) + L",  Angle from XY Plane = " +
             shown_angle(line, std::atan2(b.z - a.z, flat)));
  line.print(L"Delta X = " + shown(line, b.x - a.x) + L",  Delta Y = " + shown(line, b.y - a.y) +
             L",   Delta Z = " + shown(line, b.z - a.z));
}

// --- AREA

struct Measure {
  double area = 0.0;
  double perimeter = 0.0;
};

Measure measure(const std::vector<AcGePoint3d>& corners) {
  Measure result;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const AcGePoint3d& a = corners[i];
    const AcGePoint3d& b = corners[(i + 1) % corners.size()];
    result.area += (a.x * b.y - b.x * a.y) / 2;
    result.perimeter += a.distanceTo(b);
  }
  result.area = std::abs(result.area);
  return result;
}

std::optional<Measure> measure(AcDbObjectId id) {
  const std::optional<Curve> curve = curve_of(id);
  if (!curve) return std::nullopt;
  return Measure{std::abs(curve->area()), curve->length()};
}

Flow<std::vector<AcGePoint3d>> ask_corners(CommandLine& line, AcGePoint3d first) {
  std::vector<AcGePoint3d> corners{line.to_user() * first};
  AcGePoint3d from = first;
  for (;;) {
    const Answer next = co_await line.point(
        {.text = L"Specify next corner point or press ENTER for total: ", .from = &from});
    if (!next.is_point()) break;
    from = next.point;
    corners.push_back(line.to_user() * from);
  }
  co_return corners;
}

void tell(CommandLine& line, const Measure& part) {
  line.put_variable(L"PERIMETER", part.perimeter);
  line.print(L"Area = " + shown(line, part.area) + L", Perimeter = " + shown(line, part.perimeter));
}

/// Shapes that are added or subtracted, until Enter at the prompt for the next.
Flow<> area_command(CommandLine& line) {
  double sign = 0.0, total = 0.0;  // no sign: one shape alone
  for (;;) {
    const Answer first = co_await line.point(
        {.text = sign == 0.0  ? L"Specify first corner point or [Object/Add/Subtract]: "
                 : sign > 0.0 ? L"Specify first corner point or [Object/Subtract]: "
                              : L"Specify first corner point or [Object/Add]: ",
         .keywords = L"Object Entity Add Subtract",
         .bits = sign == 0.0 ? static_cast<unsigned>(kNoEnter) : 0u});
    if (first.none()) break;
    if (first.is(L"Add") || first.is(L"Subtract")) {
      sign = first.is(L"Add") ? 1.0 : -1.0;
      continue;
    }
    std::optional<Measure> part;
    if (first.is_point()) {
      const std::vector<AcGePoint3d> corners = co_await ask_corners(line, first.point);
      part = measure(corners);
    } else {
      const Answer object = co_await line.entity({.text = L"Select objects: "});
      if (object.none()) continue;
      part = measure(object.entity);
      if (!part) {
        line.print(L"Selected object does not have an area");
        continue;
      }
    }
    tell(line, *part);
    total = sign == 0.0 ? part->area : total + sign * part->area;
    line.put_variable(L"AREA", total);
    if (sign == 0.0) co_return;
    line.print(L"Total area = " + shown(line, total));
  }
}

// --- LIST

constexpr std::size_t kLongestLine = 200;

void list_object(CommandLine& line, AcDbObjectId id) {
  RecordGroups record;
  if (!record.read(id)) return;
  line.print(group_text(id, 0) + L"  Layer: \"" + group_text(id, 8, L"0") + L"\"  Handle = " +
             handle_text(id.handle().value()));
  const AcGeMatrix3d to_user = line.to_user();
  for (const Group& group : record.groups()) {
    if (group.type == Group::Type::kPoint && group.code < 20) {
      const AcGePoint3d point(group.numbers[0], group.numbers[1], group.numbers[2]);
      line.print(L"  point " + std::to_wstring(group.code) + L": " +
                 shown_point(line, to_user * point));
    } else if (group.type == Group::Type::kText && group.code >= 1 && group.code <= 7) {
      line.print(L"  text " + std::to_wstring(group.code) + L": \"" +
                 record.text(group).substr(0, kLongestLine) + L"\"");
    } else if (group.type == Group::Type::kReal && group.code >= 40 && group.code < 50) {
      line.print(L"  size " + std::to_wstring(group.code) + L": " + shown(line, group.numbers[0]));
    }
  }
  const auto size = measure(id);
  if (size) line.print(L"  length: " + shown(line, size->perimeter));
}

Flow<> list_command(CommandLine& line) {
  const Answer which = co_await line.selection();
  for (const AcDbObjectId id : which.selection) list_object(line, id);
}

constexpr unsigned kQuiet = CommandRow::kNoStep;

constexpr CommandRow kRows[] = {
    {"ID", "", id_command, "point", "prints a point and makes it the last one",
     kQuiet | CommandRow::kTransparent},
    {"DIST", "DI", dist_command, "first point, second point", "measures a distance (DISTANCE)",
     kQuiet | CommandRow::kTransparent},
    {"AREA", "AA", area_command,
     "corners ..., Enter | Object, object | Add or Subtract, shapes ..., Enter",
     "measures an area (AREA, PERIMETER)", kQuiet},
    {"LIST", "LI LS", list_command, "objects, Enter", "prints what objects are", kQuiet},
};

}  // namespace

std::span<const CommandRow> inquiry_commands() { return kRows; }

}  // namespace cad
