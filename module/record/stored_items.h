#pragma once

#include <cstddef>
#include <string_view>

#include "module/platform/value_texts.h"
#include "module/record/dim_item.h"
#include "module/record/record_cursor.h"

namespace dim {

/// The items of a record for a walk that changes nothing. A cursor takes memory for every field of
/// its copy; here they are read into one text, which the next record takes over.
///     StoredItems items;
///     if (items.read(id) == Acad::eOk)
///       for (std::size_t i = 0; i < items.size(); ++i) items.field(i, Field::posValue);
class StoredItems {
 public:
  using Field = CDimRecordIterator::EnDimPos;

  /// Without opening the record. eNullObjectId, eWasErased, eNotThatKindOfClass, eWasOpenForWrite:
  /// there are no items.
  Acad::ErrorStatus read(AcDbObjectId record);
  /// Of a record that is open; one that cannot be read has no items.
  void read(const AcDbXrecord& record) { texts_.read(record); }

  /// The whole items: a damaged record may end within one more.
  std::size_t size() const { return texts_.size() / CDimRecordIterator::posNext; }
  bool is_cut_short() const { return texts_.size() % CDimRecordIterator::posNext != 0; }
  /// Null-terminated; valid until the next record is read.
  std::wstring_view field(std::size_t item, Field position) const {
    return texts_[item * CDimRecordIterator::posNext + position];
  }
  /// As CDimRecordIterator::isText().
  bool is_text(std::size_t item) const;
  StuDim item(std::size_t item) const;

 private:
  ValueTexts texts_;
};

}  // namespace dim
