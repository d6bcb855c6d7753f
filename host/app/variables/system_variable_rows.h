#pragma once

#include <cstdint>
#include <span>

namespace cad {

/// What the host knows of one system variable.
struct VariableRow {
  enum class Kind : std::uint8_t { kShort, kReal, kAngle, kText, kPoint2, kPoint3 };
  enum class Source : std::uint8_t {
    kHeader,      ///< of the drawing, saved with it
    kHeaderOnly,  ///< of the drawing; programs cannot set it
    kSession,
    kComputed,  ///< found out when asked; programs cannot set it
  };
  const char* name;
  Kind kind;
  Source source;
  const char* initial;  ///< where nothing else gives a value; numbers separated by blanks
  double least = 0;     ///< bounds of a number; equal ones are none
  double most = 0;
  const char* table = "";  ///< the value names a record of that table
};

std::span<const VariableRow> system_variable_rows();

}  // namespace cad
