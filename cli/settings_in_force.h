#pragma once

#include <string>
#include <vector>

#include "cli/tool.h"
#include "host/app/host.h"
#include "network/settings_log.h"

class CDimStyle;
namespace CLI {
class App;
}

namespace cli {

struct SettingsOptions {
  ToolOptions folders;                 ///< those for --install-dir and --project-dir count
  std::vector<std::string> variables;  ///< "useri4=3": variables of the drawing
};
/// --install-dir, --project-dir, --set
void add_settings_options(CLI::App& command, SettingsOptions& options);

/// The label settings as a drawing of that installation and project would have them, and where each
/// comes from. What is wrong with the files is complained about. One lives at a time.
class SettingsInForce {
 public:
  explicit SettingsInForce(const SettingsOptions& options);
  ~SettingsInForce();
  SettingsInForce(const SettingsInForce&) = delete;
  SettingsInForce& operator=(const SettingsInForce&) = delete;

  /// False after a --set that cannot be made; it has been complained about.
  bool good() const { return good_; }
  const CDimStyle& style() const;
  const network::SettingsLog& log() const { return log_; }
  /// Also asks for the settings that are read only when somebody wants them.
  void read_the_rest();

 private:
  bool set_variable(AcApDocument* drawing, const std::string& assignment);

  network::SettingsLog log_;
  network::SettingsLogScope scope_{log_};
  cad::Host host_;
  bool good_ = true;
};

/// Where a setting comes from, for people: "/srv/labels/Is/gdcdpdbz.dat:3, token 2".
std::string origin_text(const network::SettingNote& note);
/// Each setting once, as it is in force, in the order of reading.
std::vector<network::SettingNote> in_force(const network::SettingsLog& log);

}  // namespace cli
