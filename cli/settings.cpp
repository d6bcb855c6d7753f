#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/add_commands.h"
#include "cli/records_survey.h"
#include "cli/settings_in_force.h"
#include "host/base/codepage.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Every setting is printed with its value and where it stands: the file, the line in it, and the
token or key there. "built in" is a value that no file gives.

Examples:
  pipenote settings
  pipenote settings --install-dir /srv/pipe-labels --project-dir /srv/projects/east-road
  pipenote settings --json | jq '.files[] | select(.problem != null)')";

void print_text(const SettingsInForce& settings) {
  std::puts("settings:");
  for (const network::SettingNote& note : in_force(settings.log())) {
    std::printf("  %s = %s\n      %s\n", cad::to_utf8(note.name).c_str(),
                in_quotes(note.value).c_str(), origin_text(note).c_str());
  }
  std::puts("files:");
  for (const network::FileNote& file : settings.log().files) {
    const bool read = file.problem.empty();
    std::printf("  %s\n      %s%s\n", cad::to_utf8(file.path).c_str(),
                read ? "" : "not read, built-in values stand in: ",
                cad::to_utf8(read ? file.encoding : file.problem).c_str());
  }
}

void print_json(const SettingsInForce& settings) {
  using Json = nlohmann::ordered_json;
  const auto text = [](const CString& wide) { return cad::to_utf8(wide); };
  const auto or_null = [&](const CString& wide) {
    return wide.empty() ? Json() : Json(text(wide));
  };
  Json out = {{"settings", Json::array()}, {"files", Json::array()}};
  for (const network::SettingNote& note : in_force(settings.log())) {
    out["settings"].push_back({{"name", text(note.name)},
                               {"value", text(note.value)},
                               {"file", text(note.origin.file)},
                               {"line", note.origin.line > 0 ? Json(note.origin.line) : Json()},
                               {"place", or_null(note.origin.place)},
                               {"builtIn", note.is_default}});
  }
  for (const network::FileNote& file : settings.log().files) {
    out["files"].push_back({{"path", text(file.path)},
                            {"encoding", or_null(file.encoding)},
                            {"problem", or_null(file.problem)}});
  }
  std::puts(out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

}  // namespace

void add_settings_command(CLI::App& program, int& status) {
  struct Options {
    SettingsOptions settings;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      program.add_subcommand("settings", "print the label settings and where each comes from");
  command->footer(kFooter);
  add_settings_options(*command, options->settings);
  command->add_flag("--json", options->json, "print JSON");
  command->callback([=, &status] {
    SettingsInForce settings(options->settings);
    if (!settings.good()) {
      status = kWrongUsage;
      return;
    }
    settings.read_the_rest();
    options->json ? print_json(settings) : print_text(settings);
  });
}

}  // namespace cli
