#pragma once

#include <span>

/// The LISP functions of the module, and how the host's messages reach them.
namespace dim {

struct LispFunction {
  const wchar_t* name;
  int (*handler)();          ///< reads its own arguments; RTNORM for success
  int register_as_function;  ///< nonzero: the host calls the handler directly
};

/// Indexed by the code of the function. Row 0 is blank: it is never defined and never called.
std::span<const LispFunction> lisp_functions();

/// Defines the functions in the current drawing. RTERROR, and the rest stays undefined, at the
/// first one that the host refuses.
int loadLispFunctions();
int unloadLispFunctions();
/// Serves the call that the host has pending. RSRSLT, RSERR when the handler failed, RTERROR for a
/// code that is none of ours. A handler that sets no result gives LISP the blank value.
int invokeLispFunction();

}  // namespace dim
