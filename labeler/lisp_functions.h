#pragma once

/// The LISP functions of this module; docs/labelling.md describes them.
namespace labeler {

/// Defines them in the current document, or takes them out.
void load_functions();
void unload_functions();
/// Serves the call under way: RSRSLT or RSERR.
int invoke_function();

}  // namespace labeler
