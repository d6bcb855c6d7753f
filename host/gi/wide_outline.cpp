#include "host/gi/wide_outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cad {
namespace {

constexpr double kMostPieces = 360.0;

double pieces_of_arc(double radius, double sweep, double deviation) {
  double step = std::numbers::pi / 4;
  if (deviation > 0.0 && deviation < radius)
    step = std::min(step, 2.0 * std::acos(1.0 - deviation / radius));
  const double pieces = std::ceil(std::abs(sweep) / step);
  return std::isfinite(pieces) ? std::clamp(pieces, 1.0, kMostPieces) : 1.0;
}

double pieces_of_spline(const Bezier& curve, double deviation) {
  // The distance from chord to curve falls with the square of the number of pieces.
  const double flatness = curve.flatness();
  const double pieces = deviation > 0.0 ? std::ceil(std::sqrt(flatness / deviation)) : 16.0;
  return std::isfinite(pieces) ? std::clamp(pieces, 1.0, kMostPieces) : 1.0;
}

double piece_count(const Segment& segment, double deviation) {
  switch (segment.kind()) {
    case Segment::Kind::kLine:
      return 1.0;
    case Segment::Kind::kArc:
    case Segment::Kind::kEllipse:
      return pieces_of_arc(std::max(segment.x_axis().length(), segment.y_axis().length()),
                           segment.sweep(), deviation);
    case Segment::Kind::kSpline:
      return pieces_of_spline(segment.bezier(), deviation);
  }
  return 1.0;
}

/// Of the unit tangent at u, turned left in the plane.
AcGeVector3d side(const Segment& segment, double u, const AcGeVector3d& axis) {
  return axis.crossProduct(segment.at(u).first).normal();
}

/// How far the outlines of two straight segments go beyond their common corner, as a multiple of
/// the half width, on the side towards `axis` x direction; nothing when they are not to be mitred.
struct Mitre {
  bool sharp = true;
  AcGeVector3d left;  ///< from the corner to the left outlines' meeting, for half width 1
};

Mitre mitre(const AcGeVector3d& side_before, const AcGeVector3d& side_behind) {
  constexpr double kSharpest =
      0.0625;  // cosine squared of half the turn: mitres up to 4 half widths
  const AcGeVector3d sum = side_before + side_behind;
  const double square = sum.dotProduct(sum) / 4.0;
  if (!(square > kSharpest)) return {};
  return {false, sum * (0.5 / square)};
}

}  // namespace

void append_points(const Segment& segment, double deviation, std::vector<AcGePoint3d>& points) {
  const double pieces = piece_count(segment, deviation);
  if (points.empty() || !points.back().isEqualTo(segment.start()))
    points.push_back(segment.start());
  for (double i = 1.0; i < pieces; i += 1.0) points.push_back(segment.point_at(i / pieces));
  points.push_back(segment.end());
}

std::vector<std::vector<AcGePoint3d>> wide_outlines(const Curve& curve,
                                                    std::span<const SegmentWidth> widths,
                                                    const AcGeVector3d& axis, double deviation) {
  const std::span<const Segment> segments = curve.segments();
  const std::size_t count = std::min(segments.size(), widths.size());
  // The corner in front of segment i; a closed polyline has one in front of its first.
  const auto corner = [&](std::size_t i) -> Mitre {
    if (i == 0 && !curve.is_closed()) return {};
    const std::size_t before = i == 0 ? count - 1 : i - 1;
    if (i >= count || segments[before].kind() != Segment::Kind::kLine ||
        segments[i].kind() != Segment::Kind::kLine || widths[before].end != widths[i].start)
      return {};
    return mitre(side(segments[before], 1.0, axis), side(segments[i], 0.0, axis));
  };
  std::vector<std::vector<AcGePoint3d>> outlines;
  for (std::size_t i = 0; i < count; ++i) {
    const Segment& segment = segments[i];
    const double from = widths[i].start / 2.0, to = widths[i].end / 2.0;
    if (!(from > 0.0 || to > 0.0) || segment.start().isEqualTo(segment.end())) continue;
    const Mitre before = corner(i);
    const Mitre behind = i + 1 < count ? corner(i + 1) : curve.is_closed() ? corner(0) : Mitre{};
    const double pieces =
        piece_count(segment, deviation > 0.0 ? deviation : std::max(from, to) / 100.0);
    std::vector<AcGePoint3d> left, right;
    for (double k = 0.0; k <= pieces; k += 1.0) {
      const double u = k / pieces;
      AcGeVector3d out = side(segment, u, axis);
      if (k == 0.0 && !before.sharp) out = before.left;
      if (k == pieces && !behind.sharp) out = behind.left;
      const AcGePoint3d p = segment.point_at(u);
      const double half = from + (to - from) * u;
      left.push_back(p + out * half);
      right.push_back(p - out * half);
    }
    left.insert(left.end(), right.rbegin(), right.rend());
    outlines.push_back(std::move(left));
  }
  return outlines;
}

}  // namespace cad
