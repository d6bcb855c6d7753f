#include <string>

#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

Value fn_set(Call& call) {
  call.symbol(0).value = call.arg(1);
  return call.arg(1);
}

// T for a symbol that has a value; the argument is the symbol, usually quoted.
Value fn_boundp(Call& call) {
  return call.truth(call.arg(0).is_symbol() && static_cast<bool>(call.symbol(0).value));
}

Value fn_symbol_name(Call& call) { return call.interp().string(call.symbol(0).name); }
Value fn_symbol_value(Call& call) { return call.symbol(0).value; }

// Format 0 gives symbols, 1 texts; a list of names asks for these only, nil where one is unknown.
Value fn_atoms_family(Call& call) {
  Interpreter& interp = call.interp();
  const bool as_text = call.integer(0) == 1;
  ListBuilder builder(interp.heap());
  const auto add = [&](std::wstring_view name) {
    builder.append(as_text ? interp.string(name) : Value::symbol(&interp.intern(name)));
  };
  if (!call.has(1)) {
    for (const std::wstring& name : interp.bound_names()) add(name);
    return builder.finish();
  }
  for (const Value& name : call.list(1)) {
    if (!name.is_string()) raise_bad_type(L"stringp", name);
    const Symbol* symbol = interp.find_symbol(name.text());
    if (symbol != nullptr && symbol->value) {
      add(symbol->name);
    } else {
      builder.append(Value());
    }
  }
  return builder.finish();
}

Value fn_defun_q_list_ref(Call& call) {
  const Value& value = call.symbol(0).value;
  return value.is_cons() ? value : Value();
}

// clang-format off
constexpr Builtin kSymbolFunctions[] = {
    {"set",              2, 2, fn_set,              "(set symbol value)",         "sets the variable the symbol names; the value"},
    {"boundp",           1, 1, fn_boundp,           "(boundp symbol)",            "T when the symbol has a value"},
    {"vl-symbol-name",   1, 1, fn_symbol_name,      "(vl-symbol-name symbol)",    "the name of a symbol as text"},
    {"vl-symbol-value",  1, 1, fn_symbol_value,     "(vl-symbol-value symbol)",   "the value of a symbol"},
    {"atoms-family",     1, 2, fn_atoms_family,     "(atoms-family 0|1 [names])", "the names in use, as symbols (0) or texts (1)"},
    {"defun-q-list-ref", 1, 1, fn_defun_q_list_ref, "(defun-q-list-ref symbol)",  "the list of a function made by defun-q"},
    {"defun-q-list-set", 2, 2, fn_set,              "(defun-q-list-set symbol list)", "makes the list the function of the symbol"},
};
// clang-format on

}  // namespace

std::span<const Builtin> symbol_functions() { return kSymbolFunctions; }

}  // namespace cad::lisp
