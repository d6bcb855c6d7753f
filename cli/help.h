#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

/// How the program and its commands explain themselves.
namespace cli {

/// From now on help is laid out for the width of the terminal, of the program and of all commands
/// it has.
void lay_out_help(CLI::App& program);

/// "pipenote help run" becomes "pipenote run --help".
void take_help_command(int& argc, char** argv);

/// What is wrong with the command line, and which help tells how it is meant: one line.
std::string usage_error(const CLI::App& program, const CLI::ParseError& error);

}  // namespace cli
