#pragma once

#include <string_view>

#include "module/platform/resbuf.h"
#include "module/record/dim_item.h"

/// Items in a buffer chain: eight text buffers each, one item behind the other, nothing between.
/// `first` is an item's buffer of position 0. A chain from a damaged drawing may end within an
/// item; such a rest is never read as an item.
namespace dim {

/// Whether all eight buffers are there.
bool is_whole_item(const resbuf* first);

/// Text at a position of enum CDimRecordIterator::EnDimPos, null-terminated; empty for a buffer
/// that holds no text or is not there.
std::wstring_view item_field(const resbuf* first, int position);

/// Copies the item into `item`; false, and nothing copied, when it is not whole.
bool read_item(const resbuf* first, StuDim& item);

/// The eight buffers of an item, owned by the caller.
resbuf* new_item(const StuDim& item);

/// Whether the item is a piece of a text that is regenerated: it describes an entity, its value is
/// not just its name, and there is something to write.
bool is_text_item(const resbuf* first);
/// The same by the item's fields.
inline bool is_text_item(std::wstring_view name, std::wstring_view prefix, std::wstring_view value,
                         std::wstring_view suffix, std::wstring_view kind) {
  return kind.empty() && value != name && !(value.empty() && prefix.empty() && suffix.empty());
}

/// The link that leads to the buffer of the given position, which is the item behind for position
/// 8; `first` itself for position 0. In an item that is not whole at most its last link.
resbuf*& link_to(resbuf*& first, int position);

/// The links of a chain around one item.
struct ItemPlace {
  resbuf* previous = nullptr;   ///< the item before; null for the first item
  resbuf* found = nullptr;      ///< null when no whole item has the name
  resbuf* following = nullptr;  ///< what stands behind the found item
};

/// The first whole item of that name, letter case ignored. Without one, `previous` is the last
/// whole item.
ItemPlace find_item(resbuf* head, std::wstring_view name);

}  // namespace dim
