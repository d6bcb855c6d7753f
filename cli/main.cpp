#include <sys/resource.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "cli/add_commands.h"
#include "cli/exit_status.h"
#include "cli/help.h"
#include "cli/tool.h"

namespace {

/// LISP programs recurse: the stack of the main thread may grow to what the evaluator makes use of
/// at most, unless the user allows less.
void allow_deep_recursion() {
  constexpr rlim_t kWanted = rlim_t{64} << 20;
  rlimit stack;
  if (::getrlimit(RLIMIT_STACK, &stack) != 0 || stack.rlim_cur >= kWanted) return;
  stack.rlim_cur = std::min(kWanted, stack.rlim_max);
  ::setrlimit(RLIMIT_STACK, &stack);
}

}  // namespace

int main(int argc, char** argv) {
  allow_deep_recursion();
  std::signal(SIGXFSZ, SIG_IGN);  // a file-size limit is then an error like a full disk
  CLI::App program("Keeps track of which label belongs to which pipe, inside the drawing.",
                   "pipenote");
  program.set_help_all_flag("--help-all", "help on every command");
  program.require_subcommand(1);
  program.set_version_flag("--version", "pipenote " PIPENOTE_VERSION, "show the version");
  program.footer("Help on a command: pipenote COMMAND --help\nExample: pipenote info plan.dxf");

  int status = cli::kSuccess;
  cli::take_help_command(argc, argv);
  const std::vector<std::string> passed_on = cli::take_passed_on(argc, argv);
  cli::add_run_command(program, status);
  cli::add_repl_command(program, status);
  cli::add_info_command(program, status);
  cli::add_records_command(program, status);
  cli::add_check_command(program, status);
  cli::add_network_command(program, status);
  cli::add_format_command(program, status);
  cli::add_settings_command(program, status);
  cli::add_import_command(program, status);
  cli::add_label_command(program, status);
  cli::add_update_command(program, status);
  cli::add_render_command(program, status);
  cli::add_batch_command(program, passed_on, status);
  cli::lay_out_help(program);

  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return program.exit(help);
  } catch (const CLI::ParseError& error) {
    cli::complain(cli::usage_error(program, error));
    return cli::kWrongUsage;
  } catch (const std::bad_alloc&) {
    cli::complain("out of memory; nothing was written");
    return cli::kProgramFailed;
  }
  // What was printed into a full disk is lost; a pipe that nobody reads ends the program before.
  const bool rest_written = std::fflush(stdout) == 0;
  if (rest_written && !std::ferror(stdout)) return status;
  cli::complain(std::string("standard output: cannot write: ") +
                (rest_written ? "a part is missing" : std::strerror(errno)));
  return std::max<int>(status, cli::kNotWritten);
}
