#pragma once

#include <optional>

class CDimRecordIterator;

namespace dim {

/// Walks the cursor's items and drops those whose annotation entity cannot be opened for write any
/// more; erased entities still open. How many went; nothing is committed. Without a number the walk
/// ended at an item that cannot be read.
std::optional<int> drop_stale_items(CDimRecordIterator& cursor);

}  // namespace dim
