#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The files that commands read and write, as they stand on the command line.
namespace cli {

/// Nothing, or that the value of an option is empty, which nobody means: a check for options.
std::string wrong_if_empty(const std::string& value);

/// DRAWING, the one that most commands want.
CLI::Option* add_drawing(CLI::App& command, std::string& drawing);
/// A file to read that has this name in the help. "-" is refused: files are mapped.
CLI::Option* add_input(CLI::App& command, const char* name, std::string& file, const char* help);
CLI::Option* add_inputs(CLI::App& command, const char* name, std::vector<std::string>& files,
                        const char* help);

/// -o, the file to write, shown as `type` in the help.
CLI::Option* add_output(CLI::App& command, std::string& file, const char* type, const char* help);

/// Where a command writes the drawing.
struct TargetOptions {
  std::string output;
  bool in_place = false;
  bool none() const { return output.empty() && !in_place; }
};
/// -o, --in-place
void add_target_options(CLI::App& command, TargetOptions& target);

/// Whether `output` may be written, nothing being there as well: it is told when it is "-" or the
/// file that is read, `input`.
bool may_be_output(const std::string& output, const std::string& input);
/// The same for a drawing, which in addition is no DWG file.
bool may_be_drawing(const std::string& output, const std::string& input);
bool may_be_target(const TargetOptions& target, const std::string& input);

}  // namespace cli
