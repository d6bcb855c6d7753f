// FILLET and CHAMFER.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/app/command/draw/draw.h"
#include "host/app/command/edit/corner_math.h"
#include "host/app/command/edit/curve_entity.h"
#include "host/app/command/edit/edit_commands.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"
#include "host/geometry/angle.h"

namespace cad {
namespace {

constexpr double kSame = 1e-9;

/// One of the two objects of a corner.
struct Side {
  CurveEntity entity;
  AcGePoint3d pick;  ///< at the object's elevation
  std::size_t segment;
  bool polyline;

  const Segment& piece() const { return entity.curve().segments()[segment]; }
};

std::optional<Side> side_of(CommandLine& line, const Answer& picked) {
  if (on_locked_layer(picked.entity)) {
    line.print(L"Object is on a locked layer.");
    return std::nullopt;
  }
  std::optional<CurveEntity> entity = CurveEntity::of(picked.entity);
  const bool takes_corners = entity && entity->kind() != Curve::Kind::kEllipse &&
                             entity->kind() != Curve::Kind::kPolyline3d;
  if (!takes_corners) {
    line.print(L"Lines, arcs, circles and polylines have corners; this object has none.");
    return std::nullopt;
  }
  const double place = entity->nearest(picked.point);
  const double last = static_cast<double>(entity->curve().segments().size());
  const auto segment = static_cast<std::size_t>(std::clamp(std::floor(place), 0.0, last - 1.0));
  const bool polyline = entity->kind() == Curve::Kind::kPolyline;
  AcGePoint3d pick = picked.point;
  pick.z = entity->curve().segments()[0].start().z;
  return Side{std::move(*entity), pick, segment, polyline};
}

bool in_one_plan(const Side& a, const Side& b) {
  const auto flat = [&](const Side& side) {
    const Segment& s = side.piece();
    const double z = a.piece().start().z;
    const bool level = std::fabs(s.start().z - z) < kSame && std::fabs(s.end().z - z) < kSame;
    return level && (!s.is_arc() || std::fabs(std::fabs(s.normal().z) - 1.0) < kSame);
  };
  return flat(a) && flat(b);
}

/// A place on the piece, prolonged, where a point of it is.
double place_on(const Side& side, const AcGePoint3d& p) {
  const Segment& s = side.piece();
  if (s.kind() == Segment::Kind::kLine) {
    const AcGeVector3d along = s.end() - s.start();
    return (p - s.start()).dotProduct(along) / along.lengthSqrd();
  }
  return s.nearest(p, true, true).u;
}

/// Trims or prolongs a side to a point on it, keeping what was picked.
bool trim_to(CommandLine& line, const Side& side, const AcGePoint3d& to,
             const std::optional<AcGePoint3d>& corner, EditLog& log) {
  if (side.entity.closed()) return true;  // circles stay whole
  const double place = place_on(side, to);
  const double last = side.entity.end();
  // Of a line the part away from the corner stays, of an arc the picked one.
  double kept = place_on(side, side.pick);
  if (corner && side.piece().kind() == Segment::Kind::kLine) {
    const double at = place_on(side, *corner);
    kept = place + (kept - at);
  }
  const bool from_here = kept >= place;
  const Span part = from_here ? Span{place, std::max(last, place)}
                              : Span{std::min(side.entity.start(), place), place};
  if (part.to - part.from < kSame) {
    line.print(L"Nothing would be left of the object.");
    return false;
  }
  return !side.entity.keep(line, std::vector<Span>{part}, log).empty();
}

/// Properties of what is drawn between two objects: theirs when they share a layer.
AcDbObjectId model_for(const Side& a, const Side& b) {
  RecordGroups first, second;
  first.read(a.entity.object());
  second.read(b.entity.object());
  const Group* const x = first.find(8);
  const Group* const y = second.find(8);
  return x && y && first.text(*x) == second.text(*y) ? a.entity.object() : AcDbObjectId();
}

AcDbObjectId draw_between(CommandLine& line, const Side& a, const Side& b, std::wstring_view kind,
                          const std::vector<GroupValue>& shape) {
  const AcDbObjectId model = model_for(a, b);
  GroupList groups = model.isNull() ? GroupList(kind) : like(model, kind);
  for (const GroupValue& group : shape) groups.add(group);
  return draw_beside(line, a.entity.object(), groups);
}

AcDbObjectId draw_arc(CommandLine& line, const Side& a, const Side& b, const FilletArc& arc) {
  const AcGeVector3d to_first = arc.first - arc.center, to_second = arc.second - arc.center;
  const auto angle_of = [](const AcGeVector3d& v) {
    const double angle = std::atan2(v.y, v.x);
    return std::fabs(angle) < 1e-14 ? 0.0 : full_turn(angle);
  };
  double from = angle_of(to_first), to = angle_of(to_second);
  const double sweep =
      to - from - 2.0 * std::numbers::pi * std::floor((to - from) / (2.0 * std::numbers::pi));
  if (sweep > std::numbers::pi + kSame) std::swap(from, to);
  return draw_between(line, a, b, L"ARC",
                      {{10, arc.center}, {40, arc.radius}, {50, from}, {51, to}});
}

/// What both commands are told.
struct Corner {
  bool chamfer;
  double first = 0.0;   ///< radius, or distance on the first object
  double second = 0.0;  ///< distance on the second object
  bool trims = true;
};

std::wstring objection(Cornering result) {
  switch (result) {
    case Cornering::kTooShort:
      return L"The segment is too short for that.";
    case Cornering::kParallel:
      return L"Lines are parallel.";
    case Cornering::kArc:
      return L"Corners at arc segments of a polyline are not offered.";
    case Cornering::kDone:
      break;
  }
  return {};
}

Cornering corner_vertex(PolylineShape& shape, std::size_t vertex, const Corner& how) {
  return how.chamfer ? chamfer_vertex(shape, vertex, how.first, how.second)
                     : fillet_vertex(shape, vertex, how.first);
}

/// A corner between two segments of one polyline.
bool corner_in_polyline(CommandLine& line, const Side& a, const Side& b, Corner how, EditLog& log) {
  std::optional<PolylineShape> shape = polyline_shape(a.entity.object());
  const auto vertex = shape ? vertex_between(*shape, a.segment, b.segment) : std::nullopt;
  if (!vertex) {
    line.print(L"Segments of one polyline must follow each other.");
    return false;
  }
  if (how.chamfer && a.segment == *vertex) std::swap(how.first, how.second);
  const Cornering result = corner_vertex(*shape, *vertex, how);
  if (result != Cornering::kDone) {
    line.print(objection(result));
    return false;
  }
  log.begin_step();
  log.changing(a.entity.object());
  return !set_polyline_shape(line, a.entity.object(), *shape).isNull();
}

/// Where the two sides are cut and what is drawn between.
struct Plan {
  AcGePoint3d first, second;
  std::optional<AcGePoint3d> corner;
  std::optional<FilletArc> arc;
  bool segment = false;
};

std::optional<Plan> plan_of(CommandLine& line, const Side& a, const Side& b, const Corner& how) {
  const Segment &s = a.piece(), &t = b.piece();
  const bool lines = s.kind() == Segment::Kind::kLine && t.kind() == Segment::Kind::kLine;
  const std::optional<AcGePoint3d> corner = lines ? corner_of(s, t) : std::nullopt;
  if (how.chamfer) {
    if (!corner) {
      line.print(lines ? L"Lines are parallel." : L"Only lines and polylines can be chamfered.");
      return std::nullopt;
    }
    const auto on = [&](const Segment& piece, const AcGePoint3d& pick, double distance) {
      const AcGeVector3d along = (piece.end() - piece.start()).normal();
      const double side = (pick - *corner).dotProduct(along) < 0.0 ? -1.0 : 1.0;
      return *corner + along * (side * distance);
    };
    return Plan{on(s, a.pick, how.first), on(t, b.pick, how.second), corner, std::nullopt,
                how.first > 0.0 || how.second > 0.0};
  }
  const std::optional<FilletArc> arc = lines && !corner
                                           ? fillet_parallel(s, a.pick, t)
                                           : fillet_between(s, a.pick, t, b.pick, how.first);
  if (!arc) {
    line.print(L"Radius is too large.");
    return std::nullopt;
  }
  Plan plan{arc->first, arc->second, corner, std::nullopt, false};
  if (arc->radius > 0.0) plan.arc = arc;
  return plan;
}

bool make_corner(CommandLine& line, const Side& a, const Side& b, const Corner& how, EditLog& log) {
  const bool same = a.entity.object() == b.entity.object();
  if (same && a.polyline) return corner_in_polyline(line, a, b, how, log);
  if (a.polyline || b.polyline) {
    line.print(L"A corner between a polyline and another object is not offered: use PEDIT Join.");
    return false;
  }
  if (same || !in_one_plan(a, b)) {
    line.print(same ? L"The two objects must be different."
                    : L"The objects are not in one plane parallel to the plan.");
    return false;
  }
  const std::optional<Plan> plan = plan_of(line, a, b, how);
  if (!plan) return false;
  log.begin_step();
  if (plan->arc) {
    const AcDbObjectId made = draw_arc(line, a, b, *plan->arc);
    if (made.isNull()) return false;
    log.made(made);
  }
  if (plan->segment) {
    const AcDbObjectId made =
        draw_between(line, a, b, L"LINE", {{10, plan->first}, {11, plan->second}});
    if (made.isNull()) return false;
    log.made(made);
  }
  if (!how.trims) return true;
  const bool first = trim_to(line, a, plan->first, plan->corner, log);
  return first && trim_to(line, b, plan->second, plan->corner, log);
}

/// All corners of a polyline.
void corner_polyline(CommandLine& line, const Corner& how, AcDbObjectId object, EditLog& log) {
  std::optional<PolylineShape> shape = polyline_shape(object);
  if (!shape || !shape->flat || on_locked_layer(object)) {
    line.print(L"A flat polyline that is not on a locked layer is required.");
    return;
  }
  std::size_t done = 0, short_ones = 0, parallel = 0;
  const bool closed = shape->closed;
  for (std::size_t i = closed ? 0 : 1; i + (closed ? 0 : 1) < shape->vertices.size(); ++i) {
    const std::size_t before = shape->vertices.size();
    const Cornering result = corner_vertex(*shape, i, how);
    if (result == Cornering::kDone) ++done;
    if (result == Cornering::kTooShort) ++short_ones;
    if (result == Cornering::kParallel) ++parallel;
    i += shape->vertices.size() - before;
  }
  if (done > 0) {
    log.begin_step();
    log.changing(object);
    if (set_polyline_shape(line, object, *shape).isNull()) return;
  }
  line.remark(counted(done, L"corner was changed.", L"corners were changed."));
  if (short_ones > 0) line.remark(counted(short_ones, L"was too short", L"were too short"));
  if (parallel > 0) line.remark(counted(parallel, L"was parallel", L"were parallel"));
}

Flow<> ask_radius(CommandLine& line, Corner& how) {
  const std::wstring text = L"Specify fillet radius <" + shown(line, how.first) + L">: ";
  const Answer radius = co_await line.distance({.text = text, .bits = kNoNegative});
  if (radius.none()) co_return;
  how.first = radius.number;
  line.set_variable(L"FILLETRAD", how.first);
}

Flow<> ask_distances(CommandLine& line, Corner& how) {
  std::wstring text = L"Specify first chamfer distance <" + shown(line, how.first) + L">: ";
  const Answer first = co_await line.distance({.text = text, .bits = kNoNegative});
  if (!first.none()) how.first = how.second = first.number;
  text = L"Specify second chamfer distance <" + shown(line, how.second) + L">: ";
  const Answer second = co_await line.distance({.text = text, .bits = kNoNegative});
  if (!second.none()) how.second = second.number;
  line.set_variable(L"CHAMFERA", how.first);
  line.set_variable(L"CHAMFERB", how.second);
}

/// A length on the first object and the angle of the cut from there.
Flow<> ask_angle(CommandLine& line, Corner& how) {
  const Answer length = co_await line.distance(
      {.text = L"Specify chamfer length on the first line: ", .bits = kNoEnter | kNoNegative});
  const Answer angle = co_await line.turn(
      {.text = L"Specify chamfer angle from the first line: ", .bits = kNoEnter});
  const double tangent = std::tan(angle.number);
  if (!(tangent > 0.0) || !std::isfinite(tangent)) {
    line.refuse(L"The angle must be more than 0 and less than 90 degrees.");
    co_return;
  }
  how.first = length.number;
  how.second = length.number * tangent;
  line.set_variable(L"CHAMFERC", length.number);
  line.set_variable(L"CHAMFERD", angle.number);
}

Flow<> ask_trim(CommandLine& line, Corner& how) {
  const Answer mode = co_await line.keyword(
      {.text = L"Enter Trim mode option [Trim/No trim] <Trim>: ", .keywords = L"Trim No"});
  if (mode.none()) co_return;
  how.trims = mode.is(L"Trim");
  line.set_variable(L"TRIMMODE", how.trims ? 1 : 0);
}

Flow<> ask_polyline(CommandLine& line, const Corner& how, EditLog& log) {
  const Answer picked = co_await line.entity({.text = L"Select 2D polyline: "});
  if (picked.is_entity()) corner_polyline(line, how, picked.entity, log);
}

Flow<> corners(CommandLine& line, Corner how) {
  EditLog log;
  bool multiple = false;
  for (;;) {
    const Answer first = co_await line.entity(
        {.text = how.chamfer
                     ? L"Select first line or [Undo/Polyline/Distance/Angle/Trim/mEthod/Multiple]: "
                     : L"Select first object or [Undo/Polyline/Radius/Trim/Multiple]: ",
         .keywords = how.chamfer ? L"Undo Polyline Distance Angle Trim mEthod Multiple"
                                 : L"Undo Polyline Radius Trim Multiple",
         .bits = kMayEnd});
    if (first.is_entity()) {
      const std::optional<Side> a = side_of(line, first);
      if (!a) continue;
      const Answer second = co_await line.entity(
          {.text = how.chamfer ? L"Select second line: " : L"Select second object: "});
      if (!second.is_entity()) co_return;
      const std::optional<Side> b = side_of(line, second);
      if (b) make_corner(line, *a, *b, how, log);
      if (!multiple) co_return;
    } else if (first.is(L"Multiple")) {
      multiple = true;
    } else if (first.is(L"Undo")) {
      if (!log.undo()) line.print(L"Command has been completely undone.");
    } else if (first.is(L"Polyline")) {
      co_await ask_polyline(line, how, log);
      if (!multiple) co_return;
    } else if (first.is(L"Radius")) {
      co_await ask_radius(line, how);
    } else if (first.is(L"Distance")) {
      co_await ask_distances(line, how);
    } else if (first.is(L"Angle")) {
      co_await ask_angle(line, how);
    } else if (first.is(L"Trim")) {
      co_await ask_trim(line, how);
    } else if (first.is(L"mEthod")) {
      line.refuse(L"the method follows from Distance or Angle, whichever was given last.");
    } else {
      co_return;
    }
    if (line.passing_over()) co_return;
  }
}

Flow<> fillet_command(CommandLine& line) {
  const bool trims = line.integer_variable(L"TRIMMODE", 1) != 0;
  const double radius = line.real_variable(L"FILLETRAD");
  line.remark(std::wstring(L"Current settings: Mode = ") + (trims ? L"TRIM" : L"NOTRIM") +
              L", Radius = " + shown(line, radius));
  co_await corners(line, {false, radius, 0.0, trims});
}

Flow<> chamfer_command(CommandLine& line) {
  const bool trims = line.integer_variable(L"TRIMMODE", 1) != 0;
  const double first = line.real_variable(L"CHAMFERA"), second = line.real_variable(L"CHAMFERB");
  line.remark(std::wstring(trims ? L"(TRIM mode)" : L"(NOTRIM mode)") +
              L" Current chamfer Dist1 = " + shown(line, first) + L", Dist2 = " +
              shown(line, second));
  co_await corners(line, {true, first, second, trims});
}

constexpr CommandRow kRows[] = {
    {"FILLET", "F", fillet_command,
     "[Undo/Polyline/Radius/Trim/Multiple] and its value ..., first object, second object",
     "rounds corners"},
    {"CHAMFER", "CHA", chamfer_command,
     "[Undo/Polyline/Distance/Angle/Trim/Multiple] and its value ..., first line, second line",
     "cuts off corners"},
};

}  // namespace

std::span<const CommandRow> corner_commands() { return kRows; }

}  // namespace cad
