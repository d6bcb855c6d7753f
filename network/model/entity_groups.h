#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "host/db/group_list.h"

namespace network {

/// The groups of one entity after the other: a list that is filled, used and filled again. Texts
/// are not copied; they must live until the entity is made.
class EntityGroups {
 public:
  EntityGroups& begin(std::wstring_view kind, std::wstring_view layer) {
    groups_.clear();
    return text(0, kind).text(8, layer);
  }
  EntityGroups& text(int code, std::wstring_view value) {
    cad::GroupView& group = add(code, cad::GroupView::Type::kText);
    group.text = value;
    return *this;
  }
  EntityGroups& integer(int code, std::int64_t value) {
    add(code, cad::GroupView::Type::kInteger).integer = value;
    return *this;
  }
  EntityGroups& real(int code, double value) {
    add(code, cad::GroupView::Type::kReal).numbers[0] = value;
    return *this;
  }
  EntityGroups& point(int code, const AcGePoint3d& value, std::uint8_t dimensions = 3) {
    cad::GroupView& group = add(code, cad::GroupView::Type::kPoint);
    group.dimensions = dimensions;
    group.numbers[0] = value.x;
    group.numbers[1] = value.y;
    group.numbers[2] = value.z;
    return *this;
  }

  /// Extended data in pairs of a key and a value, behind everything else.
  EntityGroups& data_of(std::wstring_view application) { return text(1001, application); }
  EntityGroups& pair(std::wstring_view key, std::wstring_view value) {
    return text(1000, key).text(1000, value);
  }
  EntityGroups& handle_pair(std::wstring_view key, std::wstring_view handle) {
    return text(1000, key).text(1005, handle);
  }
  EntityGroups& integer_pair(std::wstring_view key, int value) {
    return text(1000, key).integer(1070, value);
  }
  /// Nothing for a value that is absent.
  EntityGroups& real_pair(std::wstring_view key, const std::optional<double>& value) {
    return value ? text(1000, key).real(1040, *value) : *this;
  }

  std::span<const cad::GroupView> views() const { return groups_; }

 private:
  cad::GroupView& add(int code, cad::GroupView::Type type) {
    cad::GroupView& group = groups_.emplace_back();
    group.code = code;
    group.type = type;
    return group;
  }
  std::vector<cad::GroupView> groups_;
};

}  // namespace network
