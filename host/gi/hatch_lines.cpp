#include "host/gi/hatch_lines.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace cad {
namespace {

using Polygons = std::span<const std::vector<AcGePoint2d>>;

/// The family's lines are numbered by how far they are from its base, in steps across.
class Family {
 public:
  explicit Family(const PatternLines& lines)
      : lines_(lines),
        along_(std::cos(lines.angle), std::sin(lines.angle)),
        across_(along_.perpVector()),
        distance_(lines.step.dotProduct(across_)),
        shift_(lines.step.dotProduct(along_)) {
    for (const double dash : lines.dashes) period_ += std::abs(dash);
  }

  /// Lines at no distance from each other, or numbers that are none, make no family.
  bool is_sound() const {
    return std::isfinite(along_.x) && std::isfinite(shift_) && std::isfinite(period_) &&
           std::isfinite(lines_.base.x + lines_.base.y) && std::abs(distance_) > 0.0 &&
           std::isfinite(distance_);
  }
  double number_of(const AcGePoint2d& p) const {
    return (p - lines_.base).dotProduct(across_) / distance_;
  }
  double along(const AcGePoint2d& p) const { return (p - lines_.base).dotProduct(along_); }
  AcGePoint2d place(double line, double along) const {
    return lines_.base + along_ * along + across_ * (line * distance_);
  }

  /// Where each line enters and leaves the polygons: pairs of lengths along it.
  using Crossings = std::map<double, std::vector<double>>;
  Crossings crossings(Polygons polygons, double every) const;

  /// How many strokes a stretch of that length takes.
  double strokes_of(double length) const {
    const auto dashes = static_cast<double>(lines_.dashes.size());
    return period_ > 0.0 ? 1.0 + length / period_ * dashes : 1.0;
  }
  void append(double line, double from, double to, bool dashed,
              std::vector<HatchStroke>& strokes) const;

 private:
  const PatternLines& lines_;
  AcGeVector2d along_, across_;
  double distance_;
  double shift_;  // from the start of a line's dashes to that of the next
  double period_ = 0.0;
};

Family::Crossings Family::crossings(Polygons polygons, double every) const {
  Crossings crossings;
  for (const std::vector<AcGePoint2d>& polygon : polygons)
    for (std::size_t i = 0; i < polygon.size(); ++i) {
      AcGePoint2d a = polygon[i], b = polygon[(i + 1) % polygon.size()];
      double low = number_of(a), high = number_of(b);
      if (low > high) std::swap(a, b), std::swap(low, high);
      if (low == high) continue;
      // An edge holds its lower end and not its upper one, so that a corner counts once.
      const double first = std::ceil(low / every) * every;
      if (first + every == first) continue;  // too far away to be told from the next
      for (double line = first; line < high; line += every)
        crossings[line].push_back(along(a) + (along(b) - along(a)) * ((line - low) / (high - low)));
    }
  for (auto& [line, places] : crossings) std::sort(places.begin(), places.end());
  return crossings;
}

void Family::append(double line, double from, double to, bool dashed,
                    std::vector<HatchStroke>& strokes) const {
  const double start = line * shift_;
  double at = start + std::floor((from - start) / period_) * period_;
  if (!dashed || !(period_ > 0.0) || !(at + period_ > at)) {
    strokes.push_back({place(line, from), place(line, to)});
    return;
  }
  while (at < to) {
    for (const double dash : lines_.dashes) {
      const double end = at + std::abs(dash);
      if (dash >= 0.0 && end >= from && at <= to)
        strokes.push_back({place(line, std::max(at, from)), place(line, std::min(end, to))});
      at = end;
    }
  }
}

bool is_finite(Polygons polygons) {
  for (const std::vector<AcGePoint2d>& polygon : polygons)
    for (const AcGePoint2d& p : polygon)
      if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
  return true;
}

/// Of as many lines as the polygons are wide, those to leave out so that no more than `most` stay.
double every_manieth(const Family& family, Polygons polygons, double most) {
  double edges = 0.0;  // an upper bound of all crossings
  for (const std::vector<AcGePoint2d>& polygon : polygons)
    for (std::size_t i = 0; i < polygon.size(); ++i)
      edges += std::abs(family.number_of(polygon[i]) -
                        family.number_of(polygon[(i + 1) % polygon.size()]));
  return std::max(1.0, std::ceil(edges / 2.0 / most));
}

}  // namespace

std::vector<HatchStroke> hatch_strokes(std::span<const PatternLines> pattern, Polygons polygons,
                                       std::size_t most) {
  std::vector<HatchStroke> strokes;
  if (pattern.empty() || !is_finite(polygons)) return strokes;
  const double share = static_cast<double>(most) / static_cast<double>(pattern.size());
  for (const PatternLines& lines : pattern) {
    const Family family(lines);
    if (!family.is_sound()) continue;
    const double every = every_manieth(family, polygons, share);
    if (!std::isfinite(every)) continue;
    const Family::Crossings crossings = family.crossings(polygons, every);
    double count = 0.0;
    const auto for_each = [&](auto&& visit) {
      for (const auto& [line, places] : crossings)
        for (std::size_t i = 0; i + 1 < places.size(); i += 2)
          visit(line, places[i], places[i + 1]);
    };
    for_each([&](double, double from, double to) { count += family.strokes_of(to - from); });
    const bool dashed = every == 1.0 && count <= share;
    for_each([&](double line, double from, double to) {
      family.append(line, from, to, dashed, strokes);
    });
  }
  return strokes;
}

}  // namespace cad
