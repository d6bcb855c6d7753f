#include <cmath>

#include "host/app/command/draw/draw.h"
#include "host/app/command/edit/curve_entity.h"
#include "host/app/command/edit/edit_commands.h"
#include "host/db/curve.h"
#include "host/db/make_object.h"
#include "host/geometry/offset.h"

namespace cad {
namespace {

/// What OFFSET was told beforehand.
struct Settings {
  double distance = -1.0;  ///< negative: through a point
  bool erases_source = false;
  bool on_current_layer = false;
  bool through() const { return distance < 0.0; }
};

/// False when the command is over.
Flow<bool> ask_settings(CommandLine& line, Settings& to) {
  to.distance = line.real_variable(L"OFFSETDIST");
  for (;;) {
    const std::wstring text = L"Specify offset distance or [Through/Erase/Layer] <" +
                              (to.through() ? L"Through" : shown(line, to.distance)) + L">: ";
    const Answer given = co_await line.distance(
        {.text = text, .keywords = L"Through Erase Layer", .bits = kNoZero | kNoNegative});
    if (given.is(L"Erase")) {
      const Answer erasing =
          co_await line.keyword({.text = L"Erase source object after offsetting? [Yes/No] <No>: ",
                                 .keywords = L"Yes No"});
      to.erases_source = erasing.is(L"Yes");
    } else if (given.is(L"Layer")) {
      const Answer layer = co_await line.keyword(
          {.text = L"Enter layer option for offset objects [Current/Source] <Source>: ",
           .keywords = L"Current Source"});
      to.on_current_layer = layer.is(L"Current");
    } else {
      if (given.is(L"Through")) to.distance = -1.0;
      if (given.is_number()) to.distance = given.number;
      line.set_variable(L"OFFSETDIST", to.distance);
      co_return true;
    }
  }
}

/// Draws the offset of an object on the side of, or through, a point. What was drawn.
std::vector<AcDbObjectId> offset(CommandLine& line, AcDbObjectId source, const AcGePoint3d& side,
                                 const Settings& settings, EditLog& log) {
  const std::optional<Curve> curve = curve_of(source);
  if (!curve || curve->segments().empty()) {
    line.print(L"Cannot offset that object.");
    return {};
  }
  const double through = offset_distance_through(*curve, side);
  const double distance = settings.through() ? through : std::copysign(settings.distance, through);
  if (through == 0.0) {
    line.print(L"The point must be beside the object.");
    return {};
  }
  const std::vector<Curve> beside = offset_curve(*curve, distance);
  if (beside.empty()) {
    line.print(L"Cannot offset that object.");
    return {};
  }
  log.begin_step();
  std::vector<AcDbObjectId> drawn;
  for (const Curve& piece : beside) {
    const AcDbObjectId made = draw_curve_like(line, source, piece);
    if (made.isNull()) return drawn;
    log.made(made);
    drawn.push_back(made);
    if (settings.on_current_layer) {
      GroupList layer;
      layer.text(8, line.text_variable(L"CLAYER"));
      if (!line.check(change_object(made, layer))) return drawn;
    }
  }
  if (settings.erases_source && erase(source)) log.erased(source);
  return drawn;
}

Flow<> offset_command(CommandLine& line) {
  Settings settings;
  co_await ask_settings(line, settings);
  EditLog log;
  for (;;) {
    const Answer picked =
        co_await line.entity({.text = L"Select object to offset or [Exit/Undo] <Exit>: ",
                              .keywords = L"Exit Undo",
                              .bits = kMayEnd});
    if (picked.is(L"Undo")) {
      if (!log.undo()) line.print(L"Command has been completely undone.");
      continue;
    }
    if (!picked.is_entity()) co_return;
    AcDbObjectId source = picked.entity;
    bool multiple = false;
    for (;;) {
      const bool through = settings.through();
      const Answer side = co_await line.point(
          {.text = through ? L"Specify through point or [Exit/Multiple/Undo] <Exit>: "
                           : L"Specify point on side to offset or [Exit/Multiple/Undo] <Exit>: ",
           .keywords = L"Exit Multiple Undo",
           .bits = multiple ? unsigned{kMayEnd} : 0u});
      if (side.is(L"Multiple")) {
        multiple = true;
        continue;
      }
      if (side.is(L"Undo")) {
        if (!log.undo()) line.print(L"Command has been completely undone.");
        continue;
      }
      if (!side.is_point()) co_return;
      const std::vector<AcDbObjectId> drawn = offset(line, source, side.point, settings, log);
      if (line.passing_over()) co_return;
      if (!multiple) break;
      if (!through && drawn.size() == 1) source = drawn.front();
    }
  }
}

constexpr CommandRow kRows[] = {
    {"OFFSET", "O", offset_command,
     "distance or [Through/Erase/Layer], object, point on a side (or to go through), object, "
     "point ..., Enter",
     "draws a parallel", CommandRow::kEndsWithEnter},
};

}  // namespace

std::span<const CommandRow> offset_commands() { return kRows; }

}  // namespace cad
