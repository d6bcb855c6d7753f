#pragma once

#include <map>
#include <string>

#include "host/lisp/portable_value.h"

namespace cad {

/// Variables that all documents share, as long as the host lives: vl-bb-set, vl-bb-ref, and those
/// vl-propagate gives to documents opened later. Names are upper case.
struct Blackboard {
  std::map<std::wstring, lisp::PortableValue> variables;
  std::map<std::wstring, lisp::PortableValue> propagated;
};
Blackboard& blackboard();

/// Sets the propagated variables in the LISP environment of a new document.
void set_propagated(lisp::Interpreter& interp);

}  // namespace cad
