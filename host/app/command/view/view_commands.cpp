#include <algorithm>
#include <cmath>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/app/command/view/view.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/base/trace.h"
#include "host/db/extents.h"

/// Commands that change what is on a screen. There is none, but picks depend on how large the view
/// is, so the view's centre and height are kept; the rest only takes its answers.
namespace cad {
namespace {

void trace_nothing_to_show(const CommandLine& line) {
  if (tracing()) trace(line.names() + L": there is no screen");
}

Flow<> nothing_command(CommandLine& line) {
  trace_nothing_to_show(line);
  co_return;
}

Flow<> vslide_command(CommandLine& line) {
  co_await line.text({.text = L"Enter name of slide file: "});
  trace_nothing_to_show(line);
}

// --- ZOOM, PAN

void show(CommandLine& line, const AcGePoint3d& low, const AcGePoint3d& high) {
  const AcGePoint3d centre = low + (high - low) / 2;
  const double height =
      std::max(std::abs(high.y - low.y), std::abs(high.x - low.x) / screen_ratio(line));
  set_view(line, centre, height > 0.0 ? height : view_height(line));
}

void show_extents(CommandLine& line) {
  const AcGePoint3d low = line.to_world() * line.point_variable(L"EXTMIN");
  const AcGePoint3d high = line.to_world() * line.point_variable(L"EXTMAX");
  if (low.x <= high.x && low.y <= high.y) show(line, low, high);
}

/// "0.5x" is relative to the view, "0.5xp" to paper, "2" to the whole drawing.
bool scale_view(CommandLine& line, std::wstring_view typed) {
  const std::size_t mark = std::min(typed.find_first_of(L"xX"), typed.size());
  const auto factor = parse_real(to_utf8(typed.substr(0, mark)));
  if (!factor || !(*factor > 0.0)) return false;
  const bool is_relative = mark < typed.size();
  if (!is_relative) show_extents(line);
  set_view(line, view_centre(line), view_height(line) / *factor);
  return true;
}

Flow<> zoom_centre(CommandLine& line) {
  const Answer centre = co_await line.point({.text = L"Specify center point: "});
  const Answer height = co_await line.distance(
      {.text = L"Enter magnification or height: ", .bits = kNoZero | kNoNegative | kAnyText});
  const AcGePoint3d at = centre.is_point() ? centre.point : view_centre(line);
  set_view(line, at, height.is_number() ? height.number : view_height(line));
  if (height.is_text() && !scale_view(line, height.text))
    line.print(L"Requires a distance, numberX, or option keyword.");
}

Flow<> zoom_window(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify first corner: ", .bits = kNoEnter});
  const Answer second = co_await line.corner(
      {.text = L"Specify opposite corner: ", .bits = kNoEnter, .from = &first.point});
  show(line, first.point, second.point);
}

Flow<> zoom_objects(CommandLine& line) {
  const Answer which = co_await line.selection();
  AcDbExtents all;
  bool any = false;
  for (const AcDbObjectId id : which.selection) {
    AcDbExtents one;
    if (!entity_extents(id, one)) continue;
    all.addExt(one);
    any = true;
  }
  if (any) show(line, all.minPoint(), all.maxPoint());
}

Flow<> zoom_scale(CommandLine& line) {
  const Answer factor =
      co_await line.word({.text = L"Enter a scale factor (nX or nXP): ", .bits = kNoEnter});
  if (!scale_view(line, factor.text)) line.refuse(L"Requires a positive number, nX or nXP.");
}

Flow<> zoom_command(CommandLine& line) {
  const Answer first = co_await line.point(
      {.text = L"Specify corner of window, enter a scale factor (nX or nXP), or [All/Center/"
               L"Dynamic/Extents/Previous/Scale/Window/Object] <real time>: ",
       .keywords = L"All Center Dynamic Extents Left Previous Scale Vmax Window Object",
       .bits = kAnyText});
  if (first.is_point()) {
    const Answer second = co_await line.corner(
        {.text = L"Specify opposite corner: ", .bits = kNoEnter, .from = &first.point});
    show(line, first.point, second.point);
  }
  if (first.is_text() && !scale_view(line, first.text))
    line.refuse(L"Requires a positive number, nX or nXP, a point or an option keyword.");
  if (first.is(L"All") || first.is(L"Extents")) show_extents(line);
  if (first.is(L"Center")) co_await zoom_centre(line);
  if (first.is(L"Scale")) co_await zoom_scale(line);
  if (first.is(L"Window")) co_await zoom_window(line);
  if (first.is(L"Object")) co_await zoom_objects(line);
  trace_nothing_to_show(line);
}

Flow<> pan_command(CommandLine& line) {
  const Answer first = co_await line.point({.text = L"Specify base point or displacement: "});
  if (!first.is_point()) co_return;
  const Answer second =
      co_await line.point({.text = L"Specify second point: ", .from = &first.point});
  const AcGeVector3d by = second.is_point() ? second.point - first.point : first.point.asVector();
  set_view(line, view_centre(line) - by, view_height(line));
}

Flow<> view_command(CommandLine& line) {
  const Answer option = co_await line.keyword(
      {.text = L"Enter an option [?/Delete/Orthographic/Restore/Save/Window]: ",
       .keywords = L"? Delete Orthographic Restore Save sEttings Window",
       .bits = kNoEnter});
  co_await line.text({.text = option.is(L"Orthographic") ? L"Enter an option [Top/Bottom/Front/"
                                                           L"BAck/Left/Right] <Top>: "
                              : option.is(L"?") ? L"Enter view name(s) to list <*>: "
                                                : L"Enter view name: "});
  if (option.is(L"Window")) co_await zoom_window(line);
  trace_nothing_to_show(line);
}

// --- Drawing aids

struct SnapBit {
  const wchar_t* name;
  int bit;
};
constexpr SnapBit kSnapBits[] = {
    {L"ENDPOINT", 1},     {L"MIDPOINT", 2},      {L"CENTER", 4},     {L"NODE", 8},
    {L"QUADRANT", 16},    {L"INTERSECTION", 32}, {L"INSERTION", 64}, {L"PERPENDICULAR", 128},
    {L"TANGENT", 256},    {L"NEAREST", 512},     {L"QUICK", 1024},   {L"APPARENT", 2048},
    {L"EXTENSION", 4096}, {L"PARALLEL", 8192},   {L"NONE", 0},       {L"OFF", 0},
};

std::optional<int> snap_bit(std::wstring_view name) {
  if (name.starts_with(L"_")) name.remove_prefix(1);
  for (const SnapBit& row : kSnapBits)
    if (name.size() >= 3 && std::wstring_view(row.name).size() >= name.size() &&
        equal_no_case(std::wstring_view(row.name).substr(0, name.size()), name))
      return row.bit;
  return std::nullopt;
}

Flow<> osnap_command(CommandLine& line) {
  const Answer names = co_await line.text({.text = L"Enter list of object snap modes: "});
  int modes = 0;
  for (const std::wstring& name : comma_parts(names.none() ? L"NONE" : names.text)) {
    const auto bit = snap_bit(name);
    if (!bit) {
      line.refuse(L"\"" + name + L"\" is no object snap mode");
      co_return;
    }
    modes |= *bit;
  }
  line.set_variable(L"OSMODE", modes);
}

Flow<> switch_variable(CommandLine& line, const wchar_t* variable) {
  const Answer mode =
      co_await line.keyword({.text = L"Enter mode [ON/OFF]: ", .keywords = L"ON OFF"});
  if (!mode.none()) line.set_variable(variable, mode.is(L"ON") ? 1 : 0);
}

Flow<> qtext_command(CommandLine& line) { co_await switch_variable(line, L"QTEXTMODE"); }
Flow<> regenauto_command(CommandLine& line) { co_await switch_variable(line, L"REGENMODE"); }
Flow<> ortho_command(CommandLine& line) { co_await switch_variable(line, L"ORTHOMODE"); }
Flow<> fill_command(CommandLine& line) { co_await switch_variable(line, L"FILLMODE"); }
Flow<> blipmode_command(CommandLine& line) { co_await switch_variable(line, L"BLIPMODE"); }

Flow<> viewres_command(CommandLine& line) {
  co_await line.keyword({.text = L"Do you want fast zooms? [Yes/No] <Y>: ", .keywords = L"Yes No"});
  co_await line.integer({.text = L"Enter circle zoom percent (1-20000) <1000>: "});
}

Flow<> delay_command(CommandLine& line) {
  co_await line.integer({.text = L"Enter delay time in milliseconds: "});
}

Flow<> plan_command(CommandLine& line) {
  const Answer option =
      co_await line.keyword({.text = L"Enter an option [Current ucs/Ucs/World] <Current>: ",
                             .keywords = L"Current Ucs World"});
  if (option.is(L"Ucs")) co_await line.text({.text = L"Enter name of UCS: "});
  trace_nothing_to_show(line);
}

/// The attributes that are shown: ATTMODE.
Flow<> attdisp_command(CommandLine& line) {
  const Answer mode =
      co_await line.keyword({.text = L"Enter attribute visibility setting [Normal/ON/OFF]: ",
                             .keywords = L"Normal ON OFF"});
  if (mode.none()) co_return;
  line.set_variable(L"ATTMODE", mode.is(L"OFF") ? 0 : mode.is(L"Normal") ? 1 : 2);
}

Flow<> grid_command(CommandLine& line) {
  const Answer answer = co_await line.distance(
      {.text = L"Specify grid spacing(X) or [ON/OFF/Snap/Major/aDaptive/Limits/Follow/Aspect]: ",
       .keywords = L"ON OFF Snap Major aDaptive Limits Follow Aspect",
       .bits = kNoNegative});
  if (answer.is(L"ON") || answer.is(L"OFF"))
    line.set_variable(L"GRIDMODE", answer.is(L"ON") ? 1 : 0);
  else if (answer.is_keyword() && !answer.is(L"Snap"))
    line.refuse(answer.text + L" is not offered");
  trace_nothing_to_show(line);
}

Flow<> snap_command(CommandLine& line) {
  const Answer answer = co_await line.distance(
      {.text = L"Specify snap spacing or [ON/OFF/Aspect/Legacy/Style/Type]: ",
       .keywords = L"ON OFF Aspect Rotate Legacy Style Type",
       .bits = kNoZero | kNoNegative});
  if (answer.is(L"ON") || answer.is(L"OFF"))
    line.set_variable(L"SNAPMODE", answer.is(L"ON") ? 1 : 0);
  else if (answer.is_keyword())
    line.refuse(answer.text + L" is not offered");
  trace_nothing_to_show(line);
}

constexpr unsigned kQuiet = CommandRow::kTransparent | CommandRow::kNoStep;
constexpr const char* kNothing = "nothing: there is no screen";

constexpr CommandRow kRows[] = {
    {"ZOOM", "Z", zoom_command,
     "All | Center, point, height | Extents | Previous | Scale, factor | Window, two corners | "
     "Object, objects | factor | two corners",
     "keeps the view's centre and height, by which picks are measured", kQuiet},
    {"PAN", "P", pan_command, "base point, second point", "moves the view's centre", kQuiet},
    {"VIEW", "V", view_command, "[?/Delete/Orthographic/Restore/Save/Window], name", kNothing,
     kQuiet},
    {"REGEN", "RE", nothing_command, "", kNothing, kQuiet},
    {"REGENALL", "REA", nothing_command, "", kNothing, kQuiet},
    {"REDRAW", "R", nothing_command, "", kNothing, kQuiet},
    {"REDRAWALL", "RA", nothing_command, "", kNothing, kQuiet},
    {"GRAPHSCR", "", nothing_command, "", kNothing, kQuiet},
    {"TEXTSCR", "", nothing_command, "", kNothing, kQuiet},
    {"HIDE", "HI", nothing_command, "", kNothing, kQuiet},
    {"MSPACE", "MS", nothing_command, "", kNothing, kQuiet},
    {"PSPACE", "PS", nothing_command, "", kNothing, kQuiet},
    {"PLAN", "", plan_command, "[Current/Ucs/World]", kNothing, kQuiet},
    {"VIEWRES", "", viewres_command, "fast zooms, percent", kNothing, kQuiet},
    {"DELAY", "", delay_command, "milliseconds", "nothing: nobody watches", kQuiet},
    {"QTEXT", "", qtext_command, "ON or OFF", "sets QTEXTMODE", kQuiet},
    {"REGENAUTO", "", regenauto_command, "ON or OFF", "sets REGENMODE", kQuiet},
    {"ATTDISP", "", attdisp_command, "[Normal/ON/OFF]", "sets ATTMODE", kQuiet},
    {"VSLIDE", "", vslide_command, "file", kNothing, kQuiet},
    {"OSNAP", "OS", osnap_command, "list of modes", "sets OSMODE", kQuiet},
    {"ORTHO", "", ortho_command, "ON or OFF", "sets ORTHOMODE", kQuiet},
    {"FILL", "", fill_command, "ON or OFF", "sets FILLMODE", kQuiet},
    {"BLIPMODE", "", blipmode_command, "ON or OFF", "sets BLIPMODE", kQuiet},
    {"GRID", "", grid_command, "spacing [ON/OFF/Snap]", "sets GRIDMODE", kQuiet},
    {"SNAP", "SN", snap_command, "spacing [ON/OFF]", "sets SNAPMODE", kQuiet},
};

}  // namespace

std::span<const CommandRow> view_commands() { return kRows; }

}  // namespace cad
