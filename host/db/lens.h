#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/dxf/tag_reader.h"
#include "host/dxf/tag_writer.h"
#include "host/geometry/ge.h"

namespace cad {

/// Finds tags in the record of one object.
///
/// A record is a frame (group 0, handle, {...} groups, owner), then class parts, each behind its
/// 100 marker, then extended data. Records of R12 have no markers: there every tag of the record
/// belongs to every part.
class Lens {
 public:
  Lens(std::string_view bytes, const dxf::Dialect& dialect) : bytes_(bytes), dialect_(dialect) {}

  /// The first tag of that code in the class part.
  std::optional<dxf::Tag> find(std::string_view part, int code) const;
  /// Offset at which a further tag of the class part goes in: behind its last tag, of a part with
  /// the marker twice (TEXT) behind the last one in front of the second. Nothing when the record
  /// lacks the part.
  std::optional<std::size_t> part_end(std::string_view part) const;

  /// The record's handle tag, group 5 or 105.
  std::optional<dxf::Tag> handle_tag() const;
  /// Where the frame's {...} groups go: behind the handle, or behind group 0 when the frame has
  /// none.
  std::size_t behind_handle() const;
  /// The frame's owner tag, group 330 outside of {...} groups.
  std::optional<dxf::Tag> owner_tag() const;

  /// A {...} group of the frame.
  struct Group {
    std::size_t begin;    ///< offset of its 102
    std::size_t inside;   ///< offset behind the opening tag
    std::size_t closing;  ///< offset of the closing 102
    std::size_t end;      ///< offset behind the closing tag
  };
  std::optional<Group> group(std::string_view name) const;
  /// Where extended data begins, or the record's end.
  std::size_t extended_data() const;
  /// Where the object's own tags end: in front of extended data or of an embedded object.
  std::size_t own_end() const;

  std::int64_t integer(std::string_view part, int code, std::int64_t absent) const;
  double real(std::string_view part, int code, double absent) const;
  std::wstring text(std::string_view part, int code) const;
  AcGePoint3d point(std::string_view part, int code) const;
  /// A text in pieces: groups 3, closed by a group 1.
  std::wstring chunked_text(std::string_view part) const;

 private:
  std::string_view bytes_;
  const dxf::Dialect& dialect_;
};

/// Changes tags in place: what is not named keeps its bytes. A tag that is there keeps the
/// spelling of its code and its line end.
class LensWriter {
 public:
  LensWriter(std::string& bytes, const dxf::Dialect& dialect) : bytes_(bytes), dialect_(dialect) {}

  void set_text(std::string_view part, int code, std::wstring_view value);
  void set_integer(std::string_view part, int code, std::int64_t value);
  void set_real(std::string_view part, int code, double value);
  void set_point(std::string_view part, int code, const AcGePoint3d& value);
  /// Replaces all pieces: up to 250 characters in group 1, more in groups 3 in front of it.
  void set_chunked_text(std::string_view part, std::wstring_view value);
  void set_handle(const dxf::Tag& tag, std::uint64_t value);
  void insert(std::size_t offset, std::string_view tags) { bytes_.insert(offset, tags); }
  void remove(std::size_t begin, std::size_t end) { bytes_.erase(begin, end - begin); }

 private:
  /// `tag` is one whole tag, freshly written.
  void put(std::string_view part, int code, std::string_view tag);
  /// Whole tags, at the end of the class part.
  void append(std::string_view part, std::string_view tags);
  void replace_value(const dxf::Tag& old, std::string_view tag);

  std::string& bytes_;
  const dxf::Dialect& dialect_;
};

}  // namespace cad
