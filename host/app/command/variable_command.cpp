#include "host/app/command/variable_command.h"

#include "host/app/prompt/values.h"
#include "host/app/session.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Value;

/// The value the answer stands for; nil for Enter, which keeps the variable as it is.
Value value_of(lisp::Interpreter& interp, const Value& current, const Answer& answer) {
  if (answer.none()) return Value();
  if (current.is_integer()) return Value::integer(answer.integer());
  if (current.is_real()) return Value::real(answer.number);
  if (current.is_string()) return interp.string(answer.text == L"." ? L"" : answer.text);
  return list_of(interp, answer.point);
}

Flow<> variable_flow(CommandLine& line) { co_await ask_variable(line, line.variable_name()); }

constexpr CommandRow kVariableCommand = {"SETVAR",
                                         "",
                                         variable_flow,
                                         "new value",
                                         "sets the system variable of that name",
                                         CommandRow::kTransparent};

}  // namespace

const CommandRow& variable_command() { return kVariableCommand; }

Flow<> ask_variable(CommandLine& line, std::wstring name) {
  DocumentSession& session = line.session();
  const Value current = session.variables.get(session.interpreter(), name);
  const std::wstring text = L"Enter new value for " + name + L" <" + typed_value(current) + L">: ";
  const Ask ask{.text = text};
  Answer answer;
  if (current.is_integer()) {
    answer = co_await line.integer(ask);
  } else if (current.is_real()) {
    answer = co_await line.real(ask);
  } else if (current.is_string()) {
    answer = co_await line.text(ask);
  } else {
    answer = co_await line.point(ask);
    if (answer.is_point()) answer.point = line.to_user() * answer.point;
  }
  const Value value = value_of(session.interpreter(), current, answer);
  if (value) session.variables.set(session.interpreter(), name, value);
}

}  // namespace cad
