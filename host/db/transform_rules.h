#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/db/tag_sheet.h"
#include "host/db/transform.h"
#include "host/db/transform_map.h"

namespace cad {

/// What a group of an entity is, and so how it changes under a map.
enum class Role : std::uint8_t {
  kPoint,      ///< a place in world coordinates
  kOwnPoint,   ///< a place in the object's own coordinates
  kFlatPoint,  ///< the same without z: the object's elevation counts
  kElevation,  ///< z of the flat points
  kVector,     ///< from one place in the world to another
  kDirection,  ///< the same at unit length
  kLength,
  kThickness,  ///< a length along the normal
  kAngle,      ///< in the object's plane, from its own X axis
  kBulge,      ///< of an arc in the object's plane: its sign is the side
};

struct Rule {
  int code;
  Role role;
};

/// How entities of one kind change.
struct KindRules {
  std::string_view kind;
  /// The class part that takes the normal when it is no longer Z; empty for kinds that have none.
  std::string_view normal_part;
  std::span<const Rule> rules;
  /// Does what the rules cannot, in front of them; null when there is nothing.
  Acad::ErrorStatus (*special)(TagSheet&, const ObjectMap&, MirroredText);
  /// Whether a map that is not uniform gives something of the same kind.
  bool (*takes_any_map)(const TagSheet&);
  /// Whether its points cannot be pulled one by one.
  bool moves_whole;
};

/// Null for a kind whose geometry is not known. A VERTEX has no rules without its polyline.
const KindRules* rules_of_kind(std::string_view kind);
/// Of the vertices of a polyline: those of a flat one have its normal.
const KindRules* rules_of_vertices(const TagSheet& polyline);
bool is_flat_polyline(const TagSheet& polyline);

/// Whether a vertex only lists the corners of a face.
bool is_face_record(const TagSheet& vertex);

// Special changes.
Acad::ErrorStatus map_polyline(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_arc(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_ellipse(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_block_reference(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_shape(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_text(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_mtext(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_hatch(TagSheet& sheet, const ObjectMap& map, MirroredText text);
Acad::ErrorStatus map_dimension(TagSheet& sheet, const ObjectMap& map, MirroredText text);

}  // namespace cad
