#include "host/app/system/blackboard.h"

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/documents.h"
#include "host/app/session.h"
#include "host/lisp/interpreter.h"

namespace cad {

Blackboard& blackboard() {
  static Blackboard shared;
  return shared;
}

namespace {

bool is_of(const AcDbDatabase& database, std::uint64_t ename) {
  return id_of_name(ename).database() == &database;
}

/// The value as a drawing may have it.
lisp::Value value_for(lisp::PortableValue value, lisp::Interpreter& interp,
                      const AcDbDatabase& database) {
  value.forget_enames([&](std::uint64_t ename) { return !is_of(database, ename); });
  return value.in(interp);
}

}  // namespace

void Blackboard::forget_entities_of(const AcDbDatabase& database) {
  for (auto* const shared : {&variables, &propagated})
    for (auto& [name, value] : *shared)
      value.forget_enames([&](std::uint64_t ename) { return is_of(database, ename); });
}

void set_propagated(lisp::Interpreter& interp, const AcDbDatabase& database) {
  for (const auto& [name, value] : blackboard().propagated)
    interp.set_variable(name, value_for(value, interp, database));
}

namespace {

using lisp::Call;
using lisp::PortableValue;
using lisp::Value;

Value fn_bb_set(Call& call) {
  blackboard().variables[call.symbol(0).name] = PortableValue::of(call.arg(1));
  return call.arg(1);
}

Value fn_bb_ref(Call& call) {
  const auto found = blackboard().variables.find(call.symbol(0).name);
  if (found == blackboard().variables.end()) return Value();
  return value_for(found->second, call.interp(), DocumentSession::of(call).database());
}

Value fn_propagate(Call& call) {
  const lisp::Symbol& symbol = call.symbol(0);
  const PortableValue value = PortableValue::of(symbol.value);
  for (AcApDocument* document : acDocManager->documents()) {
    lisp::Interpreter& interp = document->session().interpreter();
    if (&interp == &call.interp()) continue;
    interp.set_variable(symbol.name, value_for(value, interp, *document->database()));
  }
  blackboard().propagated[symbol.name] = value;
  return Value();
}

constexpr lisp::Builtin kBlackboardFunctions[] = {
    // name, arguments, function, usage, help
    {"vl-bb-set", 2, 2, fn_bb_set, "(vl-bb-set symbol value)",
     "sets a variable that all documents share; the value, which is data"},
    {"vl-bb-ref", 1, 1, fn_bb_ref, "(vl-bb-ref symbol)",
     "a variable that all documents share; nil when it was never set"},
    {"vl-propagate", 1, 1, fn_propagate, "(vl-propagate symbol)",
     "gives the value of a variable to all documents, those opened later too"},
};

}  // namespace

std::span<const lisp::Builtin> blackboard_functions() { return kBlackboardFunctions; }

}  // namespace cad
