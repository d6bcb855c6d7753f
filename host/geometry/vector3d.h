#pragma once

#include <cmath>

#include "host/geometry/tolerance.h"
#include "host/geometry/vector2d.h"

class AcGeMatrix3d;
class AcGePlane;

/// A direction and length in space. Angles are radians.
class AcGeVector3d {
 public:
  double x = 0.0, y = 0.0, z = 0.0;

  static const AcGeVector3d kIdentity;  ///< the zero vector
  static const AcGeVector3d kXAxis;
  static const AcGeVector3d kYAxis;
  static const AcGeVector3d kZAxis;

  constexpr AcGeVector3d() = default;
  constexpr AcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
  /// The vector of a plane's own coordinates, in space.
  AcGeVector3d(const AcGePlane& plane, const AcGeVector2d& v);

  constexpr AcGeVector3d& set(double xx, double yy, double zz) { return *this = {xx, yy, zz}; }
  constexpr double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
  constexpr double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }

  constexpr AcGeVector3d operator+(const AcGeVector3d& v) const {
    return {x + v.x, y + v.y, z + v.z};
  }
  constexpr AcGeVector3d operator-(const AcGeVector3d& v) const {
    return {x - v.x, y - v.y, z - v.z};
  }
  constexpr AcGeVector3d operator-() const { return {-x, -y, -z}; }
  constexpr AcGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
  constexpr AcGeVector3d operator/(double s) const { return {x / s, y / s, z / s}; }
  friend constexpr AcGeVector3d operator*(double s, const AcGeVector3d& v) { return v * s; }
  constexpr AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
  constexpr AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
  constexpr AcGeVector3d& operator*=(double s) { return *this = *this * s; }
  constexpr AcGeVector3d& operator/=(double s) { return *this = *this / s; }
  constexpr AcGeVector3d& negate() { return *this = -*this; }

  constexpr double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  constexpr AcGeVector3d crossProduct(const AcGeVector3d& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }
  constexpr double lengthSqrd() const { return dotProduct(*this); }
  double length() const { return std::sqrt(lengthSqrd()); }

  /// The unit vector of this direction; a vector of no length stays what it is.
  AcGeVector3d normal(const AcGeTol& tol = AcGeContext::gTol) const {
    return isZeroLength(tol) ? *this : *this / length();
  }
  AcGeVector3d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }

  /// A unit vector at a right angle: the X axis a drawing gives to a plane of this normal.
  AcGeVector3d perpVector() const;
  /// Turns in place, right-handed about the axis; about an axis of no length nothing turns.
  AcGeVector3d& rotateBy(double angle, const AcGeVector3d& axis);
  /// The matrix without its translation, applied in place.
  AcGeVector3d& transformBy(const AcGeMatrix3d& matrix);
  /// The reflection in the plane with this normal, in place.
  AcGeVector3d& mirror(const AcGeVector3d& normal_to_plane);
  /// The coordinates in the plane's own axes.
  AcGeVector2d convert2d(const AcGePlane& plane) const;

  /// Between the two directions, 0 to pi; 0 when either has no length.
  double angleTo(const AcGeVector3d& v) const;
  /// From this to v, counter-clockwise seen against `reference`: 0 <= angle < 2 pi.
  double angleTo(const AcGeVector3d& v, const AcGeVector3d& reference) const;
  /// From the plane's u axis to the projection into the plane, 0 <= angle < 2 pi; 0 when the
  /// vector stands on the plane.
  double angleOnPlane(const AcGePlane& plane) const;

  bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const {
    return length() <= tol.equalVector();
  }
  bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const {
    return std::fabs(length() - 1.0) <= tol.equalVector();
  }
  /// The direction tests compare unit vectors; false when either vector has no length.
  bool isCodirectionalTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return has_direction(v, tol) && (normal(tol) - v.normal(tol)).length() <= tol.equalVector();
  }
  bool isParallelTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return isCodirectionalTo(v, tol) || isCodirectionalTo(-v, tol);
  }
  bool isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return has_direction(v, tol) &&
           std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
  }

  bool isEqualTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  bool operator==(const AcGeVector3d& v) const { return isEqualTo(v); }

 private:
  bool has_direction(const AcGeVector3d& v, const AcGeTol& tol) const {
    return !isZeroLength(tol) && !v.isZeroLength(tol);
  }
};

inline constexpr AcGeVector3d AcGeVector3d::kIdentity{0.0, 0.0, 0.0};
inline constexpr AcGeVector3d AcGeVector3d::kXAxis{1.0, 0.0, 0.0};
inline constexpr AcGeVector3d AcGeVector3d::kYAxis{0.0, 1.0, 0.0};
inline constexpr AcGeVector3d AcGeVector3d::kZAxis{0.0, 0.0, 1.0};
