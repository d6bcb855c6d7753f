#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/base/result.h"
#include "network/model/network_model.h"

class AcDbDatabase;

namespace network {

/// What the pipes of a model carry; a model of EPANET always carries water.
enum class PipeSystem : std::uint8_t { kWater, kDrainage, kStorm };

struct ModelDrawingOptions {
  std::optional<double> map_unit;    ///< metres of one map unit, in place of the file's word
  std::optional<PipeSystem> system;  ///< of a sewer
  int scale = 500;                   ///< 1:scale, for the size of symbols and texts
};

struct ModelDrawingReport {
  struct Count {
    std::string what;  ///< "junctions", "valves"
    std::size_t count = 0;
  };
  PipeSystem system = PipeSystem::kWater;
  double map_unit = 1.0;
  std::string map_unit_from;  ///< where the unit was taken from, for people
  std::vector<Count> made;    ///< by kind, those that are not zero
};

/// Draws the model at the end of the current space: pipes as curves and nodes as block references,
/// with the extended data by which the pipe library knows them, in metres, on a layer for each
/// kind. Links that are no pipes (pumps, valves, weirs) are drawn with a symbol and carry only
/// their name. Nodes without place, and links to them, are left out and told in the model's faults.
cad::Result<ModelDrawingReport> draw_model(NetworkModel& model, AcDbDatabase& database,
                                           const ModelDrawingOptions& options);

}  // namespace network
