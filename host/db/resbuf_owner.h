#pragma once

#include "host/db/resbuf.h"

namespace cad {

/// Asked by acutRelRb() before it frees a buffer: whether it is the host's, as the arguments of a
/// LISP call are, and must stay. Null until the host answers calls.
inline bool (*host_owns_buffer)(const resbuf* buffer) = nullptr;

}  // namespace cad
