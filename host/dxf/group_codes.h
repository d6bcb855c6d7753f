#pragma once

#include <array>
#include <cstdint>

namespace cad::dxf {

/// What a tag's value is, by its group code. Decides the spelling of numbers in ASCII files and
/// the bytes in binary ones.
enum class ValueType : std::uint8_t {
  kText,
  kHandle,  ///< hexadecimal text that names an object
  kReal,
  kInt16,
  kInt32,
  kInt64,
  kBool,   ///< one byte in binary files
  kChunk,  ///< bytes, hexadecimal in ASCII files, at most 127 of them
};

inline constexpr int kLastGroupCode = 1071;

namespace detail {

struct CodeRange {
  int first;
  int last;
  ValueType type;
};

// Later rows override earlier ones.
inline constexpr CodeRange kCodeRanges[] = {
    {0, kLastGroupCode, ValueType::kText}, {10, 59, ValueType::kReal},
    {60, 79, ValueType::kInt16},           {90, 99, ValueType::kInt32},
    {110, 149, ValueType::kReal},          {160, 169, ValueType::kInt64},
    {170, 179, ValueType::kInt16},         {210, 239, ValueType::kReal},
    {270, 289, ValueType::kInt16},         {290, 299, ValueType::kBool},
    {310, 319, ValueType::kChunk},         {320, 369, ValueType::kHandle},
    {370, 389, ValueType::kInt16},         {390, 399, ValueType::kHandle},
    {400, 409, ValueType::kInt16},         {420, 429, ValueType::kInt32},
    {440, 459, ValueType::kInt32},         {460, 469, ValueType::kReal},
    {480, 481, ValueType::kHandle},        {5, 5, ValueType::kHandle},
    {105, 105, ValueType::kHandle},        {1004, 1004, ValueType::kChunk},
    {1005, 1005, ValueType::kHandle},      {1010, 1059, ValueType::kReal},
    {1060, 1070, ValueType::kInt16},       {1071, 1071, ValueType::kInt32},
};

constexpr std::array<ValueType, kLastGroupCode + 1> make_value_types() {
  std::array<ValueType, kLastGroupCode + 1> types{};
  for (const CodeRange& range : kCodeRanges) {
    for (int code = range.first; code <= range.last; ++code) {
      types[static_cast<std::size_t>(code)] = range.type;
    }
  }
  return types;
}

inline constexpr auto kValueTypes = make_value_types();

}  // namespace detail

/// Codes outside the documented range count as text.
constexpr ValueType value_type(int code) {
  return code >= 0 && code <= kLastGroupCode ? detail::kValueTypes[static_cast<std::size_t>(code)]
                                             : ValueType::kText;
}

/// Codes of the first coordinate of a point; y and z follow at code + 10 and code + 20.
constexpr bool is_point_code(int code) {
  return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 || code == 211 ||
         (code >= 1010 && code <= 1013);
}

}  // namespace cad::dxf
