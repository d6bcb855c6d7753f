#pragma once

#include <string_view>
#include <vector>

#include "host/dxf/tag_reader.h"

namespace cad {

/// Puts the tags of a record of R12, which has no class markers, in the order and under the markers
/// that later releases want: markers are tags of code 100 of this list's own. What no part of the
/// kind knows goes into the last one. Frame and extended data are not among `tags`. A kind that is
/// not known stays as it is.
std::vector<dxf::Tag> with_class_parts(std::string_view kind, std::vector<dxf::Tag> tags,
                                       const dxf::Dialect& dialect);

}  // namespace cad
