#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/exit_status.h"
#include "host/app/host.h"

namespace CLI {
class App;
}

/// What the commands share: the host with the annotation module loaded, its output on stdout, what
/// it has to tell on stderr.
namespace cli {

struct ToolOptions {
  std::string install_dir;
  std::string project_dir;
  std::vector<std::string> modules;
  std::uint64_t step_limit = 0;
  bool trace = false;
  bool lisp_trace = false;
};
/// --install-dir, --project-dir
void add_folder_options(CLI::App& command, ToolOptions& options);
/// These, --load, --step-limit, --lisp-trace and --trace.
void add_tool_options(CLI::App& command, ToolOptions& options);

/// Makes the folders known to the host. Without --install-dir: the settings installed with the
/// program.
void use_folders(const ToolOptions& options);

/// --load
void add_load_option(CLI::App& command, std::vector<std::string>& modules);
/// Loads modules, which are also looked for where the program's own are; one that cannot be is
/// complained about.
bool load_modules(cad::Host& host, const std::vector<std::string>& modules);

/// One line on stderr: "pipenote: plan.dxf: the drawing is in use by another program".
void complain(std::string_view line);

class Tool {
 public:
  explicit Tool(const ToolOptions& options);
  ~Tool();
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;

  /// Opens the drawing and loads the modules. A failure is complained about and left in `status`;
  /// the result is null then.
  AcApDocument* open(const std::string& path, bool for_writing, ExitStatus& status);
  /// Complains about a failure.
  ExitStatus save(AcApDocument* drawing, const std::string& path, bool keep_backup);

  cad::Host& host() { return host_; }
  /// Begins a new line on stdout unless one has just begun.
  void fresh_line();

 private:
  const ToolOptions options_;
  cad::Host host_;
  bool at_line_start_ = true;
};

/// While it lives, Ctrl-C stops the LISP program that runs instead of this one.
class InterruptScope {
 public:
  explicit InterruptScope(cad::Host& host);
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;
  /// Whether Ctrl-C came since the last reset().
  static bool interrupted();
  static void reset();
};

}  // namespace cli
