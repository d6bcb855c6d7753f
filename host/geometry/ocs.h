#pragma once

#include "host/geometry/matrix3d.h"

/// Flat objects (texts, polylines, inserts) store points in a coordinate system of their own. Its Z
/// axis is the object's normal; the X axis follows from the normal by a fixed rule: the world's Y
/// axis, or Z axis unless the normal is within 1/64 of it, crossed with the normal.
namespace cad {

/// The X axis, a unit vector. A normal of no length (or none that is a number) counts as the Z
/// axis.
AcGeVector3d ocs_x_axis(const AcGeVector3d& normal);

/// From object to world coordinates; the other way is its transpose. Exactly the identity for a
/// normal along Z.
AcGeMatrix3d ocs_to_wcs(const AcGeVector3d& normal);

}  // namespace cad
