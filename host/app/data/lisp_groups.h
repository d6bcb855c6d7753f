#pragma once

#include <span>
#include <utility>
#include <vector>

#include "host/db/group_list.h"
#include "host/lisp/value.h"

namespace cad {

/// The groups of a list such as entget gives: (code . value), points as (code x y z), extended data
/// as (-3 ("APP" (1000 . "x") ...) ...), an application without data as (-3 ("APP")). Texts stay in
/// the list, which must stay alive. Raises "bad DXF group: (10 . "x")" for what is no group, or
/// holds a value its code cannot have.
class LispGroups {
 public:
  explicit LispGroups(const lisp::Value& list) : LispGroups(list, {}) {}
  /// The same in the memory of a vector that was used before.
  LispGroups(const lisp::Value& list, std::vector<GroupView> memory);

  std::span<const GroupView> groups() const { return groups_; }
  const std::vector<GroupView>& vector() const { return groups_; }
  std::vector<GroupView> take_memory() { return std::move(groups_); }
  AcDbObjectId name() const { return name_; }  ///< of group -1; null when there is none
  std::wstring_view kind() const { return kind_; }
  std::wstring_view text(int code) const;  ///< of the first such group
  std::int64_t integer(int code) const;    ///< 0 when there is none
  const GroupView* find(int code) const;

 private:
  void add(const lisp::Value& pair);
  void add_extended_data(const lisp::Value& applications);

  std::vector<GroupView> groups_;
  AcDbObjectId name_;
  std::wstring_view kind_;
};

/// One value as a group; raises as above.
GroupView group_of(const lisp::Value& pair);

}  // namespace cad
