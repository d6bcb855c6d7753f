#pragma once

#include <span>
#include <vector>

#include "labeler/draft.h"
#include "module/platform/joints.h"

/// Labels of wells and other nodes.
namespace labeler {

using JoinedPipe = network::Joint;

/// Well number ("bjbh").
Drafted draft_number(const Owner& node);
/// Number, flow, ground elevation, free head and its height ("pcjdb").
Drafted draft_node_calculation(const Owner& node);
/// The well's number and elevations, then diameter and invert of each pipe ("bzjg").
Drafted draft_well_and_pipes(const Owner& node, std::span<const JoinedPipe> pipes,
                             const LeaderPlacement& placement);

/// The placement as information items and back. What the items lack stays as it was. False when
/// they hold none at all.
std::vector<StuDim> notes_of(const LeaderPlacement& placement);
bool read_notes(std::span<const StuDim> items, LeaderPlacement& placement);

}  // namespace labeler
