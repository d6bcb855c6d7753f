#pragma once

#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <variant>
#include <vector>

#include "host/db/curve.h"
#include "host/geometry/extents.h"

namespace cad {

struct BlockPlacement;

/// A filled polygon.
struct FilledArea {
  std::vector<AcGePoint3d> corners;
};

/// What is visible of an entity, piece by piece: a curve, a point, or a filled area (texts count as
/// their boxes).
using ShapePart = std::variant<Curve, AcGePoint3d, FilledArea>;

ShapePart transformed(const ShapePart& part, const AcGeMatrix3d& map);
AcDbExtents extents_of(const ShapePart& part);

/// The shapes of a drawing's entities. Those of blocks are read once and kept until forget() is
/// called, so a drawing full of block references costs no more than its blocks.
class EntityShapes {
 public:
  EntityShapes();
  ~EntityShapes();
  EntityShapes(const EntityShapes&) = delete;
  EntityShapes& operator=(const EntityShapes&) = delete;

  /// One part that is being visited.
  struct Visit {
    const ShapePart& part;               ///< in the coordinates of its block
    const AcGeMatrix3d& map;             ///< from there to the world
    AcDbObjectId entity;                 ///< the innermost, whose part it is; or an attribute
    std::span<const AcDbObjectId> path;  ///< block references around it, the outermost first
  };
  /// Calls `visit` for every part until it answers false; false when it did. Block references are
  /// entered, through arrays and up to a hundred blocks in blocks; a block that contains itself is
  /// left out. After 200,000 parts the blocks that remain count as their boxes.
  bool visit(AcDbObjectId entity, const std::function<bool(const Visit&)>& visit);
  /// Whether the entity has a known shape that is not empty. Rays and xlines have a shape but no
  /// box: false.
  bool extents(AcDbObjectId entity, AcDbExtents& box);
  /// Whether what is seen depends on blocks.
  static bool is_reference(AcDbObjectId entity);
  /// To be called when entities of blocks have changed.
  void forget();

 private:
  class Reader;
  class Walk;
  struct Contents;

  Contents& contents_of(const BlockPlacement& reference);
  AcDbExtents block_box(const BlockPlacement& reference);
  AcDbExtents reference_extents(const BlockPlacement& reference, const AcGeMatrix3d& outer,
                                bool exactly);

  static constexpr std::size_t kDeepest = 100;

  std::unordered_map<const void*, std::unique_ptr<Contents>> blocks_;  // by stub of BLOCK
  std::size_t depth_ = 0;
};

}  // namespace cad
