#pragma once

#include "host/geometry/point2d.h"
#include "host/geometry/vector3d.h"

/// A place in space, in drawing units.
class AcGePoint3d {
 public:
  double x = 0.0, y = 0.0, z = 0.0;

  static const AcGePoint3d kOrigin;

  constexpr AcGePoint3d() = default;
  constexpr AcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}
  /// The point of a plane's own coordinates, in space.
  AcGePoint3d(const AcGePlane& plane, const AcGePoint2d& p);

  constexpr AcGePoint3d& set(double xx, double yy, double zz) { return *this = {xx, yy, zz}; }
  constexpr double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
  constexpr double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }

  constexpr AcGePoint3d operator+(const AcGeVector3d& v) const {
    return {x + v.x, y + v.y, z + v.z};
  }
  constexpr AcGePoint3d operator-(const AcGeVector3d& v) const {
    return {x - v.x, y - v.y, z - v.z};
  }
  constexpr AcGeVector3d operator-(const AcGePoint3d& p) const {
    return {x - p.x, y - p.y, z - p.z};
  }
  constexpr AcGePoint3d operator*(double s) const { return {x * s, y * s, z * s}; }
  constexpr AcGePoint3d operator/(double s) const { return {x / s, y / s, z / s}; }
  friend constexpr AcGePoint3d operator*(double s, const AcGePoint3d& p) { return p * s; }
  constexpr AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
  constexpr AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
  constexpr AcGePoint3d& operator*=(double s) { return *this = *this * s; }
  constexpr AcGePoint3d& operator/=(double s) { return *this = *this / s; }

  constexpr AcGeVector3d asVector() const { return {x, y, z}; }
  double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }

  /// These change the point in place and return it.
  AcGePoint3d& transformBy(const AcGeMatrix3d& matrix);
  AcGePoint3d& rotateBy(double angle, const AcGeVector3d& axis,
                        const AcGePoint3d& about = kOrigin) {
    AcGeVector3d arm = *this - about;
    return *this = about + arm.rotateBy(angle, axis);
  }
  constexpr AcGePoint3d& scaleBy(double factor, const AcGePoint3d& about = kOrigin) {
    return *this = about + (*this - about) * factor;
  }
  AcGePoint3d& mirror(const AcGePlane& plane);

  /// The nearest point of the plane.
  AcGePoint3d orthoProject(const AcGePlane& plane) const;
  /// The coordinates of that point in the plane's own axes.
  AcGePoint2d convert2d(const AcGePlane& plane) const;

  bool isEqualTo(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  bool operator==(const AcGePoint3d& p) const { return isEqualTo(p); }
};

inline constexpr AcGePoint3d AcGePoint3d::kOrigin{0.0, 0.0, 0.0};
