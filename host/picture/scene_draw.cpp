#include "host/picture/scene_draw.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/base/codepage.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/db/lens.h"
#include "host/font/line_layout.h"
#include "host/gi/wide_outline.h"
#include "host/picture/palette.h"

namespace cad::picture {
namespace {

constexpr double kAbsurd = 1e15;  // coordinates beyond it are faults, not places
constexpr double kTurn = 2.0 * std::numbers::pi;

bool is_sound(Point p) { return std::abs(p.x) < kAbsurd && std::abs(p.y) < kAbsurd; }

/// The box around center + u cos(a) + v sin(a) for the angles from `start` through `sweep`.
Box arc_box(Point c, Point u, Point v, double start, double sweep) {
  Box box;
  const auto at = [&](double a) { return c + u * std::cos(a) + v * std::sin(a); };
  box.add(at(start));
  box.add(at(start + sweep));
  if (sweep < 0.0) start += sweep, sweep = -sweep;
  for (const double extreme : {std::atan2(v.x, u.x), std::atan2(v.y, u.y)})
    for (int half = 0; half < 2; ++half) {
      const double a = extreme + half * std::numbers::pi;
      double behind = std::fmod(a - start, kTurn);
      if (behind < 0.0) behind += kTurn;
      if (behind <= sweep) box.add(at(a));
    }
  return box;
}

/// How much a map stretches the plane; nothing when it does so in one direction more than in
/// another.
std::optional<double> even_scale(Point x, Point y) {
  const double a = x.length(), b = y.length();
  const double slack = 1e-6 * std::max(a, b);
  if (std::abs(a - b) > slack || std::abs(x.x * y.x + x.y * y.y) > slack * std::max(a, b))
    return std::nullopt;
  return a;
}

}  // namespace

SceneDraw::SceneDraw(Drawing& drawing, std::function<bool(std::wstring_view)> shown)
    : drawing_(drawing), shown_(std::move(shown)) {
  if (const auto tag = drawing.header_variable("$LTSCALE"))
    global_scale_ = dxf::real_value(*tag, drawing.dialect());
  if (!(global_scale_ > 0.0) || !std::isfinite(global_scale_)) global_scale_ = 1.0;
}

void SceneDraw::setColor(Adesk::UInt16 color) {
  color_ = color;
  true_color_.reset();
  ink_changed_ = true;
}

void SceneDraw::setTrueColor(Adesk::UInt32 color) {
  true_color_ = color & 0xFFFFFFU;
  ink_changed_ = true;
}

void SceneDraw::setLayer(AcDbObjectId layer) {
  if (layer == layer_) return;
  layer_ = layer;
  if (!shown_) return;
  const auto [place, is_new] = shown_layers_.try_emplace(layer, true);
  if (is_new) {
    const std::wstring name =
        layer.isNull() ? L"0"
                       : EntityFields(drawing_.bytes_of(*layer.stub()), drawing_.dialect()).text(2);
    place->second = shown_(name);
  }
  layer_shown_ = place->second;
}

void SceneDraw::setLineType(AcDbObjectId linetype) {
  linetype_ = linetype;
  ink_changed_ = true;
}

void SceneDraw::setLineWeight(AcDb::LineWeight weight) {
  weight_ = weight;
  ink_changed_ = true;
}

void SceneDraw::setLineTypeScale(double scale) {
  linetype_scale_ = scale;
  ink_changed_ = true;
}

int SceneDraw::dashes_of(AcDbObjectId linetype) {
  if (linetype.isNull()) return -1;
  const auto [place, is_new] = linetypes_.try_emplace(linetype, -1);
  if (!is_new) return place->second;
  // Neighbours of the same sort are joined; a pattern that begins with a gap is turned round so
  // that the gap ends it. Texts and symbols on the line are left out.
  constexpr int kElement = 49;
  std::vector<double> drawn_and_not;
  OwnTags tags(drawing_.bytes_of(*linetype.stub()), drawing_.dialect());
  dxf::Tag tag;
  double leading_gap = 0.0;
  while (tags.next(tag)) {
    if (tag.code != kElement) continue;
    const double length = dxf::real_value(tag, drawing_.dialect());
    if (!std::isfinite(length)) return -1;
    const bool is_gap = length < 0.0;
    const bool ends_with_gap = drawn_and_not.size() % 2 == 0;
    if (drawn_and_not.empty() && is_gap)
      leading_gap -= length;
    else if (!drawn_and_not.empty() && is_gap == ends_with_gap)
      drawn_and_not.back() += std::abs(length);
    else
      drawn_and_not.push_back(std::abs(length));
  }
  if (drawn_and_not.size() % 2 != 0) drawn_and_not.push_back(0.0);
  if (!drawn_and_not.empty()) drawn_and_not.back() += leading_gap;
  double gaps = 0.0;
  for (std::size_t i = 1; i < drawn_and_not.size(); i += 2) gaps += drawn_and_not[i];
  if (!(gaps > 0.0)) return -1;
  scene_.dashes.push_back(std::move(drawn_and_not));
  return place->second = static_cast<int>(scene_.dashes.size()) - 1;
}

std::uint32_t SceneDraw::ink() {
  if (!ink_changed_) return ink_;
  ink_changed_ = false;
  constexpr int kForeground = 7, kMostColor = 255;
  Ink ink;
  int index = color_;
  std::optional<std::uint32_t> rgb = true_color_;
  if (!rgb && index > kMostColor && !layer_.isNull()) {  // by layer, as the caller's traits may say
    const EntityFields layer(drawing_.bytes_of(*layer_.stub()), drawing_.dialect());
    index = std::abs(layer.integer(62, kForeground));
  }
  if (index < 1 || index > kMostColor) index = kForeground;
  ink.foreground = !rgb && index == kForeground;
  ink.rgb = rgb ? *rgb : palette_color(index);
  ink.weight = weight_ >= 0 ? static_cast<int>(weight_) : kHairline;
  ink.dashes = dashes_of(linetype_);
  ink.dash_scale = ink.dashes < 0 ? 1.0 : global_scale_ * linetype_scale_;
  // Drawings have few inks, and mostly use one of the last.
  const auto found = std::find(scene_.inks.rbegin(), scene_.inks.rend(), ink);
  if (found != scene_.inks.rend())
    return ink_ = static_cast<std::uint32_t>(scene_.inks.rend() - found - 1);
  scene_.inks.push_back(ink);
  return ink_ = static_cast<std::uint32_t>(scene_.inks.size() - 1);
}

Adesk::Boolean SceneDraw::pushModelTransform(const AcGeMatrix3d& map) {
  maps_.push_back(map_);
  map_ = map_ * map;
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::popModelTransform() {
  if (maps_.empty()) return Adesk::kFalse;
  map_ = maps_.back();
  maps_.pop_back();
  return Adesk::kFalse;
}

Item& SceneDraw::begin(Item::Kind kind) {
  Item& item = scene_.items.emplace_back();
  item.kind = kind;
  item.ink = ink();
  item.first_step = scene_.steps.size();
  item.first_point = scene_.points.size();
  return item;
}

void SceneDraw::add(Step step, Point p) {
  scene_.steps.push_back(step);
  scene_.points.push_back(p);
}

void SceneDraw::finish() {
  Item& item = scene_.items.back();
  item.steps = scene_.steps.size() - item.first_step;
  const auto points = std::span(scene_.points).subspan(item.first_point);
  bool sound = !points.empty();
  std::size_t at = 0;
  for (const Step step : std::span(scene_.steps).subspan(item.first_step)) {
    if (step == Step::kArc) {
      const Point angles = points[at + 3];
      const Box box = arc_box(points[at], points[at + 1], points[at + 2], angles.x, angles.y);
      sound = sound && is_sound(angles) && is_sound({box.left, box.bottom}) &&
              is_sound({box.right, box.top});
      item.box.add(box);
    } else {
      for (std::size_t i = 0; i < point_count(step); ++i) {
        sound = sound && is_sound(points[at + i]);
        item.box.add(points[at + i]);
      }
    }
    at += point_count(step);
  }
  if (sound) return;
  ++scene_.skipped;
  scene_.steps.resize(item.first_step);
  scene_.points.resize(item.first_point);
  scene_.items.pop_back();
}

void SceneDraw::add_arc(const Segment& segment) {
  const Point u = flat(segment.x_axis()), v = flat(segment.y_axis());
  const double area = std::abs(u.x * v.y - u.y * v.x);
  const double size = u.length() * u.length() + v.length() * v.length();
  if (!(area > 1e-6 * size)) {  // seen from its side: a line to and fro
    constexpr int kPieces = 16;
    for (int i = 1; i <= kPieces; ++i)
      add(Step::kLine, flat(segment.point_at(static_cast<double>(i) / kPieces)));
    return;
  }
  scene_.steps.push_back(Step::kArc);
  scene_.points.push_back(flat(segment.center()));
  scene_.points.push_back(u);
  scene_.points.push_back(v);
  scene_.points.push_back({segment.start_angle(), std::clamp(segment.sweep(), -kTurn, kTurn)});
}

void SceneDraw::add_spline(const Bezier& curve) {
  const std::vector<Bezier::Control>& c = curve.controls();
  if (c.size() == 4 && !curve.is_rational()) {
    scene_.steps.push_back(Step::kCurve);
    for (int i = 1; i < 4; ++i) scene_.points.push_back(flat(c[static_cast<std::size_t>(i)].point));
    return;
  }
  // Cubics through exact points with the exact tangents, as many as bends may need.
  constexpr int kPieces = 8;
  Jet from = curve.at(0.0);
  for (int i = 1; i <= kPieces; ++i) {
    const Jet to = curve.at(static_cast<double>(i) / kPieces);
    scene_.steps.push_back(Step::kCurve);
    scene_.points.push_back(flat(from.point + from.first * (1.0 / (3 * kPieces))));
    scene_.points.push_back(flat(to.point - to.first * (1.0 / (3 * kPieces))));
    scene_.points.push_back(flat(to.point));
    from = to;
  }
}

void SceneDraw::add_segment(const Segment& segment) {
  if (segment.kind() == Segment::Kind::kLine)
    add(Step::kLine, flat(segment.end()));
  else if (segment.kind() == Segment::Kind::kSpline)
    add_spline(segment.bezier());
  else
    add_arc(segment);
}

void SceneDraw::add_wide(const Curve& curve, double width) {
  const std::vector<SegmentWidth> widths(curve.segments().size(), {width, width});
  std::vector<std::vector<Curve>> loops;
  for (const auto& outline :
       wide_outlines(curve, widths, curve.plane_normal().value_or(AcGeVector3d::kZAxis), 0.0))
    loops.push_back({Curve::polyline3d(outline, true)});
  if (!loops.empty()) area(loops, Rule::kNonZero);
}

void SceneDraw::curve(const Curve& curve, double width) {
  const std::span<const Segment> segments = curve.segments();
  if (!layer_shown() || segments.empty()) return;
  double scale = 1.0;
  if (width > 0.0) {
    const std::optional<double> even =
        even_scale(flat(AcGeVector3d::kXAxis), flat(AcGeVector3d::kYAxis));
    if (!even) return add_wide(curve, width);
    scale = *even;
  }
  begin(Item::Kind::kStroke).width = std::isfinite(width * scale) ? width * scale : 0.0;
  add(Step::kMove, flat(segments.front().start()));
  for (const Segment& segment : segments) add_segment(segment);
  if (curve.is_closed()) scene_.steps.push_back(Step::kClose);
  finish();
}

void SceneDraw::strokes(std::span<const AcGePoint3d> ends) {
  if (!layer_shown() || ends.size() < 2) return;
  begin(Item::Kind::kStroke);
  for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
    add(Step::kMove, flat(ends[i]));
    add(Step::kLine, flat(ends[i + 1]));
  }
  finish();
}

void SceneDraw::area(std::span<const std::vector<Curve>> loops, Rule rule) {
  if (!layer_shown()) return;
  begin(rule == Rule::kEvenOdd ? Item::Kind::kEvenOdd : Item::Kind::kNonZero);
  for (const std::vector<Curve>& loop : loops) {
    bool started = false;
    Point last;
    for (const Curve& edge : loop)
      for (const Segment& segment : edge.segments()) {
        const Point start = flat(segment.start());
        if (!started || !(start == last)) add(started ? Step::kLine : Step::kMove, start);
        started = true;
        add_segment(segment);
        last = flat(segment.end());
      }
    if (started) scene_.steps.push_back(Step::kClose);
  }
  finish();
}

void SceneDraw::add_polygon(Item::Kind kind, std::span<const AcGePoint3d> corners) {
  if (!layer_shown() || corners.empty()) return;
  begin(kind);
  for (std::size_t i = 0; i < corners.size(); ++i)
    add(i == 0 ? Step::kMove : Step::kLine, flat(corners[i]));
  scene_.steps.push_back(Step::kClose);
  finish();
}

void SceneDraw::mask(std::span<const AcGePoint3d> corners) {
  add_polygon(Item::Kind::kMask, corners);
}

void SceneDraw::point(const AcGePoint3d& place, int mode, double size) {
  constexpr int kNothing = 1, kModes = 128;
  if (!layer_shown() || mode == kNothing) return;
  Item& item = begin(mode == 0 ? Item::Kind::kDot : Item::Kind::kMark);
  item.mode = static_cast<std::uint8_t>(mode % kModes);
  item.width = std::isfinite(size) ? size : 0.0;
  add(Step::kMove, flat(place));
  finish();
}

void SceneDraw::glyphs(const GlyphRun& source) {
  if (!layer_shown()) return;
  if (source.glyphs.empty() && source.strokes.empty())
    scene_.empty_texts += source.text.find_first_not_of(L" \t") != std::wstring_view::npos;
  if (!source.glyphs.empty()) {
    Item& item = begin(Item::Kind::kRun);
    Run run{flat(source.origin),
            flat(source.x_axis),
            flat(source.y_axis),
            scene_.glyphs.size(),
            source.glyphs.size(),
            scene_.texts.size(),
            0};
    font::Box ink;
    for (const font::PlacedGlyph& g : source.glyphs) {
      scene_.glyphs.push_back({g.glyph, g.character, g.x, g.y, g.xx, g.xy, g.yy});
      ink.add(font::box_of(g));
    }
    for (const double x : {ink.left, ink.right})
      for (const double y : {ink.bottom, ink.top}) item.box.add(run.place(x, y));
    const bool sound = is_sound({item.box.left, item.box.bottom}) &&
                       is_sound({item.box.right, item.box.top}) && is_sound(run.origin);
    if (!sound || !(item.box.width() > 0.0 || item.box.height() > 0.0)) {
      ++(sound ? scene_.empty_texts : scene_.skipped);
      scene_.glyphs.resize(run.first_glyph);
      scene_.items.pop_back();
      return;
    }
    scene_.texts += to_utf8(source.text);
    run.text = scene_.texts.size() - run.first_text;
    item.run = scene_.runs.size();
    scene_.runs.push_back(run);
  }
  std::vector<AcGePoint3d> ends;
  for (const font::Stroke& stroke : source.strokes)
    for (const font::Point& p : {stroke.from, stroke.to})
      ends.push_back(source.origin + source.x_axis * p.x + source.y_axis * p.y);
  strokes(ends);
}

Adesk::Boolean SceneDraw::circle(const AcGePoint3d& center, double radius,
                                 const AcGeVector3d& normal) const {
  self().curve(Curve::circle(center, normal, radius), 0.0);
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::circularArc(const AcGePoint3d& center, double radius,
                                      const AcGeVector3d& normal, const AcGeVector3d& start,
                                      double sweep, AcGiArcType type) const {
  const AcGeVector3d x = start.normal(), y = normal.normal().crossProduct(x);
  const auto end = [&](double angle) {
    return center + (x * std::cos(angle) + y * std::sin(angle)) * radius;
  };
  // Three points make sure that the arc runs where it was asked for, whatever its plane.
  Curve arc = Curve::arc(center, normal, radius, 0.0, sweep);
  const AcGeVector3d own = arc.start_point() - center;
  const double turn =
      std::atan2(own.crossProduct(x).dotProduct(normal.normal()), own.dotProduct(x));
  arc = Curve::arc(center, normal, radius, turn, turn + sweep);
  self().curve(arc, 0.0);
  if (type == kAcGiArcChord) {
    const AcGePoint3d chord[] = {end(sweep), end(0.0)};
    polyline(2, chord, nullptr, -1);
  }
  if (type == kAcGiArcSector) {
    const AcGePoint3d sides[] = {end(sweep), center, end(0.0)};
    polyline(3, sides, nullptr, -1);
  }
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::polyline(Adesk::UInt32 count, const AcGePoint3d* points,
                                   const AcGeVector3d*, Adesk::LongPtr) const {
  if (count > 0) self().curve(Curve::polyline3d(std::span(points, count), false), 0.0);
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::polygon(Adesk::UInt32 count, const AcGePoint3d* points) const {
  if (fill_ == kAcGiFillAlways)
    self().add_polygon(Item::Kind::kNonZero, std::span(points, count));
  else if (count > 0)
    self().curve(Curve::polyline3d(std::span(points, count), true), 0.0);
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::text(const AcGePoint3d& position, const AcGeVector3d& normal,
                               const AcGeVector3d& direction, double height, double width_factor,
                               double oblique, const ACHAR* text) const {
  AcGiTextStyle style;
  style.setTextSize(height);
  style.setXScale(width_factor);
  style.setObliquingAngle(oblique);
  return this->text(position, normal, direction, text, -1, Adesk::kFalse, style);
}

Adesk::Boolean SceneDraw::text(const AcGePoint3d& position, const AcGeVector3d& normal,
                               const AcGeVector3d& direction, const ACHAR* text,
                               Adesk::Int32 length, Adesk::Boolean,
                               const AcGiTextStyle& style) const {
  if (!text) return Adesk::kFalse;
  font::FontStyle wanted;
  wanted.file = style.fileName();
  wanted.big_file = style.bigFontFileName();
  wanted.typeface = style.typeface();
  wanted.bold = style.isBold();
  wanted.italic = style.isItalic();
  const std::wstring_view line = length < 0
                                     ? std::wstring_view(text)
                                     : std::wstring_view(text, static_cast<std::size_t>(length));
  const font::LineLayout layout = font::layout_line(
      line, font::face_for(wanted),
      {style.textSize(), style.xScale(), style.obliquingAngle(), style.isVertical()});
  const double along = style.isBackward() ? -1.0 : 1.0, up = style.isUpsideDown() ? -1.0 : 1.0;
  const AcGeVector3d x = direction.normal();
  self().glyphs({position, x * along, normal.crossProduct(x).normal() * up, layout.glyphs,
                 layout.strokes, line});
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::xline(const AcGePoint3d& point, const AcGePoint3d& second) const {
  if (!layer_shown()) return Adesk::kFalse;
  self().begin(Item::Kind::kXline);
  self().add(Step::kMove, flat(point));
  self().add(Step::kLine, flat(second));
  self().finish();
  return Adesk::kFalse;
}

Adesk::Boolean SceneDraw::ray(const AcGePoint3d& start, const AcGePoint3d& second) const {
  if (!layer_shown()) return Adesk::kFalse;
  self().begin(Item::Kind::kRay);
  self().add(Step::kMove, flat(start));
  self().add(Step::kLine, flat(second));
  self().finish();
  return Adesk::kFalse;
}

}  // namespace cad::picture
