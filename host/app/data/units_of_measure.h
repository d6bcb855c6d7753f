#pragma once

#include <optional>
#include <string_view>

namespace cad {

/// What a unit of measure is made of: a factor to base units (metre, gram, second, kelvin, radian),
/// their powers, and, for temperatures, where the scale begins.
struct UnitOfMeasure {
  double factor = 1;
  double offset = 0;
  int length = 0, mass = 0, time = 0, temperature = 0, angle = 0;

  bool same_kind(const UnitOfMeasure& other) const;
};

/// A unit by name or symbol ("feet", "km", "sq m", "cubic inch", "m^2", "kg/cm^2", "m*sec"): letter
/// case is ignored but for symbols that differ by it. Nothing for what is no unit.
std::optional<UnitOfMeasure> unit_of_measure(std::string_view text);

}  // namespace cad
