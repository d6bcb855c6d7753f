#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/documents.h"
#include "host/base/file_names.h"
#include "host/base/result.h"
#include "host/lisp/value.h"

namespace cad {

namespace lisp {
class Interpreter;
}

/// Folders the application works with, UTF-8 paths; empty when not set.
struct HostSettings {
  std::string install_dir;                  ///< where the installation's data files are
  std::string project_dir;                  ///< the current project
  std::vector<std::string> module_folders;  ///< where modules are looked for by name
};
HostSettings& host_settings();

/// The file a LISP program or a setting names: "\\" is "/", and letter case is ignored where the
/// exact name does not exist. Looked for in the current folder, the current drawing's, the
/// project's and the installation's. Empty when there is none.
std::optional<std::string> find_support_file(std::string_view name);

/// The host as a program uses it: opens drawings, loads modules, runs LISP, saves.
///     cad::Host host;
///     auto drawing = host.open_drawing("plan.dxf");
///     if (!drawing) return complain(drawing.error());
///     host.load_module("pipenote.arx");
///     host.eval_string(*drawing, "(dimDelAll (entlast))");
///     host.save(*drawing, "plan.dxf", /*keep_backup=*/true);
/// One lives at a time; its end closes all documents and then unloads all modules.
class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  static Host* current();  ///< null when there is none

  struct OpenOptions {
    bool for_writing = false;  ///< keeps every other program from writing the file
  };
  /// Opens a drawing, DXF or DWG by its contents, and makes it current; an error leaves everything
  /// as it was. A DWG file cannot be opened for writing.
  Result<AcApDocument*> open_drawing(const std::string& path) { return open_drawing(path, {}); }
  Result<AcApDocument*> open_drawing(const std::string& path, OpenOptions options);
  /// A drawing from memory; `name` stands in error messages.
  Result<AcApDocument*> open_bytes(std::string bytes, const std::string& name);
  /// An empty drawing of the current release with the usual tables.
  AcApDocument* new_drawing();
  /// Closes without saving. The document opened last among those left becomes current.
  void close(AcApDocument* document);
  /// Why no drawing can be written there: it is a DWG file, or would be named like one.
  static Status check_target(const std::string& path);
  /// Writes the drawing as DXF. With `keep_backup` the file replaced stays as path + ".bak".
  Status save(AcApDocument* document, const std::string& path, bool keep_backup = false);

  /// A file, or the name of a module; see AcRxDynamicLinker.
  Status load_module(const std::string& file);
  Status unload_module(const std::string& name);
  /// The folder of the library or program that holds the host: modules are installed near it.
  static std::string library_folder();
  std::vector<std::string> loaded_modules() const;  ///< lower case, in loading order

  /// Evaluates in the document's LISP environment, the document being current meanwhile and
  /// afterwards. An error was printed on the command line (or handed to *error*) already.
  Result<lisp::Value> eval_string(AcApDocument* document, std::string_view text,
                                  std::string_view name = {});
  Result<lisp::Value> eval_file(AcApDocument* document, const std::string& path);
  /// The value as prin1 writes it; empty for the blank value.
  static std::string printed(const lisp::Value& value);

  /// Answers the next selection by the user (acedSSGet, ssget) in the document. The error names the
  /// first handle the drawing does not have. An answer is used once.
  Status set_selection(AcApDocument* document, const std::vector<std::string>& handles);

  /// Bounds every LISP evaluation from now on; 0 is no bound.
  void set_step_limit(std::uint64_t steps);
  /// Whether every LISP error is followed by the calls that led to it.
  void set_call_trace(bool on);
  /// Stops the running LISP program; may be called from a signal handler.
  void interrupt() noexcept;
  /// Whether that has happened to the one that runs.
  bool interrupted() const noexcept { return interrupted_; }

  /// Where LISP programs read what the user types: a line without its end, empty at the end of
  /// input. Without it there is no input.
  /// With `echo` what was read is printed behind the prompt it answers.
  void set_input(std::function<std::optional<std::wstring>()> read_line, bool echo = false);
  /// Prompts fail and give this reason, although there may be lines to read.
  void refuse_prompts(const std::string& why);
  /// Answers all prompts from a file: one answer in each line, an empty line for Enter; UTF-8, or
  /// code page 936 when it is not UTF-8. Answers are printed behind their prompts.
  Status set_answers(const std::string& path);
  /// A command that waits for more when a program is over gets the user's answers; without any it
  /// is cancelled, and that is told.
  void finish_command(AcApDocument* document);
  /// Receives what the host has to tell its user besides the command line: one line, no line end.
  void set_alerts(std::function<void(std::string_view)> sink);

  /// The process ends soon after this host. Drawings that are open at its end are closed as ever,
  /// but the memory of their databases is left to the system, which takes it back at once: objects
  /// by the million need not be taken apart.
  void end_with_process() { ends_with_process_ = true; }

 private:
  AcApDocument* adopt(std::unique_ptr<AcApDocument> document);
  Result<AcApDocument*> open(const std::string& name,
                             const std::function<Status(AcApDocument&)>& read);
  template <class Run>
  Result<lisp::Value> run(AcApDocument* document, Run&& run);
  enum class Memory { kFreed, kLeft };
  void close(AcApDocument* document, Memory of_database);

  std::uint64_t step_limit_ = 0;
  bool call_trace_ = false;
  bool ends_with_process_ = false;
  std::uint32_t untitled_ = 0;
  std::atomic<lisp::Interpreter*> running_ = nullptr;
  std::atomic<bool> interrupted_ = false;
};

}  // namespace cad
