#include "host/font/placement.h"

#include <cmath>

namespace cad::font {
namespace {

constexpr double kQuarter = 1.5707963267948966;

/// The point of the text, in its own axes, that stands on its alignment point.
Point aligned_point(const LinePlace& where, const PlacedLine& placed, const Face& face) {
  const LineExtent& extent = placed.extent;
  const double height = placed.shape.height;
  double along = 0.0;
  if (where.across == Across::kCenter || where.across == Across::kMiddle)
    along = extent.advance / 2.0;
  if (where.across == Across::kRight) along = extent.advance;
  if (placed.shape.vertical) return {0.0, -along};
  double up = 0.0;
  if (where.across == Across::kMiddle)
    up = (extent.ink.bottom + extent.ink.top) / 2.0;
  else if (where.up == Up::kBottom)
    up = -height * face.descender();
  else if (where.up == Up::kMiddle)
    up = height / 2.0;
  else if (where.up == Up::kTop)
    up = height;
  return {along, up};
}

/// Stretches the text from its first point to its second.
void stretch(std::wstring_view text, const Face& face, const LinePlace& where, PlacedLine& placed) {
  const double x = where.second.x - where.first.x, y = where.second.y - where.first.y;
  const double wanted = std::hypot(x, y);
  if (!(wanted > 0.0) || !std::isfinite(wanted)) return;
  const double angle = std::atan2(y, x);
  LineShape unit = where.shape;
  const bool by_height = where.across == Across::kAligned || unit.vertical;
  double& stretched = by_height ? unit.height : unit.width_factor;
  stretched = 1.0;
  const double length = measure_line(text, face, unit).advance;
  placed.rotation = unit.vertical ? angle + kQuarter : angle;
  if (!(length > 0.0)) return;
  stretched = wanted / length;
  placed.shape = unit;
}

}  // namespace

PlacedLine place_line(std::wstring_view text, const Face& face, const LinePlace& where) {
  PlacedLine placed;
  placed.shape = where.shape;
  placed.rotation = std::isfinite(where.rotation) ? where.rotation : 0.0;
  const bool between = where.across == Across::kAligned || where.across == Across::kFit;
  if (between) stretch(text, face, where, placed);
  placed.extent = measure_line(text, face, placed.shape);

  const double c = std::cos(placed.rotation), s = std::sin(placed.rotation);
  const double across = where.backward ? -1.0 : 1.0, up = where.upside_down ? -1.0 : 1.0;
  placed.x_axis = {c * across, s * across};
  placed.y_axis = {-s * up, c * up};
  const bool by_second = where.across != Across::kLeft || where.up != Up::kBase;
  placed.start = by_second && !between ? where.second : where.first;
  if (by_second && !between) {
    const Point own = aligned_point(where, placed, face);
    placed.start = placed.at({-own.x, -own.y});
  }
  return placed;
}

}  // namespace cad::font
