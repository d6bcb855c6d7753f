#pragma once

#include <span>

#include "host/lisp/builtin.h"

/// The tables of the language itself, one per source file. Every interpreter starts with these.
namespace cad::lisp {

std::span<const SpecialForm> special_forms();
std::span<const Builtin> control_functions();
std::span<const Builtin> list_functions();
std::span<const Builtin> list_search_functions();
std::span<const Builtin> number_functions();
std::span<const Builtin> compare_functions();
std::span<const Builtin> predicate_functions();
std::span<const Builtin> string_functions();
std::span<const Builtin> string_search_functions();
std::span<const Builtin> convert_functions();
std::span<const Builtin> geometry_functions();
std::span<const Builtin> print_functions();
std::span<const Builtin> file_functions();
std::span<const Builtin> path_functions();
std::span<const Builtin> symbol_functions();
std::span<const SpecialForm> trace_forms();
std::span<const Builtin> trace_functions();
std::span<const Builtin> namespace_functions();

}  // namespace cad::lisp
