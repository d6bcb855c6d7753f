// Areas: filled, or with lines of a pattern.

#include <numbers>

#include "host/db/entity_fields.h"
#include "host/db/hatch_paths.h"
#include "host/geometry/ocs.h"
#include "host/gi/hatch_lines.h"
#include "host/gi/kinds.h"

namespace cad {
namespace {

constexpr std::size_t kMostStrokes = 20'000;  // of one hatch

struct Filling {
  bool solid = false;
  int nesting = 0;  ///< group 75: 0 every other area, 1 the outermost, 2 all
  std::vector<PatternLines> lines;
  std::optional<std::uint32_t> gradient;  ///< its first colour
};

Filling filling_of(const EntityTags& entity) {
  constexpr int kLineCount = 78, kGradient = 450, kGradientColor = 421;
  Filling filling;
  bool in_pattern = false, has_gradient = false;
  OwnTags tags(entity.bytes, entity.dialect);
  dxf::Tag tag;
  const auto integer = [&] { return dxf::int_value(tag, entity.dialect); };
  const auto real = [&] { return dxf::real_value(tag, entity.dialect); };
  while (tags.next(tag)) {
    if (tag.code == 70 && !in_pattern) filling.solid = integer() != 0;
    if (tag.code == 75) filling.nesting = static_cast<int>(integer());
    if (tag.code == kLineCount) in_pattern = true;
    if (tag.code == kGradient) has_gradient = integer() != 0;
    if (tag.code == kGradientColor && has_gradient && !filling.gradient)
      filling.gradient = static_cast<std::uint32_t>(integer()) & 0xFFFFFFU;
    if (!in_pattern) continue;
    if (tag.code == 53) filling.lines.push_back({real() * (std::numbers::pi / 180), {}, {}, {}});
    if (filling.lines.empty()) continue;
    PatternLines& last = filling.lines.back();
    switch (tag.code) {
      case 43:
        last.base.x = real();
        break;
      case 44:
        last.base.y = real();
        break;
      case 45:
        last.step.x = real();
        break;
      case 46:
        last.step.y = real();
        break;
      case 49:
        last.dashes.push_back(real());
        break;
      default:
        break;
    }
  }
  return filling;
}

void fill(const Filling& filling, std::span<const std::vector<Curve>> loops, EntityDrawer& drawer) {
  constexpr int kAll = 2;
  if (filling.gradient) drawer.canvas().traits().setTrueColor(*filling.gradient);
  if (filling.nesting == kAll) {
    for (const std::vector<Curve>& loop : loops)
      drawer.canvas().area(std::span(&loop, 1), FineGeometry::Rule::kEvenOdd);
  } else {
    drawer.canvas().area(loops, FineGeometry::Rule::kEvenOdd);
  }
  if (filling.gradient) drawer.restore_color();
}

}  // namespace

void draw_hatch(const EntityTags& entity, EntityDrawer& drawer) {
  std::vector<std::vector<Curve>> loops;
  for (HatchPath& path : hatch_paths(entity.bytes, entity.dialect))
    if (!path.edges.empty()) loops.push_back(std::move(path.edges));
  if (loops.empty()) return;
  const Filling filling = filling_of(entity);
  Canvas& canvas = drawer.canvas();
  if (!drawer.variables_of(entity.drawing).fill) {
    for (const std::vector<Curve>& loop : loops)
      for (const Curve& edge : loop) canvas.curve(edge);
    return;
  }
  if (filling.solid || filling.gradient) return fill(filling, loops, drawer);

  const EntityFields fields(entity.bytes, entity.dialect);
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  const AcGeMatrix3d own = axes.transpose();
  std::vector<std::vector<AcGePoint2d>> polygons;
  double elevation = fields.real(30);
  for (const std::vector<Curve>& loop : loops) {
    if (loop.front().segments().empty()) continue;
    std::vector<AcGePoint2d>& polygon = polygons.emplace_back();
    for (const AcGePoint3d& p :
         points_of(loop, canvas.deviation(loop.front().segments().front().start()))) {
      const AcGePoint3d flat = own * p;
      polygon.emplace_back(flat.x, flat.y);
    }
  }
  std::vector<AcGePoint3d> ends;
  for (const HatchStroke& stroke : hatch_strokes(filling.lines, polygons, kMostStrokes)) {
    ends.push_back(axes * AcGePoint3d(stroke.from.x, stroke.from.y, elevation));
    ends.push_back(axes * AcGePoint3d(stroke.to.x, stroke.to.y, elevation));
  }
  canvas.strokes(ends);
}

}  // namespace cad
