#pragma once

#include <span>

#include "host/app/command/command_table.h"

/// The tables of this folder.
namespace cad {

std::span<const CommandRow> array_commands();
std::span<const CommandRow> break_commands();
std::span<const CommandRow> change_commands();
std::span<const CommandRow> corner_commands();
std::span<const CommandRow> divide_commands();
std::span<const CommandRow> explode_commands();
std::span<const CommandRow> join_commands();
std::span<const CommandRow> match_commands();
std::span<const CommandRow> move_commands();
std::span<const CommandRow> offset_commands();
std::span<const CommandRow> pedit_commands();
std::span<const CommandRow> stretch_commands();
std::span<const CommandRow> trim_commands();

}  // namespace cad
