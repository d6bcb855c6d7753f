#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/add_commands.h"
#include "cli/files.h"
#include "cli/progress.h"
#include "cli/tool.h"
#include "host/base/decimal_text.h"
#include "host/base/quoted.h"
#include "network/model/model_drawing.h"
#include "network/model/network_model.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Reads the input files of EPANET (supply networks) and SWMM (sewers). Pipes become lines and
polylines, nodes symbols, each on the layer of its kind, with the data by which labels are made:
pipenote network OUT.dxf lists them. Lengths and elevations are converted to metres, diameters
to millimetres; the plan is drawn in metres, with the unit the file names for its map or, when
it names none, the one that fits the lengths of the pipes.

What the file holds and the drawing does not is named: unused sections on standard output,
lines that could not be used on standard error with their numbers (exit status 1; the drawing
is written all the same).

Examples:
  pipenote import Net3.inp -o net3.dxf
  pipenote import sewer.inp -o sewer.dxf --system drainage --map-unit 0.3048)";

struct ImportOptions {
  std::string model;
  std::string output;
  std::string system;
  double map_unit = 0.0;
  int scale = 500;
  bool json = false;
};

const std::map<std::string, network::PipeSystem> kSewerSystems = {
    {"drainage", network::PipeSystem::kDrainage}, {"storm", network::PipeSystem::kStorm}};

const char* system_name(network::PipeSystem system) {
  constexpr const char* kNames[] = {"water supply", "drainage", "storm water"};
  return kNames[static_cast<std::size_t>(system)];
}

const char* program_name(const network::NetworkModel& model) {
  return model.program == network::NetworkModel::Program::kEpanet ? "EPANET" : "SWMM";
}

std::string number_text(double value) {
  std::string text;
  cad::append_fixed(text, value, 6);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

/// Sections with rows, a line each, then the names of those without.
void print_unused(const std::vector<network::UnusedSection>& sections) {
  constexpr std::size_t kMostNames = 100;
  std::string empty;
  std::size_t named = 0;
  for (const network::UnusedSection& section : sections) {
    if (named++ == kMostNames) break;
    if (section.rows == 0) {
      empty += (empty.empty() ? "[" : ", [") + cad::excerpt(section.name) + ']';
    } else {
      std::printf("  not used    [%s], line %d: %zu line%s\n", cad::excerpt(section.name).c_str(),
                  section.line, section.rows, section.rows == 1 ? "" : "s");
    }
  }
  if (!empty.empty()) std::printf("  without lines: %s\n", empty.c_str());
  if (sections.size() > kMostNames)
    std::printf("  and %zu more section%s\n", sections.size() - kMostNames,
                sections.size() == kMostNames + 1 ? "" : "s");
}

void print_text(const ImportOptions& options, const network::NetworkModel& model,
                const network::ModelDrawingReport& report) {
  std::printf("%s: a %s network of %s\n", options.model.c_str(), system_name(report.system),
              program_name(model));
  std::printf("  units       %s: %s\n", model.flow_units.c_str(),
              model.us_units ? "feet and inches, converted" : "metric");
  std::printf("  map unit    %s m (%s)\n", number_text(report.map_unit).c_str(),
              report.map_unit_from.c_str());
  for (const network::ModelDrawingReport::Count& made : report.made)
    std::printf("  %-18s %8zu\n", made.what.c_str(), made.count);
  print_unused(model.unused);
}

void print_json(const network::NetworkModel& model, const network::ModelDrawingReport& report) {
  nlohmann::ordered_json out;
  out["program"] = program_name(model);
  out["system"] = system_name(report.system);
  out["units"] = model.flow_units;
  out["map_unit"] = {{"metres", report.map_unit}, {"from", report.map_unit_from}};
  out["made"] = nlohmann::ordered_json::object();
  for (const network::ModelDrawingReport::Count& made : report.made)
    out["made"][made.what] = made.count;
  out["unused"] = nlohmann::ordered_json::array();
  for (const network::UnusedSection& section : model.unused)
    out["unused"].push_back(
        {{"section", section.name}, {"line", section.line}, {"rows", section.rows}});
  out["faults"] = nlohmann::ordered_json::array();
  for (const network::ModelFault& fault : model.faults)
    out["faults"].push_back({{"line", fault.line}, {"what", fault.what}});
  out["further_faults"] = model.further_faults;
  std::puts(out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

void tell_faults(const ImportOptions& options, const network::NetworkModel& model) {
  for (const network::ModelFault& fault : model.faults)
    complain(options.model + ':' + std::to_string(fault.line) + ": " + fault.what);
  if (model.further_faults)
    complain(options.model + ": and " + std::to_string(model.further_faults) +
             (model.further_faults == 1 ? " more line" : " more lines"));
}

ExitStatus import(const ImportOptions& options) {
  if (!may_be_drawing(options.output, options.model)) return kWrongUsage;
  Progress progress(1);
  progress.next(options.model);
  progress.show("reading");
  cad::Result<network::NetworkModel> model = network::read_network_model(options.model);
  if (!model) {
    complain(model.error().message());
    return kNotRead;
  }
  cad::Host host;
  AcApDocument* const drawing = host.new_drawing();
  network::ModelDrawingOptions how;
  how.scale = options.scale;
  if (options.map_unit > 0.0) how.map_unit = options.map_unit;
  if (!options.system.empty()) how.system = kSewerSystems.at(options.system);
  progress.show("drawing");
  const auto report = network::draw_model(*model, *drawing->database(), how);
  if (!report) {
    complain(report.error().message());
    return kProgramFailed;
  }
  progress.show("writing");
  if (cad::Status saved = host.save(drawing, options.output, false); !saved) {
    complain(saved.error().message());
    return kNotWritten;
  }
  progress.hide();
  if (options.json)
    print_json(*model, *report);
  else
    print_text(options, *model, *report);
  tell_faults(options, *model);
  return model->faults.empty() ? kSuccess : kProgramFailed;
}

}  // namespace

void add_import_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App* const command =
      program.add_subcommand("import", "draw the pipes and nodes of a calculation model");
  command->footer(kFooter);
  add_input(*command, "MODEL", options->model, "an input file of EPANET or SWMM");
  add_output(*command, options->output, "OUT", "the drawing to write")->required();
  command
      ->add_option("--system", options->system,
                   "what a sewer carries: drainage or storm; without it, storm when surfaces drain "
                   "into it")
      ->check(CLI::IsMember(kSewerSystems))
      ->type_name("KIND");
  command
      ->add_option("--map-unit", options->map_unit, "metres to one unit of the model's coordinates")
      ->check(CLI::Range(1e-6, 1e6))
      ->type_name("METRES");
  command->add_option("--scale", options->scale, "1:SCALE, for the size of symbols")
      ->capture_default_str()
      ->check(CLI::Range(1, 1000000))
      ->type_name("SCALE");
  command->add_flag("--json", options->json, "print the report as JSON");
  command->callback([=, &status] { status = import(*options); });
}

}  // namespace cli
