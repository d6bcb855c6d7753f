#include "host/app/command/command_table.h"
#include "host/app/session.h"
#include "host/db/open.h"

namespace cad {
namespace {

/// Erases, or brings back; whether it could be done (not on a locked layer).
bool turn(AcDbObjectId id, bool erasing) {
  AcDbObject* object = nullptr;
  if (acdbOpenAcDbObject(object, id, AcDb::kForWrite, !erasing) != Acad::eOk) return false;
  const bool done = object->erase(erasing) == Acad::eOk;
  object->close();
  return done;
}

Flow<> erase_command(CommandLine& line) {
  const Answer which = co_await line.selection();
  std::vector<AcDbObjectId> erased;
  for (const AcDbObjectId id : which.selection)
    if (turn(id, true)) erased.push_back(id);
  const std::size_t locked = which.selection.size() - erased.size();
  if (locked > 0) line.print(std::to_wstring(locked) + L" were on a locked layer.");
  if (!erased.empty()) line.session().erased_last = std::move(erased);
}

Flow<> oops_command(CommandLine& line) {
  for (const AcDbObjectId id : line.session().erased_last)
    if (id.isErased()) turn(id, false);
  line.session().erased_last.clear();
  co_return;
}

constexpr CommandRow kRows[] = {
    {"ERASE", "E DELETE", erase_command, "objects, Enter", "erases objects"},
    {"OOPS", "", oops_command, "", "brings back what the last ERASE has erased"},
};

}  // namespace

std::span<const CommandRow> erase_commands() { return kRows; }

}  // namespace cad
