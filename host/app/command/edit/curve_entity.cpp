#include "host/app/command/edit/curve_entity.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/db/copy_entity.h"
#include "host/db/curve.h"
#include "host/db/make_object.h"
#include "host/db/record.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

bool is_endless(double place) { return std::isinf(place); }

/// A place as the parameter of an arc or ellipse.
double param_at(const Curve& curve, double place) {
  return curve.start_param() + place * (curve.end_param() - curve.start_param());
}

/// The angle of an arc there, within a full turn.
double angle_at(const Curve& curve, double place) {
  constexpr double kTurn = 2.0 * std::numbers::pi;
  const double angle = param_at(curve, place);
  const double within = angle - kTurn * std::floor(angle / kTurn);
  return kTurn - within < 1e-12 ? 0.0 : within;
}

}  // namespace

std::optional<CurveEntity> CurveEntity::of(AcDbObjectId object) {
  const std::optional<Curve> curve = curve_of(object);
  const std::string_view kind = record_kind(object);
  if (!curve || curve->segments().empty() || kind == "SPLINE" || kind == "LEADER") {
    return std::nullopt;
  }
  CurveEntity entity(object, *curve);
  if (kind == "LWPOLYLINE" || kind == "POLYLINE") {
    entity.shape_ = polyline_shape(object);
    if (!entity.shape_) return std::nullopt;
    entity.closed_ = entity.shape_->closed;
  } else {
    entity.closed_ = curve->is_periodic();
  }
  return entity;
}

double CurveEntity::start() const { return kind() == Curve::Kind::kXline ? -kInfinite : 0.0; }

double CurveEntity::end() const {
  return curve_.is_bounded() ? static_cast<double>(curve_.segments().size()) : kInfinite;
}

AcGePoint3d CurveEntity::point_at(double place) const {
  const double last = static_cast<double>(curve_.segments().size());
  const double within = closed_ ? place - last * std::floor(place / last) : place;
  const double number = std::clamp(std::floor(within), 0.0, last - 1.0);
  return curve_.segments()[static_cast<std::size_t>(number)].point_at(within - number);
}

Curve CurveEntity::flattened(const Curve& curve) {
  AcGeMatrix3d plan;
  plan.entry[2][2] = 0.0;
  return curve.transformed(plan);
}

double CurveEntity::nearest(const AcGePoint3d& point) const {
  const AcGePoint3d at(point.x, point.y, 0.0);
  const Curve plan = in_plan();
  const bool before = kind() == Curve::Kind::kXline;
  const bool behind = !curve_.is_bounded();
  double best = 0.0, distance = kInfinite;
  for (std::size_t i = 0; i < plan.segments().size(); ++i) {
    const Segment::Nearest found = plan.segments()[i].nearest(at, before, behind);
    if (found.distance >= distance) continue;
    distance = found.distance;
    best = static_cast<double>(i) + found.u;
  }
  return best;
}

bool CurveEntity::keeps_kind(const Span& part) const {
  switch (kind()) {
    case Curve::Kind::kCircle:
      return false;
    case Curve::Kind::kRay:
      return is_endless(part.to);
    case Curve::Kind::kXline:
      return is_endless(part.from) && is_endless(part.to);
    default:
      return true;
  }
}

GroupList CurveEntity::groups_of(const Span& part) const {
  GroupList groups;
  const Segment& first = curve_.segments()[0];
  switch (kind()) {
    case Curve::Kind::kArc:
      return groups.real(50, angle_at(curve_, part.from)).real(51, angle_at(curve_, part.to));
    case Curve::Kind::kCircle: {
      const AcGeVector3d normal = first.normal();
      groups.point(10, ocs_to_wcs(normal).transpose() * first.center()).real(40, first.radius());
      groups.point(210, AcGePoint3d::kOrigin + normal);
      return groups.real(50, angle_at(curve_, part.from)).real(51, angle_at(curve_, part.to));
    }
    case Curve::Kind::kEllipse:
      return groups.real(41, param_at(curve_, part.from)).real(42, param_at(curve_, part.to));
    case Curve::Kind::kRay:
    case Curve::Kind::kXline: {
      const AcGeVector3d along = (first.end() - first.start()).normal();
      if (is_endless(part.from)) {
        groups.point(10, point_at(part.to)).point(11, AcGePoint3d::kOrigin - along);
      } else if (is_endless(part.to)) {
        groups.point(10, point_at(part.from)).point(11, AcGePoint3d::kOrigin + along);
      } else {
        groups.point(10, point_at(part.from)).point(11, point_at(part.to));
      }
      return groups;
    }
    default:
      return groups.point(10, point_at(part.from)).point(11, point_at(part.to));
  }
}

AcDbObjectId CurveEntity::redraw(CommandLine& line, AcDbObjectId source, const Span& part) const {
  if (shape_)
    return draw_polyline_like(line, source, shape_->part(part.from, part.to), Data::kTake);
  const bool bounded = !is_endless(part.from) && !is_endless(part.to);
  const wchar_t* name = kind() == Curve::Kind::kCircle ? L"ARC" : bounded ? L"LINE" : L"RAY";
  GroupList groups = like(source, name, Data::kTake);
  const GroupList drawn = drawn_groups(source), shape = groups_of(part);
  if (const GroupValue* const thickness = drawn.find(39)) groups.add(*thickness);
  for (const GroupValue& group : shape.groups()) groups.add(group);
  return draw_beside(line, source, groups);
}

std::vector<AcDbObjectId> CurveEntity::keep(CommandLine& line, std::span<const Span> parts,
                                            EditLog& log) const {
  std::vector<AcDbObjectId> kept;
  const bool heavy = shape_ && record_kind(object_) == "POLYLINE";
  // Copies are taken while the object still is what it was.
  for (std::size_t i = 1; i < parts.size(); ++i) {
    if (heavy || !keeps_kind(parts[i])) {
      kept.push_back(redraw(line, object_, parts[i]));
    } else {
      const Result<AcDbObjectId> copy = copy_entity(object_);
      if (!line.check(copy)) return {};
      kept.push_back(*copy);
      if (shape_) {
        set_polyline_shape(line, *copy, shape_->part(parts[i].from, parts[i].to));
      } else if (!line.check(change_object(*copy, groups_of(parts[i])))) {
        return {};
      }
    }
    if (kept.back().isNull()) return {};
    log.made(kept.back());
  }
  if (heavy || parts.empty() || !keeps_kind(parts[0])) {
    if (!parts.empty()) {
      kept.insert(kept.begin(), redraw(line, object_, parts[0]));
      if (kept.front().isNull()) return {};
      log.made(kept.front());
    }
    erase(object_);
    log.erased(object_);
    return kept;
  }
  log.changing(object_);
  if (shape_) {
    set_polyline_shape(line, object_, shape_->part(parts[0].from, parts[0].to));
  } else if (!line.check(change_object(object_, groups_of(parts[0])))) {
    return {};
  }
  kept.insert(kept.begin(), object_);
  return kept;
}

AcDbObjectId draw_curve_like(CommandLine& line, AcDbObjectId source, const Curve& curve) {
  const Segment& first = curve.segments()[0];
  switch (curve.kind()) {
    case Curve::Kind::kPolyline: {
      const std::optional<PolylineShape> old = polyline_shape(source);
      const AcGeVector3d normal = old ? old->normal : AcGeVector3d::kZAxis;
      PolylineShape shape = shape_of(curve.segments(), curve.is_periodic(), normal);
      // One width goes for the whole of the new one; widths that vary have no meaning on it.
      if (old) {
        shape.continuous_linetype = old->continuous_linetype;
        const double width = old->vertices.front().start_width;
        const bool constant = std::all_of(
            old->vertices.begin(), old->vertices.end(),
            [&](const auto& v) { return v.start_width == width && v.end_width == width; });
        for (auto& v : shape.vertices) v.start_width = v.end_width = constant ? width : 0.0;
      }
      return draw_polyline_like(line, source, shape);
    }
    case Curve::Kind::kCircle:
    case Curve::Kind::kArc: {
      const bool whole = curve.kind() == Curve::Kind::kCircle;
      GroupList groups = like(source, whole ? L"CIRCLE" : L"ARC");
      const AcGeVector3d normal = first.normal();
      groups.point(10, ocs_to_wcs(normal).transpose() * first.center()).real(40, first.radius());
      groups.point(210, AcGePoint3d::kOrigin + normal);
      if (!whole) groups.real(50, curve.start_param()).real(51, curve.end_param());
      return draw_beside(line, source, groups);
    }
    case Curve::Kind::kRay:
    case Curve::Kind::kXline: {
      GroupList groups = like(source, curve.kind() == Curve::Kind::kRay ? L"RAY" : L"XLINE");
      groups.point(10, first.start());
      groups.point(11, AcGePoint3d::kOrigin + (first.end() - first.start()).normal());
      return draw_beside(line, source, groups);
    }
    default: {
      GroupList groups = like(source, L"LINE");
      groups.point(10, first.start()).point(11, first.end());
      return draw_beside(line, source, groups);
    }
  }
}

}  // namespace cad
