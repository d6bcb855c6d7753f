#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <ostream>

#include "host/geometry/ge.h"

/// Equal up to rounding: each coordinate within 1e-12.
MATCHER_P3(Is, x, y, z, "") {
  constexpr double kRounding = 1e-12;
  *result_listener << "is (" << arg.x << ", " << arg.y << ", " << arg.z << ")";
  return std::fabs(arg.x - x) <= kRounding && std::fabs(arg.y - y) <= kRounding &&
         std::fabs(arg.z - z) <= kRounding;
}

inline constexpr double kPi = std::numbers::pi;

// So that a failure shows coordinates, not bytes.
inline void PrintTo(const AcGePoint3d& p, std::ostream* out) {
  *out << "(" << p.x << ", " << p.y << ", " << p.z << ")";
}
inline void PrintTo(const AcGeVector3d& v, std::ostream* out) {
  *out << "(" << v.x << ", " << v.y << ", " << v.z << ")";
}
