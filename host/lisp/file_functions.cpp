#include <string>
#include <utility>

#include "host/base/codepage.h"
#include "host/lisp/files.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/stream.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

Value fn_findfile(Call& call) {
  const auto path = find_file(call.interp(), call.string(0));
  return path ? call.interp().string(from_utf8(*path)) : Value();
}

// The third argument names an encoding; text files are recognised and written as UTF-8 anyway.
Value fn_open(Call& call) {
  const std::wstring_view name = call.string(0), mode = call.string(1);
  std::unique_ptr<Stream> stream;
  if (mode == L"r") {
    if (const auto path = find_file(call.interp(), name)) {
      stream = Stream::open(*path, StreamMode::kRead);
    }
  } else if (mode == L"w" || mode == L"a") {
    stream = Stream::open(place_file(call.interp(), name),
                          mode == L"w" ? StreamMode::kWrite : StreamMode::kAppend);
  } else {
    raise_bad_value(L"file mode", call.arg(1));
  }
  if (!stream) return Value();
  return Value::adopt(call.interp().heap().make<File>(0, std::wstring(name), std::move(stream)));
}

Value fn_close(Call& call) {
  File& file = call.file(0);
  if (!file.stream) raise_bad_value(L"file already closed", call.arg(0));
  const bool written = file.stream->close();
  file.stream.reset();
  if (!written) raise(L"cannot write to file: " + file.name);
  return Value();
}

Stream& readable(Call& call, std::size_t i) {
  File& file = call.file(i);
  if (!file.stream || file.stream->mode() != StreamMode::kRead) {
    raise_bad_value(L"file not open for reading", call.arg(i));
  }
  return *file.stream;
}

std::optional<std::wstring> typed_line(Interpreter& interp) {
  return interp.services().read_line ? interp.services().read_line() : std::nullopt;
}

Value fn_read_line(Call& call) {
  const auto line = call.arg(0) ? readable(call, 0).read_line() : typed_line(call.interp());
  return line ? call.interp().string(*line) : Value();
}

// At the prompt a line is read whole; its first character counts.
Value fn_read_char(Call& call) {
  if (call.arg(0)) {
    const auto c = readable(call, 0).read_char();
    return c ? Value::integer(*c) : Value();
  }
  const auto line = typed_line(call.interp());
  if (!line) return Value();
  return Value::integer(line->empty() ? L'\n' : line->front());
}

// clang-format off
constexpr Builtin kFileFunctions[] = {
    {"findfile",  1, 1, fn_findfile,  "(findfile name)",      "the path of a file; nil when it is not found"},
    {"findtrustedfile", 1, 1, fn_findfile, "(findtrustedfile name)", "as findfile: every folder is trusted"},
    {"open",      2, 3, fn_open,      "(open name mode)",     "opens a text file: \"r\" read, \"w\" write, \"a\" append; nil on failure"},
    {"close",     1, 1, fn_close,     "(close file)",         "closes a file; nil"},
    {"read-line", 0, 1, fn_read_line, "(read-line [file])",   "the next line of a file or of the prompt; nil at its end"},
    {"read-char", 0, 1, fn_read_char, "(read-char [file])",   "the code of the next character; nil at the end"},
};
// clang-format on

}  // namespace

std::span<const Builtin> file_functions() { return kFileFunctions; }

}  // namespace cad::lisp
