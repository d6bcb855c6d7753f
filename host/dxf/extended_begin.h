#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace cad::dxf {

/// Where extended data begins in a record of an ASCII file, its size when there is none: found
/// without reading tag by tag, sixteen bytes at a time. Nothing when that takes a reader: the code
/// 1001 is padded, or the last line is not whole.
std::optional<std::size_t> extended_data_begin(std::string_view record);

}  // namespace cad::dxf
