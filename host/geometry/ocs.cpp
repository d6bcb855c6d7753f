#include "host/geometry/ocs.h"

#include <cmath>

namespace cad {
namespace {

AcGeVector3d unit_normal(const AcGeVector3d& normal) {
  const double length = normal.length();
  if (!std::isfinite(length) || normal.isZeroLength()) return AcGeVector3d::kZAxis;
  return normal / length;
}

AcGeVector3d x_axis_of_unit(const AcGeVector3d& n) {
  constexpr double kNear = 1.0 / 64.0;
  const bool near_z = std::fabs(n.x) < kNear && std::fabs(n.y) < kNear;
  return (near_z ? AcGeVector3d::kYAxis : AcGeVector3d::kZAxis).crossProduct(n).normal();
}

}  // namespace

AcGeVector3d ocs_x_axis(const AcGeVector3d& normal) { return x_axis_of_unit(unit_normal(normal)); }

AcGeMatrix3d ocs_to_wcs(const AcGeVector3d& normal) {
  const AcGeVector3d z = unit_normal(normal);
  const AcGeVector3d x = x_axis_of_unit(z);
  return AcGeMatrix3d().setCoordSystem(AcGePoint3d::kOrigin, x, z.crossProduct(x).normal(), z);
}

}  // namespace cad
