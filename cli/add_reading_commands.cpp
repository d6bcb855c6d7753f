#include <CLI/CLI.hpp>
#include <memory>

#include "cli/add_commands.h"
#include "cli/commands.h"

namespace cli {
namespace {

constexpr char kRecordsFooter[] = R"(Examples:
  pipenote records plan.dxf
  pipenote records plan.dxf --owner 2F3 --type pcgb
  pipenote records plan.dxf --json | jq length)";

constexpr char kCheckFooter[] = R"(Exit status: 0 when nothing is wrong, else 1.

Example:
  pipenote check plan.dxf)";

CLI::App* add_command(CLI::App& program, const char* name, const char* what, std::string& drawing) {
  CLI::App* const command = program.add_subcommand(name, what);
  command->add_option("DRAWING", drawing, "the drawing, a DXF or DWG file")
      ->required()
      ->type_name("");
  return command;
}

}  // namespace

void add_records_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<RecordsOptions>();
  CLI::App* const command =
      add_command(program, "records", "list the annotation records of a drawing", options->drawing);
  command->footer(kRecordsFooter);
  command->add_flag("--json", options->json, "print JSON");
  command->add_option("--owner", options->owner, "records of this entity only")
      ->type_name("HANDLE");
  command->add_option("--type", options->type, "records of this annotation type only")
      ->type_name("TYPE");
  command->callback([=, &status] { status = records_command(*options); });
}

void add_check_command(CLI::App& program, int& status) {
  const auto drawing = std::make_shared<std::string>();
  CLI::App* const command =
      add_command(program, "check", "list what is wrong with the records of a drawing", *drawing);
  command->footer(kCheckFooter);
  command->callback([=, &status] { status = check_command(*drawing); });
}

}  // namespace cli
