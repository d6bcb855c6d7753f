#pragma once

#include <utility>
#include <vector>

#include "module/platform/foundation.h"

class CDimRecordIterator;

namespace dim {

/// What a text entity is to show: its handle as the items spell it, and the whole text.
using TextMark = std::pair<CString, CString>;

/// The texts that a record's items make, one for every handle among its text items, ordered by
/// handle text (code units; two spellings of a handle are two texts). The pieces of a text stand in
/// the order of their items: prefix, value and suffix, or nothing where the value is empty, and
/// behind all but the last the piece's separator.
/// False, and no marks, when an item is not whole. Moves the cursor.
bool make_text_marks(CDimRecordIterator& cursor, std::vector<TextMark>& marks);

}  // namespace dim
