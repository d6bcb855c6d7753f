#include "host/geometry/intersect.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "host/geometry/curve.h"

namespace cad {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

/// A segment and which of its ends are open.
struct Piece {
  const Segment* segment;
  bool before = false;  ///< it goes on before its start
  bool behind = false;
};

struct Meeting {
  double u, v;
};

/// How near two points have to be to count as one.
double tolerance_of(const Segment& a, const Segment& b) {
  double size = 1.0;
  for (const AcGePoint3d& p : {a.start(), a.end(), b.start(), b.end()}) {
    for (unsigned axis = 0; axis < 3; ++axis) size = std::max(size, std::fabs(p[axis]));
  }
  return 1e-10 * size;
}

/// u brought onto the piece when it is off by no more than the tolerance; nothing off the piece.
std::optional<double> on_piece(const Piece& piece, double u, double tolerance) {
  if (!std::isfinite(u)) return std::nullopt;
  const double length = piece.segment->length();
  const double slack = length > 0.0 ? tolerance / length : 0.0;
  if (u < 0.0 && !piece.before) return u >= -slack ? std::optional(0.0) : std::nullopt;
  if (u > 1.0 && !piece.behind) return u <= 1.0 + slack ? std::optional(1.0) : std::nullopt;
  return u;
}

/// The place of an angle on an arc: of a prolonged one on the side that is nearer.
std::optional<double> u_of_angle(const Piece& piece, double angle, double tolerance) {
  const Segment& arc = *piece.segment;
  const double sweep = arc.sweep();
  if (sweep == 0.0) return std::nullopt;
  const double way = sweep > 0.0 ? angle - arc.start_angle() : arc.start_angle() - angle;
  double turned = way - kTurn * std::floor(way / kTurn);
  const double whole = std::fabs(sweep);
  const double slack = tolerance / std::max(arc.x_axis().length(), 1e-300);
  if (turned > whole + slack) {
    const double over = turned - whole, under = kTurn - turned;
    if (under <= slack) {
      turned = 0.0;
    } else if (piece.before && (under <= over || !piece.behind)) {
      turned -= kTurn;
    } else if (!piece.behind) {
      return std::nullopt;
    }
  }
  return on_piece(piece, turned / whole, tolerance);
}

class PairSolver {
 public:
  PairSolver(const Piece& a, const Piece& b)
      : a_(a), b_(b), tolerance_(tolerance_of(*a.segment, *b.segment)) {}

  std::vector<Meeting> run() {
    using Kind = Segment::Kind;
    const Kind first = a_.segment->kind(), second = b_.segment->kind();
    if (first == Kind::kLine && second == Kind::kLine) {
      lines();
    } else if (first == Kind::kLine && b_.segment->is_arc()) {
      line_and_arc(a_, b_, false);
    } else if (a_.segment->is_arc() && second == Kind::kLine) {
      line_and_arc(b_, a_, true);
    } else if (!(first == Kind::kArc && second == Kind::kArc && circles())) {
      search();
    }
    return std::move(found_);
  }

 private:
  void add(std::optional<double> u, std::optional<double> v) {
    if (!u || !v) return;
    const AcGePoint3d p = a_.segment->point_at(*u), q = b_.segment->point_at(*v);
    if (p.distanceTo(q) <= 10.0 * tolerance_) found_.push_back({*u, *v});
  }

  /// Ends of both that are the same place: all that two lines along each other share.
  void shared_ends() {
    for (const double u : {0.0, 1.0}) {
      for (const double v : {0.0, 1.0}) {
        const AcGePoint3d p = u == 0.0 ? a_.segment->start() : a_.segment->end();
        const AcGePoint3d q = v == 0.0 ? b_.segment->start() : b_.segment->end();
        if (p.distanceTo(q) <= tolerance_) found_.push_back({u, v});
      }
    }
  }

  void lines() {
    const AcGeVector3d d = a_.segment->end() - a_.segment->start();
    const AcGeVector3d e = b_.segment->end() - b_.segment->start();
    const AcGeVector3d w = b_.segment->start() - a_.segment->start();
    const AcGeVector3d n = d.crossProduct(e);
    const double square = n.lengthSqrd();
    if (!(square > 1e-24 * d.lengthSqrd() * e.lengthSqrd())) return shared_ends();
    add(on_piece(a_, w.crossProduct(e).dotProduct(n) / square, tolerance_),
        on_piece(b_, w.crossProduct(d).dotProduct(n) / square, tolerance_));
  }

  /// In coordinates in which the arc is the unit circle.
  void line_and_arc(const Piece& line, const Piece& arc, bool exchanged) {
    const Segment& circle = *arc.segment;
    const AcGeVector3d x = circle.x_axis(), y = circle.y_axis();
    const AcGeVector3d normal = x.crossProduct(y).normal();
    const AcGeVector3d d = line.segment->end() - line.segment->start();
    const AcGeVector3d w = line.segment->start() - circle.center();
    const double xx = x.lengthSqrd(), yy = y.lengthSqrd(), xy = x.dotProduct(y);
    const double gram = xx * yy - xy * xy;
    if (!(gram > 0.0) || !(d.lengthSqrd() > 0.0)) return;
    const auto coordinates = [&](const AcGeVector3d& v) {
      const double vx = v.dotProduct(x), vy = v.dotProduct(y);
      return AcGeVector2d((vx * yy - vy * xy) / gram, (vy * xx - vx * xy) / gram);
    };
    const auto take = [&](double t) {
      const AcGeVector2d p = coordinates(w + d * t);
      const auto on_line = on_piece(line, t, tolerance_);
      const auto on_arc = u_of_angle(arc, std::atan2(p.y, p.x), tolerance_);
      exchanged ? add(on_arc, on_line) : add(on_line, on_arc);
    };
    const double rise = d.dotProduct(normal);
    if (std::fabs(rise) > 1e-12 * d.length()) return take(-w.dotProduct(normal) / rise);
    if (std::fabs(w.dotProduct(normal)) > tolerance_) return;
    const AcGeVector2d p = coordinates(w), q = coordinates(d);
    const double a = q.dotProduct(q), b = p.dotProduct(q), c = p.dotProduct(p) - 1.0;
    const double discriminant = b * b - a * c;
    // A line that touches within the tolerance touches.
    const double nearest = (p - q * (b / a)).length();
    const double slack = tolerance_ / std::sqrt(std::max(xx, yy));
    if (std::fabs(nearest - 1.0) <= slack) return take(-b / a);
    if (discriminant < 0.0) return;
    const double root = std::sqrt(discriminant);
    const double far = b >= 0.0 ? -b - root : -b + root;
    take(far / a);
    take(far != 0.0 ? c / far : 0.0);
  }

  /// False when they are not in one plane.
  bool circles() {
    const Segment &a = *a_.segment, &b = *b_.segment;
    const AcGeVector3d normal = a.normal();
    const AcGeVector3d between = b.center() - a.center();
    if (b.normal().crossProduct(normal).length() > 1e-10) return false;
    if (std::fabs(between.dotProduct(normal)) > tolerance_) return false;
    const double r = a.radius(), s = b.radius(), distance = between.length();
    if (distance <= tolerance_) {
      const bool whole = std::fabs(a.sweep()) >= kTurn || std::fabs(b.sweep()) >= kTurn;
      if (std::fabs(r - s) <= tolerance_ && !whole) shared_ends();
      return true;
    }
    if (distance > r + s + tolerance_ || distance < std::fabs(r - s) - tolerance_) return true;
    const double along = (distance * distance + r * r - s * s) / (2.0 * distance);
    const double square = r * r - along * along;
    const bool touch = std::fabs(distance - (r + s)) <= tolerance_ ||
                       std::fabs(distance - std::fabs(r - s)) <= tolerance_;
    const double across = touch || square <= 0.0 ? 0.0 : std::sqrt(square);
    const AcGeVector3d unit = between / distance;
    const AcGeVector3d left = normal.crossProduct(unit);
    for (const double side : {across, -across}) {
      const AcGePoint3d p = a.center() + unit * along + left * side;
      add(u_of_angle(a_, angle_on(a, p), tolerance_), u_of_angle(b_, angle_on(b, p), tolerance_));
      if (across == 0.0) break;
    }
    return true;
  }

  static double angle_on(const Segment& arc, const AcGePoint3d& p) {
    const AcGeVector3d w = p - arc.center();
    return std::atan2(w.dotProduct(arc.y_axis()), w.dotProduct(arc.x_axis()));
  }

  struct Range {
    double u0, u1, v0, v1;
  };

  /// For the pairs without a formula: halves both until their boxes part or are small, then
  /// Newton's steps.
  void search() {
    const Segment a = whole(a_), b = whole(b_);
    std::vector<Range> work{{0.0, 1.0, 0.0, 1.0}};
    constexpr double kSmall = 1.0 / 64.0;
    constexpr std::size_t kMostBoxes = 40'000;  // curves along each other would never end
    for (std::size_t boxes = 0; !work.empty() && boxes < kMostBoxes; ++boxes) {
      const Range at = work.back();
      work.pop_back();
      if (!near(a.piece(at.u0, at.u1).extents(), b.piece(at.v0, at.v1).extents())) continue;
      if (at.u1 - at.u0 <= kSmall && at.v1 - at.v0 <= kSmall) {
        refine(a, b, (at.u0 + at.u1) / 2.0, (at.v0 + at.v1) / 2.0);
        continue;
      }
      const double u = (at.u0 + at.u1) / 2.0, v = (at.v0 + at.v1) / 2.0;
      work.push_back({at.u0, u, at.v0, v});
      work.push_back({at.u0, u, v, at.v1});
      work.push_back({u, at.u1, at.v0, v});
      work.push_back({u, at.u1, v, at.v1});
    }
  }

  bool near(const AcDbExtents& a, const AcDbExtents& b) const {
    const AcGePoint3d low = a.minPoint(), high = a.maxPoint();
    const AcGePoint3d other_low = b.minPoint(), other_high = b.maxPoint();
    for (unsigned axis = 0; axis < 3; ++axis) {
      if (low[axis] > other_high[axis] + tolerance_ || other_low[axis] > high[axis] + tolerance_) {
        return false;
      }
    }
    return true;
  }

  void refine(const Segment& a, const Segment& b, double u, double v) {
    constexpr int kMostSteps = 30;
    for (int step = 0; step < kMostSteps; ++step) {
      const Jet p = a.at(u), q = b.at(v);
      const AcGeVector3d gap = q.point - p.point;
      const double aa = p.first.lengthSqrd(), bb = q.first.lengthSqrd();
      const double ab = p.first.dotProduct(q.first);
      const double det = aa * bb - ab * ab;
      if (!(det > 1e-20 * aa * bb)) break;
      const double ga = gap.dotProduct(p.first), gb = gap.dotProduct(q.first);
      const double du = (ga * bb - gb * ab) / det, dv = (ga * ab - gb * aa) / det;
      u = std::clamp(u + du, 0.0, 1.0);
      v = std::clamp(v + dv, 0.0, 1.0);
      if (std::fabs(du) < 1e-15 && std::fabs(dv) < 1e-15) break;
    }
    if (a.point_at(u).distanceTo(b.point_at(v)) > tolerance_) return;
    const auto on_first = place(a_, a, u), on_second = place(b_, b, v);
    if (!on_first || !on_second) return;
    for (const Meeting& known : found_) {
      if (a_.segment->point_at(known.u).distanceTo(a.point_at(u)) <= 100.0 * tolerance_) return;
    }
    found_.push_back({*on_first, *on_second});
  }

  /// A prolonged arc as its full circle or ellipse.
  static Segment whole(const Piece& piece) {
    const Segment& s = *piece.segment;
    if (!s.is_arc() || (!piece.before && !piece.behind)) return s;
    return Segment::arc(s.center(), s.x_axis(), s.y_axis(), s.start_angle(),
                        std::copysign(kTurn, s.sweep()));
  }
  std::optional<double> place(const Piece& piece, const Segment& searched, double u) const {
    if (!piece.segment->is_arc()) return on_piece(piece, u, tolerance_);
    return u_of_angle(piece, searched.start_angle() + u * searched.sweep(), tolerance_);
  }

  Piece a_, b_;
  double tolerance_;
  std::vector<Meeting> found_;
};

Piece piece_of(const Curve& curve, std::size_t i, bool extended) {
  const auto segments = curve.segments();
  const bool open = extended && !curve.is_closed();
  Piece piece{&segments[i], open && i == 0, open && i + 1 == segments.size()};
  if (curve.kind() == Curve::Kind::kRay || curve.kind() == Curve::Kind::kXline) {
    piece.behind = true;
    piece.before = piece.before || curve.kind() == Curve::Kind::kXline;
  }
  return piece;
}

/// Whether two pieces cannot meet: both have ends, and their boxes are apart.
bool apart(const Piece& a, const Piece& b, const AcDbExtents& box, const AcDbExtents& other,
           double tolerance) {
  if (a.before || a.behind || b.before || b.behind) return false;
  for (unsigned axis = 0; axis < 3; ++axis) {
    if (box.minPoint()[axis] > other.maxPoint()[axis] + tolerance ||
        other.minPoint()[axis] > box.maxPoint()[axis] + tolerance) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::vector<Crossing> crossings(const Curve& first, const Curve& second, Extend extend) {
  const bool first_on = extend == Extend::kFirst || extend == Extend::kBoth;
  const bool second_on = extend == Extend::kSecond || extend == Extend::kBoth;
  std::vector<AcDbExtents> boxes;
  for (const Segment& segment : second.segments()) boxes.push_back(segment.extents());
  std::vector<Crossing> found;
  double tolerance = 0.0;
  for (std::size_t i = 0; i < first.segments().size(); ++i) {
    const Piece a = piece_of(first, i, first_on);
    const AcDbExtents box = a.segment->extents();
    for (std::size_t j = 0; j < second.segments().size(); ++j) {
      const Piece b = piece_of(second, j, second_on);
      const double near = tolerance_of(*a.segment, *b.segment);
      if (apart(a, b, box, boxes[j], near)) continue;
      tolerance = std::max(tolerance, near);
      for (const Meeting& at : PairSolver(a, b).run()) {
        found.push_back({a.segment->point_at(at.u), i, at.u, j, at.v});
      }
    }
  }
  std::stable_sort(found.begin(), found.end(), [](const Crossing& a, const Crossing& b) {
    return std::pair(a.first_segment, a.first_u) < std::pair(b.first_segment, b.first_u);
  });
  // A vertex belongs to two segments, and is found on both.
  std::vector<Crossing> distinct;
  for (const Crossing& crossing : found) {
    const bool known = std::any_of(distinct.begin(), distinct.end(), [&](const Crossing& other) {
      return other.point.distanceTo(crossing.point) <= tolerance;
    });
    if (!known) distinct.push_back(crossing);
  }
  return distinct;
}

std::vector<AcGePoint3d> intersections(const Curve& first, const Curve& second, Extend extend) {
  std::vector<AcGePoint3d> points;
  for (const Crossing& crossing : crossings(first, second, extend)) {
    points.push_back(crossing.point);
  }
  return points;
}

}  // namespace cad
