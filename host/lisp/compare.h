#pragma once

#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

namespace cad::lisp {

/// eq: the same object. Numbers of one type and strings are the same when their content is (the
/// host keeps one string per text), and so are names of one drawing object.
bool is_eq(const Value& a, const Value& b);

/// equal: the same structure, of any depth; numbers may differ by the fuzz, and 1 equals 1.0.
/// Counts steps: lists that share their parts can take forever to compare.
bool is_equal(Interpreter& interp, const Value& a, const Value& b, double fuzz = 0.0);

/// The = of the language: numbers by value, strings by content, everything else as eq.
bool is_same_value(const Value& a, const Value& b);

/// -1, 0, 1 for two numbers or two strings, 2 when one is the real that is not a number. Raises
/// "bad argument type for compare" for others.
int order(const Value& a, const Value& b);

}  // namespace cad::lisp
