#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/xrecord.h"

namespace cad {

/// The texts of an xrecord's values in one piece of memory, for a reader who changes nothing: what
/// AcDbXrecord::rbChain() gives, without a buffer for every value.
class ValueTexts {
 public:
  /// One for each buffer of the chain. A value that is no text reads as an empty one.
  std::size_t size() const { return begins_.size(); }
  /// Null-terminated; valid until the next read.
  std::wstring_view operator[](std::size_t value) const {
    const std::size_t begin = begins_[value];
    const std::size_t behind = value + 1 < begins_.size() ? begins_[value + 1] : text_.size();
    return std::wstring_view(text_).substr(begin, behind - begin - 1);
  }
  /// The values of an object that is open, in place of those read before. eNotOpenForRead.
  Acad::ErrorStatus read(const AcDbXrecord& record);
  /// Those of one that need not be open, and is not opened: see record.h. eNullObjectId,
  /// eWasErased, eNotThatKindOfClass, eWasOpenForWrite.
  Acad::ErrorStatus read(AcDbObjectId record);
  void clear();

 private:
  void read(std::string_view bytes, const dxf::Dialect& dialect);

  std::wstring text_;                  // each with a null behind it
  std::vector<std::uint32_t> begins_;  // in text_
};

/// Stores texts as the values of an xrecord, each with that group code: what setFromRbChain() does
/// with a chain of such texts, without a buffer for every one. A text ends at its first null.
/// eNotOpenForWrite; eInvalidDxfCode of a code that is not that of a text.
Acad::ErrorStatus set_value_texts(AcDbXrecord& record, short code,
                                  std::span<const std::wstring_view> texts);

}  // namespace cad
