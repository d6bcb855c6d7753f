#pragma once

#include <vector>

#include "host/geometry/extents.h"

namespace cad {

/// Place, velocity and acceleration.
struct Jet {
  AcGePoint3d point;
  AcGeVector3d first;
  AcGeVector3d second;
};

/// One piece of a spline: a rational Bezier curve over 0 <= u <= 1. It stays within the hull of its
/// control points, which is what searches on it rely on.
class Bezier {
 public:
  struct Control {
    AcGePoint3d point;
    double weight = 1.0;  ///< positive
  };

  Bezier() = default;
  explicit Bezier(std::vector<Control> controls) : controls_(std::move(controls)) {}

  const std::vector<Control>& controls() const { return controls_; }
  bool is_rational() const;
  Jet at(double u) const;
  /// The two halves at u.
  void split(double u, Bezier& left, Bezier& right) const;
  /// The piece between two parameters, u0 < u1.
  Bezier piece(double u0, double u1) const;
  Bezier transformed(const AcGeMatrix3d& map) const;
  /// The box around the control points: holds the curve, and is larger.
  AcDbExtents hull() const;
  /// The box around the curve itself, up to 1e-12 of its size.
  AcDbExtents extents() const;
  /// How far the curve may be from its chord, at most.
  double flatness() const;

 private:
  std::vector<Control> controls_;
};

/// A B-spline as drawings store it.
struct SplineShape {
  int degree = 3;
  bool closed = false;  ///< of fit points: the last is joined to the first
  std::vector<double> knots;
  std::vector<AcGePoint3d> controls;
  std::vector<double> weights;  ///< empty: all 1
  std::vector<AcGePoint3d> fit_points;
  AcGeVector3d start_tangent;  ///< of fit points; no length: none given
  AcGeVector3d end_tangent;
};

/// A piece and the knots between which it runs.
struct BezierSpan {
  Bezier curve;
  double start = 0.0;
  double end = 0.0;
};

/// The pieces of a spline between its different knots; empty when knots, weights and control points
/// do not fit together. Without control points the curve goes through the fit points: piecewise
/// cubic with continuous curvature, parameters by chord length, given end tangents or, without
/// them, ends without curvature.
std::vector<BezierSpan> bezier_spans(const SplineShape& shape);

}  // namespace cad
