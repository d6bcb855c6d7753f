#include "host/geometry/offset.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "host/geometry/curve.h"
#include "host/geometry/intersect.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

using Segments = std::vector<Segment>;

/// The normal that sides are told by: an arc's own, else the one of the plane that looks up.
AcGeVector3d plane_of(const Curve& curve) {
  const Segment& first = curve.segments()[0];
  if (curve.kind() == Curve::Kind::kArc || curve.kind() == Curve::Kind::kCircle) {
    return first.normal();
  }
  if (curve.kind() != Curve::Kind::kPolyline) {
    // Any plane holds a line: the plan's unless it stands upright.
    const AcGeVector3d along = first.end() - first.start();
    return along.isParallelTo(AcGeVector3d::kZAxis) ? AcGeVector3d::kYAxis : AcGeVector3d::kZAxis;
  }
  const AcGeVector3d normal = curve.plane_normal().value_or(AcGeVector3d::kZAxis);
  const double up = normal.z != 0.0 ? normal.z : normal.y != 0.0 ? normal.y : normal.x;
  return up < 0.0 ? -normal : normal;
}

AcGeVector3d right_of(const Segment& s, double u, const AcGeVector3d& normal) {
  return s.at(u).first.crossProduct(normal).normal();
}

/// The radius an arc gets; an arc turned inside out has one of 0 or less.
double radius_beside(const Segment& arc, double distance, const AcGeVector3d& normal) {
  const bool counter_clockwise = (arc.normal().dotProduct(normal) > 0) == (arc.sweep() > 0);
  return arc.radius() + (counter_clockwise ? distance : -distance);
}

/// The segment beside; an arc past its center is turned inside out.
Segment beside(const Segment& s, double distance, const AcGeVector3d& normal) {
  if (s.kind() == Segment::Kind::kLine) {
    const AcGeVector3d shift = right_of(s, 0.0, normal) * distance;
    return Segment::line(s.start() + shift, s.end() + shift);
  }
  const double factor = radius_beside(s, distance, normal) / s.radius();
  return Segment::arc(s.center(), s.x_axis() * factor, s.y_axis() * factor, s.start_angle(),
                      s.sweep());
}

Curve chain(const Segment& s, const AcGeVector3d& normal);

/// Offsets a polyline: every piece beside its original, joined, cut where they cross each other,
/// and without the parts that came nearer than the distance.
class PolylineOffset {
 public:
  PolylineOffset(const Curve& curve, double distance)
      : curve_(curve), distance_(distance), normal_(plane_of(curve)) {
    for (const Segment& s : curve.segments()) {
      size_ = std::max({size_, s.start().asVector().length(), s.end().asVector().length()});
    }
    near_ = 1e-9 * size_;
  }

  std::vector<Curve> run() {
    make_raw();
    cut();
    keep_far_pieces();
    return stitched();
  }

 private:
  void make_raw() {
    const auto segments = curve_.segments();
    for (const Segment& s : segments) {
      if (s.length() <= near_) continue;
      if (s.kind() == Segment::Kind::kArc && radius_beside(s, distance_, normal_) <= near_) {
        continue;  // what is left of it would be nearer than the distance
      }
      sources_.push_back(&s);
      raw_.push_back(beside(s, distance_, normal_));
    }
    const std::size_t count = raw_.size();
    const bool closed = curve_.is_closed();
    std::vector<std::pair<std::size_t, Segment>> joints;
    for (std::size_t i = 0; i + (closed ? 0 : 1) < count && count > 1; ++i) {
      const std::size_t next = (i + 1) % count;
      Segments between = joined(i, next);
      for (Segment& joint : between) joints.emplace_back(i, std::move(joint));
    }
    Segments all;
    auto joint = joints.begin();
    for (std::size_t i = 0; i < count; ++i) {
      all.push_back(raw_[i]);
      for (; joint != joints.end() && joint->first == i; ++joint) all.push_back(joint->second);
    }
    raw_ = std::move(all);
  }

  /// What leads from the end of one piece to the start of the next. On the outer side of a corner
  /// both pieces grow until they meet; where they never do an arc about the corner leads over.
  Segments joined(std::size_t i, std::size_t next) {
    Segment &from = raw_[i], &to = raw_[next];
    const AcGePoint3d a = from.end(), b = to.start();
    if (a.distanceTo(b) <= near_) return {};
    const AcGeVector3d leaving = sources_[i]->at(1.0).first;
    const AcGeVector3d entering = sources_[next]->at(0.0).first;
    const double side = leaving.crossProduct(entering).dotProduct(normal_);
    const bool outer = side * distance_ > 0.0;
    const AcGePoint3d corner = sources_[i]->end();
    const bool at_corner = corner.distanceTo(sources_[next]->start()) <= near_;
    if (!outer || !at_corner) return {Segment::line(a, b)};
    if (from.kind() == Segment::Kind::kLine && to.kind() == Segment::Kind::kLine) {
      const Curve first = Curve::line(from.start(), from.end());
      const Curve second = Curve::line(to.start(), to.end());
      const auto met = intersections(first, second, Extend::kBoth);
      if (!met.empty()) return {Segment::line(a, met.front()), Segment::line(met.front(), b)};
    }
    const AcGeVector3d x = a - corner;
    const double turn = x.angleTo(b - corner, distance_ > 0 ? normal_ : -normal_);
    const AcGeVector3d y = (distance_ > 0 ? normal_ : -normal_).crossProduct(x);
    return {Segment::arc(corner, x, y, 0.0, turn)};
  }

  /// Splits all pieces where they cross each other.
  void cut() {
    std::vector<std::vector<double>> places(raw_.size(), {0.0, 1.0});
    std::vector<Curve> curves;
    for (const Segment& s : raw_) curves.push_back(chain(s, normal_));
    for (std::size_t i = 0; i < raw_.size(); ++i) {
      for (std::size_t j = i + 1; j < raw_.size(); ++j) {
        for (const Crossing& crossing : crossings(curves[i], curves[j])) {
          places[i].push_back(crossing.first_u);
          places[j].push_back(crossing.second_u);
        }
        cut_at_ends(i, raw_[j], places[i]);
        cut_at_ends(j, raw_[i], places[j]);
      }
    }
    Segments pieces;
    for (std::size_t i = 0; i < raw_.size(); ++i) {
      std::sort(places[i].begin(), places[i].end());
      for (std::size_t k = 0; k + 1 < places[i].size(); ++k) {
        if ((places[i][k + 1] - places[i][k]) * raw_[i].length() <= near_) continue;
        Segment piece = raw_[i].piece(places[i][k], places[i][k + 1]);
        if (!is_known(pieces, piece)) pieces.push_back(std::move(piece));
      }
    }
    raw_ = std::move(pieces);
  }

  /// Where pieces run along each other they part at their ends.
  void cut_at_ends(std::size_t i, const Segment& other, std::vector<double>& places) const {
    for (const AcGePoint3d& end : {other.start(), other.end()}) {
      const Segment::Nearest at = raw_[i].nearest(end);
      if (at.distance <= near_) places.push_back(at.u);
    }
  }
  bool is_known(const Segments& pieces, const Segment& piece) const {
    return std::any_of(pieces.begin(), pieces.end(), [&](const Segment& known) {
      return known.start().distanceTo(piece.start()) <= near_ &&
             known.end().distanceTo(piece.end()) <= near_ &&
             known.point_at(0.5).distanceTo(piece.point_at(0.5)) <= near_;
    });
  }

  void keep_far_pieces() {
    const double least = std::fabs(distance_) * (1.0 - 1e-7) - near_;
    std::erase_if(raw_, [&](const Segment& s) {
      for (const double u : {0.5, 0.1, 0.9}) {
        if (curve_.nearest(s.point_at(u)).distance < least) return true;
      }
      return false;
    });
  }

  /// Pieces that follow each other as polylines.
  std::vector<Curve> stitched() {
    std::vector<Curve> curves;
    std::vector<bool> used(raw_.size(), false);
    const double meet = 100.0 * near_;
    for (std::size_t i = 0; i < raw_.size(); ++i) {
      if (used[i]) continue;
      used[i] = true;
      Segments run{raw_[i]};
      for (bool grown = true; grown;) {
        grown = false;
        for (std::size_t k = 0; k < raw_.size(); ++k) {
          if (used[k]) continue;
          const bool behind = run.back().end().distanceTo(raw_[k].start()) <= meet;
          const bool before = raw_[k].end().distanceTo(run.front().start()) <= meet;
          if (!behind && !before) continue;
          used[k] = grown = true;
          run.insert(behind ? run.end() : run.begin(), raw_[k]);
        }
      }
      const bool closed =
          run.size() > 1 && run.back().end().distanceTo(run.front().start()) <= meet;
      curves.push_back(polyline_of(merged(std::move(run), closed), closed, normal_));
    }
    return curves;
  }

  /// Pieces of one line, or of one arc, as one.
  Segments merged(Segments run, bool closed) const {
    Segments out;
    for (Segment& s : run) {
      if (!out.empty() && one_piece(out.back(), s)) {
        out.back() = both(out.back(), s);
      } else {
        out.push_back(std::move(s));
      }
    }
    if (closed && out.size() > 2 && one_piece(out.back(), out.front())) {
      out.front() = both(out.back(), out.front());
      out.pop_back();
    }
    return out;
  }
  bool one_piece(const Segment& a, const Segment& b) const {
    if (a.kind() != b.kind()) return false;
    const AcGeVector3d d = a.at(1.0).first.normal(), e = b.at(0.0).first.normal();
    if ((d - e).length() > 1e-7) return false;
    return a.kind() == Segment::Kind::kLine ||
           (a.center().distanceTo(b.center()) <= 100.0 * near_ &&
            std::fabs(a.radius() - b.radius()) <= 100.0 * near_ &&
            std::fabs(a.sweep()) + std::fabs(b.sweep()) < 2.0 * std::numbers::pi - 1e-6);
  }
  static Segment both(const Segment& a, const Segment& b) {
    if (a.kind() == Segment::Kind::kLine) return Segment::line(a.start(), b.end());
    return Segment::arc(a.center(), a.x_axis(), a.y_axis(), a.start_angle(), a.sweep() + b.sweep());
  }

  const Curve& curve_;
  const double distance_;
  const AcGeVector3d normal_;
  double size_ = 1.0;
  double near_;
  std::vector<const Segment*> sources_;
  Segments raw_;
};

Curve chain(const Segment& s, const AcGeVector3d& normal) {
  return s.kind() == Segment::Kind::kLine ? Curve::line(s.start(), s.end())
                                          : polyline_of(Segments{s}, false, normal);
}

bool can_be_beside(const Curve& curve) {
  for (const Segment& s : curve.segments()) {
    if (s.kind() != Segment::Kind::kLine && s.kind() != Segment::Kind::kArc) return false;
  }
  return !curve.segments().empty() && curve.kind() != Curve::Kind::kPolyline3d &&
         curve.plane_normal();
}

}  // namespace

Curve polyline_of(std::span<const Segment> segments, bool closed, const AcGeVector3d& normal) {
  const AcGeMatrix3d own = ocs_to_wcs(normal).transpose();
  std::vector<Curve::Vertex> vertices;
  double elevation = 0.0;
  for (const Segment& s : segments) {
    const AcGePoint3d p = own * s.start();
    if (vertices.empty()) elevation = p.z;
    vertices.push_back({{p.x, p.y}, bulge_of(s, normal)});
  }
  if (!closed && !segments.empty()) {
    const AcGePoint3d p = own * segments.back().end();
    vertices.push_back({{p.x, p.y}, 0.0});
  }
  return Curve::polyline(vertices, closed, normal, elevation);
}

double bulge_of(const Segment& segment, const AcGeVector3d& normal) {
  if (segment.kind() != Segment::Kind::kArc) return 0.0;
  const double bulge = std::tan(segment.sweep() / 4.0);
  return segment.normal().dotProduct(normal) < 0.0 ? -bulge : bulge;
}

std::vector<Curve> offset_curve(const Curve& curve, double distance) {
  if (!can_be_beside(curve) || !std::isfinite(distance)) return {};
  const AcGeVector3d normal = plane_of(curve);
  const Segment& first = curve.segments()[0];
  switch (curve.kind()) {
    case Curve::Kind::kLine: {
      const Segment s = beside(first, distance, normal);
      return {Curve::line(s.start(), s.end())};
    }
    case Curve::Kind::kRay:
    case Curve::Kind::kXline: {
      const Segment s = beside(first, distance, normal);
      const AcGeVector3d along = s.end() - s.start();
      return {curve.kind() == Curve::Kind::kRay ? Curve::ray(s.start(), along)
                                                : Curve::xline(s.start(), along)};
    }
    case Curve::Kind::kArc:
    case Curve::Kind::kCircle: {
      const double radius = radius_beside(first, distance, normal);
      if (!(radius > 0.0)) return {};
      if (curve.kind() == Curve::Kind::kCircle) {
        return {Curve::circle(first.center(), normal, radius)};
      }
      return {Curve::arc(first.center(), normal, radius, curve.start_param(), curve.end_param())};
    }
    case Curve::Kind::kPolyline:
      return PolylineOffset(curve, distance).run();
    default:
      return {};
  }
}

double offset_distance_through(const Curve& curve, const AcGePoint3d& point) {
  if (!can_be_beside(curve)) return 0.0;
  const AcGeVector3d normal = plane_of(curve);
  const Curve::Nearest nearest = curve.nearest_in_projection(point, normal, true);
  AcGeVector3d away = point - nearest.point;
  away = away - normal * away.dotProduct(normal);
  // Beside a corner the two directions that meet there decide together.
  AcGeVector3d along = curve.first_derivative(nearest.param).normal();
  for (const Segment& s : curve.segments()) {
    if (s.end().distanceTo(nearest.point) <= 1e-9 * (1.0 + nearest.point.asVector().length())) {
      along = along + s.at(1.0).first.normal();
      break;
    }
  }
  const double side = away.dotProduct(along.crossProduct(normal));
  return side < 0.0 ? -away.length() : away.length();
}

}  // namespace cad
