// Runs LISP files in a bare interpreter, without a drawing: run_lisp_file FILE...

#include <cstdio>

#include "host/base/codepage.h"
#include "host/lisp/interpreter.h"

int main(int argc, char** argv) {
  using namespace cad::lisp;
  Services services;
  services.output = [](std::wstring_view text) { std::fputs(cad::to_utf8(text).c_str(), stdout); };
  Interpreter interp(std::move(services));
  for (int i = 1; i < argc; ++i) {
    if (!interp.load_file(argv[i])) return 1;
  }
  return 0;
}
