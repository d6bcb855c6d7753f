#include "bench/generate/network.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>

namespace bench {
namespace {

constexpr std::uint64_t kWellsPerRow = kPipesPerRow + 1;
constexpr double kWellRadius = 0.35;
constexpr double kFall = 0.06;   ///< from well to well, m
constexpr double kGround = 3.0;  ///< above the invert at the well, m

enum class System { kDrainage, kStorm, kWater };
struct SystemRow {
  const char* pipe;
  const char* node;
  const char* prefix;
};
constexpr SystemRow kSystems[] = {{"drainage-pipe", "drainage-well", "W"},
                                  {"storm-pipe", "storm-well", "Y"},
                                  {"water-pipe", "water-node", "J"}};

System system_of_row(std::uint64_t row) { return static_cast<System>(row % 3); }
const SystemRow& words_of(System system) { return kSystems[static_cast<std::size_t>(system)]; }

struct Place {
  double x, y;
};

/// Wells stand off the grid by up to 10 units, as streets do.
Place place_of(std::uint64_t row, std::uint64_t column) {
  const std::uint64_t random = mixed(row * kWellsPerRow + column);
  const auto off = [](std::uint64_t bits) {
    return static_cast<double>(bits % 2001) / 100.0 - 10.0;
  };
  return {static_cast<double>(column) * kSpacing + off(random),
          static_cast<double>(row) * kSpacing + off(random >> 32)};
}

double hundredth(double value) { return std::round(value * 100.0) / 100.0; }

/// Invert, or head, at a well: falling along the row.
double level_at(std::uint64_t column) {
  return hundredth(kFall * static_cast<double>(kWellsPerRow - column));
}

void text_pair(DxfOutput& out, const char* key, std::string_view value) {
  out.text(1000, key);
  out.text(1000, value);
}
void real_pair(DxfOutput& out, const char* key, double value) {
  out.text(1000, key);
  out.real(1040, value);
}
void handle_pair(DxfOutput& out, const char* key, std::uint64_t value) {
  out.text(1000, key);
  out.handle(1005, value);
}

}  // namespace

std::uint64_t Network::wells() const {
  return pipes_ + (pipes_ + kPipesPerRow - 1) / kPipesPerRow;  // a row has one more than pipes
}

std::uint64_t Network::first_free_handle() const {
  return kFirstPipeHandle + pipes_ * kHandlesPerPipe + wells();
}

Pipe Network::pipe_at(std::uint64_t number) const {
  Pipe pipe = bench::pipe_at(number);
  const std::uint64_t row = number / kPipesPerRow, column = number % kPipesPerRow;
  const Place from = place_of(row, column), to = place_of(row, column + 1);
  pipe.x1 = from.x;
  pipe.y1 = from.y;
  pipe.x2 = to.x;
  pipe.y2 = to.y;
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.1f", std::hypot(to.x - from.x, to.y - from.y));
  pipe.length = text.data();
  return pipe;
}

void Network::write_pipe_data(DxfOutput& out, std::uint64_t number) const {
  const std::uint64_t row = number / kPipesPerRow, column = number % kPipesPerRow;
  const System system = system_of_row(row);
  out.text(1001, "PIPENOTE");
  text_pair(out, "kind", words_of(system).pipe);
  if (number % 4 != 3) {
    const std::uint64_t first = kFirstPipeHandle + pipes_ * kHandlesPerPipe;
    handle_pair(out, "start_node", first + row * kWellsPerRow + column);
    handle_pair(out, "end_node", first + row * kWellsPerRow + column + 1);
  }
  real_pair(out, "diameter", bench::pipe_at(number).diameter);
  out.text(1000, "material");
  out.integer(1070, static_cast<std::int64_t>(number % 5 + 1));
  text_pair(out, "code", words_of(system).prefix);
  if (system == System::kWater) {
    out.text(1000, "head_case");
    out.integer(1070, 1);
    real_pair(out, "start_head_1", 30.0 + level_at(column));
    real_pair(out, "end_head_1", 30.0 + level_at(column + 1));
  } else {
    real_pair(out, "start_invert", level_at(column));
    real_pair(out, "end_invert", level_at(column + 1));
  }
}

void Network::write_well(DxfOutput& out, std::uint64_t well, std::uint64_t model_space) const {
  const std::uint64_t row = well / kWellsPerRow, column = well % kWellsPerRow;
  const SystemRow& words = words_of(system_of_row(row));
  const Place place = place_of(row, column);
  const double bottom = level_at(column);
  out.text(0, "CIRCLE");
  out.handle(5, kFirstPipeHandle + pipes_ * kHandlesPerPipe + well);
  out.handle(330, model_space);
  out.text(100, "AcDbEntity");
  out.text(8, kPipeLayer);
  out.text(100, "AcDbCircle");
  out.point(10, place.x, place.y);
  out.real(40, kWellRadius);
  out.text(1001, "PIPENOTE");
  text_pair(out, "kind", words.node);
  text_pair(out, "number", std::to_string(well + 1));
  text_pair(out, "prefix", words.prefix);
  real_pair(out, "ground", hundredth(bottom + kGround));
  real_pair(out, "bottom", bottom);
}

}  // namespace bench
