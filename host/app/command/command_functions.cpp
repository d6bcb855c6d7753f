#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/command/command_line.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

/// The value of PAUSE.
bool is_pause(const Value& value) { return value.is_string() && value.text() == L"\\"; }

/// Whether a value can be typed at a command line at all.
bool is_input(const Value& value) {
  return value.is_string() || value.is_number() || value.is_ename() || value.is_list() ||
         value.is(lisp::Kind::kPickset);
}

/// Gives the arguments to the command line one after the other; false when one was refused and
/// `strict` is set.
bool feed_all(CommandLine& line, Call& call, bool strict) {
  line.begin_call();
  for (const Value& input : call.args()) {
    if (line.passing_over()) return false;
    if (!is_input(input)) lisp::raise_bad_type(L"stringp", input);
    bool taken = true;
    if (is_pause(input)) {
      if (line.active()) line.feed_from_user();
    } else if (input.is_nil()) {
      line.cancel();
    } else {
      taken = line.feed(input);
    }
    if (!taken && strict) return false;
  }
  return !line.passing_over();
}

/// (command) is Esc.
Value fn_command(Call& call) {
  CommandLine& line = *DocumentSession::of(call).command_line;
  if (call.size() == 0) {
    line.begin_call();
    line.cancel();
  }
  feed_all(line, call, false);
  return Value();
}

Value fn_vl_cmdf(Call& call) {
  CommandLine& line = *DocumentSession::of(call).command_line;
  if (call.size() == 0) {
    line.begin_call();
    line.cancel();
    return call.truth(true);
  }
  if (feed_all(line, call, true)) return call.truth(true);
  line.cancel();
  return Value();
}

Value fn_command_s(Call& call) {
  CommandLine& line = *DocumentSession::of(call).command_line;
  for (const Value& input : call.args())
    if (is_pause(input)) lisp::raise(L"command-s takes no PAUSE: it cannot wait for the user");
  if (line.active()) lisp::raise(L"command-s: " + line.names() + L" is active");
  feed_all(line, call, false);
  if (!line.active() || line.end_where_it_may()) return Value();
  const std::wstring waiting =
      line.names() + L" is not complete, it waits for \"" + line.pending_prompt() + L"\"";
  line.cancel();
  lisp::raise(L"command-s: " + waiting);
}

Value fn_true(Call& call) { return call.truth(true); }

constexpr lisp::Builtin kCommandFunctions[] = {
    // name, arguments, function, usage, help
    {"command", 0, lisp::kMany, fn_command, "(command [input...])",
     "runs a command with these inputs: names, options, numbers, points, entities, selection "
     "sets, \"\" for Enter, PAUSE for the user's answer; (command) alone is Esc. A command may go "
     "on in the next call"},
    {"vl-cmdf", 0, lisp::kMany, fn_vl_cmdf, "(vl-cmdf [input...])",
     "as command; stops at the first input that is refused, and is then nil"},
    {"command-s", 0, lisp::kMany, fn_command_s, "(command-s [input...])",
     "as command, for a command that is complete"},
    {"*push-error-using-command*", 0, 0, fn_true, "(*push-error-using-command*)",
     "nothing: *error* may always use command"},
    {"*push-error-using-stack*", 0, 0, fn_true, "(*push-error-using-stack*)",
     "nothing: *error* always sees the variables of the function that failed"},
    {"*pop-error-mode*", 0, 0, fn_true, "(*pop-error-mode*)", "nothing, see the two above"},
};

}  // namespace

std::span<const lisp::Builtin> command_functions() { return kCommandFunctions; }

}  // namespace cad
