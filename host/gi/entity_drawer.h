#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/db/block_placement.h"
#include "host/gi/canvas.h"
#include "host/gi/entity_tags.h"
#include "host/gi/looks.h"
#include "host/gi/text_styles.h"

namespace cad {

/// What was not drawn, for the user to be told.
struct DrawingGaps {
  std::map<std::string, std::size_t, std::less<>> kinds;  ///< entities of kinds that are not drawn
  std::size_t missing_blocks = 0;  ///< references to blocks that the drawing lacks
  std::size_t cycles = 0;          ///< references within blocks to a block around them
  std::size_t too_many = 0;        ///< references drawn in part: blocks multiply beyond measure
  bool empty() const { return kinds.empty() && !missing_blocks && !cycles && !too_many; }
};

/// Draws entities of a drawing, blocks and all. Keeps what it looked up: make a new one when the
/// drawing may have changed.
class EntityDrawer {
 public:
  /// `most`: entities of blocks that are drawn before the rest is given up.
  explicit EntityDrawer(AcGiWorldDraw& draw, std::size_t most = 2'000'000)
      : canvas_(draw), left_(most) {}

  /// With the layer and colours it has; nothing when it, or its layer, is not to be seen.
  void draw(AcDbObjectId entity);
  /// What is seen of it, with the traits that its caller set and finds as they were. A colour of
  /// the palette among them is the entity's own: contents that are ByBlock have it. False for a
  /// kind that is not drawn.
  bool draw_under_traits(const EntityTags& entity);

  const DrawingGaps& gaps() const { return gaps_; }

  // For the kinds.
  Canvas& canvas() { return canvas_; }
  /// `drawing` null: that of an entity that belongs to none, while no drawing is open.
  TextStyles& styles_of(Drawing* drawing);
  /// Header variables that rule how entities look.
  struct Variables {
    int point_mode = 0;       ///< PDMODE
    double point_size = 0.0;  ///< PDSIZE
    bool fill = true;         ///< FILLMODE
    int attributes = 1;       ///< ATTMODE: 0 none, 1 those that are visible, 2 all
  };
  const Variables& variables_of(Drawing* drawing);
  /// For a part of the entity being drawn: an index, ByBlock and ByLayer included.
  void set_color(int index);
  void restore_color();

 private:
  class CallersTraits;
  struct Contents {
    std::vector<AcDbObjectId> entities;
    bool entered = false;  // being drawn: met again, the block contains itself
  };
  /// What is kept of a drawing.
  struct Kept {
    explicit Kept(Drawing* drawing);
    std::optional<Looks> looks;  // none without a drawing
    TextStyles styles;
    Variables variables;
    std::unordered_map<const Stub*, Contents> blocks;
  };

  Kept& kept(Drawing* drawing);
  Contents& contents_of(Drawing& drawing, AcDbObjectId block);
  void draw_in(AcDbObjectId entity, const Look* reference);
  bool draw_shape(const EntityTags& entity);
  bool draw_reference(const EntityTags& entity);
  void draw_block(Drawing& drawing, const BlockPlacement& placement, const Look& reference);
  void draw_attributes(const EntityTags& insert);

  Canvas canvas_;
  DrawingGaps gaps_;
  std::unordered_map<const Drawing*, std::unique_ptr<Kept>> kept_;
  const Look* look_ = nullptr;  // of the entity being drawn; null under its caller's traits
  const CallersTraits* caller_ = nullptr;
  const Look* reference_ = nullptr;  // of the reference to the block it is in
  std::size_t depth_ = 0;
  std::size_t left_;  // entities of blocks that may still be drawn
};

}  // namespace cad
