// Lines, polylines, arcs and all that follows a curve.

#include <cmath>

#include "host/db/curve.h"
#include "host/db/entity_fields.h"
#include "host/db/lens.h"
#include "host/geometry/ocs.h"
#include "host/gi/kinds.h"

namespace cad {
namespace {

std::optional<Curve> curve_of(const EntityTags& entity) {
  return entity.object ? cad::curve_of(*entity.object) : cad::curve_of(AcDbObjectId(entity.stub));
}

/// Of as many segments as the curve has: those behind its vertices.
std::vector<SegmentWidth> light_widths(const EntityTags& entity) {
  std::vector<SegmentWidth> widths;
  double constant = 0.0;
  bool own = false;
  OwnTags tags(entity.bytes, entity.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 10) widths.push_back({});
    if (tag.code == 43) constant = dxf::real_value(tag, entity.dialect);
    if (widths.empty() || (tag.code != 40 && tag.code != 41)) continue;
    own = true;
    (tag.code == 40 ? widths.back().start : widths.back().end) =
        dxf::real_value(tag, entity.dialect);
  }
  if (!own) widths.assign(widths.size(), {constant, constant});
  return widths;
}

/// Vertices without widths have those of the head. Vertices of a frame are not drawn.
std::vector<SegmentWidth> heavy_widths(const EntityTags& entity, const EntityFields& head) {
  constexpr int kFrame = 16;
  std::vector<SegmentWidth> widths;
  if (!entity.stub) return widths;
  for (const Stub* part : entity.drawing->sub_entities(*entity.stub)) {
    if (part->erased() || entity.drawing->kind_name(*part) != "VERTEX") continue;
    const EntityFields vertex(entity.drawing->bytes_of(*part), entity.dialect);
    if (vertex.integer(70) & kFrame) continue;
    widths.push_back({vertex.real(40, head.real(40)), vertex.real(41, head.real(41))});
  }
  return widths;
}

void draw_wide(const EntityTags& entity, EntityDrawer& drawer, const AcGeVector3d& axis,
               std::vector<SegmentWidth> widths) {
  const std::optional<Curve> curve = curve_of(entity);
  if (!curve) return;
  widths.resize(curve->segments().size());
  drawer.canvas().wide_curve(*curve, widths, axis);
}

/// Size of a leader's arrow by its dimension style, and what it says otherwise itself.
double arrow_size(const EntityTags& entity) {
  constexpr int kScale = 40, kSize = 41;
  double scale = 1.0, size = 0.18;
  const EntityFields fields(entity.bytes, entity.dialect);
  if (const Stub* style =
          entity.drawing ? entity.drawing->table_record("DIMSTYLE", fields.text(3)) : nullptr) {
    const Lens lens(entity.drawing->bytes_of(*style), entity.drawing->dialect());
    scale = lens.real("AcDbDimStyleTableRecord", kScale, scale);
    size = lens.real("AcDbDimStyleTableRecord", kSize, size);
  }
  constexpr int kVariable = 1070, kReal = 1040;
  std::int64_t variable = 0;
  dxf::Tag tag;
  for (dxf::TagReader tags(entity.bytes, entity.dialect); tags.next(tag);) {
    if (tag.code == kReal && variable == kScale) scale = dxf::real_value(tag, entity.dialect);
    if (tag.code == kReal && variable == kSize) size = dxf::real_value(tag, entity.dialect);
    variable = tag.code == kVariable ? dxf::int_value(tag, entity.dialect) : 0;
  }
  return size * (scale > 0.0 ? scale : 1.0);
}

}  // namespace

void draw_curve(const EntityTags& entity, EntityDrawer& drawer) {
  if (const std::optional<Curve> curve = curve_of(entity)) drawer.canvas().curve(*curve);
}

void draw_light_polyline(const EntityTags& entity, EntityDrawer& drawer) {
  const EntityFields fields(entity.bytes, entity.dialect);
  draw_wide(entity, drawer, fields.normal(), light_widths(entity));
}

void draw_heavy_polyline(const EntityTags& entity, EntityDrawer& drawer) {
  constexpr int kInSpace = 8, kMesh = 16 | 64;
  const EntityFields head(entity.bytes, entity.dialect);
  const int flags = head.integer(70);
  if (flags & kMesh) return draw_parts(entity, drawer);
  if (flags & kInSpace) return draw_curve(entity, drawer);
  draw_wide(entity, drawer, head.normal(), heavy_widths(entity, head));
}

void draw_leader(const EntityTags& entity, EntityDrawer& drawer) {
  const std::optional<Curve> curve = curve_of(entity);
  if (!curve || curve->segments().empty()) return;
  drawer.canvas().curve(*curve);
  const EntityFields fields(entity.bytes, entity.dialect);
  constexpr int kArrow = 71;
  if (fields.integer(kArrow, 1) == 0) return;
  const Segment& first = curve->segments().front();
  const double size = arrow_size(entity);
  const AcGeVector3d along = first.at(0.0).first.normal();
  // Without room for it, a leader has no arrow.
  if (!(size > 0.0) || !(first.length() >= 2.0 * size)) return;
  const AcGeVector3d aside = fields.normal().crossProduct(along) * (size / 6.0);
  const AcGePoint3d end = first.start() + along * size;
  const AcGePoint3d corners[] = {first.start(), end + aside, end - aside};
  drawer.canvas().fill(corners);
}

/// Each element runs beside the vertices by its distance along the mitre of the corner. Breaks in
/// elements and fills are not drawn.
void draw_mline(const EntityTags& entity, EntityDrawer& drawer) {
  struct Corner {
    AcGePoint3d vertex;
    AcGeVector3d mitre;
    std::vector<double> distances;
  };
  std::vector<Corner> corners;
  bool first_of_element = false;
  OwnTags tags(entity.bytes, entity.dialect);
  dxf::Tag tag;
  const auto real = [&] { return dxf::real_value(tag, entity.dialect); };
  while (tags.next(tag)) {
    if (tag.code == 11) corners.push_back({{real(), 0.0, 0.0}, {}, {}});
    if (corners.empty()) continue;
    Corner& corner = corners.back();
    switch (tag.code) {
      case 21:
        corner.vertex.y = real();
        break;
      case 31:
        corner.vertex.z = real();
        break;
      case 13:
        corner.mitre.x = real();
        break;
      case 23:
        corner.mitre.y = real();
        break;
      case 33:
        corner.mitre.z = real();
        break;
      case 74:
        first_of_element = dxf::int_value(tag, entity.dialect) > 0;
        if (!first_of_element) corner.distances.push_back(0.0);
        break;
      case 41:
        if (first_of_element) corner.distances.push_back(real());
        first_of_element = false;
        break;
      default:
        break;
    }
  }
  constexpr int kClosed = 2;
  const bool closed = EntityFields(entity.bytes, entity.dialect).integer(71) & kClosed;
  const std::size_t elements = corners.empty() ? 0 : corners.front().distances.size();
  std::vector<AcGePoint3d> points;
  for (std::size_t i = 0; i < elements; ++i) {
    points.clear();
    for (const Corner& corner : corners)
      if (i < corner.distances.size())
        points.push_back(corner.vertex + corner.mitre * corner.distances[i]);
    drawer.canvas().outline(points, closed);
  }
}

}  // namespace cad
