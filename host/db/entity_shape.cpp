#include "host/db/entity_shape.h"

#include <optional>

#include "host/db/block_placement.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/db/extents.h"
#include "host/db/shape_parts.h"

namespace cad {

ShapePart transformed(const ShapePart& part, const AcGeMatrix3d& map) {
  if (const auto* curve = std::get_if<Curve>(&part)) return curve->transformed(map);
  if (const auto* point = std::get_if<AcGePoint3d>(&part)) return map * *point;
  FilledArea area = std::get<FilledArea>(part);
  for (AcGePoint3d& corner : area.corners) corner.transformBy(map);
  return area;
}

AcDbExtents extents_of(const ShapePart& part) {
  AcDbExtents box;
  if (const auto* curve = std::get_if<Curve>(&part)) {
    if (curve->is_bounded()) box = curve->extents();
  } else if (const auto* point = std::get_if<AcGePoint3d>(&part)) {
    box.addPoint(*point);
  } else {
    for (const AcGePoint3d& corner : std::get<FilledArea>(part).corners) box.addPoint(corner);
  }
  return box;
}

/// What a block holds.
struct EntityShapes::Contents {
  struct Item {
    AcDbObjectId entity;
    std::vector<ShapePart> parts;
    std::optional<BlockPlacement> reference;
  };
  std::vector<Item> items;
  std::optional<AcDbExtents> box;
  bool entered = false;  // being visited: met again, the block contains itself
};

namespace {

constexpr int kInvisible = 60;

bool is_invisible(const EntityFields& fields) { return fields.integer(kInvisible) & 1; }

/// Whether boxes stay boxes under the map.
bool keeps_axes(const AcGeMatrix3d& map) {
  for (unsigned row = 0; row < 3; ++row)
    for (unsigned column = 0; column < 3; ++column)
      if (row != column && map(row, column) != 0.0) return false;
  return true;
}

}  // namespace

/// Reads references and contents of blocks.
class EntityShapes::Reader {
 public:
  explicit Reader(Drawing& drawing) : drawing_(drawing) {}

  std::optional<BlockPlacement> reference(AcDbObjectId id) const {
    return block_placement(drawing_.kind_name(*id.stub()), drawing_.bytes_of(*id.stub()),
                           drawing_.dialect(), drawing_);
  }

  void append_items(const Stub& begin, Contents& contents) const {
    const Drawing::Block* const block = drawing_.block_at(begin);
    if (!block) return;
    for (std::size_t i = block->begin + 1; i < block->end; ++i) append_item(i, contents);
    for (const std::size_t i : block->added) append_item(i, contents);
  }

  /// The visible attributes of a block reference.
  std::vector<Contents::Item> attributes(const Stub& insert) const {
    constexpr int kHidden = 1;
    std::vector<Contents::Item> items;
    for (Stub* part : drawing_.sub_entities(insert)) {
      if (part->erased() || drawing_.kind_name(*part) != "ATTRIB") continue;
      const EntityFields fields(drawing_.bytes_of(*part), drawing_.dialect());
      if (is_invisible(fields) || (fields.integer(70) & kHidden)) continue;
      Contents::Item& item = items.emplace_back(Contents::Item{AcDbObjectId(part), {}, {}});
      append_parts(item.entity, item.parts);
    }
    return items;
  }

 private:
  void append_item(std::size_t index, Contents& contents) const {
    Stub& stub = drawing_.stub_at(index);
    if (stub.erased() || drawing_.is_sub_entity(stub)) return;
    const EntityFields fields(drawing_.bytes_of(stub), drawing_.dialect());
    constexpr int kConstant = 2;
    if (is_invisible(fields)) return;
    if (drawing_.kind_name(stub) == "ATTDEF" && !(fields.integer(70) & kConstant)) return;
    Contents::Item item{AcDbObjectId(&stub), {}, reference(AcDbObjectId(&stub))};
    if (item.reference) {
      for (Contents::Item& attribute : attributes(stub))
        contents.items.push_back(std::move(attribute));
    } else {
      append_parts(item.entity, item.parts);
    }
    if (item.reference || !item.parts.empty()) contents.items.push_back(std::move(item));
  }

  Drawing& drawing_;
};

/// Goes through references, within bounds.
class EntityShapes::Walk {
 public:
  Walk(EntityShapes& shapes, const std::function<bool(const Visit&)>& visit)
      : shapes_(shapes), visit_(visit) {}

  bool parts(const std::vector<ShapePart>& parts, AcDbObjectId entity, const AcGeMatrix3d& map) {
    for (const ShapePart& part : parts) {
      if (left_ > 0) --left_;
      if (!visit_({part, map, entity, path_})) return false;
    }
    return true;
  }

  bool reference(const BlockPlacement& reference, AcDbObjectId entity, const AcGeMatrix3d& outer) {
    for (int row = 0; row < reference.rows; ++row)
      for (int column = 0; column < reference.columns; ++column) {
        if (left_ == 0) return rest(reference, entity, outer);
        --left_;
        if (!block(reference, entity, outer * reference.map_of(column, row))) return false;
      }
    return true;
  }

  /// One of the blocks of a reference.
  bool block(const BlockPlacement& reference, AcDbObjectId entity, const AcGeMatrix3d& map) {
    Contents& contents = shapes_.contents_of(reference);
    if (contents.entered || path_.size() == kDeepest) return true;
    contents.entered = true;
    path_.push_back(entity);
    bool go_on = true;
    for (const Contents::Item& item : contents.items) {
      go_on = parts(item.parts, item.entity, map) &&
              (!item.reference || this->reference(*item.reference, item.entity, map));
      if (!go_on) break;
    }
    path_.pop_back();
    contents.entered = false;
    return go_on;
  }

 private:
  /// Too many: the box of all rows and columns stands for them.
  bool rest(const BlockPlacement& reference, AcDbObjectId entity, const AcGeMatrix3d& outer) {
    const AcDbExtents box = shapes_.reference_extents(reference, outer, false);
    if (box.is_empty()) return true;
    const AcGePoint3d a = box.minPoint(), b = box.maxPoint();
    const FilledArea area{{a, {b.x, a.y, a.z}, {b.x, b.y, a.z}, {a.x, b.y, a.z}}};
    return visit_({ShapePart(area), AcGeMatrix3d::kIdentity, entity, path_});
  }

  EntityShapes& shapes_;
  const std::function<bool(const Visit&)>& visit_;
  std::vector<AcDbObjectId> path_;
  std::size_t left_ = 200'000;
};

EntityShapes::EntityShapes() = default;
EntityShapes::~EntityShapes() = default;

void EntityShapes::forget() { blocks_.clear(); }

bool EntityShapes::is_reference(AcDbObjectId id) {
  return shows_block(StubStore::drawing_of(*id.stub()).kind_name(*id.stub()));
}

EntityShapes::Contents& EntityShapes::contents_of(const BlockPlacement& reference) {
  std::unique_ptr<Contents>& contents = blocks_[reference.block.stub()];
  if (!contents) {
    contents = std::make_unique<Contents>();
    Reader(StubStore::drawing_of(*reference.block.stub()))
        .append_items(*reference.block.stub(), *contents);
  }
  return *contents;
}

bool EntityShapes::visit(AcDbObjectId entity, const std::function<bool(const Visit&)>& visit) {
  Drawing& drawing = StubStore::drawing_of(*entity.stub());
  const Reader reader(drawing);
  const std::optional<BlockPlacement> reference = reader.reference(entity);
  Walk walk(*this, visit);
  if (!reference) {
    std::vector<ShapePart> parts;
    append_parts(entity, parts);
    return walk.parts(parts, entity, AcGeMatrix3d::kIdentity);
  }
  for (const Contents::Item& attribute : reader.attributes(*entity.stub()))
    if (!walk.parts(attribute.parts, attribute.entity, AcGeMatrix3d::kIdentity)) return false;
  return walk.reference(*reference, entity, AcGeMatrix3d::kIdentity);
}

/// In the block's own coordinates.
AcDbExtents EntityShapes::block_box(const BlockPlacement& reference) {
  Contents& contents = contents_of(reference);
  if (contents.box) return *contents.box;
  if (contents.entered || depth_ == kDeepest) return {};
  contents.entered = true;
  ++depth_;
  AcDbExtents box;
  for (const Contents::Item& item : contents.items) {
    for (const ShapePart& part : item.parts) box.addExt(extents_of(part));
    if (item.reference)
      box.addExt(reference_extents(*item.reference, AcGeMatrix3d::kIdentity, true));
  }
  --depth_;
  contents.entered = false;
  contents.box = box;
  return box;
}

/// Of all rows and columns. `exactly`: of a turned block its parts, not its box.
AcDbExtents EntityShapes::reference_extents(const BlockPlacement& reference,
                                            const AcGeMatrix3d& outer, bool exactly) {
  const AcGeMatrix3d map = outer * reference.map;
  AcDbExtents box;
  if (!exactly || keeps_axes(map)) {
    box = block_box(reference);
    box.transformBy(map);
  } else {
    const std::function<bool(const Visit&)> add = [&](const Visit& visit) {
      box.addExt(extents_of(transformed(visit.part, visit.map)));
      return true;
    };
    Walk(*this, add).block(reference, AcDbObjectId(), map);
  }
  box.expandBy(outer * reference.column_step * (reference.columns - 1));
  box.expandBy(outer * reference.row_step * (reference.rows - 1));
  return box;
}

bool EntityShapes::extents(AcDbObjectId entity, AcDbExtents& box) {
  if (entity.isNull()) return false;
  const Reader reader(StubStore::drawing_of(*entity.stub()));
  AcDbExtents found;
  const auto add = [&](const std::vector<ShapePart>& parts) {
    for (const ShapePart& part : parts) found.addExt(extents_of(part));
  };
  if (const std::optional<BlockPlacement> reference = reader.reference(entity)) {
    found = reference_extents(*reference, AcGeMatrix3d::kIdentity, true);
    for (const Contents::Item& attribute : reader.attributes(*entity.stub())) add(attribute.parts);
  } else {
    std::vector<ShapePart> parts;
    append_parts(entity, parts);
    add(parts);
  }
  if (found.is_empty()) return false;
  box = found;
  return true;
}

bool entity_extents(AcDbObjectId entity, AcDbExtents& box) {
  EntityShapes shapes;
  return shapes.extents(entity, box);
}

}  // namespace cad
