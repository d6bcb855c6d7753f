#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "cli/add_commands.h"
#include "cli/labelling.h"
#include "cli/progress.h"
#include "host/base/codepage.h"
#include "host/base/decimal_text.h"
#include "host/base/fold.h"
#include "network/survey.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Draws the labels of all pipes and nodes and records them; pipenote update keeps them right.
What is labelled already is brought up to date. Labels keep clear of pipes, nodes and texts: how
many found no free place is told, and what got no label, a line each with its handle.

Types of labels:
  xzgj     along a pipe: diameter, length, slope, flow arrow
  xdgj     diameter along the end of a pipe
  xdbg_st  invert at the start of a pipe
  xdbg_ed  invert at its end
  pcgb     length, diameter, flow, speed and head loss of a pipe
  bjbh     number of a node
  bzjg     number, ground and bottom of a well, diameter and invert of its pipes
  pcjdb    flow, ground and head of a node

Exit status: 0 when the drawing was labelled; 1, and nothing written, when it has no pipes and no
nodes, none of them could be labelled or the work was interrupted.

Examples:
  pipenote label plan.dxf -o labelled.dxf
  pipenote label sewer.dxf --types xzgj,bzjg --in-place
  pipenote label plan.dxf --angle 180 -o labelled.dxf)";

struct LabelOptions {
  ToolOptions tool;
  std::string drawing;
  TargetOptions target;
  std::vector<std::string> types;
  double angle = 0.0;
  bool json = false;
};

struct Counts {
  long drawn = 0;
  long updated = 0;
  long crowded = 0;
  long skipped = 0;
  bool any_label() const { return drawn + updated != 0; }
};

std::string label_call(const LabelOptions& options) {
  std::string types;
  for (const std::string& type : options.types) types += ' ' + lisp_text(type);
  if (!types.empty()) types = "(list" + types + ")";
  std::string angle;
  cad::append_fixed(angle, options.angle * std::numbers::pi / 180.0, 15);
  return "(labelnetwork " + (types.empty() ? "nil" : types) + ' ' + angle + ')';
}

/// From (("drawn" n) ...).
Counts counts_of(const cad::lisp::Value& answer) {
  Counts counts;
  const std::map<std::wstring_view, long*> places = {{L"drawn", &counts.drawn},
                                                     {L"updated", &counts.updated},
                                                     {L"crowded", &counts.crowded},
                                                     {L"skipped", &counts.skipped}};
  for (const cad::lisp::Value& pair : cad::lisp::List(answer)) {
    const cad::lisp::Value& number = pair.cdr().car();
    if (!pair.car().is_string() || !number.is_number()) continue;
    if (const auto place = places.find(pair.car().text()); place != places.end())
      *place->second = static_cast<long>(number.number());
  }
  return counts;
}

bool has_network(AcDbDatabase& drawing) {
  const network::NetworkSurvey survey = network::survey(drawing);
  for (std::size_t kind = 0; kind < survey.counts.size(); ++kind)
    if (static_cast<network::Kind>(kind) != network::Kind::kNone && survey.counts[kind].objects)
      return true;
  return false;
}

void print_text(const Counts& counts, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::printf("%s\n", line.c_str());
  std::printf("labels drawn    %8ld\n", counts.drawn);
  std::printf("  crowded       %8ld\n", counts.crowded);
  std::printf("already there   %8ld\n", counts.updated);
  std::printf("skipped         %8ld\n", counts.skipped);
}

void print_json(const Counts& counts, const std::vector<std::string>& lines, bool written) {
  const nlohmann::ordered_json out = {{"drawn", counts.drawn},     {"crowded", counts.crowded},
                                      {"updated", counts.updated}, {"skipped", counts.skipped},
                                      {"written", written},        {"told", lines}};
  std::puts(out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

ExitStatus label(const LabelOptions& options) {
  if (options.target.none()) {
    complain("say where to write: -o OUT or --in-place");
    return kWrongUsage;
  }
  if (!may_be_target(options.target, options.drawing)) return kWrongUsage;
  Labelling labelling(options.tool);
  Progress progress(1);
  progress.next(options.drawing);
  progress.show("reading");
  ExitStatus status = kSuccess;
  AcApDocument* const drawing = labelling.open(options.drawing, options.target.in_place, status);
  if (!drawing) return status;
  progress.show("drawing labels");
  labelling.take_lines();
  const cad::Result<cad::lisp::Value> answer = labelling.call(drawing, label_call(options));
  const std::vector<std::string> lines = labelling.take_lines();
  if (!answer) {
    // The module says which argument it cannot use.
    const bool refused = !InterruptScope::interrupted() && !lines.empty();
    complain(refused ? lines.front()
                     : options.drawing + ": " + answer.error().message() + "; nothing was written");
    return refused ? kWrongUsage : kProgramFailed;
  }
  const Counts counts = counts_of(*answer);
  if (!counts.any_label()) {
    for (const std::string& line : lines) complain(options.drawing + ": " + line);
    complain(options.drawing +
             (has_network(*drawing->database()) ? ": no pipe and no node could be labelled"
                                                : ": has no pipes and no nodes to label") +
             "; nothing was written");
    return kProgramFailed;
  }
  progress.show("writing");
  bool written = false;
  status = labelling.save(drawing, options.drawing, options.target, written);
  progress.hide();
  if (status != kSuccess) return status;
  if (options.json)
    print_json(counts, lines, written);
  else
    print_text(counts, lines);
  return kSuccess;
}

}  // namespace

void add_label_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<LabelOptions>();
  CLI::App* const command =
      program.add_subcommand("label", "label the pipes and nodes of a drawing");
  command->footer(kFooter);
  add_drawing(*command, options->drawing);
  add_target_options(*command, options->target);
  command->add_option("--types,--type", options->types, "types of labels; without it xzgj and bjbh")
      ->type_name("TYPE,TYPE...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      ->add_option("--angle", options->angle,
                   "direction along which labels are to be readable, counter-clockwise")
      ->check(CLI::Range(-360.0, 360.0))
      ->type_name("DEGREES");
  command->add_flag("--json", options->json, "print the report as JSON");
  add_tool_options(*command, options->tool);
  command->callback([=, &status] { status = label(*options); });
}

}  // namespace cli
