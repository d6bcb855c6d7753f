#include "cli/files.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <system_error>

#include "cli/tool.h"
#include "host/dwg/converter.h"

namespace cli {
namespace {

std::string wrong_with_input(const std::string& file) {
  return file == "-" ? "files are read, not standard input (./- is a file of that name)"
                     : wrong_if_empty(file);
}

bool is_same_file(const std::string& a, const std::string& b) {
  std::error_code none;  // one that is not there is no other
  return std::filesystem::equivalent(a, b, none);
}

}  // namespace

std::string wrong_if_empty(const std::string& value) {
  return value.empty() ? "the value is empty" : "";
}

CLI::Option* add_drawing(CLI::App& command, std::string& drawing) {
  return add_input(command, "DRAWING", drawing, "the drawing, a DXF or DWG file");
}

CLI::Option* add_input(CLI::App& command, const char* name, std::string& file, const char* help) {
  return command.add_option(name, file, help)->required()->type_name("")->check(wrong_with_input);
}

CLI::Option* add_inputs(CLI::App& command, const char* name, std::vector<std::string>& files,
                        const char* help) {
  return command.add_option(name, files, help)->required()->type_name("")->check(wrong_with_input);
}

CLI::Option* add_output(CLI::App& command, std::string& file, const char* type, const char* help) {
  return command.add_option("-o,--output", file, help)->type_name(type)->check(wrong_if_empty);
}

void add_target_options(CLI::App& command, TargetOptions& target) {
  CLI::Option* const output =
      add_output(command, target.output, "OUT", "write the drawing to this DXF file");
  command
      .add_flag("--in-place", target.in_place,
                "write the drawing over itself; the previous one stays as DRAWING.bak")
      ->excludes(output);
}

bool may_be_output(const std::string& output, const std::string& input) {
  if (output == "-") {
    complain("-o -: files are written, not standard output (./- is a file of that name)");
    return false;
  }
  if (!is_same_file(output, input)) return true;
  complain("-o " + output + " is the file that is read, and would be lost; name another");
  return false;
}

bool may_be_drawing(const std::string& output, const std::string& input) {
  const cad::Status possible = cad::Host::check_target(output);
  if (!possible) complain(possible.error().message());
  return possible && may_be_output(output, input);
}

bool may_be_target(const TargetOptions& target, const std::string& input) {
  if (target.output.empty()) return true;
  if (!cad::dwg::is_dwg_file(input) && is_same_file(target.output, input)) {
    complain("-o " + target.output +
             " is the drawing itself; --in-place writes over it and keeps the previous one");
    return false;
  }
  return may_be_drawing(target.output, input);
}

}  // namespace cli
