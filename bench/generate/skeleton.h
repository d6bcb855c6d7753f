#pragma once

#include <cstdint>

#include "bench/generate/dxf_output.h"

namespace bench {

/// Handle of the *Model_Space block record, owner of every entity.
inline constexpr std::uint64_t kModelSpace = 0x1F;

/// HEADER, CLASSES, TABLES and BLOCKS of a drawing that will hold that many pipes.
void write_up_to_blocks(DxfOutput& out, std::uint64_t pipes, std::uint64_t first_free_handle);

/// The objects every drawing has: root dictionary first, then groups, layouts and plot styles.
void write_root_objects(DxfOutput& out);

}  // namespace bench
