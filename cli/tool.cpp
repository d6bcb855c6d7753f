#include "cli/tool.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <optional>

#include "cli/progress.h"
#include "host/app/console.h"
#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/base/trace.h"
#include "host/dwg/converter.h"
#include "network/places.h"

namespace cli {
namespace {

constexpr char kModule[] = "pipenote.arx";

std::optional<std::wstring> read_input_line() {
  std::string line;
  if (!std::getline(std::cin, line)) return std::nullopt;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return cad::from_utf8(line);
}

}  // namespace

void add_folder_options(CLI::App& command, ToolOptions& options) {
  command
      .add_option("--install-dir", options.install_dir,
                  "folder of the installation's settings files")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  command.add_option("--project-dir", options.project_dir, "folder of the current project")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
}

void add_tool_options(CLI::App& command, ToolOptions& options) {
  add_folder_options(command, options);
  add_load_option(command, options.modules);
  command
      .add_option("--step-limit", options.step_limit,
                  "stop LISP programs after this many evaluated lists (0: no limit)")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command.add_flag("--lisp-trace", options.lisp_trace, "print the calls that led to a LISP error");
  command.add_flag("--trace", options.trace, "write the diagnostic trace to stderr");
}

void add_load_option(CLI::App& command, std::vector<std::string>& modules) {
  command.add_option("--load", modules, "load a further module; may be repeated")
      ->type_name("MODULE")
      ->allow_extra_args(false);
}

bool load_modules(cad::Host& host, const std::vector<std::string>& modules) {
  const std::string own = cad::Host::library_folder() + "/pipenote";
  std::vector<std::string>& folders = cad::host_settings().module_folders;
  if (std::find(folders.begin(), folders.end(), own) == folders.end()) folders.push_back(own);
  for (const std::string& module : modules) {
    if (const cad::Status loaded = host.load_module(module); !loaded) {
      complain(loaded.error().message());
      return false;
    }
  }
  return true;
}

void use_folders(const ToolOptions& options) {
  cad::HostSettings& settings = cad::host_settings();
  settings.install_dir =
      options.install_dir.empty() ? network::default_install_dir() : options.install_dir;
  settings.project_dir = options.project_dir;
}

void complain(std::string_view line) {
  Progress::hide_current();
  std::fflush(stdout);
  std::fprintf(stderr, "pipenote: %.*s\n", static_cast<int>(line.size()), line.data());
}

Tool::Tool(const ToolOptions& options) : options_(options) {
  use_folders(options);
  cad::set_console([this](std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (!text.empty()) at_line_start_ = text.back() == '\n';
  });
  host_.end_with_process();
  host_.set_alerts(complain);
  host_.set_input(read_input_line, /*echo=*/!::isatty(STDIN_FILENO));
  host_.set_step_limit(options.step_limit);
  host_.set_call_trace(options.lisp_trace);
  if (options.trace)
    cad::set_trace_sink([](std::wstring_view line) {
      std::fflush(stdout);
      std::fprintf(stderr, "trace: %s\n", cad::to_utf8(line).c_str());
    });
}

Tool::~Tool() {
  cad::set_console({});
  cad::set_trace_sink({});
  std::fflush(stdout);
}

AcApDocument* Tool::open(const std::string& path, bool for_writing, ExitStatus& status) {
  if (for_writing && cad::dwg::is_dwg_file(path)) {
    complain(cad::Host::check_target(path).error().message());
    status = kWrongUsage;
    return nullptr;
  }
  cad::Result<AcApDocument*> drawing = host_.open_drawing(path, {for_writing});
  if (!drawing) {
    // Whether the fault is in reading: the same path, asked for less.
    const bool readable =
        for_writing && !cad::FileLock::acquire(path) && cad::MappedFile::open(path);
    status = readable ? kNotWritten : kNotRead;
    complain(drawing.error().message());
    return nullptr;
  }
  std::vector<std::string> modules = {kModule};
  modules.insert(modules.end(), options_.modules.begin(), options_.modules.end());
  if (!load_modules(host_, modules)) {
    status = kWrongUsage;
    return nullptr;
  }
  return *drawing;
}

ExitStatus Tool::save(AcApDocument* drawing, const std::string& path, bool keep_backup) {
  const cad::Status saved = host_.save(drawing, path, keep_backup);
  if (!saved) complain(saved.error().message());
  return saved ? kSuccess : kNotWritten;
}

void Tool::fresh_line() {
  if (!at_line_start_) std::fputc('\n', stdout);
  at_line_start_ = true;
}

namespace {

std::atomic<cad::Host*> interrupted_host = nullptr;
std::atomic<bool> was_interrupted = false;

void on_interrupt(int) {
  was_interrupted = true;
  if (cad::Host* host = interrupted_host) host->interrupt();
}

void catch_interrupts(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(SIGINT, &action, nullptr);
}

}  // namespace

InterruptScope::InterruptScope(cad::Host& host) {
  reset();
  interrupted_host = &host;
  catch_interrupts(on_interrupt);
}

InterruptScope::~InterruptScope() {
  catch_interrupts(SIG_DFL);
  interrupted_host = nullptr;
}

bool InterruptScope::interrupted() { return was_interrupted; }

void InterruptScope::reset() { was_interrupted = false; }

}  // namespace cli
