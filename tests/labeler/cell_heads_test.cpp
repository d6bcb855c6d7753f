#include "labeler/cell_heads.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace labeler {
namespace {

TEST(CellHeads, ACellThatNobodyBeganAListForHasNone) {
  CellHeads heads;
  EXPECT_EQ(heads.head(0, 0), CellHeads::kNone);
  heads.at(0, 0) = 7;
  EXPECT_EQ(heads.head(0, 0), 7u);
  EXPECT_EQ(heads.head(1, 0), CellHeads::kNone) << "its neighbour";
  EXPECT_EQ(heads.head(0, 1), CellHeads::kNone);
  EXPECT_EQ(heads.head(-1, -1), CellHeads::kNone) << "beyond the origin";
  EXPECT_EQ(heads.at(100, 100), CellHeads::kNone);
}

TEST(CellHeads, CellsAtTheEndsOfThePlanAreOnesOfTheirOwn) {
  constexpr auto kFar = static_cast<std::int64_t>(kFarthestCell);
  CellHeads heads;
  std::uint32_t next = 0;
  for (const std::int64_t column : {-kFar, std::int64_t{0}, kFar})
    for (const std::int64_t row : {-kFar, std::int64_t{0}, kFar}) heads.at(column, row) = next++;
  next = 0;
  for (const std::int64_t column : {-kFar, std::int64_t{0}, kFar})
    for (const std::int64_t row : {-kFar, std::int64_t{0}, kFar})
      EXPECT_EQ(heads.head(column, row), next++);
}

RC_GTEST_PROP(CellHeads, AreThoseOfAMap,
              (const std::vector<std::pair<std::int8_t, std::int8_t>>& cells)) {
  CellHeads heads;
  std::map<std::pair<std::int64_t, std::int64_t>, std::uint32_t> expected;
  std::uint32_t next = 0;
  for (const auto& [column, row] : cells) {
    const auto there = expected.find({column, row});
    const std::uint32_t before = there == expected.end() ? CellHeads::kNone : there->second;
    RC_ASSERT(heads.head(column, row) == before);
    RC_ASSERT(heads.at(column, row) == before);
    heads.at(column, row) = next;
    expected[{column, row}] = next++;
  }
  for (const auto& [cell, head] : expected) RC_ASSERT(heads.head(cell.first, cell.second) == head);
}

}  // namespace
}  // namespace labeler
