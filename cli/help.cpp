#include "cli/help.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "host/base/numbers.h"

namespace cli {
namespace {

constexpr std::size_t kColumn = 30;     // where explanations begin
constexpr std::size_t kNarrowest = 50;  // is taken for narrower terminals
constexpr std::size_t kWidest = 100;    // longer lines are hard to read

std::size_t terminal_width() {
  constexpr std::size_t kUsual = 80;
  std::size_t width = kUsual;
  winsize size{};
  const char* const columns = std::getenv("COLUMNS");
  if (const auto number = cad::parse_int(std::string_view(columns ? columns : "")))
    width = static_cast<std::size_t>(std::max(*number, 0L));
  else if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
    width = size.ws_col;
  return std::clamp(width, kNarrowest, kWidest);
}

/// Columns of a terminal that the text takes: East Asian characters take two.
std::size_t columns_of(std::string_view utf8) {
  constexpr unsigned char kFirstWideLead = 0xE2;  // of characters from U+2000 on
  std::size_t columns = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) == 0x80U) continue;
    columns += byte > kFirstWideLead ? 2 : 1;
  }
  return columns;
}

/// A row of two columns, the second wrapped.
std::string row(const std::string& name, const std::string& what) {
  std::string text = "  " + name;
  std::size_t at = columns_of(text);
  const std::string indent(kColumn, ' ');
  if (at + 2 > kColumn) {
    text += '\n' + indent;
    at = kColumn;
  } else {
    text += indent.substr(at);
    at = kColumn;
  }
  const std::size_t width = terminal_width();
  bool first = true;
  std::istringstream words(what);
  for (std::string word; words >> word; first = false) {
    const std::size_t length = columns_of(word);
    if (!first && at + 1 + length > width) {
      text += '\n' + indent;
      at = kColumn;
    } else if (!first) {
      text += ' ';
      ++at;
    }
    text += word;
    at += length;
  }
  return text + '\n';
}

class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() {
    label("Positionals", "Arguments");
    label("SUBCOMMAND", "COMMAND ...");
  }

  std::string make_option(const CLI::Option* option, bool is_positional) const override {
    std::string what = option->get_description();
    if (!option->get_default_str().empty()) what += " (default " + option->get_default_str() + ')';
    if (!is_positional && option->get_required()) what += " (required)";
    return row(make_option_name(option, is_positional) + make_option_opts(option), what);
  }
  /// What stands for the value; a type also names its checks, behind a colon.
  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string type = option->get_type_name();
    const std::string name = type.substr(0, type.find(':'));
    return option->get_type_size() == 0 || name.empty() ? "" : ' ' + name;
  }
  std::string make_subcommand(const CLI::App* command) const override {
    return row(command->get_name(), command->get_description());
  }
  std::string make_subcommands(const CLI::App* command, CLI::AppFormatMode mode) const override {
    const std::string text = Formatter::make_subcommands(command, mode);
    constexpr std::string_view kTitle = "\nSubcommands:\n";
    return text.starts_with(kTitle) ? "\nCommands:\n" + text.substr(kTitle.size()) : text;
  }
};

void lay_out_below(CLI::App& command) {
  for (CLI::App* const below : command.get_subcommands({})) {
    below->formatter(command.get_formatter());
    below->set_help_all_flag();  // is the program's alone
    below->get_help_ptr()->description("show this");
    lay_out_below(*below);
  }
}

/// The words that have been understood: "pipenote format length".
std::string understood(const CLI::App& program, const CLI::App*& last) {
  std::string words = program.get_name();
  last = &program;
  while (!last->get_subcommands().empty()) {
    last = last->get_subcommands().front();
    words += ' ' + last->get_name();
  }
  return words;
}

std::string unexpected(const std::string& word) {
  return word.starts_with('-') && word != "-" ? "there is no option " + word
                                              : '"' + word + "\" is one argument too many";
}

std::string lower_case_start(std::string text) {
  if (text.size() > 1 && std::islower(static_cast<unsigned char>(text[1])))
    text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  return text;
}

}  // namespace

void lay_out_help(CLI::App& program) {
  program.formatter(std::make_shared<HelpFormatter>());
  program.get_help_ptr()->description("show this");
  lay_out_below(program);
}

void take_help_command(int& argc, char** argv) {
  if (argc < 2 || std::strcmp(argv[1], "help") != 0) return;
  static char flag[] = "--help";
  if (argc > 2) std::swap(argv[1], argv[2]);
  argv[argc > 2 ? 2 : 1] = flag;
}

std::string usage_error(const CLI::App& program, const CLI::ParseError& error) {
  const CLI::App* last = nullptr;
  const std::string command = understood(program, last);
  const std::vector<std::string> left = program.remaining(/*recurse=*/true);
  std::string what = lower_case_start(error.what());
  const bool wants_command =
      dynamic_cast<const CLI::RequiredError*>(&error) && !last->get_subcommands({}).empty();
  if (wants_command && left.empty())
    what = "name a command";
  else if (wants_command || dynamic_cast<const CLI::ExtrasError*>(&error))
    what = wants_command && !left.front().starts_with('-')
               ? "there is no command \"" + left.front() + '"'
               : unexpected(left.front());
  else if (const auto* mismatch = dynamic_cast<const CLI::ArgumentMismatch*>(&error))
    what = std::string(mismatch->what()).substr(0, what.find(':')) + " wants a value";
  return what + "; see " + command + " --help";
}

}  // namespace cli
