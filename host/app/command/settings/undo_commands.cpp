#include "host/app/command/command_table.h"
#include "host/app/session.h"
#include "host/db/undo.h"

namespace cad {
namespace {

UndoLog& log_of(const CommandLine& line) { return undo_log(line.database()); }

void take_back(CommandLine& line, std::size_t steps) {
  const std::size_t done = log_of(line).undo(steps);
  if (done < steps) line.print(L"Everything has been undone");
}

Flow<> u_command(CommandLine& line) {
  take_back(line, 1);
  co_return;
}

Flow<> control(CommandLine& line) {
  const Answer option = co_await line.keyword(
      {.text = L"Enter an UNDO control option [All/None/One/Combine/Layer] <All>: ",
       .keywords = L"All None One Combine Layer"});
  if (option.is(L"Combine") || option.is(L"Layer")) {
    const Answer answer =
        co_await line.keyword({.text = L"Combine? [Yes/No] <Yes>: ", .keywords = L"Yes No"});
    line.remark(answer.is(L"No") ? L"Nothing is combined." : L"There is nothing to combine.");
    co_return;
  }
  log_of(line).set_recording(!option.is(L"None"));
}

Flow<> back(CommandLine& line) {
  if (log_of(line).has_mark()) {
    log_of(line).back_to_mark();
    line.remark(L"Mark encountered");
    co_return;
  }
  const Answer really = co_await line.keyword(
      {.text = L"This will undo everything. OK? <Y>: ", .keywords = L"Yes No"});
  if (really.is(L"No")) co_return;
  log_of(line).undo(log_of(line).steps() + 1);
  line.remark(L"Everything has been undone");
}

Flow<> undo_command(CommandLine& line) {
  const Answer option =
      co_await line.integer({.text = L"Enter the number of operations to undo or "
                                     L"[Auto/Control/BEgin/End/Mark/Back] <1>: ",
                             .keywords = L"Auto Control BEgin Group End Mark Back",
                             .bits = kNoZero | kNoNegative});
  if (option.none()) take_back(line, 1);
  if (option.is_number()) take_back(line, static_cast<std::size_t>(option.integer()));
  if (option.is(L"BEgin") || option.is(L"Group")) log_of(line).begin_group();
  if (option.is(L"End")) log_of(line).end_group();
  if (option.is(L"Mark")) log_of(line).set_mark();
  if (option.is(L"Back")) co_await back(line);
  if (option.is(L"Control")) co_await control(line);
  if (option.is(L"Auto")) {
    const Answer mode = co_await line.keyword(
        {.text = L"Enter UNDO Auto mode [ON/OFF] <On>: ", .keywords = L"ON OFF"});
    line.remark(mode.is(L"OFF") ? L"Every command stays a step of its own." : L"");
  }
}

Flow<> redo_command(CommandLine& line) {
  if (log_of(line).redo(1) == 0) line.print(L"Nothing to redo");
  co_return;
}

Flow<> mredo_command(CommandLine& line) {
  const Answer option = co_await line.integer({.text = L"Enter number of actions or [All/Last]: ",
                                               .keywords = L"All Last",
                                               .bits = kNoZero | kNoNegative});
  std::size_t steps = 1;
  if (option.is_number()) steps = static_cast<std::size_t>(option.integer());
  if (option.is(L"All")) steps = log_of(line).redo_steps();
  if (log_of(line).redo(steps) == 0) line.print(L"Nothing to redo");
}

constexpr CommandRow kRows[] = {
    {"U", "", u_command, "", "takes back the last step", CommandRow::kNoStep},
    {"UNDO", "", undo_command, "number | BEgin | End | Mark | Back | Control, mode | Auto, ON/OFF",
     "takes back steps; brackets steps into one", CommandRow::kNoStep},
    {"REDO", "", redo_command, "", "does again what was taken back", CommandRow::kNoStep},
    {"MREDO", "", mredo_command, "number [All/Last]", "does several steps again",
     CommandRow::kNoStep},
};

}  // namespace

std::span<const CommandRow> undo_commands() { return kRows; }

}  // namespace cad
