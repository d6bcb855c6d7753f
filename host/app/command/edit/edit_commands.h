#pragma once

#include <span>

#include "host/app/command/command_table.h"

/// The tables of this folder.
namespace cad {

std::span<const CommandRow> move_commands();

}  // namespace cad
