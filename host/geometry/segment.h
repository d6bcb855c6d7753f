#pragma once

#include <cstdint>

#include "host/geometry/bezier.h"

namespace cad {

/// One smooth piece of a curve, run through by 0 <= u <= 1: a straight line, an arc of a circle or
/// ellipse (u in proportion to its angle), or a piece of a spline. Its ends are exact: at(0) is
/// start() and at(1) is end() to the last bit.
///
/// An elliptic arc is center + x_axis cos(a) + y_axis sin(a) for a from start_angle on through
/// sweep (negative: clockwise). After a map that skews, its axes need not be at right angles.
class Segment {
 public:
  enum class Kind : std::uint8_t { kLine, kArc, kEllipse, kSpline };

  Segment() = default;
  static Segment line(const AcGePoint3d& start, const AcGePoint3d& end);
  /// Axes of one length at right angles make an arc of a circle, all others one of an ellipse.
  static Segment arc(const AcGePoint3d& center, const AcGeVector3d& x_axis,
                     const AcGeVector3d& y_axis, double start_angle, double sweep);
  /// From start to end, turning by 4 atan(bulge) about the normal; a bulge of 0, or one that gives
  /// no finite radius, makes a line.
  static Segment bulge(const AcGePoint3d& start, const AcGePoint3d& end, double bulge,
                       const AcGeVector3d& normal);
  static Segment spline(Bezier curve);

  Kind kind() const { return kind_; }
  const AcGePoint3d& start() const { return start_; }
  const AcGePoint3d& end() const { return end_; }
  /// Parameters of the curve this is a piece of.
  double start_param() const { return start_param_; }
  double end_param() const { return end_param_; }
  void set_params(double start, double end) { start_param_ = start, end_param_ = end; }

  // Of arcs.
  const AcGePoint3d& center() const { return center_; }
  const AcGeVector3d& x_axis() const { return x_axis_; }
  const AcGeVector3d& y_axis() const { return y_axis_; }
  double start_angle() const { return start_angle_; }
  double sweep() const { return sweep_; }
  double radius() const { return x_axis_.length(); }
  AcGeVector3d normal() const { return x_axis_.crossProduct(y_axis_).normal(); }
  bool is_arc() const { return kind_ == Kind::kArc || kind_ == Kind::kEllipse; }

  // Of a piece of a spline.
  const Bezier& bezier() const { return bezier_; }

  /// Derivatives by u. Lines and arcs go on beyond 0 and 1, splines end there.
  Jet at(double u) const;
  AcGePoint3d point_at(double u) const { return at(u).point; }

  /// Exact for lines and arcs of circles, else within 1e-12 of the length.
  double length() const { return length_to(1.0); }
  double length_to(double u) const;
  double u_at_length(double distance) const;

  struct Nearest {
    double u = 0.0;
    AcGePoint3d point;
    double distance = 0.0;
  };
  /// `before` and `behind`: whether u may be below 0 and above 1; for splines without effect.
  Nearest nearest(const AcGePoint3d& p, bool before = false, bool behind = false) const;

  AcDbExtents extents() const;
  /// Half the integral of (r - origin) x dr along the piece: summed over a closed curve its length
  /// is the area, its direction the normal.
  AcGeVector3d swept_area(const AcGePoint3d& origin) const;

  Segment transformed(const AcGeMatrix3d& map) const;
  Segment reversed() const;
  /// From u0 to u1, 0 <= u0 <= u1 <= 1. Parameters are those of the curve.
  Segment piece(double u0, double u1) const;

 private:
  AcGeVector3d spoke(double angle) const;
  Nearest nearest_on_line(const AcGePoint3d& p, bool before, bool behind) const;
  Nearest nearest_on_circle(const AcGePoint3d& p, bool before, bool behind) const;
  Nearest nearest_on_ellipse(const AcGePoint3d& p, bool before, bool behind) const;
  Nearest nearest_on_spline(const AcGePoint3d& p) const;
  Nearest refined(const AcGePoint3d& p, double low, double high) const;
  Nearest measured(const AcGePoint3d& p, double u) const;
  double u_of_angle(double angle, bool before, bool behind) const;

  Kind kind_ = Kind::kLine;
  double start_param_ = 0.0;
  double end_param_ = 1.0;
  AcGePoint3d start_;
  AcGePoint3d end_;
  AcGePoint3d center_;
  AcGeVector3d x_axis_;
  AcGeVector3d y_axis_;
  double start_angle_ = 0.0;
  double sweep_ = 0.0;
  Bezier bezier_;
};

}  // namespace cad
