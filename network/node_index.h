#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "host/db/drawing.h"
#include "network/object_data.h"

namespace network {

/// The nodes of a drawing by their place in plan. Made when first asked for, in one walk through
/// the drawing; afterwards a change of the drawing costs as much as what was changed.
///     NodeIndex& nodes = NodeIndex::of(drawing);
///     const NodeIndex::Nearest found =
///         nodes.nearest(NodeIndex::space_of(drawing, stub), x, y, fits, Kind::kStormPipe);
class NodeIndex : public cad::DrawingListener {
 public:
  /// Kept with the drawing.
  static NodeIndex& of(cad::Drawing& drawing) { return drawing.companion<NodeIndex>(); }
  explicit NodeIndex(cad::Drawing& drawing) : drawing_(drawing) {}

  struct Node {
    const cad::Stub* stub;
    Kind kind;
    std::uint64_t space;
    double x, y;
  };
  /// How far in plan, in drawing units, a pipe's end may be from the node it is taken to meet.
  static constexpr double kTolerance = 0.5;
  /// Nodes whose distances differ by less are equally near.
  static constexpr double kSameDistance = 1e-3;

  /// The node nearest to a point, within the tolerance, of those in the space that `fits` takes.
  struct Nearest {
    AcDbObjectId id;         ///< null when there is none
    bool ambiguous = false;  ///< another one is equally near
  };
  Nearest nearest(std::uint64_t space, double x, double y, bool (*fits)(Kind node, Kind pipe),
                  Kind pipe);

  /// Of two entities in the same space or block it is the same.
  static std::uint64_t space_of(const cad::Drawing& drawing, const cad::Stub& stub);

  void object_changed(const cad::Stub& stub) override;

 private:
  struct Cell {
    std::int64_t column, row;
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  struct CellHash {
    std::size_t operator()(const Cell& cell) const;
  };
  static Cell cell_of(double x, double y);

  void refresh();
  void add(const cad::Stub& stub);
  void remove(const cad::Stub& stub);
  bool can_be_node(const cad::Stub& stub) const;

  cad::Drawing& drawing_;
  std::unordered_map<Cell, std::vector<Node>, CellHash> cells_;
  std::unordered_map<const cad::Stub*, Cell> places_;
  bool built_ = false;
  std::vector<const cad::Stub*> changed_;  // since the last refresh
};

}  // namespace network
