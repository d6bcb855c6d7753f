#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "cli/add_commands.h"
#include "cli/batch_run.h"
#include "cli/progress.h"
#include "cli/tool.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

constexpr char kFooter[] =
    R"help(Runs the command once for each drawing, in processes of their own: one that fails
or crashes takes no other along. What they print comes in the order of the drawings, then a table
of how each ended. What stands behind -- is passed on to the command.

Examples:
  pipenote batch check plans/*.dxf
  pipenote batch run plans/*.dxf --in-place -- fix.lsp -e "(fix)"
  pipenote batch import models/*.inp --out-dir drawings --jobs 8
  pipenote batch render --list plans.txt --out-dir pictures --ending png -- --size 2400x1600

Exit status: 0 when it is 0 for every drawing; 1 when not, or after Ctrl-C; 2 wrong usage, and
4 a folder that cannot be made, both before anything has run.)help";

struct BatchOptions {
  std::string command;
  std::vector<std::string> drawings;
  std::string list;
  std::string out_dir;
  std::string ending;
  std::size_t jobs = std::max(1u, std::thread::hardware_concurrency());
  bool in_place = false;
  std::vector<std::string> passed_on;
};

bool takes(const CLI::App& command, const char* option) {
  return command.get_option_no_throw(option) != nullptr;
}

/// Where the file would be, whether it is there or not, by whatever way it is named.
fs::path place_of(const std::string& file) {
  std::error_code error;
  fs::path place = fs::weakly_canonical(fs::absolute(file, error), error);
  return error ? fs::path(file) : place;
}

/// Adds the drawings that the file names, one a line; "-" is standard input.
bool read_list(BatchOptions& options) {
  if (options.list.empty()) return true;
  std::ifstream file;
  if (options.list != "-") {
    file.open(options.list);
    if (!file) {
      complain(options.list + ": the list cannot be read: " + std::strerror(errno));
      return false;
    }
  }
  std::istream& lines = options.list == "-" ? std::cin : file;
  for (std::string line; std::getline(lines, line);) {
    if (options.drawings.empty() && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) options.drawings.push_back(line);
  }
  if (!lines.bad()) return true;
  complain(options.list + ": the list cannot be read: " + std::strerror(errno));
  return false;
}

/// Whether it is what would be given to every drawing's command, and one file for all of them.
bool names_output(const std::string& argument) {
  return argument.starts_with("-o") || argument == "--output" || argument.starts_with("--output=");
}

/// Behind the "--" it means the same: clashes are looked for.
void take_in_place(BatchOptions& options) {
  if (std::erase(options.passed_on, "--in-place") > 0) options.in_place = true;
}

/// Empty, or what is wrong.
std::string wrong_with(const BatchOptions& options, const CLI::App* command) {
  const std::string& name = options.command;
  if (!command) return "there is no command " + name;
  if (name == "batch" || name == "repl" ||
      (!takes(*command, "DRAWING") && !takes(*command, "MODEL")))
    return "batch cannot run " + name + ": it needs a command that works on a drawing by itself";
  if (options.drawings.empty()) return "no drawings: name them, or a list of them with --list";
  if (!options.out_dir.empty() && options.in_place)
    return "--out-dir and --in-place exclude each other";
  if (!options.out_dir.empty() && !takes(*command, "-o"))
    return name + " writes no file: without --out-dir";
  if (!options.ending.empty() && options.out_dir.empty()) return "--ending goes with --out-dir";
  if (options.in_place && !takes(*command, "--in-place")) return name + " has no --in-place";
  if (std::any_of(options.passed_on.begin(), options.passed_on.end(), names_output))
    return "-o would have every drawing written to one file: use --out-dir DIR";
  const bool only_reports =
      std::count(options.passed_on.begin(), options.passed_on.end(), "--dry-run") > 0;
  if ((name == "label" || name == "update") && options.out_dir.empty() && !options.in_place &&
      !only_reports)
    return name + " writes each drawing: say where, --out-dir DIR or --in-place";
  const CLI::Option* const output = command->get_option_no_throw("-o");
  if (output && output->get_required() && options.out_dir.empty())
    return name + " writes a file for each: name the folder, --out-dir DIR";
  return {};
}

std::string ending_of(const BatchOptions& options) {
  if (options.ending.empty()) return options.command == "render" ? ".svg" : ".dxf";
  return options.ending.starts_with('.') ? options.ending : '.' + options.ending;
}

/// Empty, or the first two drawings that would be written to one file, or the drawing that would be
/// overwritten by another's result.
std::string clash(const BatchOptions& options, const std::vector<std::string>& outputs) {
  std::map<fs::path, const std::string*> drawings, written;
  for (const std::string& drawing : options.drawings) drawings.emplace(place_of(drawing), &drawing);
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const std::string& drawing = options.drawings[i];
    const fs::path place = place_of(outputs[i]);
    const auto [other, is_new] = written.emplace(place, &drawing);
    if (!is_new)
      return *other->second + " and " + drawing + " would both be written to " + outputs[i];
    if (options.in_place) continue;
    if (const auto source = drawings.find(place); source != drawings.end())
      return *source->second + " would be overwritten by what becomes of " + drawing;
  }
  return {};
}

/// The files that are written, one for each drawing; none when the command is to write nothing.
std::vector<std::string> outputs_of(const BatchOptions& options) {
  if (options.in_place) return options.drawings;
  if (options.out_dir.empty()) return {};
  std::vector<std::string> outputs;
  const std::string ending = ending_of(options);
  for (const std::string& drawing : options.drawings)
    outputs.push_back((fs::path(options.out_dir) / fs::path(drawing).stem()).string() + ending);
  return outputs;
}

std::vector<BatchJob> jobs_of(const BatchOptions& options,
                              const std::vector<std::string>& outputs) {
  std::vector<BatchJob> jobs;
  for (std::size_t i = 0; i < options.drawings.size(); ++i) {
    const std::string& drawing = options.drawings[i];
    BatchJob job{drawing, {options.command, drawing.starts_with('-') ? "./" + drawing : drawing}};
    if (options.in_place)
      job.arguments.push_back("--in-place");
    else if (!outputs.empty())
      job.arguments.insert(job.arguments.end(), {"-o", outputs[i]});
    job.arguments.insert(job.arguments.end(), options.passed_on.begin(), options.passed_on.end());
    jobs.push_back(std::move(job));
  }
  return jobs;
}

struct Row {
  std::string words = "not started";
  double seconds = 0.0;
  bool succeeded = false;
};

std::string words_for(const BatchResult& result) {
  if (result.end == BatchResult::End::kNotStarted) return "not started";
  if (result.succeeded()) return "done";
  if (result.stopped) return "stopped";
  if (result.end == BatchResult::End::kSignalled)
    return std::string("crashed: ") + ::strsignal(result.code);
  constexpr const char* kWords[] = {"done", "with errors", "wrong usage", "not read",
                                    "not written"};
  if (result.code < static_cast<int>(std::size(kWords))) return kWords[result.code];
  return "ended with " + std::to_string(result.code);
}

void print(std::FILE* stream, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  if (!text.empty() && text.back() != '\n') std::fputc('\n', stream);
  std::fflush(stream);
}

void print_table(const BatchOptions& options, const std::vector<Row>& rows, double seconds) {
  std::size_t width = std::strlen("status");
  std::size_t done = 0, started = 0;
  for (const Row& row : rows) {
    width = std::max(width, row.words.size());
    done += row.succeeded;
    started += row.words != "not started";
  }
  const int column = static_cast<int>(width);
  std::printf("\n%-*s  %8s  drawing\n", column, "status", "seconds");
  for (std::size_t i = 0; i < rows.size(); ++i)
    std::printf("%-*s  %8.2f  %s\n", column, rows[i].words.c_str(), rows[i].seconds,
                options.drawings[i].c_str());
  std::printf("%zu of %zu done", done, rows.size());
  if (started > done) std::printf(", %zu failed", started - done);
  if (rows.size() > started) std::printf(", %zu not started", rows.size() - started);
  std::printf(" in %.2f s\n", seconds);
}

int batch(BatchOptions& options, const CLI::App& program) {
  const std::vector<const CLI::App*> commands = program.get_subcommands(
      [&](const CLI::App* one) { return one->get_name() == options.command; });
  const CLI::App* const command = commands.empty() ? nullptr : commands.front();
  if (!read_list(options)) return kWrongUsage;
  take_in_place(options);
  if (const std::string wrong = wrong_with(options, command); !wrong.empty()) {
    complain(wrong);
    return kWrongUsage;
  }
  const std::vector<std::string> outputs = outputs_of(options);
  if (const std::string wrong = clash(options, outputs); !wrong.empty()) {
    complain(wrong + "; nothing was run");
    return kWrongUsage;
  }
  if (std::error_code error; !options.out_dir.empty()) {
    fs::create_directories(options.out_dir, error);
    if (error) {
      complain(options.out_dir + ": the folder cannot be made: " + error.message());
      return kNotWritten;
    }
  }

  const std::size_t count = options.drawings.size();
  std::vector<Row> rows(count);
  const auto since = std::chrono::steady_clock::now();
  Progress progress(count);
  const auto show = [&](std::size_t job) {
    progress.next(options.drawings[job]);
    progress.show("running " + options.command);
  };
  show(0);
  const bool whole = run_batch(
      jobs_of(options, outputs), options.jobs, [&](std::size_t job, const BatchResult& result) {
        rows[job] = {words_for(result), result.seconds, result.succeeded()};
        progress.hide();
        print(stdout, "== " + options.drawings[job]);
        print(stdout, result.output);
        print(stderr, result.errors);
        if (job + 1 < count) show(job + 1);
      });
  progress.hide();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - since;
  print_table(options, rows, seconds.count());
  if (!whole) complain("interrupted");
  const bool all =
      std::all_of(rows.begin(), rows.end(), [](const Row& row) { return row.succeeded; });
  return whole && all ? kSuccess : kProgramFailed;
}

}  // namespace

std::vector<std::string> take_passed_on(int& argc, char** argv) {
  if (argc < 2 || std::strcmp(argv[1], "batch") != 0) return {};
  char** const end = argv + argc;
  char** const cut =
      std::find_if(argv, end, [](const char* word) { return !std::strcmp(word, "--"); });
  if (cut == end) return {};
  argc = static_cast<int>(cut - argv);
  return {cut + 1, end};
}

void add_batch_command(CLI::App& program, std::vector<std::string> passed_on, int& status) {
  const auto options = std::make_shared<BatchOptions>();
  options->passed_on = std::move(passed_on);
  CLI::App* const command =
      program.add_subcommand("batch", "run a command on many drawings, several at once");
  command->footer(kFooter);
  command->add_option("COMMAND", options->command, "the command to run")->required()->type_name("");
  command->add_option("DRAWINGS", options->drawings, "the drawings, or models to import")
      ->type_name("");
  command
      ->add_option("--list", options->list,
                   "a file that names drawings, one a line; - for standard input")
      ->type_name("FILE");
  command
      ->add_option("-j,--jobs", options->jobs, "how many run at once (default: one for each core)")
      ->check(CLI::Range(1, 1000))
      ->type_name("N");
  command
      ->add_option("--out-dir", options->out_dir,
                   "write the result of each drawing to DIR/NAME.dxf; the folder is made")
      ->type_name("DIR");
  command->add_option("--ending", options->ending, "instead of dxf, or of svg for render")
      ->type_name("EXT");
  command->add_flag("--in-place", options->in_place, "write each drawing over itself");
  command->callback([=, &program, &status] { status = batch(*options, program); });
}

}  // namespace cli
