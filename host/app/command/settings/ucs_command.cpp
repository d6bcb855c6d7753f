#include <cmath>
#include <numbers>
#include <optional>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/app/prompt/ucs.h"
#include "host/app/session.h"
#include "host/base/fold.h"
#include "host/db/make_object.h"
#include "host/db/open.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

/// Coordinates from origin and axes, with the third axis square to both; nothing when they are on
/// one line.
std::optional<AcGeMatrix3d> frame(const AcGePoint3d& origin, const AcGeVector3d& x,
                                  const AcGeVector3d& in_plane) {
  const AcGeVector3d z = x.crossProduct(in_plane);
  if (!(z.length() > 1e-12 * x.length() * in_plane.length())) return std::nullopt;
  AcGeMatrix3d ucs;
  ucs.setCoordSystem(origin, x.normal(), z.crossProduct(x).normal(), z.normal());
  return ucs;
}

/// The coordinates whose Z axis is this one, X by the rule of object coordinates.
AcGeMatrix3d frame_of_normal(const AcGePoint3d& origin, const AcGeVector3d& normal) {
  return AcGeMatrix3d::translation(origin.asVector()) * ocs_to_wcs(normal.normal());
}

/// Makes the coordinates those of the user. Points known in the user's coordinates are respelled.
void use(CommandLine& line, const AcGeMatrix3d& ucs, std::wstring_view name = {}) {
  const AcGePoint3d last = line.last_point();
  std::vector<AcGeMatrix3d>& former = line.session().former_ucs;
  constexpr std::size_t kMostFormer = 10;
  if (former.size() == kMostFormer) former.erase(former.begin());
  former.push_back(line.to_world());
  set_ucs(line.session(), ucs, name);
  line.set_last_point(last);
}

void use(CommandLine& line, const std::optional<AcGeMatrix3d>& ucs) {
  if (ucs)
    use(line, *ucs);
  else
    line.refuse(L"the points are on one line");
}

AcGeMatrix3d moved(const AcGeMatrix3d& ucs, const AcGePoint3d& origin) {
  AcGeMatrix3d result = ucs;
  result.setTranslation(origin.asVector());
  return result;
}

/// Origin by a point, then axes until Enter.
Flow<> ucs_by_points(CommandLine& line, AcGePoint3d origin) {
  const AcGeMatrix3d now = line.to_world();
  const Answer on_x =
      co_await line.point({.text = L"Specify point on X-axis or <Accept>: ", .from = &origin});
  if (!on_x.is_point()) {
    use(line, moved(now, origin));
    co_return;
  }
  const Answer on_plane = co_await line.point(
      {.text = L"Specify point on the XY plane or <Accept>: ", .from = &origin});
  const AcGeVector3d x = on_x.point - origin;
  const AcGeVector3d other =
      on_plane.is_point() ? on_plane.point - origin : now.column(2).crossProduct(x);
  use(line, frame(origin, x, other));
}

Flow<> ucs_of_origin(CommandLine& line) {
  const Answer origin = co_await line.point({.text = L"Specify new origin point <0,0,0>: "});
  const AcGeMatrix3d now = line.to_world();
  use(line, moved(now, origin.is_point() ? origin.point : now * AcGePoint3d()));
}

Flow<> ucs_of_three_points(CommandLine& line) {
  const AcGeMatrix3d now = line.to_world();
  const Answer origin = co_await line.point({.text = L"Specify new origin point <0,0,0>: "});
  const AcGePoint3d at = origin.is_point() ? origin.point : now * AcGePoint3d();
  const Answer on_x =
      co_await line.point({.text = L"Specify point on positive portion of X-axis: ", .from = &at});
  const Answer on_plane = co_await line.point(
      {.text = L"Specify point on positive-Y portion of the UCS XY plane: ", .from = &at});
  const AcGeVector3d x = on_x.is_point() ? on_x.point - at : now.column(0);
  const AcGeVector3d other =
      on_plane.is_point() ? on_plane.point - at : now.column(2).crossProduct(x);
  use(line, frame(at, x, other));
}

Flow<> ucs_of_z_axis(CommandLine& line) {
  const AcGeMatrix3d now = line.to_world();
  const Answer origin = co_await line.point({.text = L"Specify new origin point <0,0,0>: "});
  const AcGePoint3d at = origin.is_point() ? origin.point : now * AcGePoint3d();
  const Answer on_z =
      co_await line.point({.text = L"Specify point on positive portion of Z-axis: ", .from = &at});
  const AcGeVector3d z = on_z.is_point() ? on_z.point - at : now.column(2);
  if (z.isZeroLength())
    line.refuse(L"the Z axis has no length");
  else
    use(line, frame_of_normal(at, z));
}

/// A line gives the X axis, everything else its own coordinates at its first point.
Flow<> ucs_of_object(CommandLine& line) {
  const Answer object =
      co_await line.entity({.text = L"Select object to align UCS: ", .bits = kNoEnter});
  const AcDbObjectId id = object.entity;
  const AcGePoint3d first = group_point(id, 10);
  const AcGeVector3d normal = group_point(id, 210, {0, 0, 1}).asVector();
  if (equal_no_case(group_text(id, 0), L"LINE")) {
    const AcGePoint3d second = group_point(id, 11);
    const bool from_end = object.point.distanceTo(second) < object.point.distanceTo(first);
    const AcGePoint3d origin = from_end ? second : first;
    const AcGeVector3d x = (from_end ? first : second) - origin;
    use(line, frame(origin, x, normal.crossProduct(x)));
    co_return;
  }
  const AcGeMatrix3d ocs = ocs_to_wcs(normal);
  const double angle = group_real(id, 50);
  const bool turns = has_group(id, 50) && !equal_no_case(group_text(id, 0), L"ARC");
  const AcGeMatrix3d turned =
      ocs * AcGeMatrix3d::rotation(turns ? angle : 0.0, AcGeVector3d::kZAxis);
  use(line, moved(turned, ocs * first));
}

Flow<> ucs_turned(CommandLine& line, const AcGeVector3d& axis, const wchar_t* text) {
  const Answer angle = co_await line.turn({.text = text});
  const double by = angle.none() ? std::numbers::pi / 2 : angle.number;
  use(line, line.to_world() * AcGeMatrix3d::rotation(by, axis));
}

Flow<> ucs_turned_x(CommandLine& line) {
  co_await ucs_turned(line, AcGeVector3d::kXAxis, L"Specify rotation angle about X axis <90>: ");
}
Flow<> ucs_turned_y(CommandLine& line) {
  co_await ucs_turned(line, AcGeVector3d::kYAxis, L"Specify rotation angle about Y axis <90>: ");
}
Flow<> ucs_turned_z(CommandLine& line) {
  co_await ucs_turned(line, AcGeVector3d::kZAxis, L"Specify rotation angle about Z axis <90>: ");
}

Flow<> ucs_of_world(CommandLine& line) {
  use(line, AcGeMatrix3d());
  co_return;
}

/// There is one view, from above.
Flow<> ucs_of_view(CommandLine& line) {
  use(line, moved(AcGeMatrix3d(), line.to_world() * AcGePoint3d()));
  co_return;
}

Flow<> former_ucs(CommandLine& line) {
  std::vector<AcGeMatrix3d>& former = line.session().former_ucs;
  if (former.empty()) {
    line.print(L"No previous coordinate system saved.");
    co_return;
  }
  const AcGeMatrix3d before = former.back();
  former.pop_back();
  const AcGePoint3d last = line.last_point();
  set_ucs(line.session(), before);
  line.set_last_point(last);
}

// --- By name

Flow<> save_ucs(CommandLine& line) {
  const Answer name =
      co_await line.text({.text = L"Enter name to save current UCS: ", .bits = kNoEnter});
  const AcGeMatrix3d now = line.to_world();
  GroupList groups;
  groups.point(10, now * AcGePoint3d())
      .point(11, AcGePoint3d::kOrigin + now.column(0))
      .point(12, AcGePoint3d::kOrigin + now.column(1));
  const AcDbObjectId known = find_record(line.database(), "UCS", name.text);
  if (!known.isNull()) {
    line.check(change_object(known, groups));
    co_return;
  }
  GroupList made(L"UCS");
  made.text(2, name.text).integer(70, 0);
  for (const GroupValue& group : groups.groups()) made.add(group);
  line.check(make_record(line.database(), made));
}

Flow<> restore_ucs(CommandLine& line) {
  const Answer name =
      co_await line.text({.text = L"Enter name of UCS to restore: ", .bits = kNoEnter});
  const AcDbObjectId record = find_record(line.database(), "UCS", name.text);
  if (record.isNull()) {
    line.refuse(L"Cannot find UCS name \"" + name.text + L"\".");
    co_return;
  }
  const auto ucs = frame(group_point(record, 10), group_point(record, 11, {1, 0, 0}).asVector(),
                         group_point(record, 12, {0, 1, 0}).asVector());
  if (ucs) use(line, *ucs, group_text(record, 2));
}

Flow<> delete_ucs(CommandLine& line) {
  const Answer names = co_await line.text({.text = L"Enter UCS name(s) to delete <none>: "});
  if (names.none()) co_return;
  for (const AcDbObjectId id : matching_records(line.database(), "UCS", names.text)) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForWrite) != Acad::eOk) continue;
    object->erase();
    object->close();
  }
}

Flow<> list_ucs(CommandLine& line) {
  const Answer names = co_await line.text({.text = L"Enter UCS name(s) to list <*>: "});
  for (const AcDbObjectId id :
       matching_records(line.database(), "UCS", names.none() ? L"*" : names.text))
    line.print(L"\"" + group_text(id, 2) + L"\"");
}

struct Option {
  const wchar_t* name;
  Flow<> (*flow)(CommandLine&);
};
constexpr Option kOptions[] = {
    {L"World", ucs_of_world},   {L"Origin", ucs_of_origin},
    {L"Move", ucs_of_origin},   {L"3point", ucs_of_three_points},
    {L"ZAxis", ucs_of_z_axis},  {L"OBject", ucs_of_object},
    {L"Entity", ucs_of_object}, {L"X", ucs_turned_x},
    {L"Y", ucs_turned_y},       {L"Z", ucs_turned_z},
    {L"View", ucs_of_view},     {L"Previous", former_ucs},
    {L"Save", save_ucs},        {L"Restore", restore_ucs},
    {L"Delete", delete_ucs},    {L"?", list_ucs},
};
constexpr const wchar_t* kOptionWords =
    L"World Origin Move 3point ZAxis OBject Entity X Y Z View Previous Save Restore Delete ? New "
    L"NAmed Face";

auto option_flow(const Answer& answer) -> Flow<> (*)(CommandLine&) {
  for (const Option& row : kOptions)
    if (answer.is(row.name)) return row.flow;
  return nullptr;
}

Flow<> ucs_command(CommandLine& line) {
  Answer option = co_await line.point(
      {.text = L"Specify origin of UCS or [NAmed/OBject/Previous/View/World/X/Y/Z/ZAxis] "
               L"<World>: ",
       .keywords = kOptionWords});
  // Words that only introduce others.
  while (option.is(L"New") || option.is(L"NAmed"))
    option = co_await line.point(
        {.text = L"Specify origin of new UCS or [ZAxis/3point/OBject/View/X/Y/Z/Restore/Save/"
                 L"Delete/?] <0,0,0>: ",
         .keywords = kOptionWords,
         .bits = kNoEnter});
  if (option.none()) co_await ucs_of_world(line);
  if (option.is_point()) co_await ucs_by_points(line, option.point);
  if (option.is(L"Face")) line.refuse(L"there are no solids with faces");
  if (const auto flow = option_flow(option)) co_await flow(line);
}

constexpr CommandRow kRows[] = {
    {"UCS", "", ucs_command,
     "origin, point on X, point in XY | World | Origin, point | 3point, three points | ZAxis, two "
     "points | OBject, object | X/Y/Z, angle | Previous | View | Save/Restore/Delete, name",
     "sets the coordinates in which points are given"},
};

}  // namespace

std::span<const CommandRow> ucs_commands() { return kRows; }

}  // namespace cad
