#include "host/dxf/group_codes.h"

#include <gtest/gtest.h>

#include <set>

namespace cad::dxf {
namespace {

struct RangeRow {
  int first;
  int last;
  ValueType type;
};

constexpr RangeRow kRanges[] = {
    {0, 4, ValueType::kText},        {5, 5, ValueType::kHandle},
    {6, 9, ValueType::kText},        {10, 59, ValueType::kReal},
    {60, 79, ValueType::kInt16},     {90, 99, ValueType::kInt32},
    {100, 102, ValueType::kText},    {105, 105, ValueType::kHandle},
    {110, 149, ValueType::kReal},    {160, 169, ValueType::kInt64},
    {170, 179, ValueType::kInt16},   {210, 239, ValueType::kReal},
    {270, 289, ValueType::kInt16},   {290, 299, ValueType::kBool},
    {300, 309, ValueType::kText},    {310, 319, ValueType::kChunk},
    {320, 369, ValueType::kHandle},  {370, 389, ValueType::kInt16},
    {390, 399, ValueType::kHandle},  {400, 409, ValueType::kInt16},
    {410, 419, ValueType::kText},    {420, 429, ValueType::kInt32},
    {430, 439, ValueType::kText},    {440, 459, ValueType::kInt32},
    {460, 469, ValueType::kReal},    {470, 479, ValueType::kText},
    {480, 481, ValueType::kHandle},  {999, 1003, ValueType::kText},
    {1004, 1004, ValueType::kChunk}, {1005, 1005, ValueType::kHandle},
    {1010, 1059, ValueType::kReal},  {1060, 1070, ValueType::kInt16},
    {1071, 1071, ValueType::kInt32},
};

TEST(GroupCodes, EveryDocumentedCodeHasItsType) {
  for (const RangeRow& row : kRanges) {
    for (int code = row.first; code <= row.last; ++code) {
      EXPECT_EQ(value_type(code), row.type) << code;
    }
  }
}

TEST(GroupCodes, CodesOutsideTheDocumentedRangesAreText) {
  for (const int code : {-32768, -5, -1, 80, 89, 103, 109, 180, 1006, 1072, 5000, 32767}) {
    EXPECT_EQ(value_type(code), ValueType::kText) << code;
  }
}

TEST(GroupCodes, PointsBeginAtTheCodesThatHaveYAndZBehindThem) {
  const std::set<int> points = {10,  11,  12,  13,  14,  15,   16,   17,   18,
                                110, 111, 112, 210, 211, 1010, 1011, 1012, 1013};
  for (int code = -10; code <= 1100; ++code) {
    EXPECT_EQ(is_point_code(code), points.contains(code)) << code;
  }
}

}  // namespace
}  // namespace cad::dxf
