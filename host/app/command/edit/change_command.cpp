#include <cmath>

#include "host/app/command/change/properties.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/app/command/settings/records.h"
#include "host/db/curve.h"
#include "host/db/make_object.h"
#include "host/db/record.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

AcGeVector3d normal_of(AcDbObjectId object) {
  return group_point(object, 210, {0, 0, 1}).asVector();
}

bool change(CommandLine& line, AcDbObjectId object, const GroupList& groups) {
  return line.check(change_object(object, groups));
}

/// The end nearer to the point goes there.
void change_line(CommandLine& line, AcDbObjectId object, const AcGePoint3d& to) {
  const AcGePoint3d start = group_point(object, 10), end = group_point(object, 11);
  const bool first = start.distanceTo(to) < end.distanceTo(to);
  GroupList groups;
  change(line, object, groups.point(first ? 10 : 11, to));
}

/// The circle goes through the point.
void change_circle(CommandLine& line, AcDbObjectId object, const AcGePoint3d& to) {
  const AcGeMatrix3d own = ocs_to_wcs(normal_of(object)).transpose();
  const AcGeVector3d way = own * to - group_point(object, 10);
  const double radius = std::hypot(way.x, way.y);
  GroupList groups;
  if (radius > 0.0) change(line, object, groups.real(40, radius));
}

/// Moves a text or block reference so that its place is the point.
void change_place(CommandLine& line, AcDbObjectId object, const AcGePoint3d& to) {
  const bool anchored = record_kind(object) != "INSERT" &&
                        (group_integer(object, 72) != 0 || group_integer(object, 73) != 0);
  const AcGePoint3d from = ocs_to_wcs(normal_of(object)) * group_point(object, anchored ? 11 : 10);
  transform_all(line, {object}, AcGeMatrix3d::translation(to - from));
}

/// Style, height, angle and contents; Enter keeps each.
Flow<> change_text(CommandLine& line, AcDbObjectId object) {
  GroupList groups;
  std::wstring style = group_text(object, 7, L"Standard");
  std::wstring text = L"Enter new text style <" + style + L">: ";
  const Answer new_style = co_await line.text({.text = text});
  if (!new_style.none()) {
    style = new_style.text;
    groups.text(7, style);
  }
  const AcDbObjectId record = find_record(line.database(), "STYLE", style);
  if (record.isNull()) {
    line.refuse(L"Cannot find text style \"" + style + L"\".");
    co_return;
  }
  if (group_real(record, 40) == 0.0) {
    text = L"Specify new height <" + shown(line, group_real(object, 40)) + L">: ";
    const Answer height = co_await line.distance({.text = text, .bits = kNoZero | kNoNegative});
    if (!height.none()) groups.real(40, height.number);
  }
  text = L"Specify new rotation angle <" + shown_angle(line, group_real(object, 50)) + L">: ";
  const Answer angle = co_await line.turn({.text = text});
  if (!angle.none()) groups.real(50, angle.number);
  text = L"Enter new text <" + group_text(object, 1) + L">: ";
  const Answer contents = co_await line.text({.text = text});
  if (!contents.none()) groups.text(1, contents.text);
  if (!groups.groups().empty()) change(line, object, groups);
}

Flow<> change_block(CommandLine& line, AcDbObjectId object) {
  const Answer angle = co_await line.turn({.text = L"Specify new block rotation angle <0>: "});
  if (angle.none()) co_return;
  const AcGeVector3d normal = normal_of(object);
  const AcGePoint3d place = ocs_to_wcs(normal) * group_point(object, 10);
  const double by = angle.number - group_real(object, 50);
  transform_all(line, {object}, AcGeMatrix3d::rotation(by, normal, place));
}

Flow<> change_points(CommandLine& line, const std::vector<AcDbObjectId>& objects,
                     const Answer& point) {
  for (const AcDbObjectId object : objects) {
    const std::string kind(record_kind(object));
    if (kind == "LINE") {
      if (point.is_point()) change_line(line, object, point.point);
    } else if (kind == "CIRCLE") {
      if (point.is_point()) {
        change_circle(line, object, point.point);
        continue;
      }
      const Answer radius = co_await line.distance(
          {.text = L"Specify new circle radius <no change>: ", .bits = kNoZero | kNoNegative});
      GroupList groups;
      if (!radius.none()) change(line, object, groups.real(40, radius.number));
    } else if (kind == "TEXT" || kind == "INSERT") {
      Answer place = point;
      if (!place.is_point()) {
        place = co_await line.point(
            {.text = kind == "TEXT" ? L"Specify new text insertion point <no change>: "
                                    : L"Specify new block insertion point <no change>: "});
      }
      if (place.is_point()) change_place(line, object, place.point);
      if (kind == "TEXT") {
        co_await change_text(line, object);
      } else {
        co_await change_block(line, object);
      }
    } else {
      line.print(std::wstring(kind.begin(), kind.end()) + L" cannot be changed by a point.");
    }
    if (line.passing_over()) co_return;
  }
}

Flow<> change_command(CommandLine& line) {
  const std::vector<AcDbObjectId> objects = co_await select_changeable(line);
  if (objects.empty()) co_return;
  const Answer point = co_await line.point(
      {.text = L"Specify change point or [Properties]: ", .keywords = L"Properties"});
  if (point.is(L"Properties")) {
    co_await change_properties(line, objects, true);
  } else {
    co_await change_points(line, objects, point);
  }
}

constexpr CommandRow kRows[] = {
    {"CHANGE", "-CH", change_command,
     "objects, Enter, Properties, [Color/Elev/LAyer/LType/ltScale/LWeight/Thickness] and its value "
     "..., Enter | objects, Enter, point; for a text also style, height, angle, contents",
     "changes properties, ends of lines, circles, texts and block references"},
};

}  // namespace

std::span<const CommandRow> change_commands() { return kRows; }

}  // namespace cad
