#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

class AcApDocument;

namespace cad {

/// System variables of one document: those of the drawing's header, and those of the session, which
/// live as long as the document is open. Names have any letter case.
class SystemVariables {
 public:
  explicit SystemVariables(AcApDocument& document) : document_(document) {}

  /// Nil for a variable the host does not have.
  lisp::Value get(lisp::Interpreter& interp, std::wstring_view name);
  /// Sets a variable for the session. Raises a LISP error for one that is not there, is read-only
  /// or is of another kind.
  void set(lisp::Interpreter& interp, std::wstring_view name, const lisp::Value& value);

 private:
  AcApDocument& document_;
  std::unordered_map<std::string, lisp::Value> values_;  // set, or read from the header before
};

}  // namespace cad
