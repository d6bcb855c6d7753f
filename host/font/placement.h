#pragma once

#include <string_view>

#include "host/font/face.h"
#include "host/font/line_layout.h"

/// Where a line of text stands: the fifteen justifications.
namespace cad::font {

/// Group 72 of a TEXT.
enum class Across { kLeft = 0, kCenter = 1, kRight = 2, kAligned = 3, kMiddle = 4, kFit = 5 };
/// Group 73 (74 of attributes). kAligned, kMiddle and kFit go with kBase only.
enum class Up { kBase = 0, kBottom = 1, kMiddle = 2, kTop = 3 };

/// What a TEXT stores, in the plane of its own coordinates. Angles are radians.
struct LinePlace {
  Point first{};   ///< group 10
  Point second{};  ///< group 11; counts unless the text is left on the base line
  Across across = Across::kLeft;
  Up up = Up::kBase;
  double rotation = 0.0;
  bool backward = false;     ///< group 71, bit 2
  bool upside_down = false;  ///< group 71, bit 4
  LineShape shape;           ///< as stored; kAligned computes the height, kFit the width factor
};

/// Where it is drawn.
struct PlacedLine {
  /// Where the base line starts. CAD programs expect it in group 10 whatever the justification, so
  /// who sets text, justification or alignment point of a TEXT stores this.
  Point start;
  double rotation = 0.0;
  LineShape shape;  ///< with the computed height and width factor
  LineExtent extent;
  /// The line's own axes (see LineExtent) in the plane, mirrored if the text is.
  Point x_axis{1.0, 0.0};
  Point y_axis{0.0, 1.0};
  Point at(Point own) const {
    return {start.x + x_axis.x * own.x + y_axis.x * own.y,
            start.y + x_axis.y * own.x + y_axis.y * own.y};
  }
};

PlacedLine place_line(std::wstring_view text, const Face& face, const LinePlace& where);

}  // namespace cad::font
