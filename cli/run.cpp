#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cli/add_commands.h"
#include "cli/files.h"
#include "cli/tool.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Scripts and expressions run in the order in which they are given. The value of each
expression is printed on a line of its own; scripts print what they print. Without
-o or --in-place nothing is written, and a LISP error leaves every file as it was.

Prompts (getpoint, getstring, entsel, ssget, PAUSE in command ...) take their answers from
the file of --answers, one in each line: every line counts, an empty one is Enter. Points
are typed as at the host's prompt (10,20  @5,0  @10<45), handle:2F3 names an entity. The
answers are printed behind their prompts. Without the file a prompt ends the program.

Examples:
  pipenote run plan.dxf label.lsp --in-place
  pipenote run plan.dxf tools.lsp -e '(record-labels)' -o labelled.dxf
  pipenote run plan.dxf --select 2F3,2F4 -e '(t1)' --in-place
  pipenote run plan.dxf mark.lsp --answers mark.txt -o marked.dxf)";

struct RunOptions {
  ToolOptions tool;
  std::string drawing;
  std::vector<std::string> scripts;
  std::vector<std::string> expressions;
  std::vector<std::string> selection;
  TargetOptions target;
  std::string answers;
};

/// One script or expression, in the order of the command line.
struct Step {
  bool is_script;
  std::string text;
};

std::vector<Step> steps_in_order(const CLI::App& command, const CLI::Option* scripts,
                                 const CLI::Option* expressions, const RunOptions& options) {
  std::vector<Step> steps;
  std::size_t script = 0, expression = 0;
  for (const CLI::Option* option : command.parse_order()) {
    if (option == scripts && script < options.scripts.size())
      steps.push_back({true, options.scripts[script++]});
    if (option == expressions && expression < options.expressions.size())
      steps.push_back({false, options.expressions[expression++]});
  }
  return steps;
}

/// Runs them all, or up to the first error.
ExitStatus run_steps(Tool& tool, AcApDocument* drawing, const std::vector<Step>& steps) {
  const InterruptScope interrupts(tool.host());
  for (const Step& step : steps) {
    const cad::Result<cad::lisp::Value> value =
        step.is_script ? tool.host().eval_file(drawing, step.text)
                       : tool.host().eval_string(drawing, step.text, "-e");
    if (!value || InterruptScope::interrupted()) {
      tool.fresh_line();
      complain((value ? "interrupted" : value.error().message()) + "; the drawing was not written");
      return kProgramFailed;
    }
    if (step.is_script || value->is_blank()) continue;
    tool.fresh_line();
    std::printf("%s\n", cad::Host::printed(*value).c_str());
  }
  tool.host().finish_command(drawing);
  return kSuccess;
}

ExitStatus run(const RunOptions& options, const std::vector<Step>& steps) {
  const TargetOptions& target = options.target;
  if (!may_be_target(target, options.drawing)) return kWrongUsage;
  Tool tool(options.tool);
  ExitStatus status = kSuccess;
  AcApDocument* const drawing = tool.open(options.drawing, target.in_place, status);
  if (!drawing) return status;
  if (!options.selection.empty()) {
    if (cad::Status known = tool.host().set_selection(drawing, options.selection); !known) {
      complain("--select: " + known.error().message());
      return kWrongUsage;
    }
  }
  if (options.answers.empty()) {
    tool.host().refuse_prompts("give the answers with --answers FILE");
  } else if (cad::Status read = tool.host().set_answers(options.answers); !read) {
    complain("--answers: " + read.error().message());
    return kWrongUsage;
  }
  status = run_steps(tool, drawing, steps);
  if (status != kSuccess) return status;
  if (!target.output.empty()) return tool.save(drawing, target.output, false);
  // A drawing that nothing has changed keeps its file, its date and its backup.
  if (target.in_place && drawing->database()->is_modified())
    return tool.save(drawing, options.drawing, true);
  return kSuccess;
}

}  // namespace

void add_run_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<RunOptions>();
  CLI::App* const command = program.add_subcommand("run", "run LISP scripts on a drawing");
  command->footer(kFooter);
  add_drawing(*command, options->drawing);
  CLI::Option* const scripts =
      command->add_option("SCRIPT", options->scripts, "LISP files to run")->type_name("");
  CLI::Option* const expressions =
      command
          ->add_option("-e,--eval", options->expressions, "evaluate this text and print its value")
          ->type_name("EXPR")
          ->allow_extra_args(false);
  add_target_options(*command, options->target);
  command
      ->add_option("--select", options->selection,
                   "entities that answer the first selection by the user")
      ->type_name("HANDLE,HANDLE...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--answers", options->answers, "answers to prompts, one in each line")
      ->type_name("FILE")
      ->check(CLI::ExistingFile);
  add_tool_options(*command, options->tool);
  command->callback([=, &status] {
    status = run(*options, steps_in_order(*command, scripts, expressions, *options));
  });
}

}  // namespace cli
