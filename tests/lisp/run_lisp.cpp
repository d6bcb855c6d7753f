// Runs checks written in LISP: run_lisp harness.lsp checks.lsp. Fails when a check failed, when a
// file could not be evaluated to its end, and when nothing was checked. A system variable is what
// the checks set as *NAME*.

#include <cstdio>
#include <string>

#include "host/base/codepage.h"
#include "host/lisp/interpreter.h"

int main(int argc, char** argv) {
  using namespace cad::lisp;
  Services services;
  services.output = [](std::wstring_view text) { std::fputs(cad::to_utf8(text).c_str(), stdout); };
  services.system_variable = [](Interpreter& interp, std::wstring_view name) {
    return interp.variable(L"*" + std::wstring(name) + L"*");
  };
  Interpreter interp(std::move(services));
  for (int i = 1; i < argc; ++i) {
    if (!interp.load_file(argv[i])) return 1;
  }
  const Value checks = interp.variable(L"*CHECKS*");
  const Value failures = interp.variable(L"*FAILURES*");
  if (!checks.is_integer() || !failures.is_integer()) return 1;
  std::printf("\n%d checks, %d failed\n", checks.integer(), failures.integer());
  return checks.integer() > 0 && failures.integer() == 0 ? 0 : 1;
}
