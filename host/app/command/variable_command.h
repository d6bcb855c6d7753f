#pragma once

#include "host/app/command/command_table.h"

namespace cad {

/// What the name of a system variable does when it is typed as a command: asks for its value.
const CommandRow& variable_command();

/// Asks for the new value of a variable and sets it; the name has any letter case.
Flow<> ask_variable(CommandLine& line, std::wstring name);

}  // namespace cad
