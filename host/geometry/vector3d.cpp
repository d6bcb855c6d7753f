#include "host/geometry/vector3d.h"

#include <cmath>

#include "host/geometry/angle.h"
#include "host/geometry/ocs.h"
#include "host/geometry/plane.h"

AcGeVector3d::AcGeVector3d(const AcGePlane& plane, const AcGeVector2d& v) {
  AcGePoint3d origin;
  AcGeVector3d u_axis, v_axis;
  plane.getCoordSystem(origin, u_axis, v_axis);
  *this = u_axis * v.x + v_axis * v.y;
}

AcGeVector3d AcGeVector3d::perpVector() const { return cad::ocs_x_axis(*this); }

AcGeVector3d& AcGeVector3d::rotateBy(double angle, const AcGeVector3d& axis) {
  return transformBy(AcGeMatrix3d::rotation(angle, axis));
}

AcGeVector3d& AcGeVector3d::mirror(const AcGeVector3d& normal_to_plane) {
  const AcGeVector3d n = normal_to_plane.normal();
  return *this -= n * (2.0 * dotProduct(n));
}

AcGeVector2d AcGeVector3d::convert2d(const AcGePlane& plane) const {
  AcGePoint3d origin;
  AcGeVector3d u_axis, v_axis;
  plane.getCoordSystem(origin, u_axis, v_axis);
  return {dotProduct(u_axis), dotProduct(v_axis)};
}

double AcGeVector3d::angleTo(const AcGeVector3d& v) const {
  // Exact for small angles too, where the arc cosine of the dot product is not.
  return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double AcGeVector3d::angleTo(const AcGeVector3d& v, const AcGeVector3d& reference) const {
  const AcGeVector3d cross = crossProduct(v);
  const double angle = std::atan2(cross.length(), dotProduct(v));
  return cad::full_turn(cross.dotProduct(reference) < 0.0 ? -angle : angle);
}

double AcGeVector3d::angleOnPlane(const AcGePlane& plane) const {
  const AcGeVector2d flat = convert2d(plane);
  return flat.isZeroLength() ? 0.0 : cad::full_turn(std::atan2(flat.y, flat.x));
}
