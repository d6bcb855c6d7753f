#pragma once

#include "host/geometry/point3d.h"

/// A plane with an origin and axes of its own. The u axis of a plane given by its normal is the
/// X axis a drawing gives to objects of that normal, so the XY plane has the world's axes.
class AcGePlane {
 public:
  static const AcGePlane kXYPlane;
  static const AcGePlane kYZPlane;
  static const AcGePlane kZXPlane;

  constexpr AcGePlane() = default;
  /// A normal of no length counts as the Z axis.
  AcGePlane(const AcGePoint3d& origin, const AcGeVector3d& normal);
  /// u keeps its direction, v is turned to a right angle with it. Both must differ in direction;
  /// otherwise v is any vector at a right angle.
  AcGePlane(const AcGePoint3d& origin, const AcGeVector3d& u_axis, const AcGeVector3d& v_axis);

  AcGePlane& set(const AcGePoint3d& origin, const AcGeVector3d& normal) {
    return *this = AcGePlane(origin, normal);
  }

  constexpr const AcGePoint3d& pointOnPlane() const { return origin_; }
  constexpr AcGeVector3d normal() const { return u_.crossProduct(v_); }
  constexpr void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& u_axis,
                                AcGeVector3d& v_axis) const {
    origin = origin_;
    u_axis = u_;
    v_axis = v_;
  }
  /// Positive on the side of the normal.
  constexpr double signedDistanceTo(const AcGePoint3d& p) const {
    return (p - origin_).dotProduct(normal());
  }

 private:
  static constexpr AcGePlane through_origin(const AcGeVector3d& u, const AcGeVector3d& v) {
    AcGePlane plane;
    plane.u_ = u;
    plane.v_ = v;
    return plane;
  }

  AcGePoint3d origin_;
  AcGeVector3d u_{1.0, 0.0, 0.0};  // unit vectors at a right angle
  AcGeVector3d v_{0.0, 1.0, 0.0};
};

/// The only kind of flat entity there is here.
using AcGePlanarEnt = AcGePlane;

inline constexpr AcGePlane AcGePlane::kXYPlane{};
inline constexpr AcGePlane AcGePlane::kYZPlane =
    AcGePlane::through_origin(AcGeVector3d::kYAxis, AcGeVector3d::kZAxis);
inline constexpr AcGePlane AcGePlane::kZXPlane =
    AcGePlane::through_origin(AcGeVector3d::kZAxis, AcGeVector3d::kXAxis);
