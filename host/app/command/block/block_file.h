#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/base/result.h"
#include "host/db/database.h"

namespace cad {

/// What is typed for a block that may come from a drawing file: "WELL", "WELL=symbols/w1.dwg",
/// "symbols/w1" or "WELL=", which is the file of the same name.
struct BlockSource {
  std::wstring name;                ///< of the block
  std::optional<std::string> file;  ///< where it is on disk; none when there is no such file
  bool wants_file = false;          ///< a file was named, not only a block
};
BlockSource block_source(std::wstring_view typed);

/// Makes the drawing file a block of that name; one there is gets the new contents.
Result<AcDbObjectId> block_from_file(AcDbDatabase& database, std::wstring_view name,
                                     const std::string& file);

}  // namespace cad
