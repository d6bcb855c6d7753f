#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "host/dxf/binary_layout.h"
#include "host/dxf/group_codes.h"

/// Drawings for tests are noted with one tag per line, code and value parted by one blank:
///     "0 LINE\n5 2F\n8 0\n"
/// and spelled from that note in every form a file may have. The spelling here is by hand on
/// purpose: it checks the writer of the host instead of using it.
namespace written {

template <class Take>
void for_each_tag(std::string_view note, Take take) {
  while (!note.empty()) {
    const std::size_t end = std::min(note.find('\n'), note.size());
    const std::string_view line = note.substr(0, end);
    note.remove_prefix(std::min(end + 1, note.size()));
    if (line.empty()) continue;
    const std::size_t blank = std::min(line.find(' '), line.size());
    take(std::atoi(std::string(line.substr(0, blank)).c_str()),
         blank < line.size() ? line.substr(blank + 1) : std::string_view());
  }
}

/// Codes right-aligned to three columns.
inline std::string ascii(std::string_view note, std::string_view eol = "\n") {
  std::string out;
  for_each_tag(note, [&](int code, std::string_view value) {
    const std::string digits = std::to_string(code);
    if (digits.size() < 3) out.append(3 - digits.size(), ' ');
    out.append(digits).append(eol).append(value).append(eol);
  });
  return out;
}

/// With the 22 bytes in front that mark a binary drawing.
inline std::string binary(std::string_view note, bool one_byte_codes = false) {
  std::string out(cad::dxf::kBinarySentinel);
  const auto little = [&](std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  };
  for_each_tag(note, [&](int code, std::string_view value) {
    const std::string text(value);
    if (!one_byte_codes) {
      little(static_cast<std::uint64_t>(code), 2);
    } else if (code < 255) {
      little(static_cast<std::uint64_t>(code), 1);
    } else {
      little(255, 1);
      little(static_cast<std::uint64_t>(code), 2);
    }
    using cad::dxf::ValueType;
    switch (cad::dxf::value_type(code)) {
      case ValueType::kText:
      case ValueType::kHandle:
        out.append(value).push_back('\0');
        break;
      case ValueType::kReal: {
        const double number = std::strtod(text.c_str(), nullptr);
        std::uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        little(bits, 8);
        break;
      }
      case ValueType::kInt16:
        little(static_cast<std::uint64_t>(std::atoll(text.c_str())), 2);
        break;
      case ValueType::kInt32:
        little(static_cast<std::uint64_t>(std::atoll(text.c_str())), 4);
        break;
      case ValueType::kInt64:
        little(static_cast<std::uint64_t>(std::atoll(text.c_str())), 8);
        break;
      case ValueType::kBool:
        little(static_cast<std::uint64_t>(std::atoll(text.c_str())), 1);
        break;
      case ValueType::kChunk:
        little(text.size() / 2, 1);
        for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
          little(std::strtoull(text.substr(i, 2).c_str(), nullptr, 16), 1);
        }
        break;
    }
  });
  return out;
}

}  // namespace written
