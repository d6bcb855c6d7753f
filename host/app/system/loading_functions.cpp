#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/console.h"
#include "host/app/modules.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/heap.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

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

/// Each command becomes (defun C:NAME () (setq C:NAME nil) (load file) (C:NAME)): a file that does
/// not define the command after all ends in "no function definition".
Value fn_autoload(Call& call) {
  Interpreter& interp = call.interp();
  call.string(0);
  const auto symbol = [&](std::wstring_view name) { return Value::symbol(&interp.intern(name)); };
  for (const Value& name : call.list(1)) {
    if (!name.is_string()) lisp::raise_bad_type(L"stringp", name);
    lisp::Symbol& command = interp.intern(L"C:" + std::wstring(name.text()));
    const Value forget = interp.list({symbol(L"SETQ"), Value::symbol(&command), Value()});
    const Value load = interp.list({symbol(L"LOAD"), call.arg(0)});
    const Value run = interp.list({Value::symbol(&command)});
    command.value = interp.make_function(interp.list({Value(), forget, load, run}), &command);
  }
  return {};
}

Value fn_ver(Call& call) { return call.interp().string(L"AutoLISP Release 18.0 (en)"); }

constexpr lisp::Builtin kLoadingFunctions[] = {
    // name, arguments, function, usage, help
    {"arxload", 1, 2, fn_arxload, "(arxload file [on-failure])", "loads a module"},
    {"arxunload", 1, 2, fn_arxunload, "(arxunload name [on-failure])", "unloads a module"},
    {"arx", 0, 0, fn_arx, "(arx)", "names of the loaded modules"},
    {"autoload", 2, 2, fn_autoload, "(autoload file commands)",
     "defines commands that load the file when first used"},
    {"ver", 0, 0, fn_ver, "(ver)", "the release of the language"},
};

}  // namespace

std::span<const lisp::Builtin> loading_functions() { return kLoadingFunctions; }

}  // namespace cad
