#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/database.h"
#include "network/object_data.h"

namespace network {

/// Something in a network that whoever works with it should look at.
struct Problem {
  enum class What : std::uint8_t {
    kKind,               ///< missing or unknown
    kData,               ///< a fault of the extended data
    kNoCentreLine,       ///< a pipe that is no curve, or one without length
    kNoPosition,         ///< a node whose entity has no place
    kNoEnd,              ///< of a pipe: the data name no node, and none is near
    kNoNode,             ///< a reference that leads to no node
    kAmbiguousEnd,       ///< several nodes are equally near
    kSameNode,           ///< both ends meet one node
    kOtherNetwork,       ///< a water pipe that ends at a well, or the other way round
    kDiameter,           ///< missing, zero or negative
    kSection,            ///< a width or height that is zero or negative
    kLength,             ///< zero, negative, or no pipe's
    kInvertAboveGround,  ///< the invert of an end lies above the ground of its node
    kBottomAboveGround,  ///< the bottom of a well lies above its ground
    kFlowDirection,      ///< the values that decide it are not there
    kDuplicateNumber,    ///< two nodes of a network have one number
    kIsolated,           ///< a node where no pipe ends
  };
  What what;
  AcDbObjectId object;
  Kind kind;         ///< of the object
  std::string text;  ///< one line, UTF-8
};
/// A word for programs: "diameter", "invert-above-ground".
std::string_view problem_name(Problem::What what);

struct NetworkSurvey {
  struct Count {
    std::uint64_t objects = 0;
    double length = 0.0;  ///< of pipes, m
  };
  std::array<Count, kKindCount> counts{};  ///< by Kind; kNone: with data, but of no kind known
  std::vector<Problem> problems;           ///< in drawing order
};

/// Looks through all spaces of a drawing; what stands in blocks is left out. The drawing is not
/// changed.
NetworkSurvey survey(AcDbDatabase& database);

}  // namespace network
