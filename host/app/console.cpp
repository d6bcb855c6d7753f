#include "host/app/console.h"

#include <utility>

#include "host/base/codepage.h"

namespace cad {
namespace {

std::function<void(std::string_view)>& sink() {
  static std::function<void(std::string_view)> receiver;
  return receiver;
}

}  // namespace

void set_console(std::function<void(std::string_view)> receiver) { sink() = std::move(receiver); }

void print_console(std::wstring_view text) {
  if (sink() && !text.empty()) sink()(to_utf8(text));
}

}  // namespace cad

int acutPrintf(const ACHAR* format, ...) {
  if (!format) return RTERROR;
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring text = cad::format_wide_list(format, arguments);
  va_end(arguments);
  cad::print_console(text);
  return RTNORM;
}
