#include "labeler/layout.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace labeler {
namespace {

constexpr double kPi = std::numbers::pi;

/// Where along the middle of a pipe, and on which side of it.
struct MiddleVariant {
  double fraction;
  bool below;
  bool further = false;  ///< from the pipe, where a label nearer to it leaves room
};
constexpr MiddleVariant kMiddleVariants[] = {{0.5, false},       {0.5, true},      {0.35, false},
                                             {0.65, false},      {0.35, true},     {0.65, true},
                                             {0.5, false, true}, {0.5, true, true}};

/// In which direction from the node.
struct NodeVariant {
  int x, y;
};
constexpr NodeVariant kNodeVariants[] = {{1, 1}, {-1, 1}, {1, -1}, {-1, -1},
                                         {1, 0}, {-1, 0}, {0, 1},  {0, -1}};

constexpr double kLeaderAngles[] = {kPi / 4, 3 * kPi / 4, 7 * kPi / 4, 5 * kPi / 4};
/// How far letters may reach below their base line, in text heights.
constexpr double kBelowBaseLine = 1.0 / 3.0;

constexpr int kSides = 2;  // above and below

/// A label's own axes: x along the reading direction, y up.
class Frame {
 public:
  Frame(const AcGePoint3d& origin, double angle)
      : origin_(origin), angle_(angle), cos_(std::cos(angle)), sin_(std::sin(angle)) {}
  AcGePoint3d point(double x, double y) const {
    return {origin_.x + x * cos_ - y * sin_, origin_.y + x * sin_ + y * cos_, 0.0};
  }
  double angle() const { return angle_; }
  PlacedText text(double x, double y, AcDb::TextHorzMode horizontal, AcDb::TextVertMode vertical,
                  double width) const {
    return {point(x, y), horizontal, vertical, angle_, width};
  }

 private:
  AcGePoint3d origin_;
  double angle_, cos_, sin_;
};

struct CurvePlace {
  AcGePoint3d point;
  double direction;
};

/// A corner has two directions; that of the piece behind it stands.
CurvePlace place_at(const cad::Curve& curve, double distance) {
  const cad::Jet jet = curve.jet_at(curve.param_at_distance(distance));
  AcGeVector3d direction = jet.first;
  // A piece without length has no direction: that of the first piece with one stands in.
  for (const cad::Segment& segment : curve.segments()) {
    if (direction.x != 0.0 || direction.y != 0.0) break;
    direction = segment.at(0.0).first;
  }
  return {jet.point, std::atan2(direction.y, direction.x)};
}

/// Lines one upon the other, the last of them nearest to the pipe above it, the first below it.
void stack_lines(Shape& shape, const Frame& frame, std::size_t from, std::size_t to, bool below,
                 const Sizes& sizes, std::span<const double> widths) {
  const double step = sizes.text_height + sizes.line_space;
  for (std::size_t i = from; i < to; ++i) {
    const std::size_t rank = below ? i - from : to - 1 - i;
    const double y = sizes.gap + static_cast<double>(rank) * step;
    shape.texts.push_back(below ? frame.text(0, -y, AcDb::kTextCenter, AcDb::kTextTop, widths[i])
                                : frame.text(0, y, AcDb::kTextCenter, AcDb::kTextBase, widths[i]));
  }
}

void row_of_lines(Shape& shape, const Frame& frame, bool below, const Sizes& sizes,
                  std::span<const double> widths) {
  double total = sizes.text_space * static_cast<double>(widths.size() - 1);
  for (const double width : widths) total += width;
  double x = -total / 2;
  for (const double width : widths) {
    shape.texts.push_back(below
                              ? frame.text(x, -sizes.gap, AcDb::kTextLeft, AcDb::kTextTop, width)
                              : frame.text(x, sizes.gap, AcDb::kTextLeft, AcDb::kTextBase, width));
    x += width + sizes.text_space;
  }
}

Shape along_middle(const Draft& draft, const Place& place, const Sizes& sizes,
                   std::span<const double> widths, Shape shape) {
  const auto& [fraction, below, further] = kMiddleVariants[place.variant];
  const std::size_t above = std::min(draft.above, widths.size());
  const double step = sizes.text_height + sizes.line_space;
  double away = 0.0;
  if (further) away = step * (draft.in_a_row ? 1.0 : static_cast<double>(above)) + sizes.gap;
  const Frame at_pipe(place.anchor, place.angle);
  const Frame frame(at_pipe.point(0, below ? -away : away), place.angle);
  if (draft.in_a_row) {
    row_of_lines(shape, frame, below, sizes, widths);
  } else {
    stack_lines(shape, frame, 0, above, below, sizes, widths);
    stack_lines(shape, frame, above, widths.size(), !below, sizes, widths);
  }
  if (draft.flow == 0) return shape;
  // On the side without text, unless that is taken; else beyond the first lines.
  const bool both_sides = !draft.in_a_row && above < widths.size();
  const double beyond = static_cast<double>(above) * step;
  double y = sizes.gap + sizes.arrow_width / 2;
  y = both_sides || further ? y + beyond : -y;
  shape.arrow =
      PlacedArrow{frame.point(0, below ? -y : y), draft.flow > 0 ? place.along : place.along + kPi};
  return shape;
}

Shape at_end(const Draft& draft, const Place& place, const Sizes& sizes,
             std::span<const double> widths, Shape shape) {
  const Frame frame(place.anchor, place.angle);
  const bool reads_along = std::cos(place.along - place.angle) > 0.0;
  const bool to_the_right = reads_along == (draft.form == Form::kAtStart);
  const double x = to_the_right ? sizes.end_distance : -sizes.end_distance;
  const bool below = place.variant == 1;
  shape.texts.push_back(frame.text(x, below ? -sizes.gap : sizes.gap,
                                   to_the_right ? AcDb::kTextLeft : AcDb::kTextRight,
                                   below ? AcDb::kTextTop : AcDb::kTextBase, widths.front()));
  return shape;
}

Shape beside_node(const Place& place, const Sizes& sizes, std::span<const double> widths,
                  Shape shape) {
  const Frame frame(place.anchor, place.angle);
  const auto [dx, dy] = kNodeVariants[place.variant];
  const double away = dx && dy ? sizes.node_radius : sizes.node_radius + sizes.gap;
  const double step = sizes.text_height + sizes.line_space;
  const double height = step * static_cast<double>(widths.size()) - sizes.line_space;
  const double bottom = dy > 0 ? away : dy < 0 ? -away - height : -height / 2;
  const AcDb::TextHorzMode mode = dx > 0   ? AcDb::kTextLeft
                                  : dx < 0 ? AcDb::kTextRight
                                           : AcDb::kTextCenter;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const double y = bottom + height - sizes.text_height - step * static_cast<double>(i);
    shape.texts.push_back(frame.text(dx * away, y, mode, AcDb::kTextBase, widths[i]));
  }
  return shape;
}

/// A line to the label, a line under its first text, the other texts below that.
Shape on_leader(const Draft& draft, const Place& place, const Sizes& sizes,
                std::span<const double> widths, Shape shape) {
  const LeaderPlacement& leader = draft.leader;
  const Frame frame(place.anchor, leader.text_angle);
  const double turn = leader.leader_angle - leader.text_angle;
  const double x = leader.distance * std::cos(turn), y = leader.distance * std::sin(turn);
  const double widest = *std::max_element(widths.begin(), widths.end());
  const double left = x >= 0.0 ? x : x - widest;
  shape.lines.emplace_back(frame.point(0, 0), frame.point(x, y));
  shape.lines.emplace_back(frame.point(left, y), frame.point(left + widest, y));
  const double step = sizes.text_height + sizes.line_space;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const double base = i == 0 ? y + sizes.gap : y - step * static_cast<double>(i);
    shape.texts.push_back(frame.text(left, base, AcDb::kTextLeft, AcDb::kTextBase, widths[i]));
  }
  return shape;
}

Shape stakes_along(const Draft& draft, const Owner& route, const Sizes& sizes,
                   const ReadingAngle& reading, std::span<const double> widths, Shape shape) {
  for (std::size_t i = 0; i < draft.stakes.size(); ++i) {
    const CurvePlace at = place_at(*route.curve, draft.stakes[i]);
    const double across = at.direction + kPi / 2;
    const Frame frame(at.point, across);
    shape.lines.emplace_back(frame.point(-sizes.tick, 0), frame.point(sizes.tick, 0));
    const double angle = reading(at.point, across);
    const bool outward = std::cos(angle - across) > 0.0;
    PlacedText text =
        frame.text(sizes.tick + sizes.gap, 0, outward ? AcDb::kTextLeft : AcDb::kTextRight,
                   AcDb::kTextVertMid, widths[i]);
    text.rotation = angle;
    shape.texts.push_back(text);
  }
  return shape;
}

}  // namespace

int variant_count(Form form) {
  switch (form) {
    case Form::kAlongMiddle:
      return static_cast<int>(std::size(kMiddleVariants));
    case Form::kAtStart:
    case Form::kAtEnd:
      return kSides;
    case Form::kBesideNode:
      return static_cast<int>(std::size(kNodeVariants));
    case Form::kOnLeader:
      return static_cast<int>(std::size(kLeaderAngles));
    case Form::kStakes:
      break;
  }
  return 1;
}

double leader_angle(int variant) {
  return kLeaderAngles[variant >= 0 && variant < variant_count(Form::kOnLeader) ? variant : 0];
}

Place place_of(Form form, const Owner& owner, int variant, const ReadingAngle& reading) {
  Place place;
  place.variant = variant >= 0 && variant < variant_count(form) ? variant : 0;
  if (owner.curve) {
    const double length = owner.curve->length();
    double distance = 0.0;
    if (form == Form::kAtEnd) distance = length;
    if (form == Form::kAlongMiddle) distance = length * kMiddleVariants[place.variant].fraction;
    const CurvePlace at = place_at(*owner.curve, distance);
    place.anchor = at.point;
    place.along = at.direction;
  } else {
    place.anchor = owner.position;
  }
  place.anchor.z = 0.0;
  place.angle = reading(place.anchor, place.along);
  return place;
}

Shape shape_of(const Draft& draft, const Owner& owner, const Place& place, const Sizes& sizes,
               const ReadingAngle& reading, std::span<const double> widths, Shape reused) {
  reused.texts.clear();
  reused.lines.clear();
  reused.arrow.reset();
  reused.texts.reserve(widths.size());
  switch (draft.form) {
    case Form::kAlongMiddle:
      return along_middle(draft, place, sizes, widths, std::move(reused));
    case Form::kAtStart:
    case Form::kAtEnd:
      return at_end(draft, place, sizes, widths, std::move(reused));
    case Form::kBesideNode:
      return beside_node(place, sizes, widths, std::move(reused));
    case Form::kOnLeader:
      return on_leader(draft, place, sizes, widths, std::move(reused));
    case Form::kStakes:
      return stakes_along(draft, owner, sizes, reading, widths, std::move(reused));
  }
  return {};
}

Box box_of(const PlacedText& text, double height) {
  double x = 0.0, y = 0.0;  // of the middle, from the point the text stands at
  if (text.horizontal == AcDb::kTextLeft) x = text.width / 2;
  if (text.horizontal == AcDb::kTextRight) x = -text.width / 2;
  if (text.vertical == AcDb::kTextBase) y = height / 2;
  if (text.vertical == AcDb::kTextBottom) y = height / 2 + kBelowBaseLine * height;
  if (text.vertical == AcDb::kTextTop) y = -height / 2;
  const AcGePoint3d middle = Frame(text.at, text.rotation).point(x, y);
  return {AcGePoint2d(middle.x, middle.y), text.width / 2, height / 2, text.rotation};
}

Box box_of(const PlacedArrow& arrow, const Sizes& sizes) {
  return {AcGePoint2d(arrow.middle.x, arrow.middle.y), sizes.arrow_length / 2,
          sizes.arrow_width / 2, arrow.direction};
}

std::vector<Box> boxes_of(const Shape& shape, const Sizes& sizes, std::vector<Box> boxes) {
  boxes.clear();
  boxes.reserve(shape.texts.size() + 1);
  for (const PlacedText& text : shape.texts) boxes.push_back(box_of(text, sizes.text_height));
  if (shape.arrow) boxes.push_back(box_of(*shape.arrow, sizes));
  return boxes;
}

std::vector<Box> boxes_of(const Owner& owner, const Sizes& sizes) {
  if (owner.kind == OwnerKind::kNode)
    return {{AcGePoint2d(owner.position.x, owner.position.y), sizes.node_radius, sizes.node_radius,
             0.0}};
  std::vector<Box> boxes;
  if (!owner.curve) return boxes;
  for (const cad::Segment& segment : owner.curve->segments()) {
    constexpr int kChordsOfArc = 8;
    const int chords = segment.kind() == cad::Segment::Kind::kLine ? 1 : kChordsOfArc;
    AcGePoint3d from = segment.point_at(0.0);
    for (int i = 1; i <= chords; ++i) {
      const AcGePoint3d to = segment.point_at(static_cast<double>(i) / chords);
      boxes.push_back(box_of_line({from.x, from.y}, {to.x, to.y}));
      from = to;
    }
  }
  return boxes;
}

}  // namespace labeler
