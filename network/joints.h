#pragma once

#include <vector>

#include "host/db/object_id.h"

namespace network {

/// A pipe that meets a node.
struct Joint {
  AcDbObjectId pipe;
  bool at_start = false;  ///< with its start
  friend bool operator==(const Joint&, const Joint&) = default;
};

/// The pipes whose ends meet the node (see ends_of()), in the order of the drawing; those in blocks
/// are left out. The first call in a drawing walks through it, later ones cost as much as what was
/// changed since.
std::vector<Joint> joints_of(AcDbObjectId node);

}  // namespace network
