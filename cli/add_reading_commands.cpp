#include <CLI/CLI.hpp>
#include <memory>

#include "cli/add_commands.h"
#include "cli/commands.h"
#include "cli/files.h"
#include "cli/tool.h"

namespace cli {
namespace {

constexpr char kRecordsFooter[] = R"(Examples:
  pipenote records plan.dxf
  pipenote records plan.dxf --owner 2F3 --type pcgb
  pipenote records plan.dxf --json | jq length)";

constexpr char kCheckFooter[] =
    R"(Types that a module of one's own registers are known when it is loaded.

Exit status: 0 when nothing is wrong, else 1.

Examples:
  pipenote check plan.dxf
  pipenote check plan.dxf --load falls.arx.so)";

}  // namespace

void add_records_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<RecordsOptions>();
  CLI::App* const command =
      program.add_subcommand("records", "list the annotation records of a drawing");
  add_drawing(*command, options->drawing);
  command->footer(kRecordsFooter);
  command->add_flag("--json", options->json, "print JSON");
  command->add_option("--owner", options->owner, "records of this entity only")
      ->check(wrong_if_empty)
      ->type_name("HANDLE");
  command->add_option("--type", options->type, "records of this annotation type only")
      ->check(wrong_if_empty)
      ->type_name("TYPE");
  add_load_option(*command, options->modules);
  command->callback([=, &status] { status = records_command(*options); });
}

void add_check_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App* const command =
      program.add_subcommand("check", "list what is wrong with the records of a drawing");
  add_drawing(*command, options->drawing);
  command->footer(kCheckFooter);
  add_load_option(*command, options->modules);
  command->callback([=, &status] { status = check_command(*options); });
}

}  // namespace cli
