#include "host/app/command/draw/arc_math.h"

#include <cmath>
#include <numbers>

#include "host/app/command/draw/draw.h"

namespace cad {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;

std::optional<DrawnArc> checked(const DrawnArc& arc) {
  const bool possible = std::isfinite(arc.included) && std::abs(arc.included) > 1e-12 &&
                        std::abs(arc.included) < kTurn - 1e-12 &&
                        flat_distance(arc.start, arc.end) > 0.0;
  return possible ? std::optional(arc) : std::nullopt;
}

}  // namespace

double DrawnArc::bulge() const { return std::tan(included / 4); }

double DrawnArc::radius() const {
  if (given_centre) return flat_distance(*given_centre, start);
  return flat_distance(start, end) / (2 * std::abs(std::sin(included / 2)));
}

AcGePoint3d DrawnArc::centre() const {
  if (given_centre) return *given_centre;
  // From the start, turned off the chord by what half the angle leaves to a right one.
  const double side = included > 0.0 ? 1.0 : -1.0;
  const double off = std::numbers::pi / 2 - std::abs(included) / 2;
  return polar(start, direction(start, end) + side * off, radius());
}

double DrawnArc::end_direction() const { return direction(start, end) + included / 2; }

std::optional<DrawnArc> arc_through(const AcGePoint3d& start, const AcGePoint3d& second,
                                    const AcGePoint3d& end) {
  const auto centre = circle_centre(start, second, end);
  if (!centre) return std::nullopt;
  const double from = direction(*centre, start);
  const double whole = sweep(from, direction(*centre, end));
  const bool is_on_way = sweep(from, direction(*centre, second)) < whole;
  return checked({start, {end.x, end.y, start.z}, is_on_way ? whole : whole - kTurn, centre});
}

std::optional<DrawnArc> arc_about(const AcGePoint3d& start, const AcGePoint3d& centre,
                                  const AcGePoint3d& end) {
  auto arc =
      arc_about_by_angle(start, centre, sweep(direction(centre, start), direction(centre, end)));
  if (arc && flat_distance(arc->end, end) < 1e-9 * arc->radius())
    arc->end = {end.x, end.y, start.z};
  return arc;
}

std::optional<DrawnArc> arc_about_by_angle(const AcGePoint3d& start, const AcGePoint3d& centre,
                                           double included) {
  const double radius = flat_distance(centre, start);
  AcGePoint3d end = polar(centre, direction(centre, start) + included, radius);
  end.z = start.z;
  return checked({start, end, included, AcGePoint3d(centre.x, centre.y, start.z)});
}

std::optional<DrawnArc> arc_about_by_chord(const AcGePoint3d& start, const AcGePoint3d& centre,
                                           double chord) {
  const double half = std::abs(chord) / (2 * flat_distance(centre, start));
  if (!(half <= 1.0)) return std::nullopt;
  const double angle = 2 * std::asin(half);
  return arc_about_by_angle(start, centre, chord < 0.0 ? kTurn - angle : angle);
}

std::optional<DrawnArc> arc_by_angle(const AcGePoint3d& start, const AcGePoint3d& end,
                                     double included) {
  return checked({start, {end.x, end.y, start.z}, included});
}

std::optional<DrawnArc> arc_by_direction(const AcGePoint3d& start, const AcGePoint3d& end,
                                         double leaving) {
  double half = std::remainder(direction(start, end) - leaving, kTurn);
  if (half <= -std::numbers::pi) half += kTurn;
  return arc_by_angle(start, end, 2 * half);
}

std::optional<DrawnArc> arc_by_radius(const AcGePoint3d& start, const AcGePoint3d& end,
                                      double radius, bool counter_clockwise) {
  const double half = flat_distance(start, end) / (2 * std::abs(radius));
  if (!(half <= 1.0 + 1e-12)) return std::nullopt;
  const double minor = 2 * std::asin(std::min(half, 1.0));
  const double angle = radius < 0.0 ? kTurn - minor : minor;
  return arc_by_angle(start, end, counter_clockwise ? angle : -angle);
}

}  // namespace cad
