#include "host/geometry/plan_area.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cad {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

AcGePoint2d flat(const AcGePoint3d& p) { return {p.x, p.y}; }
AcGeVector2d flat(const AcGeVector3d& v) { return {v.x, v.y}; }
double cross(const AcGeVector2d& a, const AcGeVector2d& b) { return a.x * b.y - a.y * b.x; }

double slack_for(std::initializer_list<AcGePoint2d> points) {
  constexpr double kRelative = 1e-11, kLeast = 1e-12;
  double largest = 0.0;
  for (const AcGePoint2d& p : points) largest = std::max({largest, std::fabs(p.x), std::fabs(p.y)});
  return kLeast + kRelative * largest;
}

double distance_to_side(const AcGePoint2d& p, const AcGePoint2d& a, const AcGePoint2d& b) {
  const AcGeVector2d side = b - a;
  const double square = side.lengthSqrd();
  const double t = square > 0.0 ? std::clamp((p - a).dotProduct(side) / square, 0.0, 1.0) : 0.0;
  return p.distanceTo(a + side * t);
}

/// The straight line from a to b, and what its tests share.
struct Side {
  Side(const AcGePoint2d& from, const AcGePoint2d& to, double tolerance)
      : a(from), b(to), way(to - from), length(way.length()), slack(tolerance) {}

  /// Positive on the left.
  double offset(const AcGePoint2d& p) const {
    return length > 0.0 ? cross(way, p - a) / length : p.distanceTo(a);
  }
  double along(const AcGePoint2d& p) const {
    return length > 0.0 ? (p - a).dotProduct(way) / length : 0.0;
  }
  bool reaches(const AcGePoint2d& p) const {
    const double t = along(p);
    return t >= -slack && t <= length + slack;
  }
  bool is_near(const AcGePoint2d& p) const { return distance_to_side(p, a, b) <= slack; }

  const AcGePoint2d a, b;
  const AcGeVector2d way;
  const double length;
  const double slack;
};

void meet_line(const AcGePoint2d& p, const AcGePoint2d& q, const Side& side,
               std::vector<double>& out) {
  const double at_p = side.offset(p), at_q = side.offset(q);
  if (side.length == 0.0) {  // a point
    const double length = p.distanceTo(q);
    if (distance_to_side(side.a, p, q) <= side.slack)
      out.push_back(length > 0.0
                        ? std::clamp((side.a - p).dotProduct(q - p) / (length * length), 0.0, 1.0)
                        : 0.0);
    return;
  }
  if (std::fabs(at_p) <= side.slack && std::fabs(at_q) <= side.slack) {  // along each other
    const double from = side.along(p), to = side.along(q);
    const double low = std::max(std::min(from, to), 0.0);
    const double high = std::min(std::max(from, to), side.length);
    if (low > high + side.slack) return;
    if (from == to) {
      out.push_back(0.0);
      return;
    }
    out.push_back(std::clamp((low - from) / (to - from), 0.0, 1.0));
    out.push_back(std::clamp((high - from) / (to - from), 0.0, 1.0));
    return;
  }
  double u = 0.0;
  if ((at_p > 0.0) != (at_q > 0.0)) {
    u = at_p / (at_p - at_q);
  } else if (std::fabs(at_p) <= side.slack || std::fabs(at_q) <= side.slack) {
    u = std::fabs(at_p) < std::fabs(at_q) ? 0.0 : 1.0;
  } else {
    return;
  }
  if (side.reaches(p + (q - p) * u)) out.push_back(u);
}

void meet_arc(const Segment& arc, const Side& side, std::vector<double>& out) {
  if (arc.sweep() == 0.0) {
    if (side.is_near(flat(arc.start()))) out.push_back(0.0);
    return;
  }
  const auto keep = [&](double u) {
    if (u >= 0.0 && u <= 1.0 && side.is_near(flat(arc.point_at(u)))) out.push_back(u);
  };
  for (const double end : {0.0, 1.0}) keep(end);
  if (side.length == 0.0) {
    keep(arc.nearest({side.a.x, side.a.y, arc.center().z}).u);
    return;
  }
  // The distance to the line goes up and down with the angle like a cosine.
  const double middle = side.offset(flat(arc.center()));
  const double x = cross(side.way, flat(arc.x_axis())) / side.length;
  const double y = cross(side.way, flat(arc.y_axis())) / side.length;
  const double swing = std::hypot(x, y);
  if (!(std::fabs(middle) <= swing + side.slack) || swing == 0.0) {
    if (swing == 0.0 && std::fabs(middle) <= side.slack) {
      // Seen from its edge, along the line: inside it between its ends or where it turns.
      for (int i = 0; i <= 64; ++i) keep(i / 64.0);
    }
    return;
  }
  const double top = std::atan2(y, x);
  const double to_line = std::acos(std::clamp(-middle / swing, -1.0, 1.0));
  for (const double angle : {top + to_line, top - to_line}) {
    const double turn = arc.sweep() < 0.0 ? arc.start_angle() - angle : angle - arc.start_angle();
    const double forward = turn - kTurn * std::floor(turn / kTurn);
    const double u = forward / std::fabs(arc.sweep());
    if (u <= 1.0 && side.reaches(flat(arc.point_at(u)))) out.push_back(u);
  }
}

void meet_spline(const Bezier& whole, const Side& side, std::vector<double>& out) {
  struct Part {
    Bezier curve;
    double low, high;
    int depth;
  };
  constexpr int kDeepest = 50;
  std::vector<Part> parts{{whole, 0.0, 1.0, 0}};
  while (!parts.empty()) {
    const Part part = std::move(parts.back());
    parts.pop_back();
    double left = -1e300, right = 1e300, front = -1e300, back = 1e300;
    for (const Bezier::Control& c : part.curve.controls()) {
      const double offset = side.offset(flat(c.point)), along = side.along(flat(c.point));
      left = std::max(left, offset), right = std::min(right, offset);
      front = std::max(front, along), back = std::min(back, along);
    }
    const bool apart = right > side.slack || left < -side.slack ||
                       back > side.length + side.slack || front < -side.slack;
    if (apart || std::isnan(left + right)) continue;
    if (part.depth == kDeepest || part.curve.flatness() <= side.slack) {
      std::vector<double> found;
      const auto& controls = part.curve.controls();
      meet_line(flat(controls.front().point), flat(controls.back().point), side, found);
      for (const double u : found) out.push_back(part.low + u * (part.high - part.low));
      continue;
    }
    const double middle = (part.low + part.high) / 2;
    Bezier first, second;
    part.curve.split(0.5, first, second);
    parts.push_back({std::move(second), middle, part.high, part.depth + 1});
    parts.push_back({std::move(first), part.low, middle, part.depth + 1});
  }
}

std::vector<double> meetings(const Segment& segment, const Side& side) {
  std::vector<double> found;
  if (segment.kind() == Segment::Kind::kLine)
    meet_line(flat(segment.start()), flat(segment.end()), side, found);
  else if (segment.is_arc())
    meet_arc(segment, side, found);
  else
    meet_spline(segment.bezier(), side, found);
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

}  // namespace

std::vector<double> meetings(const Segment& segment, const AcGePoint2d& a, const AcGePoint2d& b) {
  return meetings(segment, Side(a, b, slack_for({a, b, flat(segment.start())})));
}

PlanArea::PlanArea(std::vector<AcGePoint2d> corners) : corners_(std::move(corners)) {
  for (const AcGePoint2d& p : corners_) {
    extents_.addPoint({p.x, p.y, 0.0});
    slack_ = std::max(slack_, slack_for({p}));
  }
}

PlanArea PlanArea::box(const AcGePoint2d& p, const AcGePoint2d& q) {
  const AcGePoint2d low(std::min(p.x, q.x), std::min(p.y, q.y));
  const AcGePoint2d high(std::max(p.x, q.x), std::max(p.y, q.y));
  PlanArea area({low, {high.x, low.y}, high, {low.x, high.y}});
  area.is_box_ = true;
  return area;
}

bool PlanArea::holds(const AcGePoint2d& p) const {
  const AcGePoint3d min = extents_.minPoint(), max = extents_.maxPoint();
  if (!(p.x >= min.x - slack_ && p.x <= max.x + slack_ && p.y >= min.y - slack_ &&
        p.y <= max.y + slack_))
    return false;
  if (is_box_) return true;
  bool inside = false;
  for (std::size_t i = 0; i < corners_.size(); ++i) {
    const AcGePoint2d& a = corners_[i];
    const AcGePoint2d& b = corners_[(i + 1) % corners_.size()];
    if (distance_to_side(p, a, b) <= slack_) return true;
    if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y))
      inside = !inside;
  }
  return inside;
}

bool PlanArea::holds(const Segment& segment) const {
  if (!holds(flat(segment.start())) || !holds(flat(segment.end()))) return false;
  if (is_box_) {
    if (segment.kind() == Segment::Kind::kLine) return true;
    const AcDbExtents box = segment.extents();
    return holds(flat(box.minPoint())) && holds(flat(box.maxPoint()));
  }
  // Between two meetings with the border a segment is all inside or all outside.
  std::vector<double> cuts{0.0, 1.0};
  for (std::size_t i = 0; i < corners_.size(); ++i) {
    const Side side(corners_[i], corners_[(i + 1) % corners_.size()], slack_);
    const std::vector<double> found = meetings(segment, side);
    cuts.insert(cuts.end(), found.begin(), found.end());
  }
  std::sort(cuts.begin(), cuts.end());
  for (std::size_t i = 1; i < cuts.size(); ++i)
    if (!holds(flat(segment.point_at((cuts[i - 1] + cuts[i]) / 2)))) return false;
  return true;
}

bool PlanArea::holds(const Curve& curve) const {
  if (!curve.is_bounded() || curve.segments().empty()) return false;
  return std::all_of(curve.segments().begin(), curve.segments().end(),
                     [this](const Segment& s) { return holds(s); });
}

bool PlanArea::touches(const Segment& segment) const {
  if (holds(flat(segment.start())) || holds(flat(segment.end()))) return true;
  for (std::size_t i = 0; i < corners_.size(); ++i) {
    const Side side(corners_[i], corners_[(i + 1) % corners_.size()], slack_);
    if (!meetings(segment, side).empty()) return true;
  }
  return false;
}

bool PlanArea::touches(const Curve& curve) const {
  const Curve part = clipped(curve, extents_);
  return std::any_of(part.segments().begin(), part.segments().end(),
                     [this](const Segment& s) { return touches(s); });
}

namespace {

std::vector<Segment> sides_of(const std::vector<AcGePoint2d>& corners) {
  std::vector<Segment> sides;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const AcGePoint2d& a = corners[i];
    const AcGePoint2d& b = corners[(i + 1) % corners.size()];
    sides.push_back(Segment::line({a.x, a.y, 0.0}, {b.x, b.y, 0.0}));
  }
  return sides;
}

}  // namespace

bool PlanArea::holds(const PlanArea& area) const {
  const std::vector<Segment> sides = sides_of(area.corners_);
  return !sides.empty() &&
         std::all_of(sides.begin(), sides.end(), [this](const Segment& s) { return holds(s); });
}

bool PlanArea::touches(const PlanArea& area) const {
  const std::vector<Segment> sides = sides_of(area.corners_);
  if (std::any_of(sides.begin(), sides.end(), [this](const Segment& s) { return touches(s); }))
    return true;
  return !corners_.empty() && area.holds(corners_.front());  // this one lies within the other
}

bool meets(const Curve& curve, const AcGePoint2d& a, const AcGePoint2d& b) {
  AcDbExtents box;
  box.addPoint({a.x, a.y, 0.0});
  box.addPoint({b.x, b.y, 0.0});
  const Curve part = clipped(curve, box);
  return std::any_of(part.segments().begin(), part.segments().end(),
                     [&](const Segment& s) { return !meetings(s, a, b).empty(); });
}

Curve clipped(const Curve& curve, const AcDbExtents& box) {
  if (curve.is_bounded() || curve.segments().empty() || box.is_empty()) return curve;
  const Segment& unit = curve.segments().front();
  const AcGeVector3d direction = unit.end() - unit.start();
  const AcGeVector2d seen = flat(direction);
  if (seen.length() == 0.0) return Curve::line(unit.start(), unit.start());
  // Far enough from the base point to pass the box on both sides.
  const AcGePoint3d middle = box.minPoint() + (box.maxPoint() - box.minPoint()) * 0.5;
  const double reach = flat(middle).distanceTo(flat(unit.start())) +
                       flat(box.minPoint()).distanceTo(flat(box.maxPoint())) + 1.0;
  const AcGeVector3d far = direction * (reach / seen.length());
  const bool both = curve.kind() == Curve::Kind::kXline;
  return Curve::line(both ? unit.start() - far : unit.start(), unit.start() + far);
}

}  // namespace cad
