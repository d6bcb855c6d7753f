#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/db/object_id.h"
#include "host/geometry/ge.h"

namespace cad {

/// One group to be written, in the view of RecordGroups: a point is one group, angles (50 to 58)
/// are radians, references are ids. Handles (5, 105, 1005, 320 to 329) and chunks (310 to 319,
/// 1004) are hexadecimal text.
struct GroupValue {
  using Value =
      std::variant<std::int64_t, double, AcGePoint2d, AcGePoint3d, std::wstring, AcDbObjectId>;
  int code = 0;
  Value value;
};

/// The groups of an object to be made or changed, the kind (0) first, extended data (1001...) last.
///     const auto line = GroupList(L"LINE").point(10, start).point(11, end);
///     const Result<AcDbObjectId> made = make_entity(database, {}, line);
class GroupList {
 public:
  GroupList() = default;
  explicit GroupList(std::wstring_view kind) { text(0, kind); }

  GroupList& text(int code, std::wstring_view value);
  GroupList& integer(int code, std::int64_t value);
  GroupList& real(int code, double value);
  GroupList& point(int code, const AcGePoint3d& value);
  GroupList& point2d(int code, const AcGePoint2d& value);
  GroupList& object(int code, AcDbObjectId value);
  GroupList& add(const GroupValue& value);

  std::span<const GroupValue> groups() const { return groups_; }
  /// The first group of that code, or null.
  const GroupValue* find(int code) const;

 private:
  std::vector<GroupValue> groups_;
};

/// A group whose text belongs to somebody else: what the writers of records work with, so that
/// callers with groups of their own (LISP lists) need not copy them.
struct GroupView {
  enum class Type : std::uint8_t { kText, kInteger, kReal, kPoint, kObject };
  int code = 0;
  Type type = Type::kText;
  std::uint8_t dimensions = 0;  ///< of a point: 2 or 3
  std::wstring_view text;
  std::int64_t integer = 0;
  double numbers[3] = {};  ///< kReal: the first; kPoint: x, y, z
  AcDbObjectId object;
};

GroupView view_of(const GroupValue& group);
std::vector<GroupView> views_of(const GroupList& list);

}  // namespace cad
