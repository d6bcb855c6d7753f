#include "host/geometry/segment.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/geometry/quadrature.h"

namespace cad {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

bool is_circular(const AcGeVector3d& x, const AcGeVector3d& y) {
  constexpr double kEqual = 1e-12;
  const double xx = x.lengthSqrd(), yy = y.lengthSqrd(), size = std::max(xx, yy);
  return std::fabs(xx - yy) <= kEqual * size && std::fabs(x.dotProduct(y)) <= kEqual * size;
}

}  // namespace

Segment Segment::line(const AcGePoint3d& start, const AcGePoint3d& end) {
  Segment s;
  s.start_ = start;
  s.end_ = end;
  return s;
}

Segment Segment::arc(const AcGePoint3d& center, const AcGeVector3d& x_axis,
                     const AcGeVector3d& y_axis, double start_angle, double sweep) {
  Segment s;
  s.kind_ = is_circular(x_axis, y_axis) ? Kind::kArc : Kind::kEllipse;
  s.center_ = center;
  s.x_axis_ = x_axis;
  s.y_axis_ = y_axis;
  s.start_angle_ = start_angle;
  s.sweep_ = sweep;
  s.start_ = center + s.spoke(start_angle);
  s.end_ = std::fabs(sweep) == kTurn ? s.start_ : center + s.spoke(start_angle + sweep);
  return s;
}

Segment Segment::bulge(const AcGePoint3d& start, const AcGePoint3d& end, double bulge,
                       const AcGeVector3d& normal) {
  const AcGeVector3d chord = end - start;
  const double length = chord.length();
  const double radius = length * (1.0 + bulge * bulge) / (4.0 * std::fabs(bulge));
  if (!std::isfinite(radius) || !(length > 0.0)) return line(start, end);
  // Half the chord, and from its middle to the center: by the tangent of half the turn.
  const AcGeVector3d left = normal.crossProduct(chord) / length;
  const AcGePoint3d center =
      start + chord * 0.5 + left * (length * (1.0 - bulge * bulge) / (4.0 * bulge));
  const AcGeVector3d x_axis = (start - center) * (radius / (start - center).length());
  Segment s = arc(center, x_axis, normal.crossProduct(x_axis), 0.0, 4.0 * std::atan(bulge));
  s.kind_ = Kind::kArc;
  s.start_ = start;
  s.end_ = end;
  return s;
}

Segment Segment::spline(Bezier curve) {
  Segment s;
  s.kind_ = Kind::kSpline;
  s.start_ = curve.controls().front().point;
  s.end_ = curve.controls().back().point;
  s.bezier_ = std::move(curve);
  return s;
}

AcGeVector3d Segment::spoke(double angle) const {
  return x_axis_ * std::cos(angle) + y_axis_ * std::sin(angle);
}

Jet Segment::at(double u) const {
  Jet jet;
  if (kind_ == Kind::kLine) {
    jet.first = end_ - start_;
    jet.point = start_ + jet.first * u;
  } else if (kind_ == Kind::kSpline) {
    jet = bezier_.at(std::clamp(u, 0.0, 1.0));
  } else {
    // As a chord from the start: on a flat arc center and radius are too large to be added.
    const double turn = u * sweep_, middle = start_angle_ + turn / 2;
    const double angle = start_angle_ + turn;
    jet.point = start_ + spoke(middle + std::numbers::pi / 2) * (2.0 * std::sin(turn / 2));
    jet.first = spoke(angle + std::numbers::pi / 2) * sweep_;
    jet.second = spoke(angle) * (-sweep_ * sweep_);
  }
  if (u == 0.0) jet.point = start_;
  if (u == 1.0) jet.point = end_;
  return jet;
}

double Segment::length_to(double u) const {
  if (kind_ == Kind::kLine) return start_.distanceTo(end_) * u;
  if (kind_ == Kind::kArc) return radius() * std::fabs(sweep_) * u;
  double scale = 0.0;
  if (kind_ == Kind::kEllipse) {
    scale = (x_axis_.length() + y_axis_.length()) * std::fabs(sweep_);
  } else {
    const auto& controls = bezier_.controls();
    for (std::size_t i = 1; i < controls.size(); ++i)
      scale += controls[i - 1].point.distanceTo(controls[i].point);
  }
  const auto speed = [this](double v) { return at(v).first.length(); };
  return integral<double>(
      speed, 0.0, u, [](double d) { return std::fabs(d); }, scale);
}

double Segment::u_at_length(double distance) const {
  const double whole = length();
  if (!(whole > 0.0) || !(distance > 0.0)) return 0.0;
  if (distance >= whole) return 1.0;
  if (kind_ == Kind::kLine || kind_ == Kind::kArc) return distance / whole;
  // Newton's steps within brackets that only shrink.
  double low = 0.0, high = 1.0, u = distance / whole;
  constexpr int kMostSteps = 80;
  for (int step = 0; step < kMostSteps && high - low > 1e-16; ++step) {
    const double error = length_to(u) - distance;
    if (std::fabs(error) <= 1e-14 * whole) break;
    (error > 0.0 ? high : low) = u;
    const double speed = at(u).first.length();
    const double next = speed > 0.0 ? u - error / speed : low;
    u = next > low && next < high ? next : (low + high) / 2;
  }
  return u;
}

AcDbExtents Segment::extents() const {
  if (kind_ == Kind::kSpline) return bezier_.extents();
  AcDbExtents box;
  box.addPoint(start_);
  box.addPoint(end_);
  if (!is_arc()) return box;
  for (unsigned axis = 0; axis < 3; ++axis) {
    // Where the coordinate is largest, and half a turn on, smallest.
    const double top = std::atan2(y_axis_[axis], x_axis_[axis]);
    for (const double angle : {top, top + std::numbers::pi}) {
      const double behind_start = sweep_ < 0.0 ? start_angle_ - angle : angle - start_angle_;
      const double turned = behind_start - kTurn * std::floor(behind_start / kTurn);
      if (turned < std::fabs(sweep_)) {
        AcGePoint3d p = start_;
        p[axis] = center_[axis] + spoke(angle)[axis];
        box.addPoint(p);
      }
    }
  }
  return box;
}

AcGeVector3d Segment::swept_area(const AcGePoint3d& origin) const {
  if (kind_ == Kind::kLine) return (start_ - origin).crossProduct(end_ - origin) / 2;
  if (is_arc()) {
    return ((center_ - origin).crossProduct(end_ - start_) +
            x_axis_.crossProduct(y_axis_) * sweep_) /
           2;
  }
  const auto rate = [&](double u) {
    const Jet jet = at(u);
    return (jet.point - origin).crossProduct(jet.first) / 2;
  };
  const AcDbExtents box = bezier_.hull();
  const double size = (box.maxPoint() - box.minPoint()).length() + start_.distanceTo(origin);
  return integral<AcGeVector3d>(
      rate, 0.0, 1.0, [](const AcGeVector3d& v) { return v.length(); }, size * size);
}

Segment Segment::transformed(const AcGeMatrix3d& map) const {
  Segment s = *this;
  s.start_.transformBy(map);
  s.end_.transformBy(map);
  if (is_arc()) {
    s.center_.transformBy(map);
    s.x_axis_.transformBy(map);
    s.y_axis_.transformBy(map);
    s.kind_ = is_circular(s.x_axis_, s.y_axis_) ? Kind::kArc : Kind::kEllipse;
  }
  s.bezier_ = bezier_.transformed(map);
  return s;
}

Segment Segment::reversed() const {
  Segment s = *this;
  std::swap(s.start_, s.end_);
  s.start_angle_ = start_angle_ + sweep_;
  s.sweep_ = -sweep_;
  if (kind_ == Kind::kSpline) {
    std::vector<Bezier::Control> controls = bezier_.controls();
    std::reverse(controls.begin(), controls.end());
    s.bezier_ = Bezier(std::move(controls));
  }
  return s;
}

Segment Segment::piece(double u0, double u1) const {
  Segment s = *this;
  s.start_ = point_at(u0);
  s.end_ = point_at(u1);
  s.start_angle_ = start_angle_ + u0 * sweep_;
  s.sweep_ = (u1 - u0) * sweep_;
  if (kind_ == Kind::kSpline) {
    if (u0 > 0.0 || u1 < 1.0) s.bezier_ = bezier_.piece(u0, u1);
  }
  const double range = end_param_ - start_param_;
  s.set_params(start_param_ + u0 * range, start_param_ + u1 * range);
  return s;
}

}  // namespace cad
