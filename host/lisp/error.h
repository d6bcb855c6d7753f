#pragma once

#include <string>
#include <string_view>

#include "host/lisp/value.h"

namespace cad::lisp {

/// Stops the evaluation. Thrown inside host/lisp and by builtins of other layers, never beyond the
/// top level of an Interpreter. The message is worded as programs expect it in *error*.
struct LispError {
  std::wstring message;
  /// False for what a program may not go on after (interrupt, step limit): vl-catch-all-apply
  /// passes it on.
  bool catchable = true;
  /// "init.lsp:12", the form at top level of the innermost file being loaded.
  std::string where = {};
  /// The call of the built-in function that raised it, noted for a call trace only.
  std::wstring call = {};
};

/// Ends the program without an error: the top level returns the value. Thrown by
/// vl-exit-with-value.
struct ProgramExit {
  Value value;
};

[[noreturn]] void raise(std::wstring message);

/// "bad argument type: numberp: nil". The predicate names what was wanted: numberp fixnump stringp
/// listp consp symbolp lentityp lselsetp streamp ...
[[noreturn]] void raise_bad_type(std::wstring_view predicate, const Value& found);

/// "bad argument value: positive 0".
[[noreturn]] void raise_bad_value(std::wstring_view wanted, const Value& found);

}  // namespace cad::lisp
