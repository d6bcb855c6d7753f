#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/geometry/extents.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

class AcApDocument;

namespace cad {

struct VariableRow;

/// System variables of one document: those of the drawing's header, which are saved with it and
/// follow what is undone, and those of the session, which live as long as the document is open.
/// Names have any letter case.
class SystemVariables {
 public:
  explicit SystemVariables(AcApDocument& document) : document_(document) {}

  /// Nil for a variable the host does not have.
  lisp::Value get(lisp::Interpreter& interp, std::wstring_view name);
  /// Sets a variable. One of the header that the drawing's release has no place for lasts for the
  /// session. Raises a LISP error for one that is not there, is read-only, or for a value that is
  /// none of its: another kind, out of bounds, a name of nothing.
  void set(lisp::Interpreter& interp, std::wstring_view name, const lisp::Value& value);
  /// What the host itself has found out or decided: read-only variables too, of any kind.
  void put(std::wstring_view name, lisp::Value value);

  /// The box around the entities of the current space; empty when there are none. Found out again
  /// after the drawing changed.
  const AcDbExtents& extents();

 private:
  lisp::Value header_value(lisp::Interpreter& interp, const VariableRow& row);
  bool set_row(lisp::Interpreter& interp, const VariableRow& row, const lisp::Value& value);
  bool set_header(const VariableRow& row, const lisp::Value& value);

  AcApDocument& document_;
  std::unordered_map<std::string, lisp::Value> values_;  // set in the session
  std::unordered_map<std::string, lisp::Value> header_;  // read from the header before
  std::uint64_t header_version_ = 0;                     // that header_ was read from
  AcDbExtents extents_;
  std::uint64_t extents_version_ = 0;
};

}  // namespace cad
