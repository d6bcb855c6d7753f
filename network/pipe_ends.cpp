#include "network/pipe_ends.h"

#include "network/node_index.h"

namespace network {
namespace {

bool fits(Kind node, Kind pipe) {
  switch (pipe) {
    case Kind::kWaterPipe:
      return node == Kind::kWaterNode || node == Kind::kHydrant;
    case Kind::kDrainagePipe:
      return node == Kind::kDrainageWell;
    case Kind::kStormPipe:
      return node == Kind::kStormWell;
    default:
      return false;
  }
}

PipeEnd given_end(AcDbObjectId node) {
  const bool is_there = !node.isNull() && !node.isErased();
  if (!is_there || !is_node(kind_of(node).value_or(Kind::kNone)))
    return {AcDbObjectId(), EndState::kNoNode};
  return {node, EndState::kGiven};
}

PipeEnd nearest_end(const CGxGd& pipe, const AcGePoint3d& at) {
  const cad::Stub& stub = *pipe.objectId().stub();
  cad::Drawing& drawing = cad::StubStore::drawing_of(stub);
  const NodeIndex::Nearest found = NodeIndex::of(drawing).nearest(
      NodeIndex::space_of(drawing, stub), at.x, at.y, fits, pipe.kind());
  if (found.id.isNull()) return {AcDbObjectId(), EndState::kMissing};
  if (found.ambiguous) return {AcDbObjectId(), EndState::kAmbiguous};
  return {found.id, EndState::kNearest};
}

/// `centre_line` is called when the data do not name both nodes.
template <class CentreLine>
PipeEnds find_ends(const CGxGd& pipe, CentreLine centre_line) {
  PipeEnds ends;
  const bool start_given = pipe.data().has(Key::kStartNode);
  const bool end_given = pipe.data().has(Key::kEndNode);
  if (start_given) ends.start = given_end(pipe.start_node());
  if (end_given) ends.end = given_end(pipe.end_node());
  if (!start_given || !end_given) {
    const std::optional<cad::Curve>& curve = centre_line();
    const PipeEnd none{AcDbObjectId(), EndState::kNoCurve};
    if (!start_given) ends.start = curve ? nearest_end(pipe, curve->start_point()) : none;
    if (!end_given) ends.end = curve ? nearest_end(pipe, curve->end_point()) : none;
  }
  if (ends.found() && ends.start.node == ends.end.node) {
    const PipeEnd same{AcDbObjectId(), EndState::kSameNode};
    ends = {same, same};
  }
  return ends;
}

}  // namespace

PipeEnds ends_of(const CGxGd& pipe) {
  return find_ends(pipe, [&] { return pipe.centre_line(); });
}

PipeEnds ends_of(const CGxGd& pipe, const std::optional<cad::Curve>& centre_line) {
  return find_ends(pipe, [&]() -> const std::optional<cad::Curve>& { return centre_line; });
}

}  // namespace network

Acad::ErrorStatus Gx::getWellAtGx(AcDbObjectId id, std::pair<AcDbObjectId, AcDbObjectId>& wells) {
  using network::EndState;
  const std::unique_ptr<CGxGd> pipe = network::open_pipe(id);
  if (!pipe) return Acad::eKeyNotFound;
  const network::PipeEnds ends = network::ends_of(*pipe);
  if (ends.found()) {
    wells = {ends.start.node, ends.end.node};
    return Acad::eOk;
  }
  for (const EndState state : {ends.start.state, ends.end.state})
    if (state == EndState::kAmbiguous || state == EndState::kSameNode) return Acad::eAmbiguousInput;
  return Acad::eKeyNotFound;
}
