#pragma once

#include <cmath>

#include "host/geometry/angle.h"
#include "host/geometry/tolerance.h"

/// A direction and length in a plane.
class AcGeVector2d {
 public:
  double x = 0.0, y = 0.0;

  static const AcGeVector2d kIdentity;  ///< the zero vector
  static const AcGeVector2d kXAxis;
  static const AcGeVector2d kYAxis;

  constexpr AcGeVector2d() = default;
  constexpr AcGeVector2d(double xx, double yy) : x(xx), y(yy) {}

  constexpr AcGeVector2d& set(double xx, double yy) { return *this = {xx, yy}; }
  constexpr double operator[](unsigned i) const { return i == 0 ? x : y; }
  constexpr double& operator[](unsigned i) { return i == 0 ? x : y; }

  constexpr AcGeVector2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
  constexpr AcGeVector2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
  constexpr AcGeVector2d operator-() const { return {-x, -y}; }
  constexpr AcGeVector2d operator*(double s) const { return {x * s, y * s}; }
  constexpr AcGeVector2d operator/(double s) const { return {x / s, y / s}; }
  friend constexpr AcGeVector2d operator*(double s, const AcGeVector2d& v) { return v * s; }
  constexpr AcGeVector2d& operator+=(const AcGeVector2d& v) { return *this = *this + v; }
  constexpr AcGeVector2d& operator-=(const AcGeVector2d& v) { return *this = *this - v; }
  constexpr AcGeVector2d& operator*=(double s) { return *this = *this * s; }
  constexpr AcGeVector2d& operator/=(double s) { return *this = *this / s; }
  constexpr AcGeVector2d& negate() { return *this = -*this; }

  constexpr double dotProduct(const AcGeVector2d& v) const { return x * v.x + y * v.y; }
  constexpr double lengthSqrd() const { return dotProduct(*this); }
  double length() const { return std::sqrt(lengthSqrd()); }

  /// The unit vector of this direction; a vector of no length stays what it is.
  AcGeVector2d normal(const AcGeTol& tol = AcGeContext::gTol) const {
    return isZeroLength(tol) ? *this : *this / length();
  }
  AcGeVector2d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }

  /// A quarter turn counter-clockwise, of the same length.
  constexpr AcGeVector2d perpVector() const { return {-y, x}; }
  /// Turns in place, counter-clockwise.
  AcGeVector2d& rotateBy(double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    return *this = {x * c - y * s, x * s + y * c};
  }

  /// From the X axis counter-clockwise, 0 <= angle < 2 pi; 0 for the zero vector.
  double angle() const { return cad::full_turn(std::atan2(y, x)); }
  /// Between the two directions, 0 to pi.
  double angleTo(const AcGeVector2d& v) const {
    return std::atan2(std::fabs(x * v.y - y * v.x), dotProduct(v));
  }

  bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const {
    return length() <= tol.equalVector();
  }
  bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const {
    return std::fabs(length() - 1.0) <= tol.equalVector();
  }
  /// The direction tests are false when either vector has no length.
  bool isCodirectionalTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return has_direction(v, tol) && (normal(tol) - v.normal(tol)).length() <= tol.equalVector();
  }
  bool isParallelTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return isCodirectionalTo(v, tol) || isCodirectionalTo(-v, tol);
  }
  bool isPerpendicularTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return has_direction(v, tol) &&
           std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
  }

  bool isEqualTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  bool operator==(const AcGeVector2d& v) const { return isEqualTo(v); }

 private:
  bool has_direction(const AcGeVector2d& v, const AcGeTol& tol) const {
    return !isZeroLength(tol) && !v.isZeroLength(tol);
  }
};

inline constexpr AcGeVector2d AcGeVector2d::kIdentity{0.0, 0.0};
inline constexpr AcGeVector2d AcGeVector2d::kXAxis{1.0, 0.0};
inline constexpr AcGeVector2d AcGeVector2d::kYAxis{0.0, 1.0};
