#pragma once

class CDimRecordIterator;

namespace dim {

/// Walks the cursor's items and drops those whose annotation entity cannot be opened any more;
/// erased entities still open. Nothing is committed. False, and the walk ends there, at an item
/// that cannot be read.
bool drop_stale_items(CDimRecordIterator& cursor);

}  // namespace dim
