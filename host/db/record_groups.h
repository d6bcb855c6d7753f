#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/object_id.h"
#include "host/dxf/dialect.h"
#include "host/dxf/tag_reader.h"

namespace cad {

/// One group of an object as LISP programs and selection filters see it: the coordinates of a point
/// are one group, angles (50 to 58) are radians, pointers to objects are ids.
struct Group {
  enum class Type : std::uint8_t {
    kText,
    kHandle,  ///< handle as text
    kObject,
    kInteger,
    kReal,
    kPoint,
    kChunk,
  };
  int code = 0;
  Type type = Type::kText;
  std::uint8_t dimensions = 0;  ///< of a point: 2 or 3
  std::string_view bytes;       ///< kText, kHandle, kChunk: as stored
  double numbers[3] = {};       ///< kReal: the first; kPoint: x, y, z
  std::int64_t integer = 0;
  AcDbObjectId object;
};

/// Reads the groups of objects in the order of entget: kind, groups in braces, owner, handle, the
/// rest as in the file. Entities get the space they are in (67, 410) where the file leaves it out.
/// Memory is kept from object to object; groups are valid until the next read or change.
class RecordGroups {
 public:
  /// False for the null id. An erased object, or one that is open for write, reads as it stands.
  bool read(AcDbObjectId id);

  std::span<const Group> groups() const { return std::span(groups_).first(extended_); }
  /// Extended data, beginning with a 1001 group.
  std::span<const Group> extended_data() const { return std::span(groups_).subspan(extended_); }
  /// The first group of that code, or null.
  const Group* find(int code) const;

  std::wstring text(const Group& group) const;
  void append_text(const Group& group, std::wstring& text) const;

 private:
  class Reader;
  friend class Reader;

  std::vector<Group> groups_;
  std::size_t extended_ = 0;  // index of the first 1001
  std::vector<Group> head_;
  const dxf::Dialect* dialect_ = nullptr;
};

/// Whether the object is a part of the entity before it: a vertex, an attribute, the end of both.
bool is_sub_entity(AcDbObjectId id);

}  // namespace cad
