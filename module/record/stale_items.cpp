#include "module/record/stale_items.h"

#include "module/platform/opened.h"
#include "module/platform/trace.h"
#include "module/record/record_cursor.h"

namespace dim {
namespace {

using Cursor = CDimRecordIterator;

/// Why the current item is stale, as the trace has it; null for one to keep.
const wchar_t* reason_to_drop(const Cursor& cursor) {
  if (cursor.field(Cursor::posKind) == kNoEntityKind) return nullptr;
  const std::wstring_view handle = cursor.field(Cursor::posHandle);
  if (handle.empty()) return nullptr;
  const AcDbObjectId id = object_of_handle(handle.data());
  if (id.isNull()) return L"句柄-〉数据库id不成功，删除无用更新数据:%s !";
  if (!Opened<AcDbEntity>(id, AcDb::kForWrite, /*open_erased=*/true)) {
    return L"打开实体失败,删除无用更新数据:%s !";
  }
  return nullptr;
}

}  // namespace

std::optional<int> drop_stale_items(Cursor& cursor) {
  int dropped = 0;
  // Kept: after a deletion the cursor stands on the next item and steps all the same, so that one
  // waits for the next pass. Test: StaleItems.TheItemBehindADroppedOneWaitsForTheNextPass
  for (cursor.start(); !cursor.done(); cursor.step()) {
    if (!cursor.stands_on_item()) return std::nullopt;
    if (const wchar_t* reason = reason_to_drop(cursor)) {
      trace_format(reason, cursor.getDimName());
      ++dropped;
      cursor.deleteThis();  // finds the item it stands on, or one of the same name before it
    }
  }
  return dropped;
}

}  // namespace dim
