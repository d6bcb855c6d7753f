#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "labeler/list_heads.h"

namespace labeler {

/// Cells are counted up to here from the origin, in either direction; what is beyond is not filed.
/// No plan is so large.
inline constexpr double kFarthestCell = 1e9;

/// Where lists begin that belong to the square cells of a plan. Sixteen cells in a square share a
/// cache line: what lies about a label is found by one or two looks into a table.
class CellHeads {
 public:
  static constexpr std::uint32_t kNone = ListHeads::kNone;

  /// kNone of a cell that nobody has begun a list for. Several threads may ask.
  std::uint32_t head(std::int64_t column, std::int64_t row) const {
    const std::uint32_t at = places_.head(tile_of(column, row));
    return at == kNone ? kNone : tiles_[at].heads[place_in_tile(column, row)];
  }
  /// The same, faster where one cell after the other is asked for.
  std::uint32_t head(std::int64_t column, std::int64_t row) {
    const std::uint64_t tile = tile_of(column, row);
    if (tile != last_ || tiles_.empty()) {
      const std::uint32_t at = places_.head(tile);
      if (at == kNone) return kNone;
      last_ = tile;
      last_at_ = at;
    }
    return tiles_[last_at_].heads[place_in_tile(column, row)];
  }
  /// To be changed; valid until the next call.
  std::uint32_t& at(std::int64_t column, std::int64_t row) {
    const std::uint64_t tile = tile_of(column, row);
    if (tile != last_ || tiles_.empty()) {
      last_ = tile;
      last_at_ = places_.head(tile);
      if (last_at_ == kNone) {
        last_at_ = static_cast<std::uint32_t>(tiles_.size());
        places_.exchange(tile, last_at_);
        tiles_.emplace_back().heads.fill(kNone);
      }
    }
    return tiles_[last_at_].heads[place_in_tile(column, row)];
  }

 private:
  static constexpr int kShift = 2;
  static constexpr std::int64_t kSide = 1 << kShift;
  struct alignas(64) Tile {
    std::array<std::uint32_t, kSide * kSide> heads;
  };

  static std::uint64_t tile_of(std::int64_t column, std::int64_t row) {
    return static_cast<std::uint64_t>(column >> kShift) << 32 ^
           (static_cast<std::uint64_t>(row >> kShift) & 0xFFFFFFFF);
  }
  static std::size_t place_in_tile(std::int64_t column, std::int64_t row) {
    return static_cast<std::size_t>((row & (kSide - 1)) * kSide + (column & (kSide - 1)));
  }

  ListHeads places_;  // in tiles_
  std::vector<Tile> tiles_;
  // The tile looked at last: most looks are into the same one.
  std::uint64_t last_ = 0;
  std::uint32_t last_at_ = 0;
};

}  // namespace labeler
