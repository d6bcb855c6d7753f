#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cad {

/// Where the user's answers come from. One for the process, as there is one host at a time.
struct UserInput {
  /// A line without its end; empty at the end of input.
  std::function<std::optional<std::wstring>()> read_line;
  /// Whether answers are printed behind their prompts: they did not come from a screen.
  bool echo = false;
  /// Why prompts are not answered, although there may be lines to read; empty when they are.
  std::wstring no_prompts;
  /// Told when there is no answer: "line 12 of answers.txt was the last".
  std::function<std::wstring()> why_none;
};
UserInput& user_input();

/// Answers from a text of one answer in each line, an empty line for Enter: UTF-8, or code page 936
/// when it is not UTF-8. The name is for messages.
UserInput scripted_input(std::string_view text, const std::string& name);

/// Prints the prompt and returns the answer. Without one, says so and raises "Function cancelled".
std::wstring ask_user(std::wstring_view prompt);

}  // namespace cad
