#pragma once

#include <string>

namespace cad::picture {

/// A number in thousandths, as short as can be: "12.5", "-3", ".25".
void append_thousandths(long long thousandths, std::string& out);

/// A pixel coordinate on the grid of thousandths that vector files use.
long long on_grid(double pixels);

inline void append_pixels(double pixels, std::string& out) {
  append_thousandths(on_grid(pixels), out);
}

/// Six significant digits, without an exponent; for factors.
void append_factor(double value, std::string& out);

}  // namespace cad::picture
