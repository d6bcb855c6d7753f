#include "tests/module/model/label_model.h"

#include <algorithm>
#include <cwctype>
#include <set>

namespace {

using Items = LabelModel::Items;

std::wstring small(std::wstring text) {
  for (wchar_t& c : text) {
    if (c >= L'A' && c <= L'Z') c += L'a' - L'A';
  }
  return text;
}

bool is_information(const StuDim& item) { return item.recordKind == L"非实体性记录信息!"; }

Items::iterator named(Items& items, const std::wstring& name) {
  return std::find_if(items.begin(), items.end(),
                      [&](const StuDim& item) { return small(item.name) == small(name); });
}

double number(const std::wstring& text) {
  try {
    return std::stod(text);
  } catch (const std::exception&) {
    return 0.0;
  }
}

}  // namespace

LabelModel::Owner* LabelModel::usable(const std::wstring& owner) {
  Owner& found = owners.at(owner);
  return found.erased || found.gone ? nullptr : &found;
}

const LabelModel::Label* LabelModel::found(const std::wstring& handle) const {
  const auto label = labels.find(handle);
  return label == labels.end() || label->second.gone ? nullptr : &label->second;
}

bool LabelModel::can_write(const std::wstring& handle) const {
  const Label* label = found(handle);
  return label && !label->erased && !label->locked;
}

bool LabelModel::is_stale(const StuDim& item) const {
  if (is_information(item) || item.handle.empty()) return false;
  const Label* label = found(item.handle);
  return !label || label->locked;
}

void LabelModel::clean(Items& items) const {
  // The item behind a dropped one takes its place and is stepped over.
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (is_stale(items[i])) items.erase(items.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

void LabelModel::store(Items& items, const StuDim& item) const {
  clean(items);
  if (items.empty()) return;
  const auto place = named(items, item.name);
  if (place == items.end()) {
    items.push_back(item);
  } else {
    *place = item;
  }
}

void LabelModel::redraw(Items& items) {
  clean(items);
  std::set<std::wstring> handles;
  for (const StuDim& item : items) handles.insert(item.handle);
  for (const std::wstring& handle : handles) {
    std::wstring text;
    const StuDim* before = nullptr;
    for (const StuDim& item : items) {
      const bool is_text = item.recordKind.empty() && item.value != item.name &&
                           !(item.prefix + item.value + item.suffix).empty();
      if (item.handle != handle || !is_text) continue;
      if (before) text += before->separator;
      if (!item.value.empty()) text += item.prefix + item.value + item.suffix;
      before = &item;
    }
    if (before && can_write(handle) && labels.at(handle).shows_text) labels.at(handle).text = text;
  }
}

int LabelModel::record(const std::wstring& owner, const std::wstring& type, const StuDim& item) {
  Owner* to = usable(owner);
  if (item.value.empty() && small(item.name) != small(item.handle)) return 0;
  if (!to) return 1;
  const auto existing = to->records.find(type);
  if (existing == to->records.end()) {
    to->records[type] = {item};
  } else {
    store(existing->second, item);
  }
  return 0;
}

int LabelModel::record_entity(const std::wstring& owner, const std::wstring& type,
                              const std::wstring& label) {
  StuDim item;
  item.name = item.handle = label;
  return record(owner, type, item);
}

int LabelModel::update(const std::wstring& owner, StuDim item, bool replace_all,
                       const Rounding& rounding) {
  Owner* of = usable(owner);
  if (!of) return 1;
  const double value = number(item.value);
  std::vector<std::pair<std::wstring, double>> family;
  if (item.name == L"pipe_len") {
    if (value == 0.0) return 1;
    family = {{L"pipe_len_mm", value * 1000.0}, {L"pipe_len_pc", value}};
  } else if (item.name == L"pipe_i") {
    family = {{L"pipe_ii", value * 100.0}, {L"pipe_iii", value * 1000.0}};
  } else if (item.name == L"well_bgdm") {
    family = {{L"well_bgdm_pc", value}};
  }
  for (const auto& [name, number_of_member] : family) {
    StuDim member;
    member.name = name;
    member.value = std::to_wstring(number_of_member);
    if (update(owner, member, false, rounding) != 0) return 1;
  }
  for (auto& [type, items] : of->records) {
    const auto place = named(items, item.name);
    if (place == items.end()) continue;
    const StuDim stored = *place;
    if (is_information(stored)) {
      StuDim changed = stored;
      changed.value = item.value;
      store(items, changed);
      continue;
    }
    item.handle = stored.handle;
    item.value = rounding(item.name, item.value);
    if (!replace_all) {
      item.prefix = stored.prefix;
      item.suffix = stored.suffix;
      item.separator = stored.separator;
    }
    store(items, item);
    redraw(items);
  }
  return 0;
}

void LabelModel::erase_labels(const Items& items) {
  for (const StuDim& item : items) {
    if (!is_information(item) && can_write(item.handle)) labels.at(item.handle).erased = true;
  }
}

int LabelModel::delete_type(const std::wstring& owner, const std::wstring& type) {
  Owner* of = usable(owner);
  if (!of) return 1;
  const auto record = of->records.find(small(type));
  if (record == of->records.end()) return 0;
  erase_labels(record->second);
  of->records.erase(record);
  return 0;
}

int LabelModel::delete_all(const std::wstring& owner) {
  Owner* of = usable(owner);
  if (!of) return 1;
  for (const auto& [type, items] : of->records) erase_labels(items);
  of->records.clear();
  return 0;
}

int LabelModel::delete_all_info(const std::wstring& owner) {
  Owner* of = usable(owner);
  if (!of) return 1;
  of->records.clear();
  return 0;
}

void LabelModel::save_and_open() {
  for (auto& [handle, label] : labels) label.gone |= label.erased;
  for (auto& [handle, owner] : owners) owner.gone |= owner.erased;
}

bool LabelModel::presence(const std::wstring& owner, const std::wstring& type, bool& existing,
                          bool& missing) const {
  existing = missing = false;
  const auto& records = owners.at(owner).records;
  const auto record = records.find(type);
  if (record == records.end()) return false;
  for (const StuDim& item : record->second) {
    if (item.handle.empty()) continue;
    const Label* label = found(item.handle);
    (label && !label->erased ? existing : missing) = true;
  }
  return true;
}
