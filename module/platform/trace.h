#pragma once

#include "host/base/trace.h"
#include "module/platform/text.h"

/// The diagnostic trace. Nobody listens unless a developer asks, and nothing of it is ever shown to
/// the user.
namespace dim {

using cad::trace;

/// As trace(), of a text made with format_text(). Costs a test when nobody listens.
template <class... Arguments>
void trace_format(const wchar_t* format, Arguments... arguments) {
  if (cad::tracing()) cad::trace(format_text(format, arguments...));
}

}  // namespace dim
