#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace cli {

/// Each adds one command to the program; a parsed command leaves its answer in `status`.
void add_run_command(CLI::App& program, int& status);
void add_info_command(CLI::App& program, int& status);
void add_repl_command(CLI::App& program, int& status);
void add_records_command(CLI::App& program, int& status);
void add_check_command(CLI::App& program, int& status);
void add_network_command(CLI::App& program, int& status);
void add_format_command(CLI::App& program, int& status);
void add_settings_command(CLI::App& program, int& status);
void add_import_command(CLI::App& program, int& status);
void add_label_command(CLI::App& program, int& status);
void add_update_command(CLI::App& program, int& status);
void add_render_command(CLI::App& program, int& status);
/// The last one, for it runs the others. `passed_on` is what stands behind the "--" of a batch.
void add_batch_command(CLI::App& program, std::vector<std::string> passed_on, int& status);
/// Takes the "--" of a batch and all behind it off the command line: it is another command's.
std::vector<std::string> take_passed_on(int& argc, char** argv);

}  // namespace cli
