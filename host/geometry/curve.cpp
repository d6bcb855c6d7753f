#include "host/geometry/curve.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

/// An end parameter behind the start: more by full turns, at most one turn in all. Angles that are
/// equal, or differ by full turns, mean a whole turn.
double end_behind(double start, double end) {
  if (!std::isfinite(start) || !std::isfinite(end)) return start;
  constexpr double kSame = 1e-12;
  double sweep = end - start;
  if (sweep <= 0.0 || sweep > kTurn + kSame) sweep -= kTurn * std::floor(sweep / kTurn);
  if (sweep < kSame) sweep = kTurn;
  return start + std::min(sweep, kTurn);
}

Segment ocs_arc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double start,
                double end) {
  const AcGeMatrix3d axes = ocs_to_wcs(normal);
  Segment s =
      Segment::arc(center, axes.column(0) * radius, axes.column(1) * radius, start, end - start);
  s.set_params(start, end);
  return s;
}

}  // namespace

Curve::Curve(Kind kind, std::vector<Segment> segments)
    : kind_(kind), segments_(std::move(segments)) {
  if (segments_.empty()) return;
  start_param_ = segments_.front().start_param();
  end_param_ = segments_.back().end_param();
}

Curve Curve::line(const AcGePoint3d& start, const AcGePoint3d& end) {
  Segment s = Segment::line(start, end);
  s.set_params(0.0, s.length());
  return {Kind::kLine, {s}};
}

Curve Curve::ray(const AcGePoint3d& base, const AcGeVector3d& direction) {
  Curve curve = line(base, base + direction);
  curve.kind_ = Kind::kRay;
  curve.end_param_ = kInfinite;
  return curve;
}

Curve Curve::xline(const AcGePoint3d& base, const AcGeVector3d& direction) {
  Curve curve = ray(base, direction);
  curve.kind_ = Kind::kXline;
  curve.start_param_ = -kInfinite;
  return curve;
}

Curve Curve::arc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                 double start_angle, double end_angle) {
  return {Kind::kArc,
          {ocs_arc(center, normal, radius, start_angle, end_behind(start_angle, end_angle))}};
}

Curve Curve::circle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius) {
  Curve curve(Kind::kCircle, {ocs_arc(center, normal, radius, 0.0, kTurn)});
  curve.closed_ = curve.periodic_ = true;
  return curve;
}

Curve Curve::ellipse(const AcGePoint3d& center, const AcGeVector3d& normal,
                     const AcGeVector3d& major_axis, double ratio, double start_param,
                     double end_param) {
  const double end = end_behind(start_param, end_param);
  const AcGeVector3d unit = ocs_to_wcs(normal).column(2);
  Segment s = Segment::arc(center, major_axis, unit.crossProduct(major_axis) * ratio, start_param,
                           end - start_param);
  s.set_params(start_param, end);
  Curve curve(Kind::kEllipse, {s});
  curve.closed_ = curve.periodic_ = end - start_param >= kTurn;
  return curve;
}

Curve Curve::polyline(std::span<const Vertex> vertices, bool closed, const AcGeVector3d& normal,
                      double elevation) {
  const AcGeMatrix3d axes = ocs_to_wcs(normal);
  const AcGeVector3d unit = axes.column(2);
  const auto place = [&](std::size_t i) {
    const AcGePoint2d& p = vertices[i % vertices.size()].point;
    return axes * AcGePoint3d(p.x, p.y, elevation);
  };
  const std::size_t count = vertices.size(), pieces = closed || count == 0 ? count : count - 1;
  std::vector<Segment> segments;
  segments.reserve(std::max<std::size_t>(pieces, 1));
  for (std::size_t i = 0; i < pieces; ++i) {
    Segment s = Segment::bulge(place(i), place(i + 1), vertices[i].bulge, unit);
    s.set_params(static_cast<double>(i), static_cast<double>(i + 1));
    segments.push_back(std::move(s));
  }
  if (count == 1 && !closed) {
    segments.push_back(Segment::line(place(0), place(0)));
    segments.back().set_params(0.0, 0.0);
  }
  Curve curve(Kind::kPolyline, std::move(segments));
  curve.closed_ = curve.periodic_ = closed && count > 0;
  return curve;
}

Curve Curve::polyline3d(std::span<const AcGePoint3d> vertices, bool closed) {
  const std::size_t count = vertices.size(), pieces = closed || count == 0 ? count : count - 1;
  std::vector<Segment> segments;
  segments.reserve(std::max<std::size_t>(pieces, 1));
  for (std::size_t i = 0; i < pieces; ++i) {
    segments.push_back(Segment::line(vertices[i], vertices[(i + 1) % count]));
    segments.back().set_params(static_cast<double>(i), static_cast<double>(i + 1));
  }
  if (count == 1 && !closed) {
    segments.push_back(Segment::line(vertices[0], vertices[0]));
    segments.back().set_params(0.0, 0.0);
  }
  Curve curve(Kind::kPolyline3d, std::move(segments));
  curve.closed_ = curve.periodic_ = closed && count > 0;
  return curve;
}

std::optional<Curve> Curve::spline(const SplineShape& shape) {
  std::vector<Segment> segments;
  for (BezierSpan& span : bezier_spans(shape)) {
    segments.push_back(Segment::spline(std::move(span.curve)));
    segments.back().set_params(span.start, span.end);
  }
  if (segments.empty()) return std::nullopt;
  Curve curve(Kind::kSpline, std::move(segments));
  curve.closed_ = shape.closed && curve.start_point().isEqualTo(curve.end_point(), AcGeTol());
  curve.periodic_ = curve.closed_;
  return curve;
}

bool Curve::is_closed() const {
  if (closed_ || segments_.empty()) return closed_;
  if (kind_ == Kind::kArc) return end_param_ - start_param_ >= kTurn;
  return kind_ == Kind::kSpline && segments_.front().start().isEqualTo(segments_.back().end()) &&
         length() > 0.0;
}

Curve::Place Curve::place_of(double param) const {
  if (segments_.empty() || std::isnan(param)) return {};
  if (!is_bounded()) {
    const double unit = segments_[0].end_param();
    const double from_base = kind_ == Kind::kRay ? std::max(param, 0.0) : param;
    return {0, unit > 0.0 ? from_base / unit : 0.0};
  }
  const auto behind = std::upper_bound(
      segments_.begin(), segments_.end(), param,
      [](double value, const Segment& segment) { return value < segment.start_param(); });
  const auto index =
      static_cast<std::size_t>(std::max<std::ptrdiff_t>(behind - segments_.begin() - 1, 0));
  const Segment& s = segments_[index];
  const double range = s.end_param() - s.start_param();
  if (!(range > 0.0)) return {index, 0.0};
  return {index, std::clamp((param - s.start_param()) / range, 0.0, 1.0)};
}

Jet Curve::jet_at(double param) const {
  if (segments_.empty()) return {};
  const Place place = place_of(param);
  const Segment& s = segments_[place.segment];
  Jet jet = s.at(place.u);
  const double range = s.end_param() - s.start_param();
  if (range > 0.0) {
    jet.first /= range;
    jet.second /= range * range;
  }
  return jet;
}

const std::vector<double>& Curve::lengths() const {
  if (lengths_.empty()) {
    lengths_.reserve(segments_.size());
    double sum = 0.0;
    for (const Segment& s : segments_) lengths_.push_back(sum += s.length());
  }
  return lengths_;
}

double Curve::distance_at(double param) const {
  if (!is_bounded()) return std::clamp(param, start_param_, end_param_);
  if (segments_.empty()) return 0.0;
  const Place place = place_of(param);
  if (place.u == 1.0) return lengths()[place.segment];
  const double before = place.segment == 0 ? 0.0 : lengths()[place.segment - 1];
  return before + segments_[place.segment].length_to(place.u);
}

double Curve::param_at_distance(double distance) const {
  if (!is_bounded()) return std::clamp(distance, start_param_, end_param_);
  if (segments_.empty() || !(distance > 0.0)) return start_param_;
  const std::vector<double>& ends = lengths();
  const auto found = std::lower_bound(ends.begin(), ends.end(), distance);
  if (found == ends.end()) return end_param_;
  const auto index = static_cast<std::size_t>(found - ends.begin());
  const Segment& s = segments_[index];
  if (*found == distance) return s.end_param();
  const double u = s.u_at_length(distance - (index == 0 ? 0.0 : ends[index - 1]));
  return s.start_param() + u * (s.end_param() - s.start_param());
}

Curve::Nearest Curve::nearest(const AcGePoint3d& p, bool extend) const {
  Nearest best;
  const bool open = extend && !is_closed();
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    const Segment& s = segments_[i];
    const bool before = kind_ == Kind::kXline || (open && i == 0);
    const bool behind = !is_bounded() || (open && i + 1 == segments_.size());
    const Segment::Nearest found = s.nearest(p, before, behind);
    if (i > 0 && !(found.distance < best.distance)) continue;
    best = {s.start_param() + found.u * (s.end_param() - s.start_param()), found.point,
            found.distance};
  }
  return best;
}

Curve::Nearest Curve::nearest_in_projection(const AcGePoint3d& p, const AcGeVector3d& normal,
                                            bool extend) const {
  // Flattened into the plane through the origin, the curve keeps its parameters.
  const AcGeVector3d n = normal.normal();
  AcGeMatrix3d flat;
  for (unsigned row = 0; row < 3; ++row)
    for (unsigned column = 0; column < 3; ++column) flat(row, column) -= n[row] * n[column];
  Nearest found = transformed(flat).nearest(flat * p, extend);
  if (segments_.empty()) return found;
  const bool outside = !has_param(found.param);
  const Segment& s =
      outside && found.param > end_param_ ? segments_.back() : segment_at(found.param);
  const double range = s.end_param() - s.start_param();
  found.point = outside && range > 0.0 ? s.point_at((found.param - s.start_param()) / range)
                                       : point_at(found.param);
  found.distance = found.point.distanceTo(p);
  return found;
}

std::optional<double> Curve::param_at(const AcGePoint3d& p, double tolerance) const {
  const Nearest found = nearest(p);
  if (!(found.distance <= tolerance)) return std::nullopt;
  return found.param;
}

std::optional<double> Curve::param_at(const AcGePoint3d& p) const {
  constexpr double kNear = 1e-8, kRounding = 1e-14;
  return param_at(p, kNear + kRounding * p.asVector().length());
}

AcGeVector3d Curve::area_vector() const {
  AcGeVector3d sum;
  if (segments_.empty() || !is_bounded()) return sum;
  const AcGePoint3d origin = segments_.front().start();
  for (const Segment& s : segments_) sum += s.swept_area(origin);
  return sum;
}

std::optional<AcGeVector3d> Curve::plane_normal() const {
  if (segments_.empty()) return std::nullopt;
  // Of all points the plane must hold, the two that span it best.
  std::vector<AcGePoint3d> points;
  for (const Segment& s : segments_) {
    points.push_back(s.start());
    points.push_back(s.end());
    if (s.is_arc()) {
      points.push_back(s.center() + s.x_axis());
      points.push_back(s.center() + s.y_axis());
      points.push_back(s.center());
    }
    for (const Bezier::Control& c : s.bezier().controls()) points.push_back(c.point);
  }
  const AcGePoint3d origin = points.front();
  AcGeVector3d longest, normal;
  for (const AcGePoint3d& p : points)
    if ((p - origin).lengthSqrd() > longest.lengthSqrd()) longest = p - origin;
  for (const AcGePoint3d& p : points) {
    const AcGeVector3d n = longest.crossProduct(p - origin);
    if (n.lengthSqrd() > normal.lengthSqrd()) normal = n;
  }
  const double size = longest.length();
  constexpr double kFlat = 1e-9;
  if (normal.length() <= kFlat * size * size) {
    // Many planes hold a straight curve: the plan's, or one like it, where that does.
    const bool level = std::fabs(longest.z) <= kFlat * size;
    return level ? AcGeVector3d::kZAxis : longest.perpVector();
  }
  normal /= normal.length();
  for (const AcGePoint3d& p : points)
    if (std::fabs((p - origin).dotProduct(normal)) > kFlat * size) return std::nullopt;
  // On the side from which the curve turns counter-clockwise.
  return area_vector().dotProduct(normal) < 0.0 ? -normal : normal;
}

AcDbExtents Curve::extents() const {
  AcDbExtents box;
  for (const Segment& s : segments_) box.addExt(s.extents());
  return box;
}

Curve Curve::transformed(const AcGeMatrix3d& map) const {
  Curve curve = *this;
  curve.lengths_.clear();
  for (Segment& s : curve.segments_) {
    const double start = s.start_param(), end = s.end_param();
    s = s.transformed(map);
    s.set_params(start, end);
  }
  return curve;
}

}  // namespace cad
