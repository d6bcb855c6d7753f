#pragma once

#include "host/geometry/vector2d.h"

/// A place in a plane.
class AcGePoint2d {
 public:
  double x = 0.0, y = 0.0;

  static const AcGePoint2d kOrigin;

  constexpr AcGePoint2d() = default;
  constexpr AcGePoint2d(double xx, double yy) : x(xx), y(yy) {}

  constexpr AcGePoint2d& set(double xx, double yy) { return *this = {xx, yy}; }
  constexpr double operator[](unsigned i) const { return i == 0 ? x : y; }
  constexpr double& operator[](unsigned i) { return i == 0 ? x : y; }

  constexpr AcGePoint2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
  constexpr AcGePoint2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
  constexpr AcGeVector2d operator-(const AcGePoint2d& p) const { return {x - p.x, y - p.y}; }
  constexpr AcGePoint2d operator*(double s) const { return {x * s, y * s}; }
  constexpr AcGePoint2d operator/(double s) const { return {x / s, y / s}; }
  friend constexpr AcGePoint2d operator*(double s, const AcGePoint2d& p) { return p * s; }
  constexpr AcGePoint2d& operator+=(const AcGeVector2d& v) { return *this = *this + v; }
  constexpr AcGePoint2d& operator-=(const AcGeVector2d& v) { return *this = *this - v; }
  constexpr AcGePoint2d& operator*=(double s) { return *this = *this * s; }
  constexpr AcGePoint2d& operator/=(double s) { return *this = *this / s; }

  constexpr AcGeVector2d asVector() const { return {x, y}; }
  double distanceTo(const AcGePoint2d& p) const { return (*this - p).length(); }

  /// Turn about a point, counter-clockwise, in place.
  AcGePoint2d& rotateBy(double angle, const AcGePoint2d& about = kOrigin) {
    AcGeVector2d arm = *this - about;
    return *this = about + arm.rotateBy(angle);
  }
  constexpr AcGePoint2d& scaleBy(double factor, const AcGePoint2d& about = kOrigin) {
    return *this = about + (*this - about) * factor;
  }

  bool isEqualTo(const AcGePoint2d& p, const AcGeTol& tol = AcGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  bool operator==(const AcGePoint2d& p) const { return isEqualTo(p); }
};

inline constexpr AcGePoint2d AcGePoint2d::kOrigin{0.0, 0.0};
