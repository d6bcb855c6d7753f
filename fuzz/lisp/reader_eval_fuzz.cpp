// Any text is read and evaluated within its limits, and what prin1 writes reads back as the same
// form, as does what is carried to another interpreter.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "host/base/codepage.h"
#include "host/lisp/compare.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/portable_value.h"
#include "host/lisp/printer.h"
#include "host/lisp/reader.h"

namespace {

using namespace cad::lisp;

// No input reaches the disk.
Services cut_off() {
  Services services;
  services.output = [](std::wstring_view) {};
  services.find_file = [](std::wstring_view) { return std::nullopt; };
  services.place_file = [](std::wstring_view) { return std::string("/dev/null/none"); };
  return services;
}

void read_back(Interpreter& interp, std::wstring_view text) {
  Reader reader(interp, text);
  try {
    while (const std::optional<Value> form = reader.next()) {
      const std::wstring printed = to_text(*form, Quoting::kPrin1);
      if (!is_equal(interp, *form, PortableValue::of(*form).in(interp))) {
        std::fprintf(stderr, "is not carried over: %s\n", cad::to_utf8(printed).c_str());
        std::abort();
      }
      Reader again(interp, printed);
      const std::optional<Value> second = again.next();
      if (!second || to_text(*second, Quoting::kPrin1) != printed || again.next()) {
        std::fprintf(stderr, "does not read back: %s\n", cad::to_utf8(printed).c_str());
        std::abort();
      }
    }
  } catch (const LispError&) {
    // Most inputs cannot be read.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Interpreter interp(cut_off());
  interp.set_limits({.steps = 3000, .stack_bytes = 256 << 10, .memory_bytes = 8 << 20});
  read_back(interp, cad::from_utf8(bytes));
  interp.set_call_trace(size % 2 != 0);  // both ways of calling
  (void)interp.eval_string(bytes, "input");
  return 0;
}
