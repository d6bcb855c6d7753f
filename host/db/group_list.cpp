#include "host/db/group_list.h"

namespace cad {

GroupList& GroupList::add(const GroupValue& value) {
  groups_.push_back(value);
  return *this;
}

namespace {

template <class T>
GroupList& append(GroupList& list, int code, T&& value) {
  GroupValue group;
  group.code = code;
  group.value = std::forward<T>(value);
  return list.add(group);
}

}  // namespace

GroupList& GroupList::text(int code, std::wstring_view value) {
  return append(*this, code, std::wstring(value));
}
GroupList& GroupList::integer(int code, std::int64_t value) { return append(*this, code, value); }
GroupList& GroupList::real(int code, double value) { return append(*this, code, value); }
GroupList& GroupList::point(int code, const AcGePoint3d& value) {
  return append(*this, code, value);
}
GroupList& GroupList::point2d(int code, const AcGePoint2d& value) {
  return append(*this, code, value);
}
GroupList& GroupList::object(int code, AcDbObjectId value) { return append(*this, code, value); }

const GroupValue* GroupList::find(int code) const {
  for (const GroupValue& group : groups_)
    if (group.code == code) return &group;
  return nullptr;
}

GroupView view_of(const GroupValue& group) {
  using Type = GroupView::Type;
  GroupView view;
  view.code = group.code;
  if (const auto* text = std::get_if<std::wstring>(&group.value)) {
    view.text = *text;
  } else if (const auto* integer = std::get_if<std::int64_t>(&group.value)) {
    view.type = Type::kInteger;
    view.integer = *integer;
  } else if (const auto* real = std::get_if<double>(&group.value)) {
    view.type = Type::kReal;
    view.numbers[0] = *real;
  } else if (const auto* object = std::get_if<AcDbObjectId>(&group.value)) {
    view.type = Type::kObject;
    view.object = *object;
  } else {
    const auto* flat = std::get_if<AcGePoint2d>(&group.value);
    const auto* point = std::get_if<AcGePoint3d>(&group.value);
    view.type = Type::kPoint;
    view.dimensions = flat ? 2 : 3;
    view.numbers[0] = flat ? flat->x : point->x;
    view.numbers[1] = flat ? flat->y : point->y;
    view.numbers[2] = flat ? 0 : point->z;
  }
  return view;
}

std::vector<GroupView> views_of(const GroupList& list) {
  std::vector<GroupView> views;
  views.reserve(list.groups().size());
  for (const GroupValue& group : list.groups()) views.push_back(view_of(group));
  return views;
}

}  // namespace cad
