#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/geometry/plan_area.h"

namespace cad {
namespace {

PlanArea area_of(const std::vector<AcGePoint3d>& corners) {
  std::vector<AcGePoint2d> points;
  for (const AcGePoint3d& corner : corners) points.emplace_back(corner.x, corner.y);
  return PlanArea(std::move(points));
}

Flow<> stretch_command(CommandLine& line) {
  const Answer which = co_await line.selection(
      {.text = L"Select objects to stretch by crossing-window or crossing-polygon...\n"
               L"Select objects: "});
  const std::vector<AcDbObjectId> objects = changeable(line, which.selection);
  if (objects.empty()) co_return;
  const Answer base =
      co_await line.point({.text = L"Specify base point or [Displacement] <Displacement>: ",
                           .keywords = L"Displacement"});
  AcGeVector3d by;
  const AcGePoint3d origin = line.to_world() * AcGePoint3d();
  if (base.is_point()) {
    const Answer to =
        co_await line.point({.text = L"Specify second point or <use first point as displacement>: ",
                             .from = &base.point});
    by = to.is_point() ? to.point - base.point : base.point - origin;
  } else {
    const Answer given = co_await line.point({.text = L"Specify displacement <0.0, 0.0, 0.0>: "});
    if (!given.is_point()) co_return;
    by = given.point - origin;
  }
  // What was not selected by crossing moves as a whole.
  if (which.crossing.empty()) {
    transform_all(line, objects, AcGeMatrix3d::translation(by));
    co_return;
  }
  const PlanArea area = area_of(which.crossing);
  std::size_t failed = 0;
  for (const AcDbObjectId object : objects) {
    const Acad::ErrorStatus status = stretch_object(
        object, by, [&](const AcGePoint3d& p) { return area.holds(AcGePoint2d(p.x, p.y)); });
    if (status != Acad::eOk) ++failed;
  }
  if (failed > 0) {
    line.print(counted(failed, L"object cannot be stretched so and was left as it is.",
                       L"objects cannot be stretched so and were left as they are."));
  }
}

constexpr CommandRow kRows[] = {
    {"STRETCH", "S", stretch_command,
     "objects by a crossing window or polygon, Enter, base point or Displacement, second point or "
     "Enter",
     "moves the points inside of a window"},
};

}  // namespace

std::span<const CommandRow> stretch_commands() { return kRows; }

}  // namespace cad
