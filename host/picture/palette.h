#pragma once

#include <cstdint>

namespace cad::picture {

/// The colour of an index from 1 to 255 as 0xRRGGBB; 7 is white here. Others count as 7.
std::uint32_t palette_color(int index);

}  // namespace cad::picture
