#pragma once

#include "host/geometry/ge.h"
#include "network/strings.h"

/// Where labels lie and how long they are. Angles are radians.
namespace Gx {

/// The direction in which a label along `angle` is read: the angle itself or the opposite one, so
/// that the text runs to the right or, when it stands upright, upwards. 0 to pi/2 or beyond 3 pi/2,
/// below 2 pi. An angle within a millionth of upright counts as upright.
double CalcDimAng(double angle);

}  // namespace Gx

namespace KT {

/// The width of a line of text in the current text style of the working drawing. `mode` has no
/// meaning. False, and a width of 0, for a text without extent.
bool GetTextWidth(const CString& text, double height, double& width, int mode, double widthFactor);

}  // namespace KT

class CKtGxUtils {
 public:
  /// Whether the first point is nearer to the target than the second.
  static bool IsFirstPointNear(const AcGePoint3d& first, const AcGePoint3d& second,
                               const AcGePoint3d& target);
};
