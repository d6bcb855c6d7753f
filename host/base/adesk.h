#pragma once

#include <cstdint>

/// The host's names for plain numbers.
namespace Adesk {
using Boolean = bool;
using Int16 = std::int16_t;
using UInt16 = std::uint16_t;
using Int32 = std::int32_t;
using UInt32 = std::uint32_t;
using LongPtr = std::intptr_t;
inline constexpr Boolean kFalse = false;
inline constexpr Boolean kTrue = true;
}  // namespace Adesk
