#include "host/app/command/draw/draw.h"

#include <cmath>
#include <numbers>

#include "host/app/prompt/point_text.h"
#include "host/app/prompt/question.h"
#include "host/db/make_object.h"
#include "host/db/open.h"
#include "host/geometry/ocs.h"
#include "host/lisp/units.h"

namespace cad {

WorkPlane::WorkPlane(const CommandLine& line)
    : to_world_(line.to_world()),
      to_user_(to_world_.inverse()),
      normal_(line.normal()),
      thickness_(line.real_variable(L"THICKNESS")) {
  to_stored_ = ocs_to_wcs(normal_).transpose() * to_world_;
}

double WorkPlane::stored_angle(double user) const {
  const AcGeVector3d way = to_stored_ * AcGeVector3d(std::cos(user), std::sin(user), 0.0);
  const bool is_turned = !to_world_.isEqualTo(AcGeMatrix3d::kIdentity);
  return is_turned ? std::atan2(way.y, way.x) : user;
}

GroupList& WorkPlane::flat(GroupList& groups) const {
  if (thickness_ != 0.0) groups.real(39, thickness_);
  if (!is_world()) groups.point(210, AcGePoint3d::kOrigin + normal_);
  return groups;
}

AcDbObjectId draw(CommandLine& line, const GroupList& groups, std::span<const GroupList> parts) {
  const Result<AcDbObjectId> made = make_entity(line.database(), {}, groups, parts);
  return line.check(made) ? *made : AcDbObjectId();
}

AcDbObjectId draw_line(CommandLine& line, const AcGePoint3d& from, const AcGePoint3d& to) {
  GroupList groups(L"LINE");
  groups.point(10, from).point(11, to);
  return draw(line, WorkPlane(line).flat(groups));
}

namespace {

GroupList light_polyline(const WorkPlane& plane, std::span<const DrawnVertex> vertices, int flags) {
  const double elevation = plane.stored(vertices.front().point).z;
  GroupList groups(L"LWPOLYLINE");
  groups.integer(90, static_cast<std::int64_t>(vertices.size())).integer(70, flags);
  if (elevation != 0.0) groups.real(38, elevation);
  for (const DrawnVertex& vertex : vertices) {
    const AcGePoint3d at = plane.stored(vertex.point);
    groups.point2d(10, {at.x, at.y})
        .real(40, vertex.start_width)
        .real(41, vertex.end_width)
        .real(42, vertex.bulge);
  }
  return std::move(plane.flat(groups));
}

AcDbObjectId draw_heavy_polyline(CommandLine& line, const WorkPlane& plane,
                                 std::span<const DrawnVertex> vertices, int flags) {
  GroupList groups(L"POLYLINE");
  groups.integer(66, 1)
      .point(10, {0.0, 0.0, plane.stored(vertices.front().point).z})
      .integer(70, flags);
  std::vector<GroupList> parts;
  for (const DrawnVertex& vertex : vertices) {
    parts.emplace_back(L"VERTEX")
        .point(10, plane.stored(vertex.point))
        .real(40, vertex.start_width)
        .real(41, vertex.end_width)
        .real(42, vertex.bulge)
        .integer(70, 0);
  }
  return draw(line, plane.flat(groups), parts);
}

}  // namespace

AcDbObjectId draw_polyline(CommandLine& line, std::span<const DrawnVertex> vertices, bool closed) {
  const WorkPlane plane(line);
  const int flags = (closed ? 1 : 0) | (line.integer_variable(L"PLINEGEN") != 0 ? 128 : 0);
  const bool heavy =
      !line.database().has_dictionaries() || line.integer_variable(L"PLINETYPE", 2) == 0;
  if (heavy) return draw_heavy_polyline(line, plane, vertices, flags);
  return draw(line, light_polyline(plane, vertices, flags));
}

void erase_last(std::vector<AcDbObjectId>& drawn) {
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, drawn.back(), AcDb::kForWrite) == Acad::eOk) {
    object->erase();
    object->close();
  }
  drawn.pop_back();
}

std::wstring shown(const CommandLine& line, double number) {
  const InputUnits units = input_units(line.session());
  return lisp::length_text(number, units.lengths, line.integer_variable(L"LUPREC"),
                           line.integer_variable(L"DIMZIN"));
}

std::wstring shown_angle(const CommandLine& line, double radians) {
  const InputUnits units = input_units(line.session());
  double turned = units.turn(radians - units.angle_base);
  turned = std::fmod(turned, 2 * std::numbers::pi);
  if (turned < 0.0) turned += 2 * std::numbers::pi;
  return lisp::angle_text(turned, units.angles, line.integer_variable(L"AUPREC"));
}

double direction(const AcGePoint3d& from, const AcGePoint3d& to) {
  return std::atan2(to.y - from.y, to.x - from.x);
}

double flat_distance(const AcGePoint3d& from, const AcGePoint3d& to) {
  return std::hypot(to.x - from.x, to.y - from.y);
}

AcGePoint3d polar(const AcGePoint3d& from, double angle, double distance) {
  // Right angles come as multiples of pi, whose sine and cosine miss 0 by a little.
  const auto exact = [](double x) { return std::abs(x) < 1e-15 ? 0.0 : x; };
  return {from.x + distance * exact(std::cos(angle)), from.y + distance * exact(std::sin(angle)),
          from.z};
}

std::optional<AcGePoint3d> circle_centre(const AcGePoint3d& a, const AcGePoint3d& b,
                                         const AcGePoint3d& c) {
  const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y;
  const double area = 2 * (bx * cy - by * cx);
  const double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
  if (std::abs(area) <= 1e-12 * (b2 + c2)) return std::nullopt;
  return AcGePoint3d(a.x + (cy * b2 - by * c2) / area, a.y + (bx * c2 - cx * b2) / area, a.z);
}

double sweep(double from, double to) {
  const double turn = 2 * std::numbers::pi;
  double angle = std::fmod(to - from, turn);
  if (angle <= 1e-12) angle += turn;
  return angle;
}

}  // namespace cad
