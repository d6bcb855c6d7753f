#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/console.h"
#include "host/app/session.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

Value fn_getvar(Call& call) {
  return DocumentSession::of(call).variables.get(call.interp(), call.string(0));
}

Value fn_setvar(Call& call) {
  DocumentSession::of(call).variables.set(call.interp(), call.string(0), call.arg(1));
  return call.arg(1);
}

Value fn_alert(Call& call) {
  print_console(std::wstring(call.string(0)) + L"\n");
  return Value();
}

constexpr lisp::Builtin kHostFunctions[] = {
    // name, arguments, function, usage, help
    {"getvar", 1, 1, fn_getvar, "(getvar name)",
     "a system variable of the drawing or the session; nil when there is none"},
    {"setvar", 2, 2, fn_setvar, "(setvar name value)",
     "sets a system variable; those of the drawing are saved with it"},
    {"alert", 1, 1, fn_alert, "(alert text)", "there is no screen: prints the text"},
};

}  // namespace

std::span<const lisp::Builtin> host_functions() { return kHostFunctions; }

}  // namespace cad
