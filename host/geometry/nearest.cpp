// The point of a segment that is nearest to a given one.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/geometry/segment.h"

namespace cad {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

/// Distance of a point to a box; 0 inside.
double distance_to(const AcDbExtents& box, const AcGePoint3d& p) {
  const AcGePoint3d min = box.minPoint(), max = box.maxPoint();
  AcGeVector3d gap;
  for (unsigned axis = 0; axis < 3; ++axis)
    gap[axis] = std::max({min[axis] - p[axis], p[axis] - max[axis], 0.0});
  return gap.length();
}

}  // namespace

Segment::Nearest Segment::measured(const AcGePoint3d& p, double u) const {
  const AcGePoint3d point = point_at(u);
  return {u, point, point.distanceTo(p)};
}

/// Between low and high, where the distance is supposed to have one minimum: bisection and
/// Newton's steps on the derivative of its square.
Segment::Nearest Segment::refined(const AcGePoint3d& p, double low, double high) const {
  constexpr int kMostSteps = 60;
  double from = low, to = high, u = (low + high) / 2;
  for (int step = 0; step < kMostSteps && to - from > 1e-16 * std::fabs(from); ++step) {
    const Jet jet = at(u);
    const AcGeVector3d arm = jet.point - p;
    const double slope = arm.dotProduct(jet.first);
    if (slope == 0.0) break;
    (slope > 0.0 ? to : from) = u;
    const double bend = jet.first.lengthSqrd() + arm.dotProduct(jet.second);
    const double next = bend > 0.0 ? u - slope / bend : from;
    const double was = u;
    u = next > from && next < to ? next : (from + to) / 2;
    if (u == was) break;
  }
  Nearest best = measured(p, u);
  for (const double end : {low, high}) {
    const Nearest at_end = measured(p, end);
    if (at_end.distance <= best.distance) best = at_end;
  }
  return best;
}

Segment::Nearest Segment::nearest(const AcGePoint3d& p, bool before, bool behind) const {
  switch (kind_) {
    case Kind::kLine:
      return nearest_on_line(p, before, behind);
    case Kind::kArc:
      return nearest_on_circle(p, before, behind);
    case Kind::kEllipse:
      return nearest_on_ellipse(p, before, behind);
    case Kind::kSpline:
      break;
  }
  return nearest_on_spline(p);
}

Segment::Nearest Segment::nearest_on_line(const AcGePoint3d& p, bool before, bool behind) const {
  const AcGeVector3d chord = end_ - start_;
  const double square = chord.lengthSqrd();
  double u = square > 0.0 ? (p - start_).dotProduct(chord) / square : 0.0;
  if (!std::isfinite(u)) u = 0.0;
  if (!before) u = std::max(u, 0.0);
  if (!behind) u = std::min(u, 1.0);
  return measured(p, u);
}

/// The u of an angle of the full circle: within 0 and 1 when it lies there, else, where allowed,
/// beyond the end that is nearer by angle.
double Segment::u_of_angle(double angle, bool before, bool behind) const {
  const double sweep = std::fabs(sweep_);
  const double turn = sweep_ < 0.0 ? start_angle_ - angle : angle - start_angle_;
  const double forward = turn - kTurn * std::floor(turn / kTurn);  // from the start on
  if (forward <= sweep) return forward / sweep;
  const double over = forward - sweep, under = kTurn - forward;
  if (before && (!behind || under < over)) return -under / sweep;
  return behind ? forward / sweep : (under < over ? 0.0 : 1.0);
}

Segment::Nearest Segment::nearest_on_circle(const AcGePoint3d& p, bool before, bool behind) const {
  const AcGeVector3d arm = p - center_;
  const double x = arm.dotProduct(x_axis_), y = arm.dotProduct(y_axis_);
  if (sweep_ == 0.0 || (x == 0.0 && y == 0.0)) return measured(p, 0.0);
  double u = u_of_angle(std::atan2(y, x), before, behind);
  if (u == 0.0 || u == 1.0) return measured(p, u);
  constexpr double kFlat = 1e-3;
  if (std::fabs(sweep_) > kFlat) {
    const AcGePoint3d point = center_ + (x_axis_ * x + y_axis_ * y) / std::hypot(x, y);
    return {u, point, point.distanceTo(p)};
  }
  // On a flat arc the angle is coarse: the derivative there is not.
  for (int step = 0; step < 2 && u > 0.0 && u < 1.0; ++step) {
    const Jet jet = at(u);
    const AcGeVector3d gap = jet.point - p;
    const double bend = jet.first.lengthSqrd() + gap.dotProduct(jet.second);
    const double next = u - gap.dotProduct(jet.first) / bend;
    if (!(std::fabs(next - u) < kFlat)) break;
    u = std::clamp(next, 0.0, 1.0);
  }
  return measured(p, u);
}

Segment::Nearest Segment::nearest_on_ellipse(const AcGePoint3d& p, bool before, bool behind) const {
  if (sweep_ == 0.0) return measured(p, 0.0);
  // The square of the distance has at most two minima in a turn: look around each sampled one.
  constexpr int kSamples = 48;
  const double turn_in_u = kTurn / std::fabs(sweep_);
  const bool whole = before || behind || turn_in_u <= 1.0;
  const double from = 0.0, to = whole ? turn_in_u : 1.0;
  const double step = (to - from) / kSamples;
  double distances[kSamples + 1];
  for (int i = 0; i <= kSamples; ++i) distances[i] = at(from + i * step).point.distanceTo(p);
  const auto distance = [&](int i) {
    if (whole) return distances[(i + kSamples) % kSamples];
    return distances[std::clamp(i, 0, kSamples)];
  };
  Nearest best{0.0, start_, start_.distanceTo(p)};
  for (int i = 0; i <= kSamples; ++i) {
    if (distance(i) > distance(i - 1) || distance(i) > distance(i + 1)) continue;
    const double low = whole ? from + (i - 1) * step : std::max(from + (i - 1) * step, 0.0);
    const double high = whole ? from + (i + 1) * step : std::min(from + (i + 1) * step, 1.0);
    const Nearest found = refined(p, low, high);
    if (found.distance < best.distance) best = found;
  }
  const double u = u_of_angle(start_angle_ + best.u * sweep_, before, behind);
  if (best.u >= 0.0 && best.u <= 1.0) return best;
  return measured(p, u);
}

Segment::Nearest Segment::nearest_on_spline(const AcGePoint3d& p) const {
  // Pieces whose hull is farther than what was found are out; the rest is halved until a piece is
  // so short that the distance along it has one minimum.
  struct Part {
    Bezier curve;
    double low, high;
  };
  constexpr double kShort = 1.0 / 64;
  Nearest best = measured(p, 0.0);
  if (const Nearest end = measured(p, 1.0); end.distance < best.distance) best = end;
  std::vector<Part> parts{{bezier_, 0.0, 1.0}};
  while (!parts.empty()) {
    const Part part = std::move(parts.back());
    parts.pop_back();
    if (!(distance_to(part.curve.hull(), p) < best.distance)) continue;
    if (part.high - part.low <= kShort) {
      const Nearest found = refined(p, part.low, part.high);
      if (found.distance < best.distance) best = found;
      continue;
    }
    const double middle = (part.low + part.high) / 2;
    Bezier left, right;
    part.curve.split(0.5, left, right);
    // The nearer half is looked at first: the other may then be out.
    const bool left_last = distance_to(left.hull(), p) <= distance_to(right.hull(), p);
    Part halves[] = {{std::move(left), part.low, middle}, {std::move(right), middle, part.high}};
    parts.push_back(std::move(halves[left_last ? 1 : 0]));
    parts.push_back(std::move(halves[left_last ? 0 : 1]));
  }
  return best;
}

}  // namespace cad
