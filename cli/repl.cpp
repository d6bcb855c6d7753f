#include <histedit.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/add_commands.h"
#include "cli/files.h"
#include "cli/tool.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/dwg/converter.h"
#include "host/lisp/reader.h"

namespace cli {
namespace {

constexpr char kFooter[] =
    R"(Lines are collected until the parentheses balance. Tab completes names, the arrows recall
what was typed. Ctrl-C drops the line or stops the program that runs, Ctrl-D leaves.

At the prompt:
  :save [FILE]   write the drawing as DXF; without FILE over itself, the previous one as .bak
  :help          show this
  :quit          leave without writing

Prompts of programs ask you, or take their answers from the file of --answers: one in each
line, every line counts, an empty one is Enter.

Example:
  pipenote repl plan.dxf)";

struct ReplOptions {
  ToolOptions tool;
  std::string drawing;
  std::string answers;
};

/// The names of LISP that begin with what stands before the cursor.
class Completion {
 public:
  explicit Completion(cad::lisp::Interpreter& interp) : interp_(interp) {}

  /// Completes as far as all candidates agree; lists them when that adds nothing.
  unsigned char complete(EditLine* editor) const {
    const LineInfo* const line = ::el_line(editor);
    const char* start = line->cursor;
    while (start > line->buffer && !is_delimiter(start[-1])) --start;
    const std::wstring word =
        cad::from_utf8({start, static_cast<std::size_t>(line->cursor - start)});
    if (word.empty()) return CC_ERROR;
    const std::vector<std::wstring> names = candidates(word);
    if (names.empty()) return CC_ERROR;
    const std::wstring common = common_start(names);
    if (common.size() <= word.size()) {
      if (names.size() > 1) list(names);
      return names.size() > 1 ? CC_REDISPLAY : CC_ERROR;
    }
    ::el_insertstr(editor, cad::to_utf8(cad::folded(common.substr(word.size()))).c_str());
    return CC_REFRESH;
  }

 private:
  static bool is_delimiter(char c) {
    return std::string_view(" \t()'\"").find(c) != std::string_view::npos;
  }

  std::vector<std::wstring> candidates(const std::wstring& word) const {
    std::vector<std::wstring> names = interp_.bound_names();
    std::erase_if(names, [&](const std::wstring& name) {
      return !cad::equal_no_case(std::wstring_view(name).substr(0, word.size()), word);
    });
    return names;
  }

  static std::wstring common_start(const std::vector<std::wstring>& names) {
    std::wstring common = names.front();
    for (const std::wstring& name : names) {
      const auto [end, ignored] =
          std::mismatch(common.begin(), common.end(), name.begin(), name.end());
      common.erase(end, common.end());
    }
    return common;
  }

  static void list(const std::vector<std::wstring>& names) {
    constexpr std::size_t kMost = 60;
    std::printf("\n");
    for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i)
      std::printf("%s  ", cad::to_utf8(cad::folded(names[i])).c_str());
    std::printf(names.size() > kMost ? "...\n" : "\n");
  }

  cad::lisp::Interpreter& interp_;
};

/// Lines from a terminal with editing and history, or plain lines from a pipe.
class LineSource {
 public:
  explicit LineSource(cad::lisp::Interpreter& interp) : completion_(interp) {
    if (!::isatty(STDIN_FILENO) || !::isatty(STDOUT_FILENO)) return;
    std::setlocale(LC_CTYPE, "");  // for the editor: a character is one column or two
    history_ = ::history_init();
    editor_ = ::el_init("pipenote", stdin, stdout, stderr);
    HistEvent event;
    ::history(history_, &event, H_SETSIZE, 1000);
    ::el_set(editor_, EL_CLIENTDATA, this);
    ::el_set(editor_, EL_PROMPT, &LineSource::prompt);
    ::el_set(editor_, EL_EDITOR, "emacs");
    ::el_set(editor_, EL_HIST, ::history, history_);
    // The wide call keeps the texts themselves; the narrow one makes copies that nobody frees.
    ::el_wset(editor_, EL_ADDFN, L"complete-name", L"complete a LISP name", &LineSource::on_tab);
    ::el_set(editor_, EL_BIND, "^I", "complete-name", nullptr);
  }
  ~LineSource() {
    if (editor_) ::el_end(editor_);
    if (history_) ::history_end(history_);
  }
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;

  bool is_terminal() const { return editor_ != nullptr; }

  /// The next line with its end; empty at the end of input. `open` tells how many lists are open.
  std::optional<std::string> next(int open) {
    prompt_ =
        open > 0 ? std::string(static_cast<std::size_t>(std::min(open, 20)), '(') + "> " : "> ";
    if (editor_) {
      int size = 0;
      const char* const line = ::el_gets(editor_, &size);
      if (!line || size <= 0) return std::nullopt;
      return std::string(line, static_cast<std::size_t>(size));
    }
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    return line + "\n";
  }

  void remember(const std::string& text) {
    if (!history_) return;
    HistEvent event;
    ::history(history_, &event, H_ENTER, text.c_str());
  }

 private:
  static LineSource& of(EditLine* editor) {
    LineSource* self = nullptr;
    ::el_get(editor, EL_CLIENTDATA, &self);
    return *self;
  }
  static char* prompt(EditLine* editor) { return of(editor).prompt_.data(); }
  static unsigned char on_tab(EditLine* editor, int) {
    return of(editor).completion_.complete(editor);
  }

  Completion completion_;
  EditLine* editor_ = nullptr;
  History* history_ = nullptr;
  std::string prompt_;
};

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

/// One session at the prompt.
class Repl {
 public:
  Repl(Tool& tool, AcApDocument* drawing, const std::string& path)
      : tool_(tool), drawing_(drawing), path_(path), lines_(drawing->session().interpreter()) {}

  ExitStatus run() {
    const InterruptScope interrupts(tool_.host());
    std::string text;
    for (;;) {
      InterruptScope::reset();
      tool_.fresh_line();
      std::fflush(stdout);
      const std::wstring so_far = cad::from_utf8(text);
      const std::optional<std::string> line = lines_.next(cad::lisp::unfinished(so_far).lists);
      if (!line) {
        if (!InterruptScope::interrupted()) break;
        text.clear();  // Ctrl-C drops what was typed
        continue;
      }
      text += *line;
      const std::wstring typed = cad::from_utf8(text);
      if (cad::lisp::unfinished(typed)) continue;
      const std::string input = trimmed(text);
      text.clear();
      if (input.empty()) continue;
      lines_.remember(input);
      if (input.front() != ':')
        evaluate(input);
      else if (!command(input))
        break;
    }
    // An unfinished form at the end of input is reported as such.
    if (!trimmed(text).empty()) evaluate(text);
    return status_;
  }

 private:
  void evaluate(const std::string& text) {
    const cad::Result<cad::lisp::Value> value = tool_.host().eval_string(drawing_, text);
    tool_.fresh_line();
    if (!value) {
      if (!lines_.is_terminal()) status_ = kProgramFailed;
    } else if (!value->is_blank()) {
      std::printf("%s\n", cad::Host::printed(*value).c_str());
    }
  }

  /// False to leave.
  bool command(const std::string& input) {
    const std::size_t blank = std::min(input.find(' '), input.size());
    const std::string word = input.substr(0, blank), rest = trimmed(input.substr(blank));
    if (word == ":quit") return false;
    if (word == ":save") {
      const bool in_place = rest.empty();
      const ExitStatus saved = tool_.save(drawing_, in_place ? path_ : rest, in_place);
      if (saved != kSuccess) status_ = saved;
      return true;
    }
    if (word != ":help") complain(word + " is no command of the prompt");
    std::printf("%s\n", kFooter);
    return true;
  }

  Tool& tool_;
  AcApDocument* const drawing_;
  const std::string path_;
  LineSource lines_;
  ExitStatus status_ = kSuccess;
};

ExitStatus repl(const ReplOptions& options) {
  Tool tool(options.tool);
  ExitStatus status = kSuccess;
  const bool can_be_saved = !cad::dwg::is_dwg_file(options.drawing);
  AcApDocument* const drawing = tool.open(options.drawing, can_be_saved, status);
  if (drawing && !options.answers.empty()) {
    if (cad::Status read = tool.host().set_answers(options.answers); !read) {
      complain("--answers: " + read.error().message());
      return kWrongUsage;
    }
  }
  return drawing ? Repl(tool, drawing, options.drawing).run() : status;
}

}  // namespace

void add_repl_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<ReplOptions>();
  CLI::App* const command = program.add_subcommand("repl", "a LISP prompt on a drawing");
  command->footer(kFooter);
  add_drawing(*command, options->drawing);
  command->add_option("--answers", options->answers, "answers to prompts, one in each line")
      ->type_name("FILE")
      ->check(CLI::ExistingFile);
  add_tool_options(*command, options->tool);
  command->callback([=, &status] { status = repl(*options); });
}

}  // namespace cli
