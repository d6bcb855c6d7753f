// A LISP program on a new drawing, with commands, entities, selections and prompts; what stands
// behind a line of "---" are the answers of the user. Whatever it does ends within its limits, and
// the drawing it leaves can be saved and opened again.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/db/drawing.h"
#include "host/lisp/interpreter.h"

namespace {

// Programs could reach the disk by these.
constexpr const wchar_t* kTakenAway[] = {
    L"OPEN",           L"LOAD",           L"ARXLOAD",      L"SETCFG",   L"VL-REGISTRY-WRITE",
    L"VL-FILE-DELETE", L"VL-FILE-RENAME", L"VL-FILE-COPY", L"VL-MKDIR", L"VL-REGISTRY-DELETE",
    L"AUTOLOAD",
};

cad::Host& host() {
  static cad::Host one;
  return one;
}

class Answers {
 public:
  explicit Answers(std::string_view text) : rest_(text) {}
  std::optional<std::wstring> next() {
    if (rest_.empty()) return std::nullopt;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    std::wstring line = cad::from_utf8(rest_.substr(0, end));
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return line;
  }

 private:
  std::string_view rest_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::string_view kMark = "\n---\n";
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t mark = std::min(bytes.find(kMark), bytes.size());
  Answers answers(bytes.substr(std::min(mark + kMark.size(), bytes.size())));
  host().set_input([&answers] { return answers.next(); });

  AcApDocument* const drawing = host().new_drawing();
  cad::lisp::Interpreter& interp = drawing->session().interpreter();
  for (const wchar_t* name : kTakenAway) interp.set_variable(name, {});
  interp.set_limits({.steps = 3000, .stack_bytes = 256 << 10, .memory_bytes = 16 << 20});
  (void)host().eval_string(drawing, bytes.substr(0, mark), "input");
  host().finish_command(drawing);

  const std::string saved = drawing->database()->drawing().save_bytes();
  host().close(drawing);
  const cad::Result<AcApDocument*> again = host().open_bytes(saved, "saved.dxf");
  if (!again) {
    std::fprintf(stderr, "cannot be opened again: %s\n", again.error().message().c_str());
    std::abort();
  }
  host().close(*again);
  host().set_input({});
  return 0;
}
