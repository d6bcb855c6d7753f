// MOVE, COPY, ROTATE, SCALE, MIRROR, ALIGN: the whole of each object goes elsewhere.

#include <cmath>
#include <numbers>
#include <optional>

#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"

namespace cad {
namespace {

/// Where the user's coordinates begin: a point given as a displacement counts from there.
AcGePoint3d user_origin(const CommandLine& line) { return line.to_world() * AcGePoint3d(); }

/// By how far objects move: between two points, or one point as a displacement. Nothing for an
/// answer that was not given.
Flow<std::optional<AcGeVector3d>> ask_displacement(CommandLine& line) {
  const Answer base =
      co_await line.point({.text = L"Specify base point or [Displacement] <Displacement>: ",
                           .keywords = L"Displacement"});
  if (!base.is_point()) {
    const Answer by = co_await line.point({.text = L"Specify displacement <0.0, 0.0, 0.0>: "});
    if (!by.is_point()) co_return std::nullopt;
    co_return by.point - user_origin(line);
  }
  const Answer to =
      co_await line.point({.text = L"Specify second point or <use first point as displacement>: ",
                           .from = &base.point});
  co_return to.is_point() ? to.point - base.point : base.point - user_origin(line);
}

Flow<> move_command(CommandLine& line) {
  const std::vector<AcDbObjectId> objects = co_await select_changeable(line);
  if (objects.empty()) co_return;
  const std::optional<AcGeVector3d> by = co_await ask_displacement(line);
  if (by) transform_all(line, objects, AcGeMatrix3d::translation(*by));
}

void copy_by(CommandLine& line, const std::vector<AcDbObjectId>& objects, const AcGeVector3d& by,
             EditLog& log) {
  log.begin_step();
  const std::vector<AcDbObjectId> copies = copy_all(line, objects);
  for (const AcDbObjectId copy : copies) log.made(copy);
  transform_copies(line, copies, AcGeMatrix3d::translation(by));
}

/// Copies in a row: the original is one of the items.
Flow<> copy_array(CommandLine& line, const std::vector<AcDbObjectId>& objects,
                  const AcGePoint3d& base, EditLog& log) {
  const Answer items = co_await line.integer(
      {.text = L"Enter number of items to array: ", .bits = kNoEnter | kNoZero | kNoNegative});
  const Answer to = co_await line.point({.text = L"Specify second point or [Fit]: ",
                                         .keywords = L"Fit",
                                         .bits = kNoEnter,
                                         .from = &base});
  constexpr int kMostItems = 32767;
  if (items.integer() < 2 || items.integer() > kMostItems) {
    line.refuse(L"The number of items must be 2 to 32767.");
    co_return;
  }
  AcGeVector3d step = to.point - base;
  if (to.is(L"Fit")) {
    const Answer last =
        co_await line.point({.text = L"Specify second point: ", .bits = kNoEnter, .from = &base});
    step = (last.point - base) / static_cast<double>(items.integer() - 1);
  }
  for (int i = 1; i < items.integer(); ++i) copy_by(line, objects, step * i, log);
}

Flow<> copy_command(CommandLine& line) {
  const Answer which = co_await line.selection();
  const std::vector<AcDbObjectId> objects = which.selection;
  if (objects.empty()) co_return;
  bool single = line.integer_variable(L"COPYMODE") != 0;
  Answer base;
  for (;;) {
    base = co_await line.point(
        {.text = L"Specify base point or [Displacement/mOde/Multiple] <Displacement>: ",
         .keywords = L"Displacement mOde Multiple"});
    if (base.is(L"Multiple")) single = false;
    if (base.is(L"mOde")) {
      const Answer mode =
          co_await line.keyword({.text = L"Enter a copy mode option [Single/Multiple] <Multiple>: ",
                                 .keywords = L"Single Multiple"});
      single = mode.is(L"Single");
      line.set_variable(L"COPYMODE", single ? 1 : 0);
    }
    if (!base.is(L"Multiple") && !base.is(L"mOde")) break;
  }
  EditLog log;
  if (!base.is_point()) {
    const Answer by = co_await line.point({.text = L"Specify displacement <0.0, 0.0, 0.0>: "});
    if (by.is_point()) copy_by(line, objects, by.point - user_origin(line), log);
    co_return;
  }
  for (bool first = true;; first = false) {
    const AcGePoint3d from = base.point;
    const Answer to = co_await line.point(
        {.text = first ? L"Specify second point or [Array] <use first point as displacement>: "
                       : L"Specify second point or [Array/Exit/Undo] <Exit>: ",
         .keywords = first ? L"Array" : L"Array Exit Undo",
         .bits = first ? 0u : unsigned{kMayEnd},
         .from = &from});
    if (to.is(L"Undo")) {
      if (!log.undo()) line.print(L"There is nothing to take back.");
      continue;
    }
    if (to.is(L"Array")) {
      co_await copy_array(line, objects, base.point, log);
    } else if (to.is_point()) {
      copy_by(line, objects, to.point - base.point, log);
    } else {
      if (first) copy_by(line, objects, base.point - user_origin(line), log);
      co_return;
    }
    if (single || line.passing_over()) co_return;
  }
}

double angle_between(const CommandLine& line, const AcGePoint3d& from, const AcGePoint3d& to) {
  const AcGeVector3d way = line.to_user() * (to - from);
  return std::atan2(way.y, way.x);
}

/// A turn about the user's Z axis without the noise that sines of round angles have.
AcGeMatrix3d turn_about(const CommandLine& line, double angle, const AcGePoint3d& center) {
  AcGeMatrix3d turn = AcGeMatrix3d::rotation(angle, line.normal());
  for (unsigned row = 0; row < 3; ++row) {
    for (unsigned column = 0; column < 3; ++column) {
      double& entry = turn(row, column);
      constexpr double kNoise = 1e-15;
      if (std::fabs(entry) < kNoise) entry = 0.0;
      if (std::fabs(std::fabs(entry) - 1.0) < kNoise) entry = std::copysign(1.0, entry);
    }
  }
  turn.setTranslation(center.asVector() - turn * center.asVector());
  return turn;
}

/// Maps the objects or, after Copy, copies of them.
void map_objects(CommandLine& line, const std::vector<AcDbObjectId>& objects, bool copy,
                 const AcGeMatrix3d& map, MirroredText text = MirroredText::kReadable) {
  copy ? transform_copies(line, copy_all(line, objects), map, text)
       : transform_all(line, objects, map, text);
}

Flow<> rotate_command(CommandLine& line) {
  const std::vector<AcDbObjectId> objects = co_await select_changeable(line);
  if (objects.empty()) co_return;
  const Answer base = co_await line.point({.text = L"Specify base point: ", .bits = kNoEnter});
  bool copy = false;
  for (;;) {
    const Answer angle =
        co_await line.turn({.text = L"Specify rotation angle or [Copy/Reference] <0>: ",
                            .keywords = L"Copy Reference",
                            .from = &base.point});
    if (angle.is(L"Copy")) {
      line.remark(L"Rotating a copy of the selected objects.");
      copy = true;
      continue;
    }
    double turn = angle.number;
    if (angle.is(L"Reference")) {
      const Answer before = co_await line.turn({.text = L"Specify the reference angle <0>: "});
      const Answer after = co_await line.turn({.text = L"Specify the new angle or [Points] <0>: ",
                                               .keywords = L"Points",
                                               .from = &base.point});
      double to = after.number;
      if (after.is(L"Points")) {
        const Answer a = co_await line.point({.text = L"Specify first point: ", .bits = kNoEnter});
        const Answer b = co_await line.point(
            {.text = L"Specify second point: ", .bits = kNoEnter, .from = &a.point});
        to = angle_between(line, a.point, b.point);
      }
      turn = to - before.number;
    }
    map_objects(line, objects, copy, turn_about(line, turn, base.point));
    co_return;
  }
}

Flow<> scale_command(CommandLine& line) {
  const std::vector<AcDbObjectId> objects = co_await select_changeable(line);
  if (objects.empty()) co_return;
  const Answer base = co_await line.point({.text = L"Specify base point: ", .bits = kNoEnter});
  constexpr unsigned kPositive = kNoZero | kNoNegative;
  bool copy = false;
  for (;;) {
    const Answer given =
        co_await line.distance({.text = L"Specify scale factor or [Copy/Reference]: ",
                                .keywords = L"Copy Reference",
                                .bits = kPositive | kNoEnter,
                                .from = &base.point});
    if (given.is(L"Copy")) {
      line.remark(L"Scaling a copy of the selected objects.");
      copy = true;
      continue;
    }
    double factor = given.number;
    if (given.is(L"Reference")) {
      const Answer before =
          co_await line.distance({.text = L"Specify reference length <1.0>: ", .bits = kPositive});
      const Answer after = co_await line.distance({.text = L"Specify new length or [Points]: ",
                                                   .keywords = L"Points",
                                                   .bits = kPositive | kNoEnter,
                                                   .from = &base.point});
      double length = after.number;
      if (after.is(L"Points")) {
        const Answer shown = co_await line.distance(
            {.text = L"Specify first point: ", .bits = kPositive | kNoEnter});
        length = shown.number;
      }
      factor = length / (before.none() ? 1.0 : before.number);
    }
    map_objects(line, objects, copy, AcGeMatrix3d::scaling(factor, base.point));
    co_return;
  }
}

Flow<> mirror_command(CommandLine& line) {
  const Answer which = co_await line.selection();
  if (which.selection.empty()) co_return;
  const Answer a =
      co_await line.point({.text = L"Specify first point of mirror line: ", .bits = kNoEnter});
  const Answer b = co_await line.point(
      {.text = L"Specify second point of mirror line: ", .bits = kNoEnter, .from = &a.point});
  const Answer erasing = co_await line.keyword(
      {.text = L"Erase source objects? [Yes/No] <N>: ", .keywords = L"Yes No"});
  const AcGeVector3d along = b.point - a.point;
  const AcGeVector3d across = along.crossProduct(line.normal());
  if (across.isZeroLength()) {
    line.refuse(L"The mirror line needs two different points.");
    co_return;
  }
  std::vector<AcDbObjectId> objects = which.selection;
  if (erasing.is(L"Yes")) objects = changeable(line, objects);
  map_objects(
      line, objects, !erasing.is(L"Yes"), AcGeMatrix3d::mirroring(AcGePlane(a.point, across)),
      line.integer_variable(L"MIRRTEXT") != 0 ? MirroredText::kMirrored : MirroredText::kReadable);
}

Flow<> align_command(CommandLine& line) {
  const std::vector<AcDbObjectId> objects = co_await select_changeable(line);
  if (objects.empty()) co_return;
  const Answer from =
      co_await line.point({.text = L"Specify first source point: ", .bits = kNoEnter});
  const Answer to = co_await line.point(
      {.text = L"Specify first destination point: ", .bits = kNoEnter, .from = &from.point});
  const AcGeMatrix3d move = AcGeMatrix3d::translation(to.point - from.point);
  const Answer second_from = co_await line.point({.text = L"Specify second source point: "});
  if (!second_from.is_point()) {
    transform_all(line, objects, move);
    co_return;
  }
  const Answer second_to = co_await line.point({.text = L"Specify second destination point: ",
                                                .bits = kNoEnter,
                                                .from = &second_from.point});
  const Answer third = co_await line.point({.text = L"Specify third source point or <continue>: "});
  if (third.is_point()) {
    line.refuse(L"aligning by three points is not offered; press Enter after two.");
    co_return;
  }
  const Answer scaled = co_await line.keyword(
      {.text = L"Scale objects based on alignment points? [Yes/No] <N>: ", .keywords = L"Yes No"});
  const double before = from.point.distanceTo(second_from.point);
  const double after = to.point.distanceTo(second_to.point);
  if (before == 0.0 || after == 0.0) {
    line.refuse(L"The source points, and the destination points, must differ.");
    co_return;
  }
  const double turn = angle_between(line, to.point, second_to.point) -
                      angle_between(line, from.point, second_from.point);
  AcGeMatrix3d map = turn_about(line, turn, to.point) * move;
  if (scaled.is(L"Yes")) map = AcGeMatrix3d::scaling(after / before, to.point) * map;
  transform_all(line, objects, map);
}

constexpr CommandRow kRows[] = {
    {"MOVE", "M", move_command, "objects, Enter, base point or Displacement, second point or Enter",
     "moves objects"},
    {"COPY", "CO CP", copy_command,
     "objects, Enter, base point or [Displacement/mOde/Multiple], second points or [Array/Exit/"
     "Undo] ..., Enter",
     "copies objects", CommandRow::kEndsWithEnter},
    {"ROTATE", "RO", rotate_command, "objects, Enter, base point, angle or [Copy/Reference]",
     "turns objects about a point"},
    {"SCALE", "SC", scale_command, "objects, Enter, base point, factor or [Copy/Reference]",
     "makes objects larger or smaller"},
    {"MIRROR", "MI", mirror_command, "objects, Enter, first point, second point, Yes or No",
     "mirrors objects in a line"},
    {"ALIGN", "AL", align_command,
     "objects, Enter, source and destination point, source and destination point, Enter, Yes or "
     "No",
     "moves and turns objects from two points to two others"},
};

}  // namespace

std::span<const CommandRow> move_commands() { return kRows; }

}  // namespace cad
