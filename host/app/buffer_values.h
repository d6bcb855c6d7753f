#pragma once

#include <optional>

#include "host/db/resbuf.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

namespace cad {

class SelectionSets;

/// The LISP value of a single buffer; empty for a type that is no LISP value, brackets included.
std::optional<lisp::Value> value_of_buffer(lisp::Interpreter& interp, const resbuf& buffer,
                                           const SelectionSets& sets);

/// The LISP value of a chain: the list it brackets when it is one list, else a list of its items.
/// Empty for null, unbalanced brackets, a misplaced dot, or a buffer that is no LISP value (the
/// host takes no RTLONG in lists).
std::optional<lisp::Value> value_of_chain(lisp::Interpreter& interp, const resbuf* chain,
                                          const SelectionSets& sets);

}  // namespace cad
