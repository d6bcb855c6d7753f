#include "host/picture/palette.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace cad::picture {
namespace {

using Palette = std::array<std::uint32_t, 256>;

/// From 10 on: 24 hues, 15 degrees apart; of each five brightnesses, and each of these full and
/// paled by half. The last six are greys.
Palette make_palette() {
  constexpr std::uint32_t kFirst[] = {0xFFFFFF, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                      0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
  constexpr std::uint32_t kLast[] = {0x333333, 0x5B5B5B, 0x848484, 0xADADAD, 0xD6D6D6, 0xFFFFFF};
  constexpr double kBrightness[] = {255, 165, 127, 76, 38};
  constexpr std::size_t kHues = 10, kGreys = 250;
  Palette palette{};
  std::copy(std::begin(kFirst), std::end(kFirst), palette.begin());
  std::copy(std::begin(kLast), std::end(kLast), palette.begin() + kGreys);
  for (std::size_t i = kHues; i < kGreys; ++i) {
    const double sixths = static_cast<double>((i - kHues) / 10) / 4.0;
    const double brightness = kBrightness[i % 10 / 2];
    const double paled = i % 2 ? 0.5 : 1.0;
    const auto channel = [&](double phase) {
      const double k = std::fmod(phase + sixths, 6.0);
      const double missing = std::clamp(std::min(k, 4.0 - k), 0.0, 1.0);
      return static_cast<std::uint32_t>(brightness * (1.0 - paled * missing));
    };
    palette[i] = channel(5) << 16 | channel(3) << 8 | channel(1);
  }
  return palette;
}

}  // namespace

std::uint32_t palette_color(int index) {
  static const Palette kPalette = make_palette();
  return index >= 1 && index <= 255 ? kPalette[static_cast<std::size_t>(index)] : 0xFFFFFFU;
}

}  // namespace cad::picture
