#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include "host/dxf/dialect.h"
#include "host/dxf/group_codes.h"

namespace cad::dxf {

/// Binary drawings begin with these 22 bytes.
inline constexpr std::string_view kBinarySentinel{"AutoCAD Binary DXF\r\n\x1a\0", 22};

/// Bytes of a binary value whose length the code fixes; 0 for text and chunks.
constexpr std::size_t fixed_size(ValueType type) {
  switch (type) {
    case ValueType::kReal:
    case ValueType::kInt64:
      return 8;
    case ValueType::kInt32:
      return 4;
    case ValueType::kInt16:
      return 2;
    case ValueType::kBool:
      return 1;
    case ValueType::kText:
    case ValueType::kHandle:
    case ValueType::kChunk:
      break;
  }
  return 0;
}

/// Where one binary tag lies, in offsets from the start of the bytes.
struct BinaryTag {
  int code;
  std::size_t value_begin;
  std::size_t value_end;  ///< behind the payload
  std::size_t end;        ///< behind the tag
};

/// The tag that begins at `position`; nothing when the bytes end inside it.
inline std::optional<BinaryTag> binary_tag_at(std::string_view bytes, std::size_t position,
                                              bool one_byte_codes) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const auto left = [&](std::size_t at) { return bytes.size() - at; };
  BinaryTag tag{};
  if (one_byte_codes) {
    if (left(position) < 1) return std::nullopt;
    tag.code = byte(position++);
    if (tag.code == 255) {  // extended data: the code follows in two bytes
      if (left(position) < 2) return std::nullopt;
      tag.code = byte(position) | byte(position + 1) << 8;
      position += 2;
    }
  } else {
    if (left(position) < 2) return std::nullopt;
    tag.code = static_cast<std::int16_t>(byte(position) | byte(position + 1) << 8);
    position += 2;
  }
  const ValueType type = value_type(tag.code);
  if (type == ValueType::kText || type == ValueType::kHandle) {
    const std::size_t null = bytes.find('\0', position);
    if (null == std::string_view::npos) return std::nullopt;
    tag.value_begin = position;
    tag.value_end = null;
    tag.end = null + 1;
    return tag;
  }
  std::size_t size = fixed_size(type);
  if (type == ValueType::kChunk) {
    if (left(position) < 1) return std::nullopt;
    size = byte(position++);
  }
  if (left(position) < size) return std::nullopt;
  tag.value_begin = position;
  tag.value_end = tag.end = position + size;
  return tag;
}

}  // namespace cad::dxf
