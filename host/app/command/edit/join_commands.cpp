// JOIN and REVERSE.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/app/command/edit/joining.h"
#include "host/db/curve.h"
#include "host/db/make_object.h"
#include "host/db/record.h"

namespace cad {
namespace {

constexpr double kSame = 1e-6;
constexpr double kTurn = 2.0 * std::numbers::pi;

bool change(CommandLine& line, AcDbObjectId object, const GroupList& groups) {
  return line.check(change_object(object, groups));
}

/// Lines on one straight line, gaps or not, as the longest of them.
std::vector<AcDbObjectId> join_lines(CommandLine& line, AcDbObjectId source,
                                     const std::vector<AcDbObjectId>& others) {
  const std::optional<Curve> curve = curve_of(source);
  if (!curve) return {};
  const AcGePoint3d start = curve->start_point();
  const AcGeVector3d along = (curve->end_point() - start).normal();
  double low = 0.0, high = curve->length();
  std::vector<AcDbObjectId> joined;
  for (const AcDbObjectId other : others) {
    const std::optional<Curve> piece = curve_of(other);
    if (other == source || record_kind(other) != "LINE" || !piece) continue;
    const AcGeVector3d a = piece->start_point() - start, b = piece->end_point() - start;
    if (a.crossProduct(along).length() > kSame || b.crossProduct(along).length() > kSame) continue;
    low = std::min({low, a.dotProduct(along), b.dotProduct(along)});
    high = std::max({high, a.dotProduct(along), b.dotProduct(along)});
    joined.push_back(other);
  }
  GroupList groups;
  groups.point(10, start + along * low).point(11, start + along * high);
  if (joined.empty() || !change(line, source, groups)) return {};
  return joined;
}

/// Arcs of one circle: from the source on, counter-clockwise, as far as they reach.
std::vector<AcDbObjectId> join_arcs(CommandLine& line, AcDbObjectId source,
                                    const std::vector<AcDbObjectId>& others) {
  const std::optional<Curve> curve = curve_of(source);
  if (!curve) return {};
  const Segment& arc = curve->segments()[0];
  const double from = curve->start_param();
  double sweep = curve->end_param() - from;
  std::vector<AcDbObjectId> joined;
  for (const AcDbObjectId other : others) {
    const std::optional<Curve> piece = curve_of(other);
    if (other == source || record_kind(other) != "ARC" || !piece) continue;
    const Segment& s = piece->segments()[0];
    const bool same = s.center().distanceTo(arc.center()) < kSame &&
                      std::fabs(s.radius() - arc.radius()) < kSame &&
                      (s.normal() - arc.normal()).length() < kSame;
    if (!same) continue;
    const double end = piece->end_param() - from;
    sweep = std::max(sweep, end - kTurn * std::floor(end / kTurn));
    joined.push_back(other);
  }
  GroupList groups;
  groups.real(50, from).real(51, from + sweep);
  if (joined.empty() || !change(line, source, groups)) return {};
  return joined;
}

/// What goes on at the ends of a polyline, or of a line or arc, which becomes one.
std::vector<AcDbObjectId> join_ends(CommandLine& line, AcDbObjectId source,
                                    const std::vector<AcDbObjectId>& others) {
  std::optional<PolylineShape> shape = joinable_shape(source);
  if (!shape) return {};
  std::vector<AcDbObjectId> rest = others;
  std::erase(rest, source);
  const std::vector<AcDbObjectId> joined = join_to(*shape, rest, 0.0);
  if (joined.empty()) return {};
  const std::string_view kind = record_kind(source);
  const bool polyline = kind == "LWPOLYLINE" || kind == "POLYLINE";
  const AcDbObjectId now = polyline ? set_polyline_shape(line, source, *shape)
                                    : draw_polyline_like(line, source, *shape, Data::kTake);
  if (now.isNull()) return {};
  if (!polyline) erase(source);
  return joined;
}

void join(CommandLine& line, AcDbObjectId source, const std::vector<AcDbObjectId>& others) {
  const std::string_view kind = record_kind(source);
  std::vector<AcDbObjectId> joined;
  if (kind == "LINE") joined = join_lines(line, source, others);
  if (kind == "ARC") joined = join_arcs(line, source, others);
  if (joined.empty() && !line.passing_over()) joined = join_ends(line, source, others);
  for (const AcDbObjectId object : joined) erase(object);
  line.remark(
      counted(joined.size(), L"object joined to the source", L"objects joined to the source"));
}

Flow<> join_command(CommandLine& line) {
  const Answer first = co_await line.selection(
      {.text = L"Select source object or multiple objects to join at once: "});
  const std::vector<AcDbObjectId> sources = changeable(line, first.selection);
  if (sources.empty()) co_return;
  if (sources.size() > 1) {
    // A polyline takes the others in; without one the first does.
    const auto polyline = std::find_if(sources.begin(), sources.end(), [](AcDbObjectId id) {
      return record_kind(id) == "LWPOLYLINE" || record_kind(id) == "POLYLINE";
    });
    join(line, polyline == sources.end() ? sources.front() : *polyline, sources);
    co_return;
  }
  const AcDbObjectId source = sources.front();
  const std::vector<AcDbObjectId> others = co_await select_changeable(line);
  join(line, source, others);
}

bool reverse(CommandLine& line, AcDbObjectId object) {
  if (record_kind(object) == "LINE") {
    const std::optional<Curve> curve = curve_of(object);
    GroupList groups;
    groups.point(10, curve->end_point()).point(11, curve->start_point());
    return change(line, object, groups);
  }
  std::optional<PolylineShape> shape = polyline_shape(object);
  if (!shape) return false;
  shape->reverse();
  return !set_polyline_shape(line, object, *shape).isNull();
}

Flow<> reverse_command(CommandLine& line) {
  const Answer which = co_await line.selection(
      {.text = L"Select a line, polyline, spline, or helix to reverse direction: "});
  std::size_t refused = 0;
  for (const AcDbObjectId object : changeable(line, which.selection)) {
    if (!reverse(line, object)) ++refused;
  }
  if (refused > 0) {
    line.print(counted(refused, L"object has no direction that can be reversed.",
                       L"objects have no direction that can be reversed."));
  }
}

constexpr CommandRow kRows[] = {
    {"JOIN", "J", join_command, "source, Enter, objects, Enter | objects, Enter",
     "makes one object of lines, arcs and polylines that go on in each other"},
    {"REVERSE", "", reverse_command, "objects, Enter",
     "exchanges start and end of lines and polylines"},
};

}  // namespace

std::span<const CommandRow> join_commands() { return kRows; }

}  // namespace cad
