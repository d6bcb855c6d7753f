#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "labeler/draft.h"
#include "labeler/occupancy.h"
#include "module/platform/drawing.h"

/// Where the texts, lines and arrows of a label stand. Lengths are drawing units, angles radians.
namespace labeler {

/// Sizes at the drawing's scale.
struct Sizes {
  double text_height = 0.0;
  double gap = 0.0;         ///< between a pipe and its label
  double line_space = 0.0;  ///< between lines of a label
  double text_space = 0.0;  ///< between texts of a row
  double arrow_length = 0.0;
  double arrow_width = 0.0;
  double node_radius = 0.0;   ///< of a node's symbol
  double end_distance = 0.0;  ///< of labels at a pipe's end from that end
  double tick = 0.0;          ///< half of a stake's tick
};

/// How a direction is read: the same or the opposite one, from the base point and the direction.
using ReadingAngle = std::function<double(const AcGePoint3d& base, double along)>;
/// The place of a label at its owner.
struct Place {
  AcGePoint3d anchor;  ///< on the owner
  double along = 0.0;  ///< direction of the pipe there
  double angle = 0.0;  ///< in which the label is read
  int variant = 0;     ///< which of the places tried in turn
};

/// How many places there are to try for a label of that form. The first is the best.
int variant_count(Form form);
/// The place of that number; variants that are none count as the first.
Place place_of(Form form, const Owner& owner, int variant, const ReadingAngle& reading);
/// The direction of the leader of a well/pipe label in that variant.
double leader_angle(int variant);

struct PlacedText {
  AcGePoint3d at;
  AcDb::TextHorzMode horizontal = AcDb::kTextLeft;
  AcDb::TextVertMode vertical = AcDb::kTextBase;
  double rotation = 0.0;
  double width = 0.0;
};
struct PlacedArrow {
  AcGePoint3d middle;
  double direction = 0.0;  ///< of flow
};
/// A label in the plan. One text for each line of the draft, in that order.
struct Shape {
  std::vector<PlacedText> texts;
  std::vector<std::pair<AcGePoint3d, AcGePoint3d>> lines;
  std::optional<PlacedArrow> arrow;
};

/// `widths` are those of the draft's lines. A shape that is no longer needed lends its memory.
Shape shape_of(const Draft& draft, const Owner& owner, const Place& place, const Sizes& sizes,
               const ReadingAngle& reading, std::span<const double> widths, Shape reused = {});

/// What the label takes of the plan. So do boxes that are no longer needed.
std::vector<Box> boxes_of(const Shape& shape, const Sizes& sizes, std::vector<Box> reused = {});
Box box_of(const PlacedText& text, double height);
Box box_of(const PlacedArrow& arrow, const Sizes& sizes);

/// What the owner itself takes: the chords of a pipe's curve, the symbol of a node.
std::vector<Box> boxes_of(const Owner& owner, const Sizes& sizes);

}  // namespace labeler
