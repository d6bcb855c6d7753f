#include "host/geometry/plane.h"

#include "host/geometry/ocs.h"

AcGePlane::AcGePlane(const AcGePoint3d& origin, const AcGeVector3d& normal) : origin_(origin) {
  const AcGeMatrix3d axes = cad::ocs_to_wcs(normal);
  u_ = axes.column(0);
  v_ = axes.column(1);
}

AcGePlane::AcGePlane(const AcGePoint3d& origin, const AcGeVector3d& u_axis,
                     const AcGeVector3d& v_axis)
    : origin_(origin), u_(u_axis.isZeroLength() ? AcGeVector3d::kXAxis : u_axis.normal()) {
  const AcGeVector3d across = v_axis - u_ * v_axis.dotProduct(u_);
  v_ = across.isZeroLength() ? u_.perpVector() : across.normal();
}
