#include <algorithm>
#include <cstdlib>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/base/fold.h"
#include "host/db/make_object.h"

namespace cad {
namespace {

enum LayerFlag { kFrozen = 1, kLocked = 4 };

/// The color group is negative while a layer is off.
constexpr int kColorCode = 62;

std::wstring current_layer(const CommandLine& line) { return line.text_variable(L"CLAYER"); }

std::wstring layer_name(AcDbObjectId layer) { return group_text(layer, 2); }

bool is_current(const CommandLine& line, AcDbObjectId layer) {
  return equal_no_case(layer_name(layer), current_layer(line));
}

void set_flag(CommandLine& line, AcDbObjectId layer, int flag, bool on) {
  const int flags = group_integer(layer, 70);
  const int wanted = on ? flags | flag : flags & ~flag;
  if (wanted != flags) line.check(change_object(layer, GroupList().integer(70, wanted)));
}

void set_off(CommandLine& line, AcDbObjectId layer, bool off) {
  const int color = group_integer(layer, kColorCode, 7);
  const int wanted = off ? -std::abs(color) : std::abs(color);
  if (wanted != color) line.check(change_object(layer, GroupList().integer(kColorCode, wanted)));
}

/// The layer of that name, made when there is none; null when the name will not do.
AcDbObjectId layer_of_name(CommandLine& line, const std::wstring& name) {
  const AcDbObjectId known = find_record(line.database(), "LAYER", name);
  if (!known.isNull()) return known;
  const Result<AcDbObjectId> made = ensure_layer(line.database(), name);
  if (made) return *made;
  line.print(L"Invalid layer name \"" + name + L"\".");
  return {};
}

void make_current(CommandLine& line, AcDbObjectId layer) {
  set_flag(line, layer, kFrozen, false);
  line.set_variable(L"CLAYER", layer_name(layer));
}

/// The layers a list of names and patterns means; told when there are none. Enter means the
/// current layer.
std::vector<AcDbObjectId> layers_of(CommandLine& line, const Answer& answer) {
  const std::wstring patterns = answer.none() ? current_layer(line) : answer.text;
  std::vector<AcDbObjectId> layers = matching_records(line.database(), "LAYER", patterns);
  if (layers.empty()) line.print(L"No matching layer names found for \"" + patterns + L"\".");
  return layers;
}

Flow<> list_layers(CommandLine& line) {
  const Answer names = co_await line.text({.text = L"Enter layer name(s) to list <*>: "});
  const std::wstring patterns = names.none() ? L"*" : names.text;
  for (const AcDbObjectId layer : matching_records(line.database(), "LAYER", patterns)) {
    const int flags = group_integer(layer, 70), color = group_integer(layer, kColorCode, 7);
    std::wstring state = color < 0 ? L"Off" : L"On";
    if ((flags & kFrozen) != 0) state += L" Frozen";
    if ((flags & kLocked) != 0) state += L" Locked";
    line.print(L"\"" + layer_name(layer) + L"\"  " + state + L"  " + color_text(std::abs(color)) +
               L"  " + group_text(layer, 6, L"Continuous"));
  }
  line.print(L"Current layer: \"" + current_layer(line) + L"\"");
}

Flow<> make_layer(CommandLine& line) {
  const std::wstring text =
      L"Enter name for new layer (becomes the current layer) <" + current_layer(line) + L">: ";
  const Answer name = co_await line.text({.text = text});
  const AcDbObjectId layer = layer_of_name(line, name.none() ? current_layer(line) : name.text);
  if (!layer.isNull()) make_current(line, layer);
}

Flow<> set_layer(CommandLine& line) {
  const Answer name =
      co_await line.text({.text = L"Enter layer name to make current or <select object>: "});
  std::wstring wanted = name.text;
  if (name.none()) {
    const Answer object = co_await line.entity(
        {.text = L"Select object whose layer will become the current layer: "});
    if (object.none()) co_return;
    wanted = group_text(object.entity, 8, L"0");
  }
  const AcDbObjectId layer = find_record(line.database(), "LAYER", wanted);
  if (layer.isNull())
    line.print(L"Cannot find layer \"" + wanted + L"\".");
  else if ((group_integer(layer, 70) & kFrozen) != 0)
    line.print(L"Cannot make frozen layer \"" + wanted + L"\" current.");
  else
    make_current(line, layer);
}

Flow<> new_layers(CommandLine& line) {
  const Answer names =
      co_await line.text({.text = L"Enter name list for new layer(s): ", .bits = kNoEnter});
  for (const std::wstring& name : comma_parts(names.text)) layer_of_name(line, name);
}

Flow<> turn_on(CommandLine& line) {
  const Answer names =
      co_await line.text({.text = L"Enter name list of layer(s) to turn on: ", .bits = kNoEnter});
  for (const AcDbObjectId layer : layers_of(line, names)) set_off(line, layer, false);
}

Flow<> turn_off(CommandLine& line) {
  const Answer names =
      co_await line.text({.text = L"Enter name list of layer(s) to turn off: ", .bits = kNoEnter});
  const std::vector<AcDbObjectId> layers = layers_of(line, names);
  for (const AcDbObjectId layer : layers) {
    if (is_current(line, layer) && !line.spares_warning(1)) {
      const std::wstring text = L"Really want layer \"" + layer_name(layer) +
                                L"\" (the CURRENT layer) off? [Yes/No] <N>: ";
      const Answer really = co_await line.keyword({.text = text, .keywords = L"Yes No"});
      if (!really.is(L"Yes")) continue;
    }
    set_off(line, layer, true);
  }
}

/// Freeze, Thaw, LOck, Unlock.
Flow<> change_flag(CommandLine& line, const wchar_t* text, int flag, bool on) {
  const Answer names = co_await line.text({.text = text, .bits = kNoEnter});
  for (const AcDbObjectId layer : layers_of(line, names)) {
    if (flag == kFrozen && on && is_current(line, layer))
      line.print(L"Cannot freeze layer \"" + layer_name(layer) + L"\".  It is the CURRENT layer.");
    else
      set_flag(line, layer, flag, on);
  }
}

Flow<> freeze(CommandLine& line) {
  co_await change_flag(line, L"Enter name list of layer(s) to freeze: ", kFrozen, true);
}
Flow<> thaw(CommandLine& line) {
  co_await change_flag(line, L"Enter name list of layer(s) to thaw: ", kFrozen, false);
}
Flow<> lock(CommandLine& line) {
  co_await change_flag(line, L"Enter name list of layer(s) to lock: ", kLocked, true);
}
Flow<> unlock(CommandLine& line) {
  co_await change_flag(line, L"Enter name list of layer(s) to unlock: ", kLocked, false);
}

/// Asks for the layers a property goes to, and gives it to them.
Flow<> give(CommandLine& line, std::wstring what, GroupList groups) {
  const std::wstring text =
      L"Enter name list of layer(s) for " + what + L" <" + current_layer(line) + L">: ";
  const Answer names = co_await line.text({.text = text});
  for (const AcDbObjectId layer : layers_of(line, names)) line.check(change_object(layer, groups));
}

Flow<> color_layers(CommandLine& line) {
  const Answer typed =
      co_await line.text({.text = L"New color [Truecolor/COlorbook] : ", .bits = kNoEnter});
  const bool off = typed.text.starts_with(L"-");
  const auto color = color_number(std::wstring_view(typed.text).substr(off ? 1 : 0));
  if (!color || *color < 1 || *color > 255) {
    line.refuse(L"A color number (1-255) or standard color name is required.");
    co_return;
  }
  co_await give(line, L"color " + color_text(*color),
                GroupList().integer(kColorCode, off ? -*color : *color));
}

Flow<> linetype_layers(CommandLine& line) {
  const Answer name =
      co_await line.text({.text = L"Enter loaded linetype name or [?] <Continuous>: "});
  const std::wstring wanted = name.none() ? L"Continuous" : name.text;
  const AcDbObjectId linetype = find_record(line.database(), "LTYPE", wanted);
  if (linetype.isNull() && !equal_no_case(wanted, L"CONTINUOUS")) {
    line.refuse(L"Linetype \"" + wanted + L"\" not found.  Use the LINETYPE command to load it.");
    co_return;
  }
  const std::wstring spelled = linetype.isNull() ? wanted : group_text(linetype, 2);
  co_await give(line, L"linetype \"" + spelled + L"\"", GroupList().text(6, spelled));
}

Flow<> weight_layers(CommandLine& line) {
  const Answer typed =
      co_await line.text({.text = L"Enter lineweight (0.0mm - 2.11mm): ", .bits = kNoEnter});
  const auto weight = lineweight_number(typed.text);
  if (!weight) {
    line.refuse(L"A lineweight of 0.0mm to 2.11mm is required.");
    co_return;
  }
  co_await give(line, L"lineweight " + typed.text, GroupList().integer(370, *weight));
}

Flow<> plot_layers(CommandLine& line) {
  const Answer plot = co_await line.keyword(
      {.text = L"Enter a plotting preference [Plot/No plot] <Plot>: ", .keywords = L"Plot No"});
  co_await give(line, L"this setting", GroupList().integer(290, plot.is(L"No") ? 0 : 1));
}

/// The description is extended data of the layer.
Flow<> describe_layers(CommandLine& line) {
  constexpr std::wstring_view kApplication = L"AcAecLayerStandard";
  const Answer typed = co_await line.text({.text = L"Enter layer description: "});
  if (find_record(line.database(), "APPID", kApplication).isNull() &&
      !line.check(register_application(line.database(), kApplication)))
    co_return;
  co_await give(line, L"this description",
                GroupList().text(1001, kApplication).text(1000, L"").text(1000, typed.text));
}

struct Option {
  const wchar_t* name;
  Flow<> (*flow)(CommandLine&);  // null: not offered
};
constexpr Option kOptions[] = {
    {L"?", list_layers},
    {L"Make", make_layer},
    {L"Set", set_layer},
    {L"New", new_layers},
    {L"Rename", nullptr},
    {L"ON", turn_on},
    {L"OFF", turn_off},
    {L"Color", color_layers},
    {L"Ltype", linetype_layers},
    {L"LWeight", weight_layers},
    {L"TRansparency", nullptr},
    {L"MATerial", nullptr},
    {L"Plot", plot_layers},
    {L"Freeze", freeze},
    {L"Thaw", thaw},
    {L"LOck", lock},
    {L"Unlock", unlock},
    {L"stAte", nullptr},
    {L"Description", describe_layers},
    {L"rEconcile", nullptr},
};

Flow<> layer_command(CommandLine& line) {
  line.remark(L"Current layer:  \"" + current_layer(line) + L"\"");
  for (;;) {
    const Answer option = co_await line.keyword(
        {.text = L"Enter an option [?/Make/Set/New/ON/OFF/Color/Ltype/LWeight/Plot/Freeze/"
                 L"Thaw/LOck/Unlock/Description]: ",
         .keywords = L"? Make Set New Rename ON OFF Color Ltype LWeight TRansparency MATerial "
                     L"Plot Freeze Thaw LOck Unlock stAte Description rEconcile"});
    if (option.none()) co_return;
    const auto chosen = std::find_if(std::begin(kOptions), std::end(kOptions),
                                     [&](const Option& row) { return option.is(row.name); });
    if (chosen == std::end(kOptions) || !chosen->flow) {
      line.refuse(option.text + L" is not offered");
      co_return;
    }
    co_await chosen->flow(line);
    if (line.passing_over()) co_return;
  }
}

constexpr CommandRow kRows[] = {
    {"LAYER", "LA", layer_command,
     "[?/Make/Set/New/ON/OFF/Color/Ltype/LWeight/Plot/Freeze/Thaw/LOck/Unlock/"
     "Description] and what it asks for ..., Enter",
     "makes and changes layers; names are lists with commas and wildcards"},
};

}  // namespace

std::span<const CommandRow> layer_commands() { return kRows; }

}  // namespace cad
