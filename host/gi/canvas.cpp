#include "host/gi/canvas.h"

#include <algorithm>
#include <cmath>

namespace cad {
namespace {

Adesk::UInt32 count_of(std::span<const AcGePoint3d> points) {
  return static_cast<Adesk::UInt32>(points.size());
}

}  // namespace

std::vector<AcGePoint3d> points_of(std::span<const Curve> chain, double deviation) {
  std::vector<AcGePoint3d> points;
  for (const Curve& curve : chain)
    for (const Segment& segment : curve.segments()) append_points(segment, deviation, points);
  return points;
}

void Canvas::curve(const Curve& curve, double width) {
  const std::span<const Segment> segments = curve.segments();
  if (segments.empty()) return;
  const Segment& first = segments.front();
  if (!curve.is_bounded()) {
    if (curve.kind() == Curve::Kind::kRay)
      geometry_.ray(first.start(), first.end());
    else
      geometry_.xline(first.start(), first.end());
    return;
  }
  if (fine_) return fine_->curve(curve, width);
  if (width > 0.0) {
    const std::vector<SegmentWidth> widths(segments.size(), {width, width});
    return wide_curve(curve, widths, curve.plane_normal().value_or(AcGeVector3d::kZAxis));
  }
  if (segments.size() == 1 && first.kind() == Segment::Kind::kArc) {
    // An arc that runs clockwise is one that runs counter-clockwise about the opposite normal.
    const AcGeVector3d normal = first.sweep() < 0.0 ? -first.normal() : first.normal();
    if (curve.kind() == Curve::Kind::kCircle)
      geometry_.circle(first.center(), first.radius(), normal);
    else
      geometry_.circularArc(first.center(), first.radius(), normal, first.start() - first.center(),
                            std::abs(first.sweep()));
    return;
  }
  const std::vector<AcGePoint3d> points = points_of(std::span(&curve, 1), deviation(first.start()));
  geometry_.polyline(count_of(points), points.data());
}

void Canvas::wide_curve(const Curve& curve, std::span<const SegmentWidth> widths,
                        const AcGeVector3d& axis) {
  const std::span<const Segment> segments = curve.segments();
  if (segments.empty() || widths.empty()) return;
  const double width = widths.front().start;
  const bool constant = std::all_of(widths.begin(), widths.end(), [&](const SegmentWidth& each) {
    return each.start == width && each.end == width;
  });
  if (constant && (fine_ || width <= 0.0)) return this->curve(curve, std::max(width, 0.0));
  const auto outlines = wide_outlines(curve, widths, axis, deviation(segments.front().start()));
  if (fine_) {
    std::vector<std::vector<Curve>> loops;
    for (const auto& outline : outlines) loops.push_back({Curve::polyline3d(outline, true)});
    if (!loops.empty()) fine_->area(loops, FineGeometry::Rule::kNonZero);
  } else {
    for (const auto& outline : outlines) fill(outline);
  }
  // Stretches without width are seen as lines.
  for (std::size_t i = 0; i < std::min(segments.size(), widths.size()); ++i)
    if (!(widths[i].start > 0.0 || widths[i].end > 0.0)) {
      std::vector<AcGePoint3d> points;
      append_points(segments[i], deviation(segments[i].start()), points);
      outline(points, false);
    }
}

void Canvas::outline(std::span<const AcGePoint3d> points, bool closed) {
  if (points.empty()) return;
  if (fine_) return fine_->curve(Curve::polyline3d(points, closed), 0.0);
  if (!closed) {
    geometry_.polyline(count_of(points), points.data());
    return;
  }
  std::vector<AcGePoint3d> round(points.begin(), points.end());
  round.push_back(points.front());
  geometry_.polyline(count_of(round), round.data());
}

void Canvas::fill(std::span<const AcGePoint3d> corners) {
  if (corners.empty()) return;
  traits().setFillType(kAcGiFillAlways);
  geometry_.polygon(count_of(corners), corners.data());
  traits().setFillType(kAcGiFillNever);
}

void Canvas::area(std::span<const std::vector<Curve>> loops, FineGeometry::Rule rule) {
  if (fine_) return fine_->area(loops, rule);
  for (const std::vector<Curve>& loop : loops) {
    if (loop.empty() || loop.front().segments().empty()) continue;
    fill(points_of(loop, deviation(loop.front().segments().front().start())));
  }
}

void Canvas::strokes(std::span<const AcGePoint3d> ends) {
  if (fine_) return fine_->strokes(ends);
  for (std::size_t i = 0; i + 1 < ends.size(); i += 2) geometry_.polyline(2, &ends[i]);
}

void Canvas::mask(std::span<const AcGePoint3d> corners) {
  if (fine_)
    fine_->mask(corners);
  else
    outline(corners, true);
}

void Canvas::point(const AcGePoint3d& place, int mode, double size) {
  if (fine_) return fine_->point(place, mode, size);
  const AcGePoint3d twice[] = {place, place};
  geometry_.polyline(2, twice);
}

}  // namespace cad
