#include "host/app/command/edit/corner_math.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "host/geometry/curve.h"
#include "host/geometry/intersect.h"

namespace cad {
namespace {

constexpr double kSame = 1e-9;

AcGeVector3d direction_of(const Segment& line) { return (line.end() - line.start()).normal(); }

AcGeVector3d left_of(const AcGeVector3d& v) { return {-v.y, v.x, 0.0}; }

/// A line without ends, or a whole circle.
Curve endless(const Segment& s, double shift) {
  if (s.kind() == Segment::Kind::kLine) {
    const AcGeVector3d along = direction_of(s);
    return Curve::xline(s.start() + left_of(along) * shift, along);
  }
  return Curve::circle(s.center(), AcGeVector3d::kZAxis, s.radius() + shift);
}

AcGePoint3d foot(const Segment& s, const AcGePoint3d& center) {
  if (s.kind() == Segment::Kind::kLine) {
    const AcGeVector3d along = direction_of(s);
    return s.start() + along * (center - s.start()).dotProduct(along);
  }
  return s.center() + (center - s.center()).normal() * s.radius();
}

struct Straight {
  AcGeVector3d in, out;  ///< directions of the two segments
  double before, behind;
};

std::optional<Straight> straight_at(const PolylineShape& shape, std::size_t i) {
  const std::size_t count = shape.vertices.size();
  const auto& previous = shape.vertices[(i + count - 1) % count];
  const auto& here = shape.vertices[i];
  const auto& next = shape.vertices[(i + 1) % count];
  if (previous.bulge != 0.0 || here.bulge != 0.0) return std::nullopt;
  const AcGeVector3d in = here.point - previous.point, out = next.point - here.point;
  if (in.isZeroLength() || out.isZeroLength()) return std::nullopt;
  return Straight{in.normal(), out.normal(), in.length(), out.length()};
}

/// Puts two vertices in place of one, an arc or a line between them.
void cut_corner(PolylineShape& shape, std::size_t i, const Straight& at, double before,
                double behind, double bulge) {
  PolylineShape::Vertex& first = shape.vertices[i];
  PolylineShape::Vertex second = first;
  second.point = first.point + at.out * behind;
  first.point = first.point - at.in * before;
  first.bulge = bulge;
  first.end_width = first.start_width;
  shape.vertices.insert(shape.vertices.begin() + static_cast<std::ptrdiff_t>(i) + 1, second);
}

}  // namespace

std::optional<AcGePoint3d> corner_of(const Segment& first, const Segment& second) {
  const auto met = intersections(endless(first, 0.0), endless(second, 0.0));
  return met.empty() ? std::nullopt : std::optional(met.front());
}

std::optional<FilletArc> fillet_between(const Segment& first, const AcGePoint3d& first_pick,
                                        const Segment& second, const AcGePoint3d& second_pick,
                                        double radius) {
  std::optional<FilletArc> best;
  double nearest = 0.0;
  const auto offer = [&](const FilletArc& arc) {
    const double distance = arc.first.distanceTo(first_pick) + arc.second.distanceTo(second_pick);
    if (best && distance >= nearest) return;
    best = arc;
    nearest = distance;
  };
  if (first.kind() == Segment::Kind::kLine && second.kind() == Segment::Kind::kLine) {
    // Into the angle in which the picks lie.
    const std::optional<AcGePoint3d> corner = corner_of(first, second);
    if (!corner) return std::nullopt;
    const auto toward = [&](const Segment& line, const AcGePoint3d& pick) {
      const AcGeVector3d along = direction_of(line);
      return (pick - *corner).dotProduct(along) < 0.0 ? -along : along;
    };
    const AcGeVector3d a = toward(first, first_pick), b = toward(second, second_pick);
    const double half = a.angleTo(b) / 2.0;
    const double tangent = radius / std::tan(half);
    const AcGeVector3d middle = (a + b).normal();
    return FilletArc{*corner + a * tangent, *corner + b * tangent,
                     *corner + middle * (radius / std::sin(half)), radius};
  }
  const std::array<double, 2> sides = {radius, -radius};
  for (const double s : sides) {
    for (const double t : sides) {
      const bool vanishes = (first.is_arc() && first.radius() + s <= kSame) ||
                            (second.is_arc() && second.radius() + t <= kSame);
      if (vanishes) continue;
      for (const AcGePoint3d& center : intersections(endless(first, s), endless(second, t))) {
        offer({foot(first, center), foot(second, center), center, radius});
      }
    }
    if (radius == 0.0) break;
  }
  return best;
}

std::optional<FilletArc> fillet_parallel(const Segment& first, const AcGePoint3d& first_pick,
                                         const Segment& second) {
  const bool at_start = first.start().distanceTo(first_pick) < first.end().distanceTo(first_pick);
  const AcGePoint3d a = at_start ? first.start() : first.end();
  const AcGePoint3d b = foot(second, a);
  const double apart = a.distanceTo(b);
  if (apart < kSame) return std::nullopt;
  return FilletArc{a, b, a + (b - a) * 0.5, apart / 2.0};
}

Cornering fillet_vertex(PolylineShape& shape, std::size_t vertex, double radius) {
  const std::optional<Straight> at = straight_at(shape, vertex);
  if (!at) return Cornering::kArc;
  const double turn = std::atan2(at->in.x * at->out.y - at->in.y * at->out.x,
                                 at->in.x * at->out.x + at->in.y * at->out.y);
  if (std::fabs(turn) < kSame || std::fabs(turn) > std::numbers::pi - kSame)
    return Cornering::kParallel;
  const double tangent = radius * std::tan(std::fabs(turn) / 2.0);
  if (tangent > at->before + kSame || tangent > at->behind + kSame) return Cornering::kTooShort;
  if (radius > 0.0) cut_corner(shape, vertex, *at, tangent, tangent, std::tan(turn / 4.0));
  return Cornering::kDone;
}

Cornering chamfer_vertex(PolylineShape& shape, std::size_t vertex, double before, double behind) {
  const std::optional<Straight> at = straight_at(shape, vertex);
  if (!at) return Cornering::kArc;
  if (std::fabs(at->in.x * at->out.y - at->in.y * at->out.x) < kSame) return Cornering::kParallel;
  if (before > at->before + kSame || behind > at->behind + kSame) return Cornering::kTooShort;
  if (before > 0.0 || behind > 0.0) cut_corner(shape, vertex, *at, before, behind, 0.0);
  return Cornering::kDone;
}

std::optional<std::size_t> vertex_between(const PolylineShape& shape, std::size_t first,
                                          std::size_t second) {
  const std::size_t count = shape.segments();
  if (second == first + 1) return second;
  if (first == second + 1) return first;
  const bool around =
      shape.closed && count > 2 && first + second == count - 1 && (first == 0 || second == 0);
  return around ? std::optional<std::size_t>(0) : std::nullopt;
}

}  // namespace cad
