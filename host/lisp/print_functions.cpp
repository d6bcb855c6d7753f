#include <algorithm>
#include <string>

#include "host/lisp/files.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"
#include "host/lisp/stream.h"
#include "host/lisp/tables.h"

namespace cad::lisp {

void print_to(Call& call, std::size_t i, std::wstring_view text) {
  if (!call.arg(i)) return call.interp().print(text);
  Stream* const stream = call.file(i).stream.get();
  if (stream == nullptr || stream->mode() == StreamMode::kRead) {
    raise_bad_value(L"file not open for writing", call.arg(i));
  }
  stream->write(text);
}

namespace {

// The text of the first argument, which is memory too.
std::wstring text_of(Call& call, Quoting quoting) {
  const std::size_t room = call.interp().heap().room() / sizeof(wchar_t);
  return to_text(call.arg(0), quoting, std::min(room, kLongestText));
}

// Without arguments the value is the blank, so that nothing is echoed.
Value fn_princ(Call& call) {
  if (call.size() == 0) return Value::blank();
  print_to(call, 1, text_of(call, Quoting::kPrinc));
  return call.arg(0);
}

Value fn_prin1(Call& call) {
  if (call.size() == 0) return Value::blank();
  print_to(call, 1, text_of(call, Quoting::kPrin1));
  return call.arg(0);
}

Value fn_print(Call& call) {
  if (call.size() == 0) return Value::blank();
  print_to(call, 1, L"\n" + text_of(call, Quoting::kPrin1) + L" ");
  return call.arg(0);
}

Value fn_prompt(Call& call) {
  call.interp().print(call.string(0));
  return Value();
}

Value fn_terpri(Call& call) {
  call.interp().print(L"\n");
  return Value();
}

Value fn_write_line(Call& call) {
  print_to(call, 1, std::wstring(call.string(0)) + L"\n");
  return call.arg(0);
}

Value fn_write_char(Call& call) {
  print_to(call, 1, std::wstring(1, static_cast<wchar_t>(call.integer(0))));
  return call.arg(0);
}

Value fn_princ_to_string(Call& call) {
  return call.interp().string(text_of(call, Quoting::kPrinc));
}
Value fn_prin1_to_string(Call& call) {
  return call.interp().string(text_of(call, Quoting::kPrin1));
}

// clang-format off
constexpr Builtin kPrintFunctions[] = {
    {"princ",      0, 2, fn_princ,      "(princ [value [file]])",    "prints for people, without quotes; alone: an empty echo"},
    {"prin1",      0, 2, fn_prin1,      "(prin1 [value [file]])",    "prints as read would take it"},
    {"print",      0, 2, fn_print,      "(print [value [file]])",    "a new line, the value as prin1, a blank"},
    {"prompt",     1, 1, fn_prompt,     "(prompt text)",             "prints a text; nil"},
    {"terpri",     0, 0, fn_terpri,     "(terpri)",                  "prints a new line; nil"},
    {"write-line", 1, 2, fn_write_line, "(write-line text [file])",  "prints a text and a new line"},
    {"write-char", 1, 2, fn_write_char, "(write-char code [file])",  "prints one character"},
    {"vl-princ-to-string", 1, 1, fn_princ_to_string, "(vl-princ-to-string value)", "the text princ prints"},
    {"vl-prin1-to-string", 1, 1, fn_prin1_to_string, "(vl-prin1-to-string value)", "the text prin1 prints"},
};
// clang-format on

}  // namespace

std::span<const Builtin> print_functions() { return kPrintFunctions; }

}  // namespace cad::lisp
