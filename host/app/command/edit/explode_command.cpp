#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/base/codepage.h"
#include "host/db/explode.h"

namespace cad {
namespace {

/// From programs EXPLODE takes one answer, be it a set, and no Enter, unless bit 1 of QAFLAGS asks
/// for the dialogue that people get.
Flow<> explode_command(CommandLine& line) {
  const bool dialogue = (line.integer_variable(L"QAFLAGS") & 1) != 0;
  const Answer which = co_await line.selection(
      {.text = L"Select objects: ", .bits = dialogue ? 0u : unsigned{kAtOnce}});
  const std::vector<AcDbObjectId> objects = changeable(line, which.selection);
  std::size_t refused = 0;
  for (const AcDbObjectId object : objects) {
    const Result<std::vector<AcDbObjectId>> pieces = explode_entity(object);
    if (pieces) {
      erase(object);
    } else {
      ++refused;
      line.print(from_utf8(pieces.error().message()));
    }
  }
  if (refused > 0) {
    line.print(counted(refused, L"could not be exploded.", L"could not be exploded."));
  }
}

constexpr CommandRow kRows[] = {
    {"EXPLODE", "X", explode_command, "objects (one pick, name or set; no Enter)",
     "breaks polylines, block references, dimensions and multiline texts into pieces"},
};

}  // namespace

std::span<const CommandRow> explode_commands() { return kRows; }

}  // namespace cad
