#include "host/app/data/lisp_groups.h"

#include "host/app/data/entget.h"
#include "host/db/group_tags.h"
#include "host/lisp/error.h"
#include "host/lisp/printer.h"

namespace cad {
namespace {

using lisp::Value;
using Type = GroupView::Type;

constexpr int kName = -1;
constexpr int kExtendedData = -3;
constexpr int kApplication = 1001;

[[noreturn]] void raise_bad_group(const Value& pair) {
  lisp::raise(L"bad DXF group: " + lisp::to_text(pair, lisp::Quoting::kPrin1));
}

/// Two or three numbers.
bool read_point(const Value& list, GroupView& group) {
  group.type = Type::kPoint;
  for (const Value& number : lisp::List(list)) {
    if (group.dimensions == 3 || !number.is_number()) return false;
    group.numbers[group.dimensions++] = number.number();
  }
  return group.dimensions >= 2;
}

bool read_value(const Value& value, GroupView& group) {
  if (value.is_string()) {
    group.text = value.text();
  } else if (value.is_integer()) {
    group.type = Type::kInteger;
    group.integer = value.integer();
  } else if (value.is_real()) {
    group.type = Type::kReal;
    group.numbers[0] = value.real();
  } else if (value.is_ename()) {
    group.type = Type::kObject;
    group.object = id_of_name(value.ename());
  } else {
    return value.is_cons() && read_point(value, group);
  }
  return true;
}

}  // namespace

GroupView group_of(const Value& pair) {
  GroupView group;
  if (!pair.is_cons() || !pair.car().is_integer()) raise_bad_group(pair);
  group.code = pair.car().integer();
  if (!read_value(pair.cdr(), group)) raise_bad_group(pair);
  if (group.code >= 0 && !group_fault(group).empty()) raise_bad_group(pair);
  return group;
}

LispGroups::LispGroups(const Value& list, std::vector<GroupView> memory)
    : groups_(std::move(memory)) {
  groups_.clear();
  for (const Value& pair : lisp::List(list)) add(pair);
}

void LispGroups::add(const Value& pair) {
  if (pair.is_cons() && pair.car().is_integer() && pair.car().integer() == kExtendedData)
    return add_extended_data(pair.cdr());
  const GroupView group = group_of(pair);
  if (group.code == kName) name_ = group.object;
  if (group.code == 0 && kind_.empty()) kind_ = group.text;
  if (group.code >= 0) groups_.push_back(group);
}

void LispGroups::add_extended_data(const Value& applications) {
  for (const Value& application : lisp::List(applications)) {
    if (!application.is_cons() || !application.car().is_string()) raise_bad_group(application);
    GroupView name;
    name.code = kApplication;
    name.text = application.car().text();
    groups_.push_back(name);
    for (const Value& pair : lisp::List(application.cdr())) {
      const GroupView group = group_of(pair);
      if (group.code < 1000 || group.code == kApplication) raise_bad_group(pair);
      groups_.push_back(group);
    }
  }
}

const GroupView* LispGroups::find(int code) const {
  for (const GroupView& group : groups_)
    if (group.code == code) return &group;
  return nullptr;
}

std::wstring_view LispGroups::text(int code) const {
  const GroupView* group = find(code);
  return group ? group->text : std::wstring_view();
}

std::int64_t LispGroups::integer(int code) const {
  const GroupView* group = find(code);
  return group ? group->integer : 0;
}

}  // namespace cad
