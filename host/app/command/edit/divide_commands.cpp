// DIVIDE and MEASURE: points or blocks along a curve.

#include <cmath>

#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/app/command/settings/records.h"
#include "host/app/session.h"
#include "host/db/curve.h"
#include "host/geometry/angle.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr int kMostMarks = 32767;

/// What is put along the curve: a point, or a block.
struct Mark {
  std::wstring block;  ///< empty: a point
  bool aligned = true;
};

Flow<bool> ask_block(CommandLine& line, Mark& mark) {
  const Answer name =
      co_await line.text({.text = L"Enter name of block to insert: ", .bits = kNoEnter});
  if (find_record(line.database(), "BLOCK_RECORD", name.text).isNull()) {
    line.refuse(L"Cannot find block \"" + name.text + L"\".");
    co_return false;
  }
  const Answer align = co_await line.keyword(
      {.text = L"Align block with object? [Yes/No] <Y>: ", .keywords = L"Yes No"});
  mark = {name.text, !align.is(L"No")};
  co_return true;
}

AcDbObjectId place(CommandLine& line, AcDbObjectId beside, const Curve& curve, double distance,
                   const Mark& mark) {
  const double param = curve.param_at_distance(distance);
  const AcGePoint3d at = curve.point_at(param);
  if (mark.block.empty()) return draw_beside(line, beside, GroupList(L"POINT").point(10, at));
  const AcGeVector3d normal = line.normal();
  const AcGeMatrix3d own = ocs_to_wcs(normal).transpose();
  GroupList insert(L"INSERT");
  insert.text(2, mark.block).point(10, own * at);
  if (mark.aligned) {
    const AcGeVector3d along = own * curve.first_derivative(param);
    insert.real(50, full_turn(std::atan2(along.y, along.x)));
  }
  insert.point(210, AcGePoint3d::kOrigin + normal);
  return draw_beside(line, beside, insert);
}

/// Marks at these distances, which become the previous selection.
void place_all(CommandLine& line, AcDbObjectId object, const Curve& curve,
               const std::vector<double>& distances, const Mark& mark) {
  std::vector<AcDbObjectId> made;
  for (const double distance : distances) {
    const AcDbObjectId drawn = place(line, object, curve, distance, mark);
    if (drawn.isNull()) return;
    made.push_back(drawn);
  }
  if (!made.empty()) line.session().previous_selection = std::move(made);
}

/// The curve of a picked object; nothing, and told so, for what cannot be divided.
std::optional<Curve> curve_to_divide(CommandLine& line, const Answer& picked,
                                     std::wstring_view command) {
  std::optional<Curve> curve = curve_of(picked.entity);
  if (curve && curve->is_bounded() && curve->length() > 0.0) return curve;
  line.print(L"Cannot " + std::wstring(command) + L" that object.");
  return std::nullopt;
}

Flow<> divide_command(CommandLine& line) {
  const Answer picked = co_await line.entity({.text = L"Select object to divide: "});
  if (!picked.is_entity()) co_return;
  const std::optional<Curve> curve = curve_to_divide(line, picked, L"divide");
  if (!curve) co_return;
  Mark mark;
  Answer number = co_await line.integer({.text = L"Enter the number of segments or [Block]: ",
                                         .keywords = L"Block",
                                         .bits = kNoEnter | kNoZero | kNoNegative});
  if (number.is(L"Block")) {
    const bool known = co_await ask_block(line, mark);
    if (!known) co_return;
    number = co_await line.integer(
        {.text = L"Enter the number of segments: ", .bits = kNoEnter | kNoZero | kNoNegative});
  }
  const int count = number.integer();
  if (count < 2 || count > kMostMarks) {
    line.print(L"Requires an integer between 2 and 32767.");
    co_return;
  }
  std::vector<double> distances;
  const double whole = curve->length();
  for (int i = curve->is_closed() ? 0 : 1; i < count; ++i) distances.push_back(whole * i / count);
  place_all(line, picked.entity, *curve, distances, mark);
}

Flow<> measure_command(CommandLine& line) {
  const Answer picked = co_await line.entity({.text = L"Select object to measure: "});
  if (!picked.is_entity()) co_return;
  const std::optional<Curve> curve = curve_to_divide(line, picked, L"measure");
  if (!curve) co_return;
  Mark mark;
  Answer given = co_await line.distance({.text = L"Specify length of segment or [Block]: ",
                                         .keywords = L"Block",
                                         .bits = kNoEnter | kNoZero | kNoNegative});
  if (given.is(L"Block")) {
    const bool known = co_await ask_block(line, mark);
    if (!known) co_return;
    given = co_await line.distance(
        {.text = L"Specify length of segment: ", .bits = kNoEnter | kNoZero | kNoNegative});
  }
  const double whole = curve->length();
  if (whole / given.number > kMostMarks) {
    line.refuse(L"The length of a segment is too small: more than 32767 would be needed.");
    co_return;
  }
  // From the end nearer to the pick.
  const double at = curve->distance_at(curve->closest_param(picked.point));
  const bool from_end = !curve->is_closed() && at > whole / 2.0;
  std::vector<double> distances;
  const double slack = 1e-9 * whole;
  for (int i = 1; given.number * i <= whole + slack; ++i) {
    const double distance = std::min(given.number * i, whole);
    distances.push_back(from_end ? whole - distance : distance);
  }
  place_all(line, picked.entity, *curve, distances, mark);
}

constexpr CommandRow kRows[] = {
    {"DIVIDE", "DIV", divide_command,
     "object, number of segments | object, Block, name, Yes or No, number of segments",
     "puts points or blocks where a curve is divided into equal parts"},
    {"MEASURE", "ME", measure_command, "object, length | object, Block, name, Yes or No, length",
     "puts points or blocks along a curve, at equal lengths from the end nearer to the pick"},
};

}  // namespace

std::span<const CommandRow> divide_commands() { return kRows; }

}  // namespace cad
