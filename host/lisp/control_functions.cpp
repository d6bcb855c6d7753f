#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/base/codepage.h"
#include "host/lisp/files.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/names.h"
#include "host/lisp/printer.h"
#include "host/lisp/reader.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

Value fn_eval(Call& call) { return call.interp().eval(call.arg(0)); }

Value fn_apply(Call& call) {
  std::vector<Value> args;
  for (const Value& item : call.list(1)) args.push_back(item);
  return call.interp().apply(call.arg(0), args);
}

Value fn_mapcar(Call& call) {
  Interpreter& interp = call.interp();
  const Value function = interp.callable(call.arg(0));
  const std::size_t lists = call.size() - 1;
  std::vector<const Value*> rests(lists);
  for (std::size_t i = 0; i < lists; ++i) {
    call.list(i + 1);
    rests[i] = &call.arg(i + 1);
  }
  ListBuilder results(interp.heap());
  std::vector<Value> args(lists);
  for (;;) {
    for (std::size_t i = 0; i < lists; ++i) {
      if (!rests[i]->is_cons()) return results.finish();
      args[i] = rests[i]->cons()->car;
      rests[i] = &rests[i]->cons()->cdr;
    }
    results.append(interp.apply(function, args));
  }
}

Value fn_catch_all_apply(Call& call) {
  Interpreter& interp = call.interp();
  const std::size_t mark = interp.binding_mark();
  std::vector<Value> args;
  for (const Value& item : call.list(1)) args.push_back(item);
  try {
    return interp.apply(call.arg(0), args);
  } catch (const LispError& error) {
    if (!error.catchable) throw;
    interp.unbind_to(mark);
    return Value::adopt(interp.heap().make<CatchError>(0, interp.string(error.message)));
  }
}

Value fn_catch_error_p(Call& call) { return call.truth(call.arg(0).is(Kind::kCatchError)); }

Value fn_catch_error_message(Call& call) {
  if (!call.arg(0).is(Kind::kCatchError)) raise_bad_type(L"catch-all-apply-error", call.arg(0));
  return static_cast<CatchError*>(call.arg(0).cell())->message;
}

Value fn_quit(Call&) { raise(L"quit / exit abort"); }

Value fn_exit_with_error(Call& call) { raise(std::wstring(call.string(0))); }

Value fn_exit_with_value(Call& call) { throw ProgramExit{call.arg(0)}; }

Value fn_read(Call& call) {
  if (call.arg(0).is_nil()) return Value();
  Reader reader(call.interp(), call.string(0));
  std::optional<Value> form = reader.next();
  return form ? *std::move(form) : Value();
}

// When the file is missing: the second argument, called if it is a function.
Value fn_load(Call& call) {
  const std::wstring_view name = call.string(0);
  std::optional<std::string> path = find_file(call.interp(), name);
  if (!path) path = find_file(call.interp(), std::wstring(name) + L".lsp");
  if (path) return call.interp().load(*path);
  if (!call.has(1)) raise(L"LOAD failed: " + quoted_start(call.arg(0)));
  const Value& otherwise = call.arg(1);
  const Value& function =
      otherwise.is_symbol() && otherwise.symbol()->value ? otherwise.symbol()->value : otherwise;
  switch (function.kind()) {
    case Kind::kSubr:
    case Kind::kUsubr:
    case Kind::kExternal:
      return call.interp().apply(function, {});
    default:
      return otherwise;
  }
}

void print_help(Interpreter& interp, const char* usage, const char* help) {
  interp.print(from_utf8(std::string(usage) + "\n  " + help + "\n"));
}

Value fn_help(Call& call) {
  Interpreter& interp = call.interp();
  if (!call.has(0)) {
    print_help(interp, "(help 'name)",
               "what a built-in function does; (atoms-family 0) lists the names");
    return Value::blank();
  }
  const bool is_text = call.arg(0).is_string();
  const std::wstring name = is_text ? symbol_name(call.string(0)) : call.symbol(0).name;
  const Value value = interp.variable(name);
  switch (value.kind()) {
    case Kind::kSubr:
      print_help(interp, value.subr()->row->usage, value.subr()->row->help);
      break;
    case Kind::kSpecialForm:
      print_help(interp, value.special()->row->usage, value.special()->row->help);
      break;
    case Kind::kUsubr:
      interp.print(name + L": a function defined in LISP\n");
      break;
    case Kind::kExternal:
      interp.print(name + L": a function of a loaded module\n");
      break;
    default:
      interp.print(name + L": no such function\n");
  }
  return Value::blank();
}

// Asked for by many programs, with nothing to do here: functions of all extensions are built in,
// memory needs no collector, the error modes do not differ.
Value fn_nothing(Call&) { return Value(); }

// clang-format off
constexpr Builtin kControlFunctions[] = {
    {"eval",    1, 1, fn_eval,    "(eval form)",                 "the value of a form"},
    {"apply",   2, 2, fn_apply,   "(apply function list)",       "calls the function with the elements as arguments"},
    {"mapcar",  2, kMany, fn_mapcar, "(mapcar function list ...)", "the results of calling it with the first, second, ... elements"},
    {"read",    0, 1, fn_read,    "(read text)",                 "the first form of a text, unevaluated"},
    {"load",    1, 2, fn_load,    "(load file [onfailure])",     "evaluates a file; onfailure instead when there is none"},
    {"exit",    0, 0, fn_quit,    "(exit)",                      "ends the program with an error"},
    {"quit",    0, 0, fn_quit,    "(quit)",                      "ends the program with an error"},
    {"help",    0, 1, fn_help,    "(help 'name)",                "prints usage and purpose of a built-in function"},
    {"vl-catch-all-apply",         2, 2, fn_catch_all_apply,     "(vl-catch-all-apply function list)", "as apply, but an error becomes a value"},
    {"vl-catch-all-error-p",       1, 1, fn_catch_error_p,       "(vl-catch-all-error-p value)",       "T for an error caught by vl-catch-all-apply"},
    {"vl-catch-all-error-message", 1, 1, fn_catch_error_message, "(vl-catch-all-error-message error)", "the text of a caught error"},
    {"vl-exit-with-error",         1, 1, fn_exit_with_error,     "(vl-exit-with-error text)",          "ends the program with this error"},
    {"vl-exit-with-value",         1, 1, fn_exit_with_value,     "(vl-exit-with-value value)",         "ends the program without an error; its value"},
    {"vl-load-com",                0, 0, fn_nothing, "(vl-load-com)",                "does nothing: all functions are there"},
    {"gc",                         0, 0, fn_nothing, "(gc)",                         "does nothing: memory is freed at once"},
    {"vmon",                       0, 0, fn_nothing, "(vmon)",                       "does nothing: there is no paging"},
    {"vl-acad-defun",              1, 1, fn_nothing, "(vl-acad-defun symbol)",       "does nothing: modules see every function"},
    {"vl-acad-undefun",            1, 1, fn_nothing, "(vl-acad-undefun symbol)",     "does nothing: modules see every function"},
    {"*push-error-using-command*", 0, 0, fn_nothing, "(*push-error-using-command*)", "does nothing: *error* may use commands"},
    {"*push-error-using-stack*",   0, 0, fn_nothing, "(*push-error-using-stack*)",   "does nothing: *error* sees local variables"},
    {"*pop-error-mode*",           0, 0, fn_nothing, "(*pop-error-mode*)",           "does nothing"},
};
// clang-format on

}  // namespace

std::span<const Builtin> control_functions() { return kControlFunctions; }

}  // namespace cad::lisp
