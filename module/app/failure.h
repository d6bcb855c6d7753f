#pragma once

#include "module/platform/lisp.h"
#include "module/platform/trace.h"

/// How a LISP function ends that cannot do its work.
namespace dim {

/// Tells nobody but a developer who listens to the trace.
inline int traced_failure(const wchar_t* line) {
  trace(line);
  return RTERROR;
}

/// Tells the user. `line` begins with its line break.
inline int printed_failure(const wchar_t* line) {
  acutPrintf(L"%s", line);
  return RTERROR;
}

}  // namespace dim
