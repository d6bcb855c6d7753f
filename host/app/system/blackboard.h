#pragma once

#include <map>
#include <string>

#include "host/lisp/portable_value.h"

class AcDbDatabase;

namespace cad {

/// Variables that all documents share, as long as the host lives: vl-bb-set, vl-bb-ref, and those
/// vl-propagate gives to documents opened later. Names are upper case. An entity name means
/// something in its own drawing only: elsewhere it is nil.
struct Blackboard {
  std::map<std::wstring, lisp::PortableValue> variables;
  std::map<std::wstring, lisp::PortableValue> propagated;

  /// To be called while the drawing that closes is still there.
  void forget_entities_of(const AcDbDatabase& database);
};
Blackboard& blackboard();

/// Sets the propagated variables in the LISP environment of a new document.
void set_propagated(lisp::Interpreter& interp, const AcDbDatabase& database);

}  // namespace cad
