#include "host/base/trace.h"

#include <utility>

namespace cad {
namespace {

std::function<void(std::wstring_view)>& sink() {
  static std::function<void(std::wstring_view)> function;
  return function;
}

bool inside_sink = false;

}  // namespace

void set_trace_sink(std::function<void(std::wstring_view)> new_sink) {
  sink() = std::move(new_sink);
}

bool tracing() { return static_cast<bool>(sink()); }

void trace(std::wstring_view line) {
  if (!tracing() || inside_sink) return;
  struct Guard {
    Guard() { inside_sink = true; }
    ~Guard() { inside_sink = false; }
  } guard;
  const auto listener = sink();  // a copy: the listener may replace itself
  listener(line);
}

}  // namespace cad
