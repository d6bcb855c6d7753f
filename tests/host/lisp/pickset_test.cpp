#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "host/lisp/interpreter.h"

namespace {

using cad::lisp::Interpreter;
using cad::lisp::LispError;
using cad::lisp::Pickset;
using cad::lisp::Value;

std::vector<std::uint64_t> members(const Pickset& set) {
  return {set.enames.begin(), set.enames.end()};
}

TEST(Pickset, KeepsTheOrderInWhichMembersWereAdded) {
  Interpreter interp{cad::lisp::Services()};
  const Value value = interp.pickset();
  Pickset& set = *value.pickset();
  EXPECT_TRUE(set.add(3));
  EXPECT_TRUE(set.add(1));
  EXPECT_FALSE(set.add(3));
  EXPECT_FALSE(set.add(0));
  EXPECT_TRUE(set.remove(3));
  EXPECT_FALSE(set.remove(3));
  EXPECT_TRUE(set.add(3));
  EXPECT_EQ(members(set), (std::vector<std::uint64_t>{1, 3}));
}

TEST(Pickset, AgreesWithAPlainListWhateverIsDone) {
  Interpreter interp{cad::lisp::Services()};
  const Value value = interp.pickset();
  Pickset& set = *value.pickset();
  std::vector<std::uint64_t> plain;
  std::mt19937 random(1);
  for (int step = 0; step < 20'000; ++step) {
    const std::uint64_t member = 1 + random() % 300;
    const auto found = std::find(plain.begin(), plain.end(), member);
    if (random() % 5 < 3) {
      EXPECT_EQ(set.add(member), found == plain.end());
      if (found == plain.end()) plain.push_back(member);
    } else {
      EXPECT_EQ(set.remove(member), found != plain.end());
      if (found != plain.end()) plain.erase(found);
    }
    ASSERT_EQ(set.enames.size(), plain.size());
    if (plain.empty()) continue;
    const std::size_t i = random() % plain.size();
    ASSERT_EQ(set.enames[i], plain[i]) << "step " << step;
    ASSERT_EQ(set.enames.contains(member),
              std::find(plain.begin(), plain.end(), member) != plain.end());
  }
  EXPECT_EQ(members(set), plain);
}

TEST(Pickset, ManyMembersGoInAnyOrderWithoutWaiting) {
  Interpreter interp{cad::lisp::Services()};
  const Value value = interp.pickset();
  Pickset& set = *value.pickset();
  constexpr std::uint64_t kMany = 100'000;
  std::vector<std::uint64_t> all(kMany);
  for (std::uint64_t i = 0; i < kMany; ++i) all[i] = i + 1;
  set.assign(all);
  // Every second one, as programs do that go by number and delete as they go.
  for (std::size_t i = 0; i < set.enames.size(); ++i) set.remove(set.enames[i]);
  EXPECT_EQ(set.enames.size(), kMany / 2);
  EXPECT_EQ(set.enames[1], 4U);
  while (!set.enames.empty()) set.remove(set.enames[0]);
}

TEST(Pickset, MembersCountAgainstTheMemoryLimit) {
  Interpreter interp{cad::lisp::Services()};
  const std::size_t before = interp.heap().live_bytes();
  {
    const Value value = interp.pickset();
    for (std::uint64_t i = 1; i <= 1000; ++i) value.pickset()->add(i);
    EXPECT_GT(interp.heap().live_bytes(), before + 1000 * sizeof(std::uint64_t));
    interp.heap().set_limit(interp.heap().live_bytes());
    EXPECT_THROW(value.pickset()->add(2000), LispError);
    EXPECT_EQ(value.pickset()->enames.size(), 1000U);
  }
  EXPECT_EQ(interp.heap().live_bytes(), before);
}

}  // namespace
