#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

namespace cad::lisp {

/// Text into forms, one at a time. Nesting of any depth. Raises LispError for what cannot be read:
/// "malformed list on input", "extra right paren on input", "malformed string on input", ...
class Reader {
 public:
  /// The text must outlive the reader.
  Reader(Interpreter& interp, std::wstring_view text) : interp_(interp), text_(text) {}

  /// The next form; empty at the end of the text.
  std::optional<Value> next();
  /// Line, from 1, on which the form read last (or the one that failed) starts.
  std::uint32_t line() const { return form_line_; }
  /// Characters consumed so far.
  std::size_t position() const { return at_; }

 private:
  struct Level;

  bool at_end() const { return at_ >= text_.size(); }
  void skip_blanks();
  void skip_comment();
  Value read_string();
  Value read_atom(std::wstring_view token);
  std::wstring_view take_token();
  wchar_t read_escape();

  Interpreter& interp_;
  std::wstring_view text_;
  std::size_t at_ = 0;
  std::uint32_t line_ = 1;
  std::uint32_t form_line_ = 1;
};

/// The number a token spells, if it spells one: 1 -2 +3 1.5 .5 -.5 5. 1e5. Integers beyond 32 bits
/// become reals.
std::optional<Value> parse_number(std::wstring_view token);

/// What a text still lacks before it can be read: lists and a string (or comment) left open.
/// A prompt asks for more lines meanwhile.
struct Unfinished {
  int lists = 0;
  bool text = false;
  explicit operator bool() const { return lists > 0 || text; }
};
Unfinished unfinished(std::wstring_view source);

}  // namespace cad::lisp
