#pragma once

#include <optional>

#include "host/geometry/point3d.h"

namespace cad {

/// An arc in the user's X, Y plane, as the ways of drawing one find it. Z of all points is that of
/// the start.
struct DrawnArc {
  AcGePoint3d start;
  AcGePoint3d end;
  double included = 0.0;  ///< counter-clockwise; below 0 it runs clockwise
  std::optional<AcGePoint3d> given_centre = {};

  double bulge() const;
  AcGePoint3d centre() const;
  double radius() const;
  /// The direction in which the arc leaves its end.
  double end_direction() const;
};

/// Nothing where no such arc exists: a radius too small, points on one line.
std::optional<DrawnArc> arc_through(const AcGePoint3d& start, const AcGePoint3d& second,
                                    const AcGePoint3d& end);
/// Counter-clockwise; the end gives the direction from the centre only.
std::optional<DrawnArc> arc_about(const AcGePoint3d& start, const AcGePoint3d& centre,
                                  const AcGePoint3d& end);
std::optional<DrawnArc> arc_about_by_angle(const AcGePoint3d& start, const AcGePoint3d& centre,
                                           double included);
/// The minor arc of a chord, the major one for a negative length.
std::optional<DrawnArc> arc_about_by_chord(const AcGePoint3d& start, const AcGePoint3d& centre,
                                           double chord);
std::optional<DrawnArc> arc_by_angle(const AcGePoint3d& start, const AcGePoint3d& end,
                                     double included);
/// Leaving its start in this direction.
std::optional<DrawnArc> arc_by_direction(const AcGePoint3d& start, const AcGePoint3d& end,
                                         double direction);
/// Counter-clockwise or clockwise; the minor arc, the major one for a negative radius.
std::optional<DrawnArc> arc_by_radius(const AcGePoint3d& start, const AcGePoint3d& end,
                                      double radius, bool counter_clockwise = true);

}  // namespace cad
