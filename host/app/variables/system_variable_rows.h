#pragma once

#include <cstdint>
#include <span>

namespace cad {

/// What the host knows of one system variable.
struct VariableRow {
  enum class Kind : std::uint8_t { kShort, kReal, kAngle, kText, kPoint3 };
  enum class Source : std::uint8_t {
    kHeader,      ///< of the drawing; setting it lasts for the session and is not saved
    kHeaderOnly,  ///< of the drawing, which itself works with it: read-only
    kSession,
    kComputed,  ///< read-only
  };
  const char* name;
  Kind kind;
  Source source;
  const char* initial;  ///< where nothing else gives a value; numbers separated by blanks
};

std::span<const VariableRow> system_variable_rows();

}  // namespace cad
