#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/dxf/dialect.h"

namespace cad {

/// How a variable is spelled in the HEADER section.
struct HeaderVariable {
  std::string_view name;  ///< "$CLAYER"
  std::int16_t code;      ///< of its value, or of the first coordinate
  std::uint8_t values;    ///< 2 and 3 are points
  dxf::Release since;
  dxf::Release until;
};

/// In the order of the section.
std::span<const HeaderVariable> header_variables();
/// Null for a name no release has.
const HeaderVariable* find_header_variable(std::string_view name);

}  // namespace cad
