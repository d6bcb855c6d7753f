#include "labeler/list_heads.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace labeler {
namespace {

TEST(Heads, AListThatNobodyBeganHasNone) {
  ListHeads heads;
  EXPECT_EQ(heads.head(0), ListHeads::kNone);
  EXPECT_EQ(heads.exchange(1, 5), ListHeads::kNone);
  EXPECT_EQ(heads.head(0), ListHeads::kNone);
  EXPECT_EQ(heads.head(1), 5u);
}

TEST(Heads, ManyListsKeepTheirsWhileTheTableGrows) {
  ListHeads heads;
  constexpr std::uint64_t kLists = 100'000;
  for (std::uint64_t list = 0; list < kLists; ++list)
    heads.exchange(list << 32, static_cast<std::uint32_t>(list));
  for (std::uint64_t list = 0; list < kLists; ++list)
    ASSERT_EQ(heads.head(list << 32), static_cast<std::uint32_t>(list));
}

RC_GTEST_PROP(Heads, AreThoseOfAMap, (const std::vector<std::pair<std::uint8_t, bool>>& steps)) {
  ListHeads heads;
  std::unordered_map<std::uint64_t, std::uint32_t> expected;
  std::uint32_t next = 0;
  for (const auto& [number, far] : steps) {
    const std::uint64_t list = far ? ~std::uint64_t{number} : number;
    const auto there = expected.find(list);
    const std::uint32_t before = there == expected.end() ? ListHeads::kNone : there->second;
    RC_ASSERT(heads.head(list) == before);
    RC_ASSERT(heads.exchange(list, next) == before);
    expected[list] = next++;
  }
}

}  // namespace
}  // namespace labeler
