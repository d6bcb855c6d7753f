// A module as a shared library: (twice n).

#include "host/app/aced.h"
#include "host/app/acrx_app.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  switch (message) {
    case AcRx::kInitAppMsg: {
      auto* linker = AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"));
      linker->unlockApplication(packet);
      linker->registerAppMDIAware(packet);
      break;
    }
    case AcRx::kLoadDwgMsg:
      acedDefun(L"twice", 1);
      break;
    case AcRx::kInvkSubrMsg:
      acedRetInt(2 * acedGetArgs()->resval.rint);
      break;
    default:
      break;
  }
  return AcRx::kRetOK;
}

extern "C" int acrxGetApiVersion() { return 1; }
