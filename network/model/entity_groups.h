#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/codepage.h"
#include "host/db/group_list.h"
#include "network/object_data.h"

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
    return text(kTextGroup, key).text(kTextGroup, value);
  }
  EntityGroups& pair(Key key, std::wstring_view value) {
    return text(kTextGroup, wide_name(key)).text(row_of(key).group, value);
  }
  EntityGroups& pair(Key key, int value) {
    return text(kTextGroup, wide_name(key)).integer(row_of(key).group, value);
  }
  /// Nothing for a value that is absent.
  EntityGroups& pair(Key key, const std::optional<double>& value) {
    return value ? text(kTextGroup, wide_name(key)).real(row_of(key).group, *value) : *this;
  }

  std::span<const cad::GroupView> views() const { return groups_; }

 private:
  cad::GroupView& add(int code, cad::GroupView::Type type) {
    cad::GroupView& group = groups_.emplace_back();
    group.code = code;
    group.type = type;
    return group;
  }
  /// Lives as long as the program.
  static std::wstring_view wide_name(Key key) {
    static const auto names = [] {
      std::array<std::wstring, kKeyCount> made;
      for (int i = 0; i < kKeyCount; ++i)
        made[static_cast<std::size_t>(i)] = cad::from_utf8(row_of(static_cast<Key>(i)).name);
      return made;
    }();
    return names[static_cast<std::size_t>(key)];
  }

  std::vector<cad::GroupView> groups_;
};

}  // namespace network
