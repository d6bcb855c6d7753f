#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "cli/add_commands.h"
#include "cli/label_arguments.h"
#include "cli/records_survey.h"
#include "cli/settings_in_force.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "module/style/style.h"

namespace cli {
namespace {

using Lines = std::vector<CString>;

struct FormatOptions {
  SettingsOptions settings;
  bool explain = false;
};

/// A label that was asked for: how it is made, and the settings it is made by, told by the words
/// their names begin with.
struct Question {
  std::function<Lines(const CDimStyle&)> make;
  std::vector<std::wstring> settings;
};

void explain(const network::SettingsLog& log, const std::vector<std::wstring>& names) {
  for (const network::SettingNote& note : in_force(log)) {
    const auto concerns = [&](const std::wstring& name) { return note.name.starts_with(name); };
    if (std::none_of(names.begin(), names.end(), concerns)) continue;
    std::printf("  %s = %s\n      %s\n", cad::to_utf8(note.name).c_str(),
                in_quotes(note.value).c_str(), origin_text(note).c_str());
  }
}

int answer(const FormatOptions& options, const Question& question) {
  const SettingsInForce settings(options.settings);
  if (!settings.good()) return kWrongUsage;
  for (const CString& line : question.make(settings.style())) std::puts(cad::to_utf8(line).c_str());
  if (options.explain) explain(settings.log(), question.settings);
  return kSuccess;
}

/// What the commands of labels share.
struct Labels {
  CLI::App& format;
  std::shared_ptr<FormatOptions> options;
  int& status;

  CLI::App& add(const char* name, const char* what) const {
    CLI::App& label = *format.add_subcommand(name, what);
    label.fallthrough();
    label.footer("Options for all labels (settings, --explain): pipenote format --help");
    return label;
  }
  /// `ask` makes the question once the arguments are read.
  void on(CLI::App& label, std::function<Question()> ask) const {
    label.callback([options = options, &status = status, ask = std::move(ask)] {
      status = answer(*options, ask());
    });
  }
};

struct PlainLabel {
  const char* name;
  const char* what;
  const char* unit;
  const char* value_help;
  CString (*make)(const CDimStyle&, double);
  const wchar_t* settings;
};

constexpr PlainLabel kPlainLabels[] = {
    {"length", "length of a pipe", "METRES", "length, metres",
     [](const CDimStyle& s, double v) { return s.GetPipeLongStr(v); }, L"length "},
    {"slope", "slope of a pipe", "RATIO", "slope as a ratio: 0.005 is five per mille",
     [](const CDimStyle& s, double v) { return s.GetPipePdStr(v); }, L"slope "},
    {"cover", "cover of a pipe", "METRES", "cover, metres",
     [](const CDimStyle& s, double v) { return s.GetMsFtStr(v); }, L"profile depth decimals"},
};

void add_plain(const Labels& labels, const PlainLabel& row) {
  CLI::App& label = labels.add(row.name, row.what);
  const auto value = std::make_shared<double>();
  add_number(label, row.unit, *value, row.value_help)->required();
  labels.on(label, [&row, value] {
    return Question{[=, &row](const CDimStyle& s) { return Lines{row.make(s, *value)}; },
                    {row.settings}};
  });
}

struct ElevationKind {
  const char* word;
  ElevType type;
};
constexpr ElevationKind kElevationKinds[] = {
    {"USUAL", USUAL},           {"PIPETOP", PIPETOP}, {"PIPEBOTTOM", PIPEBOTTOM},
    {"PIPECENTER", PIPECENTER}, {"GROUND", GROUND},
};

ElevType elevation_type(const std::string& word) {
  for (const ElevationKind& kind : kElevationKinds)
    if (cad::equal_no_case(std::string_view(kind.word), word)) return kind.type;
  throw CLI::ValidationError("--type", "there is no kind of elevation \"" + word + '"');
}

void add_elevation(const Labels& labels) {
  CLI::App& label = labels.add("elevation", "elevation, in the profile unless its kind is given");
  struct Arguments {
    double elevation = 0.0;
    ElevType type = kUnknownElevation;
  };
  const auto given = std::make_shared<Arguments>();
  add_number(label, "METRES", given->elevation, "elevation, metres")->required();
  label
      .add_option_function<std::string>(
          "--type", [given](const std::string& word) { given->type = elevation_type(word); },
          "kind of elevation in plan")
      ->type_name("USUAL|PIPETOP|PIPEBOTTOM|PIPECENTER|GROUND");
  labels.on(label, [given] {
    if (given->type == kUnknownElevation) {
      return Question{[=](const CDimStyle& s) { return Lines{s.GetBgStr(given->elevation)}; },
                      {L"profile elevation decimals"}};
    }
    std::wstring settings;
    for (const ElevationKind& kind : kElevationKinds)
      if (kind.type == given->type) settings = L"elevation " + cad::from_utf8(kind.word) + L" ";
    return Question{
        [=](const CDimStyle& s) { return Lines{s.GetBgStr(given->type, given->elevation)}; },
        {settings}};
  });
}

void add_depth(const Labels& labels) {
  CLI::App& label = labels.add("depth", "burial depth of a pipe, or depth of a well");
  struct Arguments {
    double depth = 0.0;
    bool well = false;
    bool cut = false;
  };
  const auto given = std::make_shared<Arguments>();
  add_number(label, "METRES", given->depth, "depth, metres")->required();
  CLI::Option* const well = label.add_flag("--well", given->well, "the depth is that of a well");
  label.add_flag("--cut", given->cut, "drop the decimals where the unit of drop wells is mm")
      ->needs(well);
  labels.on(label, [given] {
    if (!given->well) {
      return Question{[=](const CDimStyle& s) { return Lines{s.GetMsFtStr(given->depth)}; },
                      {L"profile depth decimals"}};
    }
    return Question{
        [=](const CDimStyle& s) { return Lines{s.GetWellDepth(given->depth, given->cut)}; },
        {L"elevation USUAL decimals", L"Unit_Jcjsd"}};
  });
}

const std::vector<std::wstring> kDiameterSettings = {L"GgDimPre", L"LocalStyle",
                                                     L"profile diameter", L"diameter style"};

void add_diameter(const Labels& labels) {
  CLI::App& label = labels.add("diameter", "diameter or section of a pipe");
  const auto given = std::make_shared<PipeArguments>();
  add_number(label, "DIAMETER", given->diameter, "nominal diameter, millimetres");
  add_section_options(label, *given);
  labels.on(label, [given] {
    if (given->diameter == Gx::kNoData && !given->rectangular)
      throw CLI::RequiredError("DIAMETER or --rect");
    return Question{[=](const CDimStyle& s) {
                      const PipeArguments& p = *given;
                      const auto make =
                          p.twin ? &CDimStyle::GetDRectPipeDnStr : &CDimStyle::GetDnStr;
                      return Lines{(s.*make)(p.diameter, p.material, p.rectangular, p.width,
                                             p.height, p.ratio)};
                    },
                    kDiameterSettings};
  });
}

void add_stake(const Labels& labels) {
  CLI::App& label = labels.add("stake", "stake (chainage)");
  struct Arguments {
    double stake = 0.0;
    std::string name;
  };
  const auto given = std::make_shared<Arguments>();
  add_number(label, "METRES", given->stake, "position along the route, metres")->required();
  label
      .add_option("--name", given->name,
                  "text whose tail, from the sixth character on, may begin the label")
      ->type_name("TEXT");
  labels.on(label, [given] {
    return Question{[=](const CDimStyle& s) {
                      return Lines{s.GetZhStr(given->stake, cad::from_utf8(given->name))};
                    },
                    {L"stake ", L"useri4"}};
  });
}

void add_composite(const Labels& labels) {
  CLI::App& label = labels.add("composite", "composite label of a pipe; one line per text");
  const auto given = std::make_shared<CompositeArguments>();
  add_composite_options(label, *given);
  labels.on(label, [given] {
    std::vector<std::wstring> settings = {L"composite ", L"length ", L"slope "};
    settings.insert(settings.end(), kDiameterSettings.begin(), kDiameterSettings.end());
    settings.push_back(given->order_key());
    return Question{[=](const CDimStyle& s) { return given->label(s); }, settings};
  });
}

void add_well(const Labels& labels) {
  CLI::App& label = labels.add("well", "number of a well");
  struct Arguments {
    std::string prefix;
    std::string number;
    bool hydrant = false;
  };
  const auto given = std::make_shared<Arguments>();
  label.add_option("PREFIX", given->prefix, "what the number begins with")
      ->required()
      ->type_name("");
  label.add_option("NUMBER", given->number, "the number")->required()->type_name("");
  label.add_flag("--hydrant", given->hydrant, "the well is a fire hydrant");
  labels.on(label, [given] {
    return Question{
        [=](const CDimStyle& s) {
          const CGxXhs hydrant;
          const CGxJd well;
          return Lines{s.GetJdStr(given->hydrant ? &hydrant : &well, cad::from_utf8(given->prefix),
                                  cad::from_utf8(given->number))};
        },
        {L"well number"}};
  });
}

constexpr char kFooter[] =
    R"(The label is printed as the settings in force give it: those of the installation and the project
named, and of a new drawing. Lengths, elevations, depths and stakes are metres, slopes ratios,
diameters and sections millimetres.

Examples:
  pipenote format length 35.2
  pipenote format slope -0.0035 --explain
  pipenote format elevation --type GROUND 12.3456
  pipenote format diameter 300 --material 1
  pipenote format diameter --rect 2000x1500 --ratio 2.5
  pipenote format stake 1234.5 --set useri4=3
  pipenote format composite --diameter 300 --length 35.2 --slope 0.0025
  pipenote format well W 12)";

}  // namespace

void add_format_command(CLI::App& program, int& status) {
  CLI::App* const command = program.add_subcommand("format", "print the label of a value");
  command->footer(kFooter);
  command->require_subcommand(1);
  const auto options = std::make_shared<FormatOptions>();
  add_settings_options(*command, options->settings);
  command->add_flag("--explain", options->explain,
                    "print the settings that made the label and where each comes from");
  const Labels labels{*command, options, status};
  for (const PlainLabel& row : kPlainLabels) add_plain(labels, row);
  add_elevation(labels);
  add_depth(labels);
  add_diameter(labels);
  add_stake(labels);
  add_composite(labels);
  add_well(labels);
}

}  // namespace cli
