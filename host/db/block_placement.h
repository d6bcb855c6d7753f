#pragma once

#include <optional>
#include <string_view>

#include "host/db/object_id.h"
#include "host/dxf/dialect.h"
#include "host/geometry/matrix3d.h"

namespace cad {

class Drawing;

/// A block as an entity shows it: one, or rows and columns of it.
struct BlockPlacement {
  AcDbObjectId block;  ///< its BLOCK
  AcGeMatrix3d map;    ///< from the block's coordinates, of the first one
  AcGeVector3d column_step;
  AcGeVector3d row_step;
  int columns = 1;
  int rows = 1;

  AcGeMatrix3d map_of(int column, int row) const {
    AcGeMatrix3d moved = map;
    return moved.setTranslation(map.translation() + column_step * column + row_step * row);
  }
};

/// Whether entities of that kind show a block: INSERT, dimensions, tables.
bool shows_block(std::string_view kind);

/// Nothing for other kinds, and when the drawing has no such block.
std::optional<BlockPlacement> block_placement(std::string_view kind, std::string_view record,
                                              const dxf::Dialect& dialect, Drawing& drawing);

}  // namespace cad
