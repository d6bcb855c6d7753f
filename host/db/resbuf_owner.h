#pragma once

#include <cstdint>

#include "host/db/resbuf.h"

namespace cad {

/// Buffers that belong to the host, as the arguments of a LISP call do: acutRelRb() leaves them
/// alone. The bounds enclose them all, so that other buffers cost two comparisons.
struct HostBuffers {
  std::uintptr_t begin = UINTPTR_MAX;
  std::uintptr_t end = 0;
  bool (*owns)(const resbuf* buffer) = nullptr;  ///< asked within the bounds

  bool contains(const resbuf* buffer) const {
    const auto address = reinterpret_cast<std::uintptr_t>(buffer);
    return address >= begin && address < end && owns(buffer);
  }
};
inline HostBuffers host_buffers;

/// A buffer holding plain ASCII as wide text, made with one allocation.
resbuf* new_ascii_buffer(short type, std::string_view text);

}  // namespace cad
