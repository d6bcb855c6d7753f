#pragma once

#include "module/platform/foundation.h"

/// The handlers this module registers, so that the annotation manager can have labels redrawn.
namespace labeler {

/// Registers a handler for every type this module draws that has none yet.
void register_handlers();
/// Takes out every handler that was registered here, those of LISP functions included.
void unregister_handlers();

/// From now on the LISP function redraws labels of that type:
///     (function type-name list-of-enames flag)
/// called in the current document; anything but nil is success. An empty name goes back to the
/// module's own handler, or to none. False when another module's handler is registered.
bool set_lisp_handler(const CString& type, const CString& function);

}  // namespace labeler
