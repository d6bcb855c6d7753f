#pragma once

#include <cstddef>
#include <string_view>

#include "host/db/object.h"
#include "host/dxf/tag_reader.h"

/// Extended data tag by tag, for those who change one value and leave the others as they stand.
/// AcDbObject::xData() and setXData() deal with the data of an application as a whole.
namespace cad {

/// Walks the extended data of one application, letter case of its name ignored, in a record. The
/// 1001 tags that begin the data are left out. An application may have its data in several places.
class ExtendedTags {
 public:
  ExtendedTags(std::string_view record, const dxf::Dialect& dialect, std::wstring_view application);

  bool next(dxf::Tag& tag);
  /// After the walk: whether the record has data of the application, be it empty.
  bool found() const { return found_; }
  /// Offset behind the application's last tag so far.
  std::size_t end() const { return end_; }

 private:
  dxf::TagReader tags_;
  const dxf::Dialect& dialect_;
  std::wstring_view application_;
  bool inside_ = false;
  bool found_ = false;
  std::size_t end_ = 0;
};

/// What the CAD program refuses to read: more bytes of extended data on one object, a longer text
/// of group 1000.
inline constexpr std::size_t kMostExtendedData = 16383;
inline constexpr std::size_t kLongestExtendedText = 255;

/// Bytes the tags of extended data take in the CAD program, however the file spells them.
std::size_t extended_size(std::string_view tags, const dxf::Dialect& dialect);
bool extended_text_fits(std::wstring_view text);

/// The tags of `object` between two offsets of its extended data are replaced by `tags`, which are
/// spelled for its drawing. eNotOpenForWrite; eInvalidInput for offsets outside of the data;
/// eXdataSizeExceeded.
Acad::ErrorStatus replace_extended_tags(AcDbObject& object, std::size_t begin, std::size_t end,
                                        std::string_view tags);

}  // namespace cad
