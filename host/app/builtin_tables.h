#pragma once

#include <span>

#include "host/lisp/builtin.h"

/// The LISP functions that need a drawing or the host, one table per source file.
namespace cad {

std::span<const lisp::Builtin> entity_functions();
std::span<const lisp::Builtin> selection_functions();
std::span<const lisp::Builtin> curve_functions();
std::span<const lisp::Builtin> coordinate_functions();
std::span<const lisp::Builtin> dictionary_functions();
std::span<const lisp::Builtin> make_functions();
std::span<const lisp::Builtin> ldata_functions();
std::span<const lisp::Builtin> property_functions();
std::span<const lisp::Builtin> unit_functions();
std::span<const lisp::Builtin> symbol_table_functions();
std::span<const lisp::Builtin> host_functions();
std::span<const lisp::Builtin> blackboard_functions();
std::span<const lisp::Builtin> display_functions();
std::span<const lisp::Builtin> environment_functions();
std::span<const lisp::Builtin> loading_functions();
std::span<const lisp::Builtin> menu_functions();
std::span<const lisp::Builtin> unsupported_functions();
std::span<const lisp::Builtin> prompt_functions();
std::span<const lisp::Builtin> command_functions();

}  // namespace cad
