#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/db/group_list.h"
#include "host/dxf/tag_reader.h"
#include "host/dxf/tag_writer.h"

/// Groups between the view of programs (radians, whole points) and the tags of a record.
namespace cad {

/// Whether a group of that code is an angle: degrees in the file, radians to programs.
bool is_angle(int code, std::string_view kind);
/// Handles that stay text: an object's own, and those that name objects of any kind loosely.
bool is_text_handle(int code);

/// Why a group cannot be written, for a message ("wants a number"); empty when it can.
std::string group_fault(const GroupView& group);

/// Writes a group that has no fault. `flat` leaves out a point's z.
void write_group(const GroupView& group, std::string_view kind, bool flat, dxf::TagWriter& writer);

/// Where a text that is stored in pieces is parted: behind `longest` characters, or in front of
/// what reads as an escape there.
std::size_t text_piece_end(std::wstring_view text, std::size_t longest);

/// The tags of one group of a record, and behind which offset it ends: a point is up to three tags.
struct TagSpan {
  dxf::Tag first;
  int tags = 1;
  double numbers[3] = {};  ///< of a point
  std::size_t end = 0;
};

/// Walks a record group by group.
class TagSpanReader {
 public:
  TagSpanReader(std::string_view bytes, const dxf::Dialect& dialect, std::size_t from = 0)
      : tags_(bytes, dialect, from), dialect_(dialect), more_(tags_.next(next_)) {}
  bool next(TagSpan& span);

 private:
  dxf::TagReader tags_;
  const dxf::Dialect& dialect_;
  dxf::Tag next_;
  bool more_;
};

/// Whether the tags hold the group's value already.
bool same_value(const TagSpan& tags, const GroupView& group, std::string_view kind,
                const dxf::Dialect& dialect);

}  // namespace cad
