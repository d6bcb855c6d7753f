#include <cstdlib>
#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/console.h"
#include "host/app/modules.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/heap.h"
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

/// The name on success. Otherwise the last argument when there is one, or an error, the reason
/// having been printed.
Value load_result(Call& call, const Status& status, const wchar_t* failure) {
  if (status) return call.arg(0);
  if (call.has(1)) return call.arg(1);
  print_console(L"\n" + from_utf8(status.error().message()) + L"\n");
  lisp::raise(failure);
}

Value fn_arxload(Call& call) {
  return load_result(call, Modules::instance().load(to_utf8(call.string(0))), L"ARXLOAD failed");
}

Value fn_arxunload(Call& call) {
  return load_result(call, Modules::instance().unload(to_utf8(call.string(0))),
                     L"ARXUNLOAD failed");
}

Value fn_arx(Call& call) {
  lisp::ListBuilder names(call.interp().heap());
  for (const auto& module : Modules::instance().all())
    names.append(call.interp().string(from_utf8(module->name)));
  return names.finish();
}

Value fn_getenv(Call& call) {
  const char* const value = std::getenv(to_utf8(call.string(0)).c_str());
  return value ? call.interp().string(from_utf8(value)) : Value();
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
     "sets a system variable for this session; the drawing's header stays as it is"},
    {"arxload", 1, 2, fn_arxload, "(arxload file [on-failure])", "loads a module"},
    {"arxunload", 1, 2, fn_arxunload, "(arxunload name [on-failure])", "unloads a module"},
    {"arx", 0, 0, fn_arx, "(arx)", "names of the loaded modules"},
    {"getenv", 1, 1, fn_getenv, "(getenv name)", "an environment variable; nil when it is not set"},
    {"alert", 1, 1, fn_alert, "(alert text)", "there is no screen: prints the text"},
};

}  // namespace

std::span<const lisp::Builtin> host_functions() { return kHostFunctions; }

}  // namespace cad
