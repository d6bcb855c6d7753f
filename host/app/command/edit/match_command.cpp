#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/db/make_object.h"
#include "host/db/record.h"

namespace cad {
namespace {

/// A property, and what an object has that does not say.
GroupList matched_groups(AcDbObjectId source, AcDbObjectId to) {
  const GroupList from = drawn_groups(source);
  GroupList groups;
  const auto copy = [&](int code, GroupValue::Value absent) {
    const GroupValue* const found = from.find(code);
    groups.add({code, found ? found->value : std::move(absent)});
  };
  copy(8, std::wstring(L"0"));
  copy(62, std::int64_t{256});
  copy(6, std::wstring(L"ByLayer"));
  copy(48, 1.0);
  if (const GroupValue* const color = from.find(420)) groups.add(*color);
  if (const GroupValue* const weight = from.find(370)) groups.add(*weight);
  const auto is_text = [](AcDbObjectId id) {
    const std::string_view kind = record_kind(id);
    return kind == "TEXT" || kind == "MTEXT" || kind == "ATTDEF";
  };
  const GroupValue* const style = from.find(7);
  if (is_text(source) && is_text(to) && style) groups.add(*style);
  const GroupValue* const width = from.find(43);
  const bool polylines = record_kind(source) == "LWPOLYLINE" && record_kind(to) == "LWPOLYLINE";
  if (polylines && width) groups.add(*width);
  return groups;
}

Flow<> match_command(CommandLine& line) {
  const Answer source = co_await line.entity({.text = L"Select source object: "});
  if (!source.is_entity()) co_return;
  const std::vector<AcDbObjectId> objects = co_await select_changeable(line);
  for (const AcDbObjectId object : objects) {
    if (object == source.entity) continue;
    const GroupList groups = matched_groups(source.entity, object);
    if (!line.check(change_object(object, groups))) co_return;
    // A true colour, and its name in a book, would go before the number.
    constexpr int kTrueColor[] = {420, 430};
    if (!groups.find(420) && !line.check(drop_groups(object, kTrueColor))) co_return;
  }
}

constexpr CommandRow kRows[] = {
    {"MATCHPROP", "MA PAINTER", match_command, "source object, objects, Enter",
     "gives objects the layer, color, linetype, weight and text style of another"},
};

}  // namespace

std::span<const CommandRow> match_commands() { return kRows; }

}  // namespace cad
