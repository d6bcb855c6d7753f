#pragma once

#include "host/gi/entity_drawer.h"

namespace cad {

using DrawKind = void (*)(const EntityTags& entity, EntityDrawer& drawer);

/// How entities of a kind are drawn; null for a kind that is not.
DrawKind draw_kind(std::string_view kind);

// The kinds, each in the file named for it.
void draw_curve(const EntityTags& entity, EntityDrawer& drawer);
void draw_light_polyline(const EntityTags& entity, EntityDrawer& drawer);
void draw_heavy_polyline(const EntityTags& entity, EntityDrawer& drawer);
void draw_leader(const EntityTags& entity, EntityDrawer& drawer);
void draw_mleader(const EntityTags& entity, EntityDrawer& drawer);
void draw_mline(const EntityTags& entity, EntityDrawer& drawer);
void draw_line_of_text(const EntityTags& entity, EntityDrawer& drawer);
void draw_mtext(const EntityTags& entity, EntityDrawer& drawer);
void draw_hatch(const EntityTags& entity, EntityDrawer& drawer);
void draw_solid(const EntityTags& entity, EntityDrawer& drawer);
void draw_face(const EntityTags& entity, EntityDrawer& drawer);
void draw_point(const EntityTags& entity, EntityDrawer& drawer);
void draw_image(const EntityTags& entity, EntityDrawer& drawer);
void draw_wipeout(const EntityTags& entity, EntityDrawer& drawer);
void draw_viewport(const EntityTags& entity, EntityDrawer& drawer);

/// Draws parts as outlines.
void draw_parts(const EntityTags& entity, EntityDrawer& drawer);

}  // namespace cad
