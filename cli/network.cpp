#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "cli/add_commands.h"
#include "cli/commands.h"
#include "cli/files.h"
#include "cli/records_survey.h"
#include "cli/tool.h"
#include "network/survey.h"

namespace cli {
namespace {

constexpr int kSomethingWrong = 1;

constexpr char kFooter[] =
    R"(Pipes and nodes are entities with data of the application PIPENOTE; docs/pipes-and-wells.md says
which. What is wrong is told a line each: the entity's handle, its kind, what is the matter.

Exit status: 0 when nothing is wrong, else 1.

Examples:
  pipenote network plan.dxf
  pipenote network plan.dxf --json | jq '.problems[] | select(.problem == "diameter") | .handle')";

using network::Kind;
using network::NetworkSurvey;
using network::Problem;

std::string shown_kind(Kind kind) {
  return kind == Kind::kNone ? "unknown" : std::string(network::kind_name(kind));
}

template <class Visit>
void for_each_kind(const NetworkSurvey& survey, Visit visit) {
  for (int i = 1; i <= network::kKindCount; ++i) {
    const auto place = static_cast<std::size_t>(i % network::kKindCount);  // the unknown last
    if (survey.counts[place].objects != 0) visit(static_cast<Kind>(place), survey.counts[place]);
  }
}

std::size_t objects_with_problems(const NetworkSurvey& survey) {
  std::set<AcDbObjectId> objects;
  for (const Problem& problem : survey.problems) objects.insert(problem.object);
  return objects.size();
}

void print_text(const NetworkSurvey& survey) {
  bool any = false;
  for_each_kind(survey, [&](Kind kind, const NetworkSurvey::Count& count) {
    if (!any) std::printf("%-14s %8s %16s\n", "kind", "number", "length");
    any = true;
    std::printf("%-14s %8llu", shown_kind(kind).c_str(),
                static_cast<unsigned long long>(count.objects));
    if (network::is_pipe(kind)) std::printf(" %14.2f m", count.length);
    std::putchar('\n');
  });
  if (!any) std::puts("no pipes and no nodes");
  for (const Problem& problem : survey.problems) {
    std::printf("%s %s: %s\n", handle_of(problem.object).c_str(), shown_kind(problem.kind).c_str(),
                problem.text.c_str());
  }
  const std::size_t problems = survey.problems.size(), objects = objects_with_problems(survey);
  if (problems == 0) {
    std::puts("nothing is wrong");
  } else {
    std::printf("%zu %s with %zu %s\n", problems, problems == 1 ? "problem" : "problems", objects,
                objects == 1 ? "entity" : "entities");
  }
}

void print_json(const NetworkSurvey& survey) {
  using Json = nlohmann::ordered_json;
  const auto dumped = [](const Json& json) {
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  };
  Json kinds = Json::object();
  for_each_kind(survey, [&](Kind kind, const NetworkSurvey::Count& count) {
    Json& out = kinds[shown_kind(kind)] = {{"count", count.objects}};
    if (network::is_pipe(kind)) out["length"] = count.length;
  });
  // A line per problem, so that many are neither held in memory nor hard to search.
  std::printf("{\n\"kinds\": %s,\n\"problems\": [", dumped(kinds).c_str());
  const char* separator = "\n";
  for (const Problem& problem : survey.problems) {
    const Json out = {{"handle", handle_of(problem.object)},
                      {"kind", shown_kind(problem.kind)},
                      {"problem", std::string(network::problem_name(problem.what))},
                      {"text", problem.text}};
    std::printf("%s  %s", separator, dumped(out).c_str());
    separator = ",\n";
  }
  std::puts(survey.problems.empty() ? "]\n}" : "\n]\n}");
}

}  // namespace

int network_command(const NetworkOptions& options) {
  cad::Host host;
  const cad::Result<AcApDocument*> drawing = host.open_drawing(options.drawing);
  if (!drawing) {
    complain(drawing.error().message());
    return kNotRead;
  }
  const NetworkSurvey survey = network::survey(*(*drawing)->database());
  options.json ? print_json(survey) : print_text(survey);
  return survey.problems.empty() ? static_cast<int>(kSuccess) : kSomethingWrong;
}

void add_network_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<NetworkOptions>();
  CLI::App* const command = program.add_subcommand(
      "network", "count the pipes and nodes of a drawing and list what is wrong with them");
  command->footer(kFooter);
  add_drawing(*command, options->drawing);
  command->add_flag("--json", options->json, "print JSON");
  command->callback([=, &status] { status = network_command(*options); });
}

}  // namespace cli
