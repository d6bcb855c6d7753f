#pragma once

#include <optional>
#include <string_view>

#include "host/geometry/matrix3d.h"
#include "host/lisp/units.h"

namespace cad {

/// How lengths, angles and points are typed in a drawing just now.
struct InputUnits {
  lisp::LengthUnits lengths = lisp::LengthUnits::kDecimal;
  lisp::AngleUnits angles = lisp::AngleUnits::kDegrees;
  double angle_base = 0.0;  ///< the direction of angle 0, in radians
  bool clockwise = false;
  double elevation = 0.0;  ///< Z of a point typed with X and Y
  AcGePoint3d last;        ///< what "@" is measured from, in the user's coordinates
  AcGeMatrix3d world_to_ucs;

  /// A typed angle as one counter-clockwise from the X axis.
  double direction(double typed) const { return angle_base + turn(typed); }
  /// A typed angle as a counter-clockwise one.
  double turn(double typed) const { return clockwise ? -typed : typed; }
};

/// Reads "10,20", "10,20,30", "@5,0", "@10<45", "10<45,3", "10<45<30", "@", and each with "*" in
/// front of the coordinates for world coordinates. The result is in the user's coordinates.
std::optional<AcGePoint3d> parse_point(std::wstring_view text, const InputUnits& units);

}  // namespace cad
