#pragma once

#include <numbers>

namespace cad {

/// An angle of atan2, -pi to pi, as one of 0 <= angle < 2 pi. Negative zero, and a negative angle
/// so small that the sum rounds up to the full turn, are 0.
constexpr double full_turn(double angle) {
  constexpr double kTurn = 2.0 * std::numbers::pi;
  const double turned = angle < 0.0 ? angle + kTurn : angle + 0.0;
  return turned < kTurn ? turned : 0.0;
}

}  // namespace cad
