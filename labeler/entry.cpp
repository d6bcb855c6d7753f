#include "labeler/handlers.h"
#include "labeler/lisp_functions.h"
#include "module/platform/application.h"
#include "module/platform/lisp.h"

/// The module's entry, as the host calls it.

namespace {

constexpr int kApiVersion = 18;
constexpr wchar_t kRecordingModule[] = L"pipenote.arx";

/// The recording module comes first: its settings are read when it starts.
bool start_up(void* packet) {
  if (!acrxLoadModule(kRecordingModule, true)) return false;
  AcRxDynamicLinker* const linker =
      AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"));
  if (linker) {
    linker->unlockApplication(packet);
    linker->registerAppMDIAware(packet);
  }
  labeler::register_handlers();
  return true;
}

}  // namespace

extern "C" {

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  switch (message) {
    case AcRx::kInitAppMsg:
      return start_up(packet) ? AcRx::kRetOK : AcRx::kRetError;
    case AcRx::kLoadDwgMsg:
      labeler::load_functions();
      break;
    case AcRx::kUnloadDwgMsg:
      labeler::unload_functions();
      break;
    case AcRx::kInvkSubrMsg:
      dim::set_invoke_result(labeler::invoke_function());
      break;
    case AcRx::kUnloadAppMsg:
      labeler::unregister_handlers();
      acrxUnloadModule(kRecordingModule);
      break;
    default:
      break;
  }
  return AcRx::kRetOK;
}

int acrxGetApiVersion() { return kApiVersion; }

}  // extern "C"
