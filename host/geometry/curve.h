#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "host/geometry/segment.h"

namespace cad {

/// A curve in world coordinates, as a value of its own: what the published curve classes compute
/// with. It is a chain of segments; points, derivatives and nearest points are those of the true
/// curve, at vertices and ends too.
///
/// Parameters are those of the published classes:
///     line                 0 at its start to its length
///     ray, xline           distance from the base point; 0 or minus infinity to infinity
///     arc                  angle, its start angle to its end angle (made larger by a full turn
///                          where it would be less)
///     circle               angle, 0 to 2 pi
///     ellipse              parametric angle
///     polyline             vertex index and the fraction of the segment behind it, on arcs by
///     angle spline               knot value
///
/// Every input is taken: segments without length, bulges that give no finite radius, repeated
/// vertices and numbers that are not finite make a poor curve but no crash and no endless loop.
class Curve {
 public:
  enum class Kind : std::uint8_t {
    kLine,
    kRay,
    kXline,
    kArc,
    kCircle,
    kEllipse,  ///< or an arc of one
    kPolyline,
    kPolyline3d,
    kSpline,
  };
  struct Vertex {
    AcGePoint2d point;  ///< in the polyline's own coordinate system
    double bulge = 0.0;
  };

  static Curve line(const AcGePoint3d& start, const AcGePoint3d& end);
  static Curve ray(const AcGePoint3d& base, const AcGeVector3d& direction);
  static Curve xline(const AcGePoint3d& base, const AcGeVector3d& direction);
  /// The center is in world coordinates, angles count from the X axis that belongs to the normal.
  static Curve arc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                   double start_angle, double end_angle);
  static Curve circle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);
  static Curve ellipse(const AcGePoint3d& center, const AcGeVector3d& normal,
                       const AcGeVector3d& major_axis, double ratio, double start_param,
                       double end_param);
  static Curve polyline(std::span<const Vertex> vertices, bool closed,
                        const AcGeVector3d& normal = AcGeVector3d::kZAxis, double elevation = 0.0);
  static Curve polyline3d(std::span<const AcGePoint3d> vertices, bool closed);
  /// Nothing when knots, weights and points do not fit together.
  static std::optional<Curve> spline(const SplineShape& shape);

  Kind kind() const { return kind_; }
  /// In order; of a ray or xline one line from the base point, as long as its direction. Empty for
  /// a polyline without vertices.
  std::span<const Segment> segments() const { return segments_; }
  /// The segment that holds a parameter, at a vertex the one behind it. The curve has segments.
  const Segment& segment_at(double param) const { return segments_[place_of(param).segment]; }

  double start_param() const { return start_param_; }
  double end_param() const { return end_param_; }
  bool has_param(double param) const { return param >= start_param_ && param <= end_param_; }
  AcGePoint3d start_point() const { return point_at(start_param_); }
  AcGePoint3d end_point() const { return point_at(end_param_); }
  /// Circles, whole ellipses and arcs of a full turn, splines whose ends meet, and polylines that
  /// say so: one that merely ends where it starts is open.
  bool is_closed() const;
  bool is_periodic() const { return periodic_; }
  bool is_bounded() const { return kind_ != Kind::kRay && kind_ != Kind::kXline; }
  /// The plane's unit normal; of a straight curve one of those there are, and nothing for a curve
  /// in space.
  std::optional<AcGeVector3d> plane_normal() const;

  /// Parameters outside of the curve count as its nearer end.
  AcGePoint3d point_at(double param) const { return jet_at(param).point; }
  AcGeVector3d first_derivative(double param) const { return jet_at(param).first; }
  AcGeVector3d second_derivative(double param) const { return jet_at(param).second; }
  /// Point and derivatives; at a vertex those of the segment behind it, at the end of the last.
  Jet jet_at(double param) const;

  /// From the start, along the curve. Exact for lines and arcs of circles, else within 1e-12 of
  /// the length. Rays and xlines measure from their base point.
  double length() const { return distance_at(end_param_); }
  double distance_at(double param) const;
  double param_at_distance(double distance) const;

  struct Nearest {
    double param = 0.0;
    AcGePoint3d point;
    double distance = std::numeric_limits<double>::infinity();
  };
  /// With `extend`, of an open curve whose ends are prolonged: lines straight on, arcs to their
  /// full circle or ellipse; splines end where they end. Of several nearest points the first.
  Nearest nearest(const AcGePoint3d& p, bool extend = false) const;
  AcGePoint3d closest_point(const AcGePoint3d& p, bool extend = false) const {
    return nearest(p, extend).point;
  }
  double closest_param(const AcGePoint3d& p) const { return nearest(p).param; }
  /// The point of the curve whose image in the plane with this normal is nearest to the point's.
  Nearest nearest_in_projection(const AcGePoint3d& p, const AcGeVector3d& normal,
                                bool extend = false) const;
  /// Of a point on the curve, up to `tolerance`; nothing for one beside it.
  std::optional<double> param_at(const AcGePoint3d& p, double tolerance) const;
  /// With a tolerance that suits the size of the coordinates.
  std::optional<double> param_at(const AcGePoint3d& p) const;

  /// What the curve encloses, an open one with the straight line back to its start. Of a curve that
  /// is not plane, what its shadow encloses in the direction where that is largest.
  double area() const { return area_vector().length(); }
  /// Along the normal, on whose side the curve turns counter-clockwise.
  AcGeVector3d area_vector() const;
  /// Of a ray or xline: of the segment that stands for it.
  AcDbExtents extents() const;

  /// The image under any affine map, parameters unchanged: those of a line scaled by 2 still count
  /// its old length.
  Curve transformed(const AcGeMatrix3d& map) const;

 private:
  struct Place {
    std::size_t segment = 0;
    double u = 0.0;
  };
  Curve(Kind kind, std::vector<Segment> segments);
  Place place_of(double param) const;
  const std::vector<double>& lengths() const;

  Kind kind_;
  bool closed_ = false;  // by its data, as polylines say
  bool periodic_ = false;
  double start_param_ = 0.0;
  double end_param_ = 0.0;
  std::vector<Segment> segments_;
  mutable std::vector<double> lengths_;  // up to each segment's end; made when first asked for
};

}  // namespace cad
