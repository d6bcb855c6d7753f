#include "host/app/command/settings/records.h"

#include <algorithm>
#include <cmath>

#include "host/app/data/entget.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/drawing.h"
#include "host/db/record_groups.h"

namespace cad {
namespace {

template <class Value, class Read>
Value group_value(AcDbObjectId object, int code, Value absent, Read&& read) {
  RecordGroups record;
  if (!record.read(object)) return absent;
  const Group* const group = record.find(code);
  return group ? read(record, *group) : absent;
}

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(L" \t");
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

constexpr const wchar_t* kColors[] = {L"red",  L"yellow",  L"green", L"cyan",
                                      L"blue", L"magenta", L"white"};

constexpr int kLineweights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

}  // namespace

AcDbObjectId find_record(AcDbDatabase& database, std::string_view table, std::wstring_view name) {
  return AcDbObjectId(database.drawing().table_record(table, name));
}

std::vector<AcDbObjectId> all_records(AcDbDatabase& database, std::string_view table) {
  std::vector<AcDbObjectId> records;
  Drawing& drawing = database.drawing();
  const Drawing::Table* const found = drawing.table(table);
  if (!found) return records;
  for (const std::size_t index : drawing.table_records(*found)) {
    const AcDbObjectId id(&drawing.stub_at(index));
    if (!id.isErased()) records.push_back(id);
  }
  return records;
}

std::vector<AcDbObjectId> matching_records(AcDbDatabase& database, std::string_view table,
                                           std::wstring_view patterns) {
  std::vector<AcDbObjectId> records = all_records(database, table);
  const std::vector<std::wstring> parts = comma_parts(patterns);
  std::erase_if(records, [&](AcDbObjectId id) {
    const std::wstring name = group_text(id, 2);
    return std::none_of(parts.begin(), parts.end(), [&](const std::wstring& part) {
      return equal_no_case(name, part) || matches_no_case(name, part);
    });
  });
  return records;
}

std::wstring group_text(AcDbObjectId object, int code, std::wstring_view absent) {
  return group_value(
      object, code, std::wstring(absent),
      [](const RecordGroups& record, const Group& group) { return record.text(group); });
}

double group_real(AcDbObjectId object, int code, double absent) {
  return group_value(object, code, absent, [&](const RecordGroups&, const Group& group) {
    return group.type == Group::Type::kReal ? group.numbers[0] : absent;
  });
}

int group_integer(AcDbObjectId object, int code, int absent) {
  return group_value(object, code, absent, [&](const RecordGroups&, const Group& group) {
    return group.type == Group::Type::kInteger ? static_cast<int>(group.integer) : absent;
  });
}

AcGePoint3d group_point(AcDbObjectId object, int code, const AcGePoint3d& absent) {
  return group_value(object, code, absent, [&](const RecordGroups&, const Group& group) {
    if (group.type != Group::Type::kPoint) return absent;
    return AcGePoint3d(group.numbers[0], group.numbers[1], group.numbers[2]);
  });
}

bool has_group(AcDbObjectId object, int code) {
  return group_value(object, code, false, [](const RecordGroups&, const Group&) { return true; });
}

std::vector<std::wstring> comma_parts(std::wstring_view text) {
  std::vector<std::wstring> parts;
  for (;;) {
    const std::size_t end = text.find(L',');
    const std::wstring_view part = trimmed(text.substr(0, end));
    if (!part.empty()) parts.emplace_back(part);
    if (end == std::wstring_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::optional<int> color_number(std::wstring_view text) {
  text = trimmed(text);
  if (text.starts_with(L"_")) text.remove_prefix(1);
  if (equal_no_case(text, L"BYLAYER")) return 256;
  if (equal_no_case(text, L"BYBLOCK")) return 0;
  for (int i = 0; i < 7; ++i) {
    const std::wstring_view name = kColors[i];
    if (!text.empty() && text.size() <= name.size() &&
        equal_no_case(text, name.substr(0, text.size())))
      return i + 1;
  }
  const auto number = parse_int(to_utf8(text));
  if (!number || *number < 0 || *number > 256) return std::nullopt;
  return static_cast<int>(*number);
}

std::wstring color_setting(int color) {
  if (color == 256) return L"BYLAYER";
  return color == 0 ? L"BYBLOCK" : std::to_wstring(color);
}

std::wstring color_text(int color) {
  if (color < 1 || color > 7) return color_setting(color);
  return std::to_wstring(color) + L" (" + kColors[color - 1] + L")";
}

std::optional<int> lineweight_number(std::wstring_view text) {
  text = trimmed(text);
  if (text.starts_with(L"_")) text.remove_prefix(1);
  if (equal_no_case(text, L"BYLAYER")) return -1;
  if (equal_no_case(text, L"BYBLOCK")) return -2;
  if (equal_no_case(text, L"DEFAULT")) return -3;
  const auto number = parse_real(to_utf8(text));
  if (!number || !(*number >= 0.0) || *number > 2.11) return std::nullopt;
  const double wanted = *number * 100;
  return *std::min_element(std::begin(kLineweights), std::end(kLineweights), [&](int a, int b) {
    return std::abs(a - wanted) < std::abs(b - wanted);
  });
}

}  // namespace cad
