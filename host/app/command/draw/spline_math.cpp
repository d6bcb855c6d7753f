#include "host/app/command/draw/spline_math.h"

#include <algorithm>
#include <array>

namespace cad {
namespace {

/// Rows of below * x[i-1] + middle * x[i] + above * x[i+1] = right.
struct Row {
  double below = 0.0;
  double middle = 1.0;
  double above = 0.0;
  AcGeVector3d right;
};

/// Solves the rows; the matrix is dominated by its diagonal.
std::vector<AcGeVector3d> solve(std::vector<Row> rows) {
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const double factor = rows[i].below / rows[i - 1].middle;
    rows[i].middle -= factor * rows[i - 1].above;
    rows[i].right -= rows[i - 1].right * factor;
  }
  std::vector<AcGeVector3d> x(rows.size());
  for (std::size_t i = rows.size(); i-- > 0;) {
    AcGeVector3d right = rows[i].right;
    if (i + 1 < rows.size()) right -= x[i + 1] * rows[i].above;
    x[i] = right / rows[i].middle;
  }
  return x;
}

/// The same where the first row has a term in the last unknown, and the last in the first.
std::vector<AcGeVector3d> solve_cyclic(std::vector<Row> rows, double in_first, double in_last) {
  const double gamma = -rows.front().middle;
  rows.front().middle -= gamma;
  rows.back().middle -= in_first * in_last / gamma;
  std::vector<Row> correction = rows;
  for (Row& row : correction) row.right = {};
  correction.front().right.x = gamma;
  correction.back().right.x = in_last;
  std::vector<AcGeVector3d> x = solve(std::move(rows));
  const std::vector<AcGeVector3d> z = solve(std::move(correction));
  const double below = 1.0 + z.front().x + in_first * z.back().x / gamma;
  const AcGeVector3d factor = (x.front() + x.back() * (in_first / gamma)) / below;
  for (std::size_t i = 0; i < x.size(); ++i) x[i] -= factor * z[i].x;
  return x;
}

/// A row that says the curve has no break in its second derivative at a point, from the slopes of
/// the chords beside it.
Row smooth(double before, double after, const AcGeVector3d& chord_before,
           const AcGeVector3d& chord_after) {
  return {after, 2 * (before + after), before,
          (chord_before * (after / before) + chord_after * (before / after)) * 3.0};
}

/// Derivatives at the points. `u` are the parameters.
std::vector<AcGeVector3d> derivatives(const std::vector<AcGePoint3d>& points,
                                      const std::vector<double>& u, bool closed,
                                      const std::optional<AcGeVector3d>& start,
                                      const std::optional<AcGeVector3d>& end) {
  const std::size_t last = points.size() - 1;
  const auto step = [&](std::size_t i) { return u[i + 1] - u[i]; };
  const auto chord = [&](std::size_t i) { return points[i + 1] - points[i]; };
  std::vector<Row> rows;
  if (closed) {
    // The last point is the first: one unknown less.
    for (std::size_t i = 0; i < last; ++i) {
      const std::size_t before = i == 0 ? last - 1 : i - 1;
      rows.push_back(smooth(step(before), step(i), chord(before), chord(i)));
    }
    const double in_first = rows.front().below, in_last = rows.back().above;
    std::vector<AcGeVector3d> found = solve_cyclic(std::move(rows), in_first, in_last);
    found.push_back(found.front());
    return found;
  }
  const Row straight_start{0.0, 2.0, 1.0, chord(0) * (3.0 / step(0))};
  const Row straight_end{1.0, 2.0, 0.0, chord(last - 1) * (3.0 / step(last - 1))};
  rows.push_back(start ? Row{0.0, 1.0, 0.0, *start} : straight_start);
  for (std::size_t i = 1; i < last; ++i)
    rows.push_back(smooth(step(i - 1), step(i), chord(i - 1), chord(i)));
  rows.push_back(end ? Row{0.0, 1.0, 0.0, *end} : straight_end);
  return solve(std::move(rows));
}

/// The symmetric, multi-affine form of a cubic given by its Bezier points on [0, 1].
AcGePoint3d blossom(std::array<AcGePoint3d, 4> points, const std::array<double, 3>& at) {
  for (std::size_t level = 0; level < 3; ++level) {
    for (std::size_t i = 0; i + level < 3; ++i)
      points[i] = points[i] + (points[i + 1] - points[i]) * at[level];
  }
  return points[0];
}

}  // namespace

FittedSpline fit_spline(std::vector<AcGePoint3d> points, bool closed,
                        std::optional<AcGeVector3d> start_tangent,
                        std::optional<AcGeVector3d> end_tangent) {
  if (closed) points.push_back(points.front());
  if (points.size() < 4) closed = false;  // two points and back: no smooth loop
  const std::size_t last = points.size() - 1;
  std::vector<double> u{0.0};
  for (std::size_t i = 0; i < last; ++i)
    u.push_back(u.back() + points[i].distanceTo(points[i + 1]));
  const std::vector<AcGeVector3d> slope =
      derivatives(points, u, closed, start_tangent, end_tangent);

  FittedSpline spline;
  spline.knots.assign(3, u.front());
  spline.knots.insert(spline.knots.end(), u.begin(), u.end());
  spline.knots.insert(spline.knots.end(), 3, u.back());
  for (std::size_t j = 0; j < last + 3; ++j) {
    const std::size_t i = std::min(j == 0 ? 0 : j - 1, last - 1);
    const double length = u[i + 1] - u[i];
    const auto local = [&](std::size_t knot) { return (spline.knots[knot] - u[i]) / length; };
    spline.control_points.push_back(
        blossom({points[i], points[i] + slope[i] * (length / 3),
                 points[i + 1] - slope[i + 1] * (length / 3), points[i + 1]},
                {local(j + 1), local(j + 2), local(j + 3)}));
  }
  spline.start_tangent = slope.front().normal();
  spline.end_tangent = slope.back().normal();
  return spline;
}

}  // namespace cad
