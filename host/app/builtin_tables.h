#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "host/lisp/builtin.h"

/// The LISP functions that need a drawing or the host, one table per source file.
namespace cad {

std::span<const lisp::Builtin> entity_functions();
std::span<const lisp::Builtin> selection_functions();
std::span<const lisp::Builtin> dictionary_functions();
std::span<const lisp::Builtin> symbol_table_functions();
std::span<const lisp::Builtin> host_functions();

/// What Host::set_input() was given.
std::function<std::optional<std::wstring>()>& host_input();

}  // namespace cad
