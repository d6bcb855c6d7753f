#include "host/geometry/matrix3d.h"

#include <algorithm>
#include <cmath>

#include "host/geometry/ocs.h"
#include "host/geometry/plane.h"
#include "host/geometry/scale3d.h"

namespace {

/// The linear map with a centre that stays where it is.
AcGeMatrix3d about(AcGeMatrix3d linear, const AcGePoint3d& center) {
  return linear.setTranslation(center.asVector() - linear * center.asVector());
}

}  // namespace

AcGeMatrix3d AcGeMatrix3d::rotation(double angle, const AcGeVector3d& axis,
                                    const AcGePoint3d& center) {
  if (axis.isZeroLength()) return kIdentity;
  const AcGeVector3d n = axis.normal();
  const double c = std::cos(angle), s = std::sin(angle);
  const auto turned = [&](const AcGeVector3d& v) {
    return v * c + n.crossProduct(v) * s + n * (n.dotProduct(v) * (1.0 - c));
  };
  AcGeMatrix3d m;
  m.setCoordSystem(AcGePoint3d::kOrigin, turned(AcGeVector3d::kXAxis), turned(AcGeVector3d::kYAxis),
                   turned(AcGeVector3d::kZAxis));
  return about(m, center);
}

AcGeMatrix3d AcGeMatrix3d::scaling(const AcGeScale3d& scale, const AcGePoint3d& center) {
  AcGeMatrix3d m;
  for (unsigned i = 0; i < 3; ++i) m.entry[i][i] = scale[i];
  return about(m, center);
}

AcGeMatrix3d AcGeMatrix3d::mirroring(const AcGePlane& plane) {
  const AcGeVector3d n = plane.normal();
  AcGeMatrix3d m;
  for (unsigned row = 0; row < 3; ++row) {
    for (unsigned column = 0; column < 3; ++column)
      m.entry[row][column] -= 2.0 * n[row] * n[column];
  }
  return about(m, plane.pointOnPlane());
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGeVector3d& normal) {
  return cad::ocs_to_wcs(normal);
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGePlane& plane) {
  AcGePoint3d origin;
  AcGeVector3d u_axis, v_axis;
  plane.getCoordSystem(origin, u_axis, v_axis);
  return AcGeMatrix3d().setCoordSystem(origin, u_axis, v_axis, plane.normal());
}

AcGeMatrix3d AcGeMatrix3d::worldToPlane(const AcGeVector3d& normal) {
  return cad::ocs_to_wcs(normal).transpose();
}

AcGeMatrix3d AcGeMatrix3d::worldToPlane(const AcGePlane& plane) {
  return planeToWorld(plane).inverse();
}

bool AcGeMatrix3d::isSingular(const AcGeTol& tol) const {
  const double x = column(0).length(), y = column(1).length(), z = column(2).length();
  if (x == 0.0 || y == 0.0 || z == 0.0) return true;
  const double volume = (column(0) / x).dotProduct((column(1) / y).crossProduct(column(2) / z));
  return !(std::fabs(volume) > tol.equalVector());  // singular too when it is no number
}

AcGeMatrix3d AcGeMatrix3d::inverse(const AcGeTol& tol) const {
  if (isSingular(tol)) return kIdentity;
  const AcGeVector3d x = column(0), y = column(1), z = column(2);
  const double volume = det();
  // Row by row: each axis of the inverse is at a right angle to two axes of this.
  AcGeMatrix3d m;
  m.setCoordSystem(AcGePoint3d::kOrigin, y.crossProduct(z) / volume, z.crossProduct(x) / volume,
                   x.crossProduct(y) / volume);
  m.transposeIt();
  return m.setTranslation(-(m * translation()));
}

double AcGeMatrix3d::scale() const {
  return std::max({column(0).length(), column(1).length(), column(2).length()});
}

bool AcGeMatrix3d::isUniScaledOrtho(const AcGeTol& tol) const {
  const double x = column(0).length(), y = column(1).length(), z = column(2).length();
  return std::fabs(x - y) <= tol.equalVector() && std::fabs(y - z) <= tol.equalVector() &&
         column(0).isPerpendicularTo(column(1), tol) &&
         column(1).isPerpendicularTo(column(2), tol) && column(2).isPerpendicularTo(column(0), tol);
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& m, const AcGeTol& tol) const {
  for (unsigned i = 0; i < 3; ++i) {
    if (!column(i).isEqualTo(m.column(i), tol)) return false;
  }
  return (translation() - m.translation()).length() <= tol.equalPoint();
}
