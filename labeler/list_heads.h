#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace labeler {

/// Where lists begin, by a number that names the list: a hash table in one piece of memory. A plan
/// has hundreds of thousands of short lists; a container for each would cost more than its
/// contents.
class ListHeads {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// kNone for a list that is not there.
  std::uint32_t head(std::uint64_t list) const {
    return rows_.empty() ? kNone : rows_[row_of(list)].head;
  }
  /// Makes `head` the beginning, and returns what it was.
  std::uint32_t exchange(std::uint64_t list, std::uint32_t head) {
    if (2 * (used_ + 1) > rows_.size()) grow();
    Row& row = rows_[row_of(list)];
    used_ += row.head == kNone;
    row.list = list;
    const std::uint32_t before = row.head;
    row.head = head;
    return before;
  }

 private:
  /// Lists with numbers in a row are asked for in a row: so many share a cache line.
  static constexpr std::uint64_t kTogether = 4;
  struct Row {
    std::uint64_t list = 0;
    std::uint32_t head = kNone;
  };

  /// The row of the list, else the free one where it belongs. There always are free rows.
  std::size_t row_of(std::uint64_t list) const {
    const std::size_t mask = rows_.size() - 1;
    std::uint64_t hash = list / kTogether * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 32;
    std::size_t at = static_cast<std::size_t>(hash * kTogether + list % kTogether) & mask;
    while (rows_[at].head != kNone && rows_[at].list != list) at = (at + 1) & mask;
    return at;
  }
  void grow() {
    constexpr std::size_t kFirst = 1024;
    std::vector<Row> old(rows_.empty() ? kFirst : 2 * rows_.size());
    old.swap(rows_);
    for (const Row& row : old)
      if (row.head != kNone) rows_[row_of(row.list)] = row;
  }

  std::vector<Row> rows_;  // a power of two
  std::size_t used_ = 0;
};

}  // namespace labeler
