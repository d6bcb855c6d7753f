#pragma once

/// All of the geometry: points, vectors, planes, matrices, scales, tolerances, arrays.
#include "host/geometry/arrays.h"
#include "host/geometry/extents.h"
#include "host/geometry/matrix3d.h"
#include "host/geometry/ocs.h"
#include "host/geometry/plane.h"
#include "host/geometry/point2d.h"
#include "host/geometry/point3d.h"
#include "host/geometry/scale3d.h"
#include "host/geometry/tolerance.h"
#include "host/geometry/vector2d.h"
#include "host/geometry/vector3d.h"
