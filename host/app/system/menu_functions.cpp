#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/session.h"
#include "host/app/system/diesel.h"
#include "host/app/system/environment.h"
#include "host/base/trace.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

/// A point as menus show it: 1.5,2.0,0.0.
std::wstring variable_text(const Value& value) {
  if (value.is_nil()) return {};
  if (!value.is_cons()) return lisp::to_text(value, lisp::Quoting::kPrinc);
  std::wstring text;
  for (const Value& coordinate : lisp::List(value)) {
    if (!text.empty()) text += L',';
    text += lisp::to_text(coordinate, lisp::Quoting::kPrinc);
  }
  return text;
}

Value fn_menucmd(Call& call) {
  const std::wstring_view request = call.string(0);
  Interpreter& interp = call.interp();
  const bool is_macro = request.starts_with(L"M=") || request.starts_with(L"m=");
  if (!is_macro) {
    if (tracing()) trace(L"menucmd \"" + std::wstring(request) + L"\": there are no menus");
    return {};
  }
  SystemVariables& variables = DocumentSession::of(call).variables;
  DieselSurroundings surroundings;
  surroundings.variable = [&](std::wstring_view name) {
    return variable_text(variables.get(interp, name));
  };
  surroundings.number = [&](std::wstring_view name) -> std::optional<double> {
    const Value value = variables.get(interp, name);
    if (!value.is_number()) return std::nullopt;
    return value.number();
  };
  surroundings.environment = [](std::wstring_view name) {
    return environment_value(name).value_or(std::wstring());
  };
  return interp.string(evaluate_diesel(request.substr(2), surroundings));
}

constexpr lisp::Builtin kMenuFunctions[] = {
    // name, arguments, function, usage, help
    {"menucmd", 1, 1, fn_menucmd, "(menucmd \"M=expression\")",
     "the value of a string expression $(...); nil for menus, which are not there"},
};

}  // namespace

std::span<const lisp::Builtin> menu_functions() { return kMenuFunctions; }

}  // namespace cad
