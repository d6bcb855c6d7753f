#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace bench {

/// The floor every reader of a drawing stands on: its lines, counted one memchr() each.
inline std::size_t count_lines(std::string_view bytes) {
  const char* at = bytes.data();
  const char* const end = at + bytes.size();
  std::size_t lines = 0;
  while (at != end) {
    const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    if (!found) break;
    ++lines;
    at = static_cast<const char*>(found) + 1;
  }
  return lines;
}

}  // namespace bench
