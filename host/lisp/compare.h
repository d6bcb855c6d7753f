#pragma once

#include "host/lisp/value.h"

namespace cad::lisp {

/// eq: the same object. Numbers of one type and strings are the same when their content is (the
/// host keeps one string per text), and so are names of one drawing object.
bool is_eq(const Value& a, const Value& b);

/// equal: the same structure, of any depth; numbers may differ by the fuzz, and 1 equals 1.0.
bool is_equal(const Value& a, const Value& b, double fuzz = 0.0);

/// The = of the language: numbers by value, strings by content, everything else as eq.
bool is_same_value(const Value& a, const Value& b);

/// -1, 0, 1 for two numbers or two strings; raises "bad argument type for compare" for others.
/// Something that is not a number is never less nor greater: 2.
int order(const Value& a, const Value& b);

}  // namespace cad::lisp
