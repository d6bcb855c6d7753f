#include "host/app/prompt/user_input.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "host/app/console.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/stream.h"

namespace cad {
namespace {

/// A program that catches the cancellation and asks again would do so forever.
constexpr int kMostUnanswered = 100;

std::vector<std::wstring> lines_of(std::wstring_view text) {
  std::vector<std::wstring> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(L'\n'), text.size());
    std::wstring_view line = text.substr(0, end);
    if (line.ends_with(L"\r")) line.remove_suffix(1);
    lines.emplace_back(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::wstring without_line_ends(std::wstring_view text) {
  std::wstring line;
  for (const wchar_t c : text)
    if (c != L'\n' && c != L'\r') line += c;
  return line;
}

}  // namespace

UserInput& user_input() {
  static UserInput input;
  return input;
}

UserInput scripted_input(std::string_view text, const std::string& name) {
  struct Script {
    std::vector<std::wstring> lines;
    std::size_t next = 0;
  };
  const auto script = std::make_shared<Script>();
  script->lines = lines_of(lisp::decode_file(text));
  UserInput input;
  input.echo = true;
  input.read_line = [script]() -> std::optional<std::wstring> {
    if (script->next == script->lines.size()) return std::nullopt;
    return script->lines[script->next++];
  };
  input.why_none = [script, shown = from_utf8(name)] {
    const std::size_t count = script->lines.size();
    return count == 0 ? shown + L" is empty"
                      : L"line " + std::to_wstring(count) + L" of " + shown + L" was the last";
  };
  return input;
}

std::wstring ask_user(std::wstring_view prompt) {
  static int unanswered = 0;
  UserInput& input = user_input();
  print_console(prompt);
  std::optional<std::wstring> line;
  if (input.read_line && input.no_prompts.empty()) line = input.read_line();
  if (line) {
    unanswered = 0;
    if (input.echo) print_console(*line + L"\n");
    return *line;
  }
  const std::wstring why = !input.no_prompts.empty() ? input.no_prompts
                           : input.why_none          ? input.why_none()
                                                     : L"there is nobody to ask";
  print_console(L"\nno answer left for \"" + without_line_ends(prompt) + L"\" (" + why + L")\n");
  throw lisp::LispError{L"Function cancelled", ++unanswered <= kMostUnanswered};
}

}  // namespace cad
