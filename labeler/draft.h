#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "labeler/owner.h"
#include "labeler/piece.h"

namespace labeler {

/// How a label lies about its owner.
enum class Form : std::uint8_t {
  kAlongMiddle,  ///< along the pipe, on both sides of it
  kAtStart,      ///< along the pipe, from its start on
  kAtEnd,        ///< along the pipe, up to its end
  kBesideNode,   ///< lines one below the other beside the node
  kOnLeader,     ///< the same at the end of a leader
  kStakes,       ///< across the route, each line with a tick of its own
};

/// How a well/pipe label lies about its well: the placement items that its record keeps and
/// jgbzUpInfo returns. The distance is in drawing units, angles are radians.
struct LeaderPlacement {
  CString stake_name;       ///< "zh_mc"; empty: none
  double leader_angle = 0;  ///< "ang_yx"
  double distance = 0;      ///< "dist_jgbz"
  double text_angle = 0;    ///< "ang_wz"
  CString stake_type;       ///< "czfx_jgbz"; empty: none
  CString program;          ///< "xfdh"
};

/// What a label says: everything but its place. Made of the owner's data and the settings alone.
struct Draft {
  Form form = Form::kAlongMiddle;
  std::vector<TextLine> lines;
  std::size_t above = 1;       ///< kAlongMiddle: how many of the lines stand above the pipe
  bool in_a_row = false;       ///< kAlongMiddle: lines behind each other instead
  int flow = 0;                ///< an arrow: 1 along the centre line, -1 against it; 0 none
  std::vector<double> stakes;  ///< kStakes: the place of each line along the route, m
  LeaderPlacement leader;      ///< kOnLeader
  std::vector<StuDim> notes;   ///< information items, but those of the leader
};

/// A draft, or why there is none: nullptr when it is nothing to tell.
struct Drafted {
  std::optional<Draft> draft;
  const wchar_t* why_not = nullptr;
};

/// An information item.
StuDim note_of(const wchar_t* name, CString value);

}  // namespace labeler
