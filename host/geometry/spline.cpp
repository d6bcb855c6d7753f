// From knots and control points, or fit points, to the pieces of a spline.

#include <algorithm>
#include <cmath>

#include "host/geometry/bezier.h"

namespace cad {
namespace {

bool is_finite(const AcGePoint3d& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool fits_together(const SplineShape& s) {
  constexpr int kHighestDegree = 25;
  const auto degree = static_cast<std::size_t>(std::max(s.degree, 0));
  return s.degree >= 1 && s.degree <= kHighestDegree && s.controls.size() > degree &&
         s.knots.size() == s.controls.size() + degree + 1 &&
         std::is_sorted(s.knots.begin(), s.knots.end()) &&
         std::all_of(s.knots.begin(), s.knots.end(), [](double k) { return std::isfinite(k); }) &&
         std::all_of(s.controls.begin(), s.controls.end(), is_finite) &&
         (s.weights.empty() || s.weights.size() == s.controls.size()) &&
         std::all_of(s.weights.begin(), s.weights.end(),
                     [](double w) { return std::isfinite(w) && w > 0.0; });
}

struct Weighted {
  AcGeVector3d v;
  double w = 1.0;
};

/// The blossom of the spline's piece between knots `span` and `span` + 1, at as many arguments as
/// its degree: the first of them are `low`, `highs` of them `high`.
Weighted blossom(const SplineShape& s, std::size_t span, std::size_t highs) {
  const auto degree = static_cast<std::size_t>(s.degree);
  const double low = s.knots[span], high = s.knots[span + 1];
  std::vector<Weighted> d(degree + 1);
  for (std::size_t j = 0; j <= degree; ++j) {
    const std::size_t i = span - degree + j;
    const double w = s.weights.empty() ? 1.0 : s.weights[i];
    d[j] = {s.controls[i].asVector() * w, w};
  }
  for (std::size_t row = 1; row <= degree; ++row) {
    const double argument = row <= highs ? high : low;
    for (std::size_t j = degree; j >= row; --j) {
      const std::size_t i = span - degree + j;
      const double from = s.knots[i], to = s.knots[i + degree + 1 - row];
      const double u = (argument - from) / (to - from);  // the span lies between: to > from
      d[j] = {d[j - 1].v * (1.0 - u) + d[j].v * u, d[j - 1].w * (1.0 - u) + d[j].w * u};
    }
  }
  return d[degree];
}

std::vector<BezierSpan> spans_of_controls(const SplineShape& s) {
  std::vector<BezierSpan> spans;
  if (!fits_together(s)) return spans;
  const auto degree = static_cast<std::size_t>(s.degree);
  for (std::size_t i = degree; i < s.controls.size(); ++i) {
    if (!(s.knots[i] < s.knots[i + 1])) continue;
    std::vector<Bezier::Control> controls;
    for (std::size_t highs = 0; highs <= degree; ++highs) {
      const Weighted p = blossom(s, i, highs);
      controls.push_back({AcGePoint3d::kOrigin + p.v / p.w, p.w});
    }
    spans.push_back({Bezier(std::move(controls)), s.knots[i], s.knots[i + 1]});
  }
  return spans;
}

/// Rows of a tridiagonal system: below * x[i-1] + middle * x[i] + above * x[i+1] = right.
struct Row {
  double below = 0.0, middle = 1.0, above = 0.0;
  AcGeVector3d right;
};

/// Elimination without exchange of rows; the systems here are dominated by their diagonal.
std::vector<AcGeVector3d> solve(std::vector<Row> rows) {
  const std::size_t n = rows.size();
  for (std::size_t i = 1; i < n; ++i) {
    const double factor = rows[i].below / rows[i - 1].middle;
    rows[i].middle -= factor * rows[i - 1].above;
    rows[i].right -= rows[i - 1].right * factor;
  }
  std::vector<AcGeVector3d> x(n);
  for (std::size_t i = n; i-- > 0;) {
    x[i] = rows[i].right;
    if (i + 1 < n) x[i] -= x[i + 1] * rows[i].above;
    x[i] /= rows[i].middle;
  }
  return x;
}

/// The row that makes curvature continuous at a point between chords of length h and g.
Row smooth_row(const AcGePoint3d& before, const AcGePoint3d& at, const AcGePoint3d& behind,
               double h, double g) {
  return {g, 2.0 * (h + g), h, ((at - before) * (g / h) + (behind - at) * (h / g)) * 3.0};
}

/// Velocities at the points of a closed curve (the last point repeats the first): the cyclic
/// system, reduced to two tridiagonal ones.
std::vector<AcGeVector3d> closed_velocities(const std::vector<AcGePoint3d>& p,
                                            const std::vector<double>& h) {
  const std::size_t n = h.size();
  std::vector<Row> rows(n);
  for (std::size_t i = 0; i < n; ++i)
    rows[i] = smooth_row(i == 0 ? p[n - 1] : p[i - 1], p[i], p[i + 1], i == 0 ? h[n - 1] : h[i - 1],
                         h[i]);
  const double low_left = rows[n - 1].above, up_right = rows[0].below;
  const double gamma = -rows[0].middle;
  std::vector<Row> base = rows;
  base[0].below = base[n - 1].above = 0.0;
  base[0].middle -= gamma;
  base[n - 1].middle -= low_left * up_right / gamma;
  std::vector<Row> correction = base;
  for (Row& row : correction) row.right = AcGeVector3d();
  correction[0].right.x = gamma;
  correction[n - 1].right.x = low_left;
  std::vector<AcGeVector3d> x = solve(base);
  const std::vector<AcGeVector3d> z = solve(correction);
  const double divisor = 1.0 + z[0].x + up_right * z[n - 1].x / gamma;
  const AcGeVector3d factor = (x[0] + x[n - 1] * (up_right / gamma)) / divisor;
  for (std::size_t i = 0; i < n; ++i) x[i] -= factor * z[i].x;
  x.push_back(x[0]);
  return x;
}

std::vector<AcGeVector3d> open_velocities(const SplineShape& s, const std::vector<AcGePoint3d>& p,
                                          const std::vector<double>& h) {
  const std::size_t last = p.size() - 1;
  std::vector<Row> rows(p.size());
  if (s.start_tangent.isZeroLength())
    rows[0] = {0.0, 2.0, 1.0, (p[1] - p[0]) * (3.0 / h[0])};
  else
    rows[0].right = s.start_tangent.normal();
  if (s.end_tangent.isZeroLength())
    rows[last] = {1.0, 2.0, 0.0, (p[last] - p[last - 1]) * (3.0 / h[last - 1])};
  else
    rows[last].right = s.end_tangent.normal();
  for (std::size_t i = 1; i < last; ++i)
    rows[i] = smooth_row(p[i - 1], p[i], p[i + 1], h[i - 1], h[i]);
  return solve(std::move(rows));
}

std::vector<BezierSpan> spans_of_fit_points(const SplineShape& s) {
  std::vector<AcGePoint3d> p;
  for (const AcGePoint3d& point : s.fit_points)
    if (is_finite(point) && (p.empty() || !p.back().isEqualTo(point))) p.push_back(point);
  if (s.closed && p.size() > 2 && !p.front().isEqualTo(p.back())) p.push_back(p.front());
  std::vector<BezierSpan> spans;
  if (p.size() < 2) return spans;
  std::vector<double> h;
  for (std::size_t i = 0; i + 1 < p.size(); ++i) h.push_back(p[i].distanceTo(p[i + 1]));
  const bool cyclic = s.closed && p.size() > 3;
  const std::vector<AcGeVector3d> v = cyclic ? closed_velocities(p, h) : open_velocities(s, p, h);
  double knot = 0.0;
  for (std::size_t i = 0; i < h.size(); ++i) {
    const double third = h[i] / 3.0;
    spans.push_back({Bezier({{p[i], 1.0},
                             {p[i] + v[i] * third, 1.0},
                             {p[i + 1] - v[i + 1] * third, 1.0},
                             {p[i + 1], 1.0}}),
                     knot, knot + h[i]});
    knot += h[i];
  }
  return spans;
}

}  // namespace

std::vector<BezierSpan> bezier_spans(const SplineShape& shape) {
  return shape.controls.empty() ? spans_of_fit_points(shape) : spans_of_controls(shape);
}

}  // namespace cad
