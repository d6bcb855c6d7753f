#include "module/app/entry.h"

#include "module/app/documents.h"
#include "module/app/lisp_functions.h"
#include "module/platform/lisp.h"
#include "module/style/style.h"

namespace {

/// Version of the host interface the module was written for.
constexpr int kApiVersion = 18;

AsdkDataManager<CDocData> g_document_data;  // listens for as long as the module is loaded

/// Declares the module unloadable and fit for several open drawings, then loads the settings.
void start_up(void* packet) {
  AcRxDynamicLinker* linker = AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"));
  if (linker) {
    linker->unlockApplication(packet);
    linker->registerAppMDIAware(packet);
  }
  CDimStyle::Instance().UpdateData();
}

}  // namespace

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  switch (message) {
    case AcRx::kInitAppMsg:
      start_up(packet);
      break;
    case AcRx::kLoadDwgMsg:
      dim::loadLispFunctions();  // what the host refuses stays undefined in that drawing
      break;
    case AcRx::kUnloadDwgMsg:
      dim::unloadLispFunctions();
      break;
    case AcRx::kInvkSubrMsg:
      dim::set_invoke_result(dim::invokeLispFunction());
      break;
    default:
      break;
  }
  return AcRx::kRetOK;
}

int acrxGetApiVersion() { return kApiVersion; }
