#include "host/geometry/point3d.h"

#include "host/geometry/plane.h"

AcGePoint3d::AcGePoint3d(const AcGePlane& plane, const AcGePoint2d& p) {
  *this = plane.pointOnPlane() + AcGeVector3d(plane, p.asVector());
}

AcGePoint3d& AcGePoint3d::mirror(const AcGePlane& plane) {
  return *this -= plane.normal() * (2.0 * plane.signedDistanceTo(*this));
}

AcGePoint3d AcGePoint3d::orthoProject(const AcGePlane& plane) const {
  return *this - plane.normal() * plane.signedDistanceTo(*this);
}

AcGePoint2d AcGePoint3d::convert2d(const AcGePlane& plane) const {
  return AcGePoint2d::kOrigin + (*this - plane.pointOnPlane()).convert2d(plane);
}
