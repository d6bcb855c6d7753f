#include "host/picture/paint.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/base/progress.h"
#include "host/picture/pixel_path.h"

namespace cad::picture {
namespace {

constexpr double kThin = 0.8;                        // pixels, of a line without weight
constexpr double kPixelsPerHundredth = 96.0 / 2540;  // of a millimetre
constexpr double kFinestDashes = 3.0;                // patterns shorter than this are drawn solid
constexpr std::uint32_t kMarker = 0xFF00AA;
constexpr double kMarkerWidth = 7.0, kMarkerOpacity = 0.5;
constexpr double kSmallest = 10.0, kRing = 14.0;  // what is smaller gets a ring around it

class Paint {
 public:
  Paint(const Scene& scene, const View& view, std::uint32_t background, Painter& painter)
      : scene_(scene), view_(view), background_(background), painter_(painter) {
    constexpr std::uint32_t kDarkest = 0x808080;
    foreground_ = (background & 0xFF00U) < (kDarkest & 0xFF00U) ? 0xFFFFFF : 0x000000;
    visible_ = {view.left, view.top - view.height / view.scale, view.left + view.width / view.scale,
                view.top};
  }

  bool all() {
    const std::size_t count = scene_.items.size();
    const std::size_t marked = scene_.highlights.empty() ? count : scene_.highlights.front();
    ProgressMeter meter("painting", marked);
    for (std::size_t i = 0; i < marked; ++i) {
      meter.step();
      item(scene_.items[i], false);
    }
    for (std::size_t i = 0; i < scene_.highlights.size(); ++i) {
      const std::size_t first = scene_.highlights[i];
      const std::size_t end = i + 1 < scene_.highlights.size() ? scene_.highlights[i + 1] : count;
      mark_if_small(std::span(scene_.items).subspan(first, end - first));
      for (std::size_t k = first; k < end; ++k) item(scene_.items[k], true);
    }
    return painted_;
  }

 private:
  void item(const Item& item, bool marked);
  void stroke(const Item& item, bool marked);
  void area(const Item& item, bool marked);
  void run(const Item& item, bool marked);
  void point(const Item& item, bool marked);
  void mark_if_small(std::span<const Item> items);
  std::uint32_t color(const Ink& ink) const { return ink.foreground ? foreground_ : ink.rgb; }
  double weight(const Ink& ink) const { return std::max(kThin, ink.weight * kPixelsPerHundredth); }
  bool is_visible(const Box& box, double beyond) const {
    const double room = beyond / view_.scale;
    return box.right >= visible_.left - room && box.left <= visible_.right + room &&
           box.top >= visible_.bottom - room && box.bottom <= visible_.top + room;
  }
  void set_dashes(const Item& item, const Ink& ink, double width);
  void mark_path(double width) {
    painter_.stroke(path_, {kMarker, width + kMarkerWidth, kMarkerOpacity, {}, false});
  }

  const Scene& scene_;
  const View& view_;
  std::uint32_t background_, foreground_;
  Painter& painter_;
  Box visible_;
  Path path_;
  std::vector<double> dashes_;
  bool painted_ = false;
};

void Paint::item(const Item& item, bool marked) {
  const bool endless = item.kind == Item::Kind::kRay || item.kind == Item::Kind::kXline;
  const double beyond = item.width * view_.scale + kMarkerWidth + kRing;
  if (!endless && !is_visible(item.box, beyond)) return;
  switch (item.kind) {
    case Item::Kind::kStroke:
      stroke(item, marked);
      break;
    case Item::Kind::kEvenOdd:
    case Item::Kind::kNonZero:
    case Item::Kind::kMask:
      area(item, marked);
      break;
    case Item::Kind::kRun:
      run(item, marked);
      break;
    case Item::Kind::kDot:
    case Item::Kind::kMark:
      point(item, marked);
      break;
    case Item::Kind::kRay:
    case Item::Kind::kXline: {
      const PathView ends = scene_.path(item);
      const Ink& ink = scene_.inks[item.ink];
      if (!clip_line(view_, ends.points[0], ends.points[1], item.kind == Item::Kind::kXline, path_))
        return;
      if (marked) mark_path(weight(ink));
      set_dashes(item, ink, 0.0);
      painter_.stroke(path_, {color(ink), weight(ink), 1.0, dashes_, false});
      break;
    }
  }
  painted_ = true;
}

/// A pattern too fine to be seen, and one longer than the line, are drawn solid.
void Paint::set_dashes(const Item& item, const Ink& ink, double width) {
  dashes_.clear();
  if (ink.dashes < 0) return;
  double length = 0.0;
  for (const double part : scene_.dashes[static_cast<std::size_t>(ink.dashes)]) {
    dashes_.push_back(part * ink.dash_scale * view_.scale);
    length += dashes_.back();
  }
  const double room = 2.0 * (item.box.width() + item.box.height()) * view_.scale;
  const bool endless = item.kind == Item::Kind::kRay || item.kind == Item::Kind::kXline;
  if (!(length >= kFinestDashes) || !std::isfinite(length) || (!endless && length > room))
    return dashes_.clear();
  // Round ends of thin lines reach into the gaps; a dot is as long as the line is wide.
  for (std::size_t i = 0; i < dashes_.size(); i += 2)
    dashes_[i] = std::max(dashes_[i], width > 0.0 ? width : 0.01);
}

void Paint::stroke(const Item& item, bool marked) {
  to_pixels(scene_.path(item), view_, item.box, false, path_);
  if (path_.empty()) return;
  const Ink& ink = scene_.inks[item.ink];
  const double wide = item.width * view_.scale;
  const bool is_wide = wide > weight(ink);
  const double width = is_wide ? wide : weight(ink);
  if (marked) mark_path(width);
  set_dashes(item, ink, is_wide ? wide : 0.0);
  painter_.stroke(path_, {color(ink), width, 1.0, dashes_, is_wide});
}

void Paint::area(const Item& item, bool marked) {
  to_pixels(scene_.path(item), view_, item.box, true, path_);
  if (path_.empty()) return;
  const Ink& ink = scene_.inks[item.ink];
  const bool mask = item.kind == Item::Kind::kMask;
  painter_.fill(path_, {mask ? background_ : color(ink), 1.0, item.kind == Item::Kind::kEvenOdd});
  if (marked) mark_path(0.0);
}

void Paint::run(const Item& item, bool marked) {
  const Run& source = scene_.runs[item.run];
  if (marked) {
    const Point low = view_.place({item.box.left, item.box.bottom});
    const Point high = view_.place({item.box.right, item.box.top});
    path_.clear();
    path_.move(low), path_.line({high.x, low.y}), path_.line(high), path_.line({low.x, high.y});
    path_.close();
    painter_.fill(path_, {kMarker, kMarkerOpacity, false});
    mark_path(0.0);
  }
  painter_.run({view_.place(source.origin), view_.turn(source.x_axis), view_.turn(source.y_axis),
                std::span(scene_.glyphs).subspan(source.first_glyph, source.glyphs),
                std::string_view(scene_.texts).substr(source.first_text, source.text),
                color(scene_.inks[item.ink])});
}

/// Figures of PDMODE: 2 a plus, 3 a cross, 4 a line upwards; 32 adds a circle, 64 a square. Sizes
/// that are shares of the screen are small marks here.
void Paint::point(const Item& item, bool marked) {
  enum { kPlus = 2, kCross = 3, kUp = 4, kFigures = 31, kCircle = 32, kSquare = 64 };
  constexpr double kMark = 9.0;
  const Ink& ink = scene_.inks[item.ink];
  const Point p = view_.place(scene_.path(item).points[0]);
  path_.clear();
  if (item.kind == Item::Kind::kDot) {
    path_.move(p), path_.line(p);
    if (marked) mark_path(0.0);
    painter_.stroke(path_, {color(ink), std::max(weight(ink), 2.0), 1.0, {}, false});
    return;
  }
  const double r = (item.width > 0.0 ? item.width * view_.scale : kMark) / 2.0;
  const auto line = [&](double x0, double y0, double x1, double y1) {
    path_.move(p + Point{x0, y0} * r), path_.line(p + Point{x1, y1} * r);
  };
  switch (item.mode & kFigures) {
    case kPlus:
      line(-2, 0, 2, 0), line(0, -2, 0, 2);
      break;
    case kCross:
      line(-2, -2, 2, 2), line(-2, 2, 2, -2);
      break;
    case kUp:
      line(0, 0, 0, -1);
      break;
    default:
      path_.move(p), path_.line(p);
      break;
  }
  if (item.mode & kCircle) {
    path_.move(p + Point{r, 0});
    path_.steps.push_back(Step::kArc);
    path_.points.insert(path_.points.end(),
                        {p, Point{r, 0}, Point{0, r}, Point{0, 2.0 * std::numbers::pi}});
  }
  if (item.mode & kSquare) {
    line(-1, -1, 1, -1), path_.line(p + Point{r, r}), path_.line(p + Point{-r, r});
    path_.close();
  }
  if (marked) mark_path(0.0);
  painter_.stroke(path_, {color(ink), weight(ink), 1.0, {}, false});
}

/// An entity that is too small to be noticed gets a ring around it.
void Paint::mark_if_small(std::span<const Item> items) {
  Box box;
  for (const Item& item : items) box.add(item.box);
  if (box.is_empty() || std::max(box.width(), box.height()) * view_.scale >= kSmallest) return;
  const Point middle = view_.place({(box.left + box.right) / 2.0, (box.bottom + box.top) / 2.0});
  path_.clear();
  path_.move(middle + Point{kRing, 0});
  path_.steps.push_back(Step::kArc);
  path_.points.insert(path_.points.end(),
                      {middle, Point{kRing, 0}, Point{0, kRing}, Point{0, 2.0 * std::numbers::pi}});
  painter_.stroke(path_, {kMarker, 2.0, 1.0, {}, false});
}

}  // namespace

bool paint(const Scene& scene, const View& view, std::uint32_t background, Painter& painter) {
  return Paint(scene, view, background, painter).all();
}

}  // namespace cad::picture
