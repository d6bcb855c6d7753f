#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "module/record/item_layout.h"

namespace dim {

/// Items to be stored, as views of texts that live elsewhere: a StuDim owns every one of its
/// fields, which is much memory for items that are written once.
class ItemTexts {
 public:
  void clear() { texts_.clear(); }
  void add(const StuDim& item) {
    for (CString StuDim::*field : kItemLayout) texts_.push_back(item.*field);
  }
  /// A piece of a text.
  void add_piece(std::wstring_view name, std::wstring_view handle, std::wstring_view prefix,
                 std::wstring_view value, std::wstring_view suffix, std::wstring_view separator) {
    texts_.insert(texts_.end(), {name, handle, prefix, value, suffix, separator, {}, {}});
  }
  /// What has an entity and no text.
  void add_entity(std::wstring_view name, std::wstring_view handle, std::wstring_view value) {
    add_piece(name, handle, {}, value, {}, {});
  }
  void add_note(std::wstring_view name, std::wstring_view value) {
    texts_.insert(texts_.end(), {name, {}, {}, value, {}, {}, kNoEntityKind, {}});
  }
  /// In stored order, one item behind the other.
  std::span<const std::wstring_view> stored() const { return texts_; }

 private:
  std::vector<std::wstring_view> texts_;
};

}  // namespace dim
