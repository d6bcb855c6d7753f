// Faces, points, images and frames.

#include "host/db/entity_fields.h"
#include "host/db/shape_parts.h"
#include "host/gi/kinds.h"

namespace cad {
namespace {

/// Faces, meshes, images and viewports are found in drawings only.
std::vector<ShapePart> parts_of(const EntityTags& entity) {
  std::vector<ShapePart> parts;
  if (entity.stub) append_parts(AcDbObjectId(entity.stub), parts);
  return parts;
}

}  // namespace

void draw_parts(const EntityTags& entity, EntityDrawer& drawer) {
  for (const ShapePart& part : parts_of(entity)) {
    if (const auto* curve = std::get_if<Curve>(&part)) drawer.canvas().curve(*curve);
    if (const auto* area = std::get_if<FilledArea>(&part))
      drawer.canvas().outline(area->corners, true);
  }
}

void draw_solid(const EntityTags& entity, EntityDrawer& drawer) {
  if (!drawer.variables_of(entity.drawing).fill) return draw_parts(entity, drawer);
  for (const ShapePart& part : parts_of(entity))
    if (const auto* area = std::get_if<FilledArea>(&part)) drawer.canvas().fill(area->corners);
}

/// The four edges of which some may be invisible; a triangle repeats its third corner.
void draw_face(const EntityTags& entity, EntityDrawer& drawer) {
  constexpr int kHiddenEdges = 70, kCorners = 4;
  const EntityFields fields(entity.bytes, entity.dialect);
  const int hidden = fields.integer(kHiddenEdges);
  if (hidden == 0) return draw_parts(entity, drawer);
  for (int i = 0; i < kCorners; ++i) {
    if (hidden & (1 << i)) continue;
    const AcGePoint3d edge[] = {fields.point(10 + i), fields.point(10 + (i + 1) % kCorners)};
    if (!edge[0].isEqualTo(edge[1])) drawer.canvas().outline(edge, false);
  }
}

void draw_point(const EntityTags& entity, EntityDrawer& drawer) {
  const EntityDrawer::Variables& variables = drawer.variables_of(entity.drawing);
  drawer.canvas().point(EntityFields(entity.bytes, entity.dialect).point(10), variables.point_mode,
                        variables.point_size);
}

void draw_image(const EntityTags& entity, EntityDrawer& drawer) { draw_parts(entity, drawer); }

void draw_wipeout(const EntityTags& entity, EntityDrawer& drawer) {
  for (const ShapePart& part : parts_of(entity))
    if (const auto* area = std::get_if<FilledArea>(&part)) drawer.canvas().mask(area->corners);
}

/// Its frame; the one of id 1 stands for the sheet itself.
void draw_viewport(const EntityTags& entity, EntityDrawer& drawer) {
  constexpr int kId = 69, kSheet = 1;
  if (EntityFields(entity.bytes, entity.dialect).integer(kId) != kSheet) draw_parts(entity, drawer);
}

}  // namespace cad
