#pragma once

#include <cstdint>
#include <string>

namespace cad::font {

/// How texts of a style look: what a STYLE record and its extended data say, nothing resolved yet.
/// Angles are radians.
struct FontStyle {
  std::wstring file{};      ///< group 3: "simplex.shx", "simsun.ttf", perhaps with a folder
  std::wstring big_file{};  ///< group 4, the font of Chinese and the like: "gbcbig.shx"
  std::wstring typeface{};  ///< of extended data (1000): "SimSun"; goes before `file`
  bool bold = false;
  bool italic = false;
  double width_factor = 1.0;  ///< what MTEXT takes; TEXT has its own
  double oblique = 0.0;       ///< likewise
  double fixed_height = 0.0;  ///< 0: each text has its own
  bool vertical = false;      ///< characters below each other
  bool backward = false;
  bool upside_down = false;
};

/// The 1071 group beside the typeface.
constexpr bool is_bold(std::int64_t typeface_flags) { return (typeface_flags & 0x2000000) != 0; }
constexpr bool is_italic(std::int64_t typeface_flags) { return (typeface_flags & 0x1000000) != 0; }

}  // namespace cad::font
