#pragma once

#include <optional>

#include "module/platform/foundation.h"
#include "module/platform/geometry.h"
#include "module/platform/objects.h"

/// Typed values as they stand in an item's value text. Reals keep six decimals.
namespace dim {

CString value_text(const AcGePoint3d& point);  ///< "( 1.000000, 2.500000, 0.000000 )"
CString value_text(const AcGeVector3d& vector);
CString value_text(double number);        ///< "36.500000"
CString value_text(long number);          ///< as the host's 32-bit long
CString value_text(AcDbObjectId object);  ///< handle text; empty when it has none

/// The reverse. What is not there or no number reads as 0.
AcGePoint3d point_of(const CString& text);
double real_of(const CString& text);
long long_of(const CString& text);
/// Null when the handle is of no object of the working drawing.
AcDbObjectId object_of(const CString& text);

}  // namespace dim
