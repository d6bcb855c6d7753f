#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "host/app/select/layer_states.h"
#include "host/db/drawing.h"
#include "host/db/entity_shape.h"

namespace cad {

/// The boxes of all entities of the current space, seen in the plan. Made when first asked for;
/// afterwards a change of the drawing costs as much as what was changed: entities that were
/// written to are measured again, block references when blocks were. Boxes are looked through one
/// by one, which for a hundred thousand takes a fraction of a millisecond.
class EntityIndex : private DrawingListener {
 public:
  explicit EntityIndex(AcDbDatabase& database);
  ~EntityIndex() override;
  EntityIndex(const EntityIndex&) = delete;
  EntityIndex& operator=(const EntityIndex&) = delete;

  struct Box {
    double min_x, min_y, max_x, max_y;

    bool meets(const Box& b) const {
      return min_x <= b.max_x && max_x >= b.min_x && min_y <= b.max_y && max_y >= b.min_y;
    }
    bool lies_in(const Box& b) const {
      return min_x >= b.min_x && max_x <= b.max_x && min_y >= b.min_y && max_y <= b.max_y;
    }
  };
  struct Entry {
    AcDbObjectId id;
    std::uint32_t layer;
    bool visible;    ///< it is there and not marked invisible; its layer may still be hidden
    bool reference;  ///< its shape depends on blocks
  };

  /// Brings the index up to date. Entries and boxes stay in place until the next call.
  void refresh();
  /// In drawing order. An entity without a shape has an empty box (min > max), one without end the
  /// box of everything.
  std::span<const Entry> entries() const { return entries_; }
  std::span<const Box> boxes() const { return boxes_; }
  bool is_selectable(const Entry& entry) const {
    return entry.visible && !layers_.state(entry.layer).hidden;
  }
  /// Whether a part of a block is drawn; parts on layer 0 take that of the reference.
  bool is_drawn(AcDbObjectId nested) { return !layers_.of(nested).hidden; }
  bool is_locked(AcDbObjectId entity) { return layers_.of(entity).locked; }

  EntityShapes& shapes() { return shapes_; }
  LayerStates& layers() { return layers_; }

 private:
  void object_changed(const Stub& stub) override;
  void rebuild();
  void update();
  void append(AcDbObjectId id);
  void measure(std::size_t place);
  bool is_in_space(const Stub& stub) const;
  std::size_t place_of(const Stub& stub);

  AcDbDatabase& database_;
  EntityShapes shapes_;
  LayerStates layers_;
  std::vector<Entry> entries_;
  std::vector<Box> boxes_;
  std::unordered_map<const Stub*, std::uint32_t> places_;  // made at the first change
  AcDbObjectId space_;
  bool built_ = false;
  bool layers_changed_ = false;
  bool blocks_changed_ = false;
  std::vector<const Stub*> changed_;  // since the last refresh
};

}  // namespace cad
