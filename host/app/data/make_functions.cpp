#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/data/entmake_sequence.h"
#include "host/app/data/lisp_groups.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/trace.h"
#include "host/db/make_object.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

/// Nil is all that programs get; the reason is for whoever looks for the fault.
Value refused(const char* function, const Error& error) {
  if (tracing()) trace(from_utf8(std::string(function) + ": " + error.message()));
  return Value();
}

Value fn_entmod(Call& call) {
  call.list(0);
  static thread_local std::vector<GroupView> memory;
  LispGroups groups(call.arg(0), std::move(memory));
  if (groups.name().isNull()) return refused("entmod", fail("", "group -1 is missing"));
  const Status status = change_object(groups.name(), groups.groups());
  memory = groups.take_memory();
  return status ? call.arg(0) : refused("entmod", status.error());
}

Value make(Call& call, const char* function, bool wants_name) {
  EntmakeSequence& sequence = *DocumentSession::of(call).entmake;
  call.list(0);
  if (call.arg(0).is_nil()) {
    sequence.cancel();
    return Value();
  }
  const Result<EntmakeSequence::Outcome> outcome =
      sequence.take(DocumentSession::of(call).database(), call.arg(0), wants_name);
  if (!outcome) return refused(function, outcome.error());
  if (!outcome->block_name.empty()) return call.interp().string(outcome->block_name);
  return wants_name && !outcome->made.isNull() ? name_of(call.interp(), outcome->made)
                                               : call.arg(0);
}

Value fn_entmake(Call& call) { return make(call, "entmake", false); }
Value fn_entmakex(Call& call) { return make(call, "entmakex", true); }

constexpr lisp::Builtin kMakeFunctions[] = {
    // name, arguments, function, usage, help
    {"entmod", 1, 1, fn_entmod, "(entmod groups)",
     "changes the object of group -1: groups in the list replace its own, others stay; the list, "
     "or "
     "nil when the object cannot be changed so"},
    {"entmake", 0, 1, fn_entmake, "(entmake [groups])",
     "makes an entity, a table record, or a step of POLYLINE ... SEQEND, INSERT ... SEQEND, BLOCK "
     "... "
     "ENDBLK; the list (of ENDBLK the block's name), or nil. Without groups a sequence is "
     "cancelled"},
    {"entmakex", 0, 1, fn_entmakex, "(entmakex [groups])",
     "as entmake, but gives the name of what was made, and makes xrecords and dictionaries too, to "
     "be "
     "filed by dictadd"},
};

}  // namespace

std::span<const lisp::Builtin> make_functions() { return kMakeFunctions; }

}  // namespace cad
