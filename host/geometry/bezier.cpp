#include "host/geometry/bezier.h"

#include <algorithm>
#include <cmath>

namespace cad {
namespace {

/// A control point in homogeneous coordinates.
struct Weighted {
  AcGeVector3d v;
  double w = 0.0;
};

Weighted mix(const Weighted& a, const Weighted& b, double u) {
  return {a.v * (1.0 - u) + b.v * u, a.w * (1.0 - u) + b.w * u};
}

std::vector<Weighted> lifted(const std::vector<Bezier::Control>& controls) {
  std::vector<Weighted> points;
  points.reserve(controls.size());
  for (const Bezier::Control& c : controls)
    points.push_back({c.point.asVector() * c.weight, c.weight});
  return points;
}

Bezier::Control lowered(const Weighted& p) { return {AcGePoint3d::kOrigin + p.v / p.w, p.w}; }

/// The largest value of coordinate `axis` times `sign` on the curve.
double extreme(const Bezier& whole, unsigned axis, double sign) {
  struct Part {
    Bezier curve;
    int depth;
  };
  const auto value = [&](const AcGePoint3d& p) { return sign * p[axis]; };
  const auto& all = whole.controls();
  double best = std::max(value(all.front().point), value(all.back().point));
  double size = 0.0, largest = 0.0;
  for (const Bezier::Control& c : all) {
    size = std::max(size, std::fabs(c.point[axis] - best * sign));
    largest = std::max(largest, std::fabs(c.point[axis]));
  }
  const double enough = 1e-12 * size + 1e-15 * largest;  // rounding must not look like a rise
  constexpr int kDeepest = 48;
  std::vector<Part> parts{{whole, 0}};
  while (!parts.empty()) {
    const Part part = std::move(parts.back());
    parts.pop_back();
    double bound = best;
    for (const Bezier::Control& c : part.curve.controls()) bound = std::max(bound, value(c.point));
    if (!(bound > best + enough) || part.depth == kDeepest) continue;
    Bezier left, right;
    part.curve.split(0.5, left, right);
    best = std::max(best, value(right.controls().front().point));
    parts.push_back({std::move(left), part.depth + 1});
    parts.push_back({std::move(right), part.depth + 1});
  }
  return sign * best;
}

}  // namespace

bool Bezier::is_rational() const {
  return std::any_of(controls_.begin(), controls_.end(),
                     [this](const Control& c) { return c.weight != controls_.front().weight; });
}

Jet Bezier::at(double u) const {
  std::vector<Weighted> points = lifted(controls_);
  if (points.empty()) return {};
  // The last three rows of the scheme hold the derivatives of numerator and denominator.
  const auto degree = points.size() - 1;
  Weighted first, second;
  for (std::size_t row = degree; row > 0; --row) {
    const double n = static_cast<double>(degree);
    if (row == 2) {
      second = {(points[2].v - points[1].v * 2.0 + points[0].v) * (n * (n - 1.0)),
                (points[2].w - 2.0 * points[1].w + points[0].w) * (n * (n - 1.0))};
    }
    if (row == 1) first = {(points[1].v - points[0].v) * n, (points[1].w - points[0].w) * n};
    for (std::size_t i = 0; i < row; ++i) points[i] = mix(points[i], points[i + 1], u);
  }
  const Weighted& p = points[0];
  Jet jet;
  const AcGeVector3d place = p.v / p.w;
  jet.point = AcGePoint3d::kOrigin + place;
  jet.first = (first.v - place * first.w) / p.w;
  jet.second = (second.v - place * second.w - jet.first * (2.0 * first.w)) / p.w;
  return jet;
}

void Bezier::split(double u, Bezier& left, Bezier& right) const {
  std::vector<Weighted> points = lifted(controls_);
  const std::size_t count = points.size();
  left.controls_.resize(count);
  right.controls_.resize(count);
  for (std::size_t row = 0; row < count; ++row) {
    left.controls_[row] = lowered(points[0]);
    right.controls_[count - 1 - row] = lowered(points[count - 1 - row]);
    for (std::size_t i = 0; i + 1 + row < count; ++i) points[i] = mix(points[i], points[i + 1], u);
  }
}

Bezier Bezier::piece(double u0, double u1) const {
  Bezier left, right, rest;
  split(u0, left, right);
  if (u1 >= 1.0) return right;
  right.split((u1 - u0) / (1.0 - u0), left, rest);
  return left;
}

Bezier Bezier::transformed(const AcGeMatrix3d& map) const {
  Bezier result = *this;
  for (Control& c : result.controls_) c.point.transformBy(map);
  return result;
}

AcDbExtents Bezier::hull() const {
  AcDbExtents box;
  for (const Control& c : controls_) box.addPoint(c.point);
  return box;
}

AcDbExtents Bezier::extents() const {
  if (controls_.empty()) return {};
  AcGePoint3d min, max;
  for (unsigned axis = 0; axis < 3; ++axis) {
    min[axis] = extreme(*this, axis, -1.0);
    max[axis] = extreme(*this, axis, 1.0);
  }
  return {min, max};
}

double Bezier::flatness() const {
  const AcGePoint3d a = controls_.front().point;
  const AcGeVector3d chord = controls_.back().point - a;
  const double square = chord.lengthSqrd();
  double worst = 0.0;
  for (const Control& c : controls_) {
    const AcGeVector3d arm = c.point - a;
    const double along = square > 0.0 ? std::clamp(arm.dotProduct(chord) / square, 0.0, 1.0) : 0.0;
    worst = std::max(worst, (arm - chord * along).length());
  }
  return worst;
}

}  // namespace cad
