#include "host/app/command/change/properties.h"

#include <optional>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/base/fold.h"
#include "host/db/make_object.h"
#include "host/db/object_groups.h"
#include "host/db/transform.h"

namespace cad {
namespace {

/// The new values.
struct Properties {
  GroupList groups;
  std::optional<double> elevation;
};

/// Whether the name may stand in group 6 of an object.
bool is_linetype(AcDbDatabase& database, std::wstring_view name) {
  return equal_no_case(name, L"BYLAYER") || equal_no_case(name, L"BYBLOCK") ||
         equal_no_case(name, L"CONTINUOUS") || !find_record(database, "LTYPE", name).isNull();
}

Flow<> ask_color(CommandLine& line, Properties& to) {
  const Answer typed = co_await line.text({.text = L"New color [Truecolor/COlorbook] <BYLAYER>: "});
  const auto color = typed.none() ? std::optional(256) : color_number(typed.text);
  if (color)
    to.groups.integer(62, *color);
  else
    line.refuse(L"A color number or standard color name is required.");
}

Flow<> ask_layer(CommandLine& line, Properties& to) {
  const Answer name = co_await line.text({.text = L"Enter new layer name: ", .bits = kNoEnter});
  const AcDbObjectId layer = find_record(line.database(), "LAYER", name.text);
  if (layer.isNull())
    line.refuse(L"Cannot find layer \"" + name.text + L"\".");
  else
    to.groups.text(8, group_text(layer, 2));
}

Flow<> ask_linetype(CommandLine& line, Properties& to) {
  const Answer name = co_await line.text({.text = L"Enter new linetype name <ByLayer>: "});
  const std::wstring wanted = name.none() ? L"ByLayer" : name.text;
  if (is_linetype(line.database(), wanted))
    to.groups.text(6, wanted);
  else
    line.refuse(L"Linetype \"" + wanted + L"\" not found.  Use the LINETYPE command to load it.");
}

Flow<> ask_scale(CommandLine& line, Properties& to) {
  const Answer scale = co_await line.real(
      {.text = L"Specify new linetype scale <1>: ", .bits = kNoZero | kNoNegative});
  to.groups.real(48, scale.none() ? 1.0 : scale.number);
}

Flow<> ask_weight(CommandLine& line, Properties& to) {
  const Answer typed = co_await line.text({.text = L"Enter new lineweight <ByLayer>: "});
  const auto weight = typed.none() ? std::optional(-1) : lineweight_number(typed.text);
  if (weight)
    to.groups.integer(370, *weight);
  else
    line.refuse(L"A lineweight of 0.0mm to 2.11mm is required.");
}

Flow<> ask_thickness(CommandLine& line, Properties& to) {
  const Answer thickness = co_await line.distance({.text = L"Specify new thickness <0>: "});
  to.groups.real(39, thickness.number);
}

Flow<> ask_elevation(CommandLine& line, Properties& to) {
  const Answer elevation = co_await line.distance({.text = L"Specify new elevation <0>: "});
  to.elevation = elevation.number;
}

struct Property {
  const wchar_t* name;
  Flow<> (*ask)(CommandLine&, Properties&);  // null: not offered
};
constexpr Property kProperties[] = {
    {L"Color", ask_color},         {L"Elev", ask_elevation},   {L"LAyer", ask_layer},
    {L"LType", ask_linetype},      {L"ltScale", ask_scale},    {L"LWeight", ask_weight},
    {L"Thickness", ask_thickness}, {L"TRansparency", nullptr}, {L"Material", nullptr},
    {L"PLotstyle", nullptr},       {L"Annotative", nullptr},
};

const Property* property_of(const Answer& answer) {
  for (const Property& row : kProperties)
    if (answer.is(row.name)) return &row;
  return nullptr;
}

/// Z of its first point, where the elevation is.
Status set_elevation(AcDbObjectId id, double elevation) {
  const double now = group_point(id, 10).z;
  const AcGeVector3d by(0.0, 0.0, elevation - now);
  if (by.isZeroLength()) return {};
  if (transform_object(id, AcGeMatrix3d::translation(by)) != Acad::eOk)
    return fail({}, "an object cannot be moved to this elevation");
  return {};
}

}  // namespace

Flow<> change_properties(CommandLine& line, std::vector<AcDbObjectId> objects,
                         bool with_elevation) {
  Properties properties;
  for (;;) {
    const Answer option = co_await line.keyword(
        {.text = with_elevation
                     ? L"Enter property to change [Color/Elev/LAyer/LType/ltScale/LWeight/"
                       L"Thickness]: "
                     : L"Enter property to change [Color/LAyer/LType/ltScale/LWeight/"
                       L"Thickness]: ",
         .keywords = with_elevation ? L"Color Elev LAyer LType ltScale LWeight Thickness "
                                      L"TRansparency Material PLotstyle Annotative"
                                    : L"Color LAyer LType ltScale LWeight Thickness "
                                      L"TRansparency Material PLotstyle Annotative"});
    if (option.none()) break;
    const Property* const chosen = property_of(option);
    if (!chosen || !chosen->ask) {
      line.refuse(option.text + L" is not offered");
      co_return;
    }
    co_await chosen->ask(line, properties);
    if (line.passing_over()) co_return;
  }
  for (const AcDbObjectId id : objects) {
    if (!properties.groups.groups().empty() && !line.check(change_object(id, properties.groups)))
      co_return;
    // A true colour, and its name in a book, would go before the number.
    constexpr int kTrueColor[] = {420, 430};
    if (properties.groups.find(62) && !line.check(drop_groups(id, kTrueColor))) co_return;
    if (properties.elevation && !line.check(set_elevation(id, *properties.elevation))) co_return;
  }
}

namespace {

Flow<> chprop_command(CommandLine& line) {
  const Answer which = co_await line.selection();
  if (which.selection.empty()) co_return;
  co_await change_properties(line, which.selection);
}

/// Selects and nothing else: the set is the previous one from here on.
Flow<> select_command(CommandLine& line) { co_await line.selection(); }

constexpr CommandRow kRows[] = {
    {"CHPROP", "", chprop_command,
     "objects, Enter, [Color/LAyer/LType/ltScale/LWeight/Thickness] and its value ..., Enter",
     "changes properties of objects"},
    {"SELECT", "", select_command, "objects, Enter", "selects objects for the next \"Previous\"",
     CommandRow::kNoStep},
};

}  // namespace

std::span<const CommandRow> property_commands() { return kRows; }

}  // namespace cad
