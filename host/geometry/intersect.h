#pragma once

#include <cstddef>
#include <vector>

#include "host/geometry/ge.h"

namespace cad {

class Curve;

/// Which of two curves is taken as going on beyond its ends: lines straight, arcs of circles and
/// ellipses around. Splines end where they end.
enum class Extend { kNeither, kFirst, kSecond, kBoth };

/// A point two curves have in common, and where it is on each: the segment and how far along it.
/// Before a curve's start u is below 0, behind its end above 1.
struct Crossing {
  AcGePoint3d point;
  std::size_t first_segment = 0;
  double first_u = 0.0;
  std::size_t second_segment = 0;
  double second_u = 0.0;
};

/// In the order of the first curve. Where curves run along each other there is none but at ends
/// that meet. A ray or xline goes on whatever `extend` says.
std::vector<Crossing> crossings(const Curve& first, const Curve& second,
                                Extend extend = Extend::kNeither);

/// The points alone.
std::vector<AcGePoint3d> intersections(const Curve& first, const Curve& second,
                                       Extend extend = Extend::kNeither);

}  // namespace cad
