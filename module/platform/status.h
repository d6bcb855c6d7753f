#pragma once

#include "host/db/status.h"

/// Statuses by what they mean in this module. Callers compare the numbers.
namespace dim {

inline constexpr Acad::ErrorStatus kFailed = Acad::eNotImplementedYet;    // 1
inline constexpr Acad::ErrorStatus kBadInput = Acad::eInvalidInput;       // 3
inline constexpr Acad::ErrorStatus kNotFound = Acad::eKeyNotFound;        // 22
inline constexpr Acad::ErrorStatus kNotInDrawing = Acad::eNotInDatabase;  // 137
inline constexpr Acad::ErrorStatus kNotOpen = Acad::eNotInitializedYet;   // 374
inline constexpr auto kNotRegistered = static_cast<Acad::ErrorStatus>(20022);

}  // namespace dim
