#pragma once

#include <string_view>

#include "host/lisp/interpreter.h"

class AcApDocument;

namespace cad {

class SystemVariables;

/// Where a fact is looked up.
struct FactSource {
  lisp::Interpreter& interp;
  AcApDocument& document;
  SystemVariables& variables;
};

/// A variable that is found out when it is asked for.
struct VariableFact {
  const char* name;
  lisp::Value (*value)(FactSource&);
};

/// Null for a variable that is no such fact.
const VariableFact* find_variable_fact(std::string_view name);

/// A variable that takes more than a check of its bounds to set. False when the value is none of
/// its.
struct VariableSetter {
  const char* name;
  bool (*set)(FactSource&, const lisp::Value& value);
};
const VariableSetter* find_variable_setter(std::string_view name);

}  // namespace cad
