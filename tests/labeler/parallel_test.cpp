#include "labeler/parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <stdexcept>
#include <vector>

namespace labeler {
namespace {

TEST(Parallel, EveryTurnIsDoneOnce) {
  for (const std::size_t count : {0, 1, 255, 256, 257, 10'000}) {
    std::vector<std::atomic<int>> done(count);
    in_parallel(count, [&](std::size_t begin, std::size_t end) {
      ASSERT_LT(begin, end);
      for (std::size_t i = begin; i < end; ++i) ++done[i];
    });
    for (const std::atomic<int>& times : done) EXPECT_EQ(times, 1) << "of " << count;
  }
}

TEST(Parallel, AnExceptionIsThrownOnWhenAllHaveEnded) {
  std::atomic<int> at_work = 0;
  const auto fail = [&](std::size_t begin, std::size_t) {
    ++at_work;
    if (begin >= 512) {
      --at_work;
      throw std::runtime_error("piece");
    }
    --at_work;
  };
  EXPECT_THROW(in_parallel(100'000, fail), std::runtime_error);
  EXPECT_EQ(at_work, 0);
}

}  // namespace
}  // namespace labeler
