#pragma once

#include <cstdint>
#include <utility>

#include "network/pipes.h"

namespace network {

/// How the node at one end of a pipe was found, or why there is none.
enum class EndState : std::uint8_t {
  kGiven,      ///< by the handle in the pipe's data
  kNearest,    ///< the data name none: the one that fits the pipe's kind nearest to the curve's end
  kNoNode,     ///< the handle leads to nothing, or to what is no node
  kMissing,    ///< the data name none, and none is within the tolerance
  kAmbiguous,  ///< several are equally near
  kSameNode,   ///< both ends have come to the same node
  kNoCurve,    ///< the data name none, and the pipe has no ends to look near
};

struct PipeEnd {
  AcDbObjectId node;  ///< null unless it is given or nearest
  EndState state = EndState::kMissing;
};

struct PipeEnds {
  PipeEnd start;
  PipeEnd end;
  bool found() const { return !start.node.isNull() && !end.node.isNull(); }
};

/// The nodes that bound the pipe. Near are nodes within NodeIndex::kTolerance in plan, in the same
/// space, of the pipe's own network: water nodes and hydrants for a water-supply pipe, drainage
/// wells for drainage, storm wells for storm water.
PipeEnds ends_of(const CGxGd& pipe);
/// The same for a caller who has the pipe's centre line, or knows that it has none.
PipeEnds ends_of(const CGxGd& pipe, const std::optional<cad::Curve>& centre_line);

}  // namespace network

namespace Gx {

/// The wells at the start and the end of a pipe. eOk; else nothing is set: eKeyNotFound when the
/// entity is no pipe or an end has no node, eAmbiguousInput when several nodes are equally near to
/// an end, or both ends meet the same one.
Acad::ErrorStatus getWellAtGx(AcDbObjectId pipe, std::pair<AcDbObjectId, AcDbObjectId>& wells);

}  // namespace Gx
