#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Lengths and angles as the host spells them.
namespace cad::lisp {

enum class LengthUnits {
  kScientific = 1,     // 1.55E+01
  kDecimal = 2,        // 15.50
  kEngineering = 3,    // 1'-3.50"
  kArchitectural = 4,  // 1'-3 1/2"
  kFractional = 5,     // 15 1/2
};

enum class AngleUnits {
  kDegrees = 0,    // 45.00
  kDegMinSec = 1,  // 45d0'0"
  kGrads = 2,      // 50.00g
  kRadians = 3,    // 0.79r
  kSurveyor = 4,   // N 45d0'0" E
};

/// Precision is the number of decimals, or of halvings of a fraction. Of the zeros setting, bit 4
/// drops a zero in front of the point, bit 8 zeros at the end, and bits 1 and 2 say which zero
/// feet and inches stay: 0 none, 1 both, 2 feet, 3 inches.
std::wstring length_text(double value, LengthUnits units, int precision, int zeros);

/// Of an angle from 0 to a full turn, in radians.
std::wstring angle_text(double radians, AngleUnits units, int precision);

/// Reads what length_text writes, and plain numbers; empty for anything else.
std::optional<double> parse_length(std::wstring_view text, LengthUnits units);

/// In radians. A number without a mark is taken in the units given.
std::optional<double> parse_angle(std::wstring_view text, AngleUnits units);

}  // namespace cad::lisp
