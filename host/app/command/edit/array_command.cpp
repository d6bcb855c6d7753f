#include <cmath>
#include <numbers>

#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/db/record_groups.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr std::size_t kMostCopies = 100'000;

bool too_many(CommandLine& line, double copies) {
  if (copies <= static_cast<double>(kMostCopies)) return false;
  line.refuse(L"An array makes at most 100000 copies.");
  return true;
}

/// The place an object is at: its first point.
AcGePoint3d place_of_object(AcDbObjectId object) {
  RecordGroups record;
  const Group* const point = record.read(object) ? record.find(10) : nullptr;
  if (!point || point->type != Group::Type::kPoint) return {};
  const AcGePoint3d place(point->numbers[0], point->numbers[1], point->numbers[2]);
  const Group* const normal = record.find(210);
  if (!normal) return place;
  return ocs_to_wcs({normal->numbers[0], normal->numbers[1], normal->numbers[2]}) * place;
}

void copy_to(CommandLine& line, const std::vector<AcDbObjectId>& objects, const AcGeMatrix3d& map) {
  transform_copies(line, copy_all(line, objects), map);
}

Flow<> rectangular(CommandLine& line, const std::vector<AcDbObjectId>& objects) {
  constexpr unsigned kCount = kNoZero | kNoNegative;
  const Answer rows_given =
      co_await line.integer({.text = L"Enter the number of rows (---) <1>: ", .bits = kCount});
  const Answer columns_given =
      co_await line.integer({.text = L"Enter the number of columns (|||) <1>: ", .bits = kCount});
  const int rows = rows_given.none() ? 1 : rows_given.integer();
  const int columns = columns_given.none() ? 1 : columns_given.integer();
  if (rows == 1 && columns == 1) {
    line.print(L"One-element array, nothing to do.");
    co_return;
  }
  if (too_many(line, static_cast<double>(rows) * columns * static_cast<double>(objects.size()))) {
    co_return;
  }
  double between_rows = 0.0, between_columns = 0.0;
  if (rows > 1) {
    const Answer given = co_await line.distance(
        {.text = L"Enter the distance between rows (---): ", .bits = kNoEnter | kNoZero});
    between_rows = given.number;
  }
  if (columns > 1) {
    const Answer given = co_await line.distance(
        {.text = L"Specify the distance between columns (|||): ", .bits = kNoEnter | kNoZero});
    between_columns = given.number;
  }
  const AcGeMatrix3d world = line.to_world();
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      if (row == 0 && column == 0) continue;
      const AcGeVector3d by(between_columns * column, between_rows * row, 0.0);
      copy_to(line, objects, AcGeMatrix3d::translation(world * by));
      if (line.passing_over()) co_return;
    }
  }
}

Flow<> polar(CommandLine& line, const std::vector<AcDbObjectId>& objects) {
  AcGePoint3d base = place_of_object(objects.back());
  Answer center = co_await line.point({.text = L"Specify center point of array or [Base]: ",
                                       .keywords = L"Base",
                                       .bits = kNoEnter});
  if (center.is(L"Base")) {
    const Answer given =
        co_await line.point({.text = L"Specify the base point of objects: ", .bits = kNoEnter});
    base = given.point;
    center = co_await line.point({.text = L"Specify center point of array: ", .bits = kNoEnter});
  }
  const Answer items = co_await line.integer(
      {.text = L"Enter the number of items in the array: ", .bits = kNoZero | kNoNegative});
  const Answer fill =
      co_await line.turn({.text = L"Specify the angle to fill (+=ccw, -=cw) <360>: "});
  constexpr double kTurn = 2.0 * std::numbers::pi;
  const double whole = fill.none() || fill.number == 0.0 ? kTurn : fill.number;
  const bool around = std::fabs(std::fabs(whole) - kTurn) < 1e-9;
  int count = items.integer();
  double step = 0.0;
  if (items.none()) {
    const Answer between =
        co_await line.turn({.text = L"Angle between items: ", .bits = kNoEnter | kNoZero});
    step = std::copysign(between.number, whole);
    const double fitting = std::fabs(whole / step) + (around ? 0.0 : 1.0) + 1e-9;
    if (too_many(line, fitting * static_cast<double>(objects.size()))) co_return;
    count = static_cast<int>(fitting);
  } else {
    step = around ? whole / count : whole / std::max(count - 1, 1);
  }
  const Answer turning = co_await line.keyword(
      {.text = L"Rotate arrayed objects? [Yes/No] <Y>: ", .keywords = L"Yes No"});
  if (count < 2) {
    line.print(L"One-element array, nothing to do.");
    co_return;
  }
  if (too_many(line, static_cast<double>(count) * static_cast<double>(objects.size()))) co_return;
  for (int i = 1; i < count; ++i) {
    const AcGeMatrix3d turn = AcGeMatrix3d::rotation(step * i, line.normal(), center.point);
    const AcGeMatrix3d map =
        turning.is(L"No") ? AcGeMatrix3d::translation(turn * base - base) : turn;
    copy_to(line, objects, map);
    if (line.passing_over()) co_return;
  }
}

Flow<> array_command(CommandLine& line) {
  const Answer which = co_await line.selection();
  const std::vector<AcDbObjectId> objects = which.selection;
  if (objects.empty()) co_return;
  const Answer type =
      co_await line.keyword({.text = L"Enter the type of array [Rectangular/Polar] <R>: ",
                             .keywords = L"Rectangular Polar"});
  if (type.is(L"Polar")) {
    co_await polar(line, objects);
  } else {
    co_await rectangular(line, objects);
  }
}

constexpr CommandRow kRows[] = {
    {"ARRAY", "AR", array_command,
     "objects, Enter, Rectangular, rows, columns, distance between rows, between columns | "
     "objects, "
     "Enter, Polar, center or [Base], items, angle, Yes or No",
     "copies objects in rows or around a point"},
};

}  // namespace

std::span<const CommandRow> array_commands() { return kRows; }

}  // namespace cad
