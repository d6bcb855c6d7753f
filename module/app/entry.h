#pragma once

#include "module/platform/application.h"

/// The two functions by which the host loads and drives the module. Every message is answered with
/// kRetOK; what became of a LISP call reaches the host beside that.
extern "C" {
AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);
int acrxGetApiVersion();
}
