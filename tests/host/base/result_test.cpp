#include "host/base/result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace cad {
namespace {

Result<int> valve_count(const std::string& layer) {
  if (layer.empty()) return fail("plan.dxf:310", "layer name is empty");
  return 7;
}

Status check(bool fine) {
  if (!fine) return fail("", "no pipe chosen");
  return {};
}

struct Shape {
  virtual ~Shape() = default;
};
struct Circle : Shape {};

TEST(Result, HoldsTheValue) {
  const Result<int> count = valve_count("ZY-标注");
  ASSERT_TRUE(count);
  EXPECT_EQ(count.value(), 7);
  EXPECT_EQ(*count, 7);
}

TEST(Result, HoldsTheReasonInsteadOfTheValue) {
  const Result<int> count = valve_count("");
  ASSERT_FALSE(count);
  EXPECT_EQ(count.error().message(), "plan.dxf:310: layer name is empty");
}

TEST(Result, AnErrorWithoutAPlaceIsItsTextAlone) {
  EXPECT_EQ(check(false).error().message(), "no pipe chosen");
}

TEST(Result, AStatusIsSuccessUnlessAnErrorIsGiven) { EXPECT_TRUE(check(true)); }

TEST(Result, AValueThatCannotBeCopiedIsMovedOut) {
  Result<std::unique_ptr<std::string>> name = std::make_unique<std::string>("DN300");
  ASSERT_TRUE(name);
  EXPECT_EQ(**name, "DN300");
  const std::unique_ptr<std::string> taken = std::move(name).value();
  EXPECT_EQ(*taken, "DN300");
}

TEST(Result, TakesWhatConvertsToTheValue) {
  const Result<std::unique_ptr<Shape>> shape = std::make_unique<Circle>();
  EXPECT_TRUE(shape);
  const Result<std::string> text = "d300";
  EXPECT_EQ(text->size(), 4u);
}

TEST(Result, AFalseBooleanIsAValue) {
  const Result<bool> closed = false;
  ASSERT_TRUE(closed);
  EXPECT_FALSE(*closed);
}

}  // namespace
}  // namespace cad
