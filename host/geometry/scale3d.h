#pragma once

#include <cmath>

#include "host/geometry/matrix3d.h"

/// Factors along the three axes, as a block reference has them.
class AcGeScale3d {
 public:
  double sx = 1.0, sy = 1.0, sz = 1.0;

  static const AcGeScale3d kIdentity;

  constexpr AcGeScale3d() = default;
  constexpr explicit AcGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
  constexpr AcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}

  constexpr AcGeScale3d& set(double x, double y, double z) { return *this = {x, y, z}; }
  constexpr double operator[](unsigned i) const { return i == 0 ? sx : i == 1 ? sy : sz; }
  constexpr double& operator[](unsigned i) { return i == 0 ? sx : i == 1 ? sy : sz; }

  constexpr AcGeScale3d operator*(const AcGeScale3d& s) const {
    return {sx * s.sx, sy * s.sy, sz * s.sz};
  }
  constexpr AcGeScale3d operator*(double s) const { return {sx * s, sy * s, sz * s}; }
  friend constexpr AcGeScale3d operator*(double s, const AcGeScale3d& v) { return v * s; }
  constexpr AcGeScale3d& operator*=(const AcGeScale3d& s) { return *this = *this * s; }
  constexpr AcGeScale3d& operator*=(double s) { return *this = *this * s; }
  /// No factor may be zero.
  constexpr AcGeScale3d inverse() const { return {1.0 / sx, 1.0 / sy, 1.0 / sz}; }
  constexpr AcGeScale3d& invert() { return *this = inverse(); }

  /// Whether the three factors are of one size; their signs may differ.
  bool isProportional(const AcGeTol& tol = AcGeContext::gTol) const {
    return std::fabs(std::fabs(sx) - std::fabs(sy)) <= tol.equalVector() &&
           std::fabs(std::fabs(sy) - std::fabs(sz)) <= tol.equalVector();
  }
  bool isEqualTo(const AcGeScale3d& s, const AcGeTol& tol = AcGeContext::gTol) const {
    return std::hypot(sx - s.sx, sy - s.sy, sz - s.sz) <= tol.equalVector();
  }
  bool operator==(const AcGeScale3d& s) const { return isEqualTo(s); }

  AcGeMatrix3d getMatrix() const { return AcGeMatrix3d::scaling(*this); }
};

inline constexpr AcGeScale3d AcGeScale3d::kIdentity{1.0, 1.0, 1.0};
