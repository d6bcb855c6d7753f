#pragma once

#include "host/db/rx.h"

/// Loading modules and the messages between host and module.
///
/// A module is a shared library that exports, with C linkage,
///     AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);
///     int acrxGetApiVersion();
/// It gets kInitAppMsg once, kLoadDwgMsg for each drawing when that drawing first becomes current
/// after loading, kInvkSubrMsg for each call of its functions, kUnloadDwgMsg for each drawing that
/// got kLoadDwgMsg, and kUnloadAppMsg.
namespace AcRx {

enum AppMsgCode {
  kNullMsg = 0,
  kInitAppMsg = 1,
  kUnloadAppMsg = 2,
  kLoadDwgMsg = 3,
  kUnloadDwgMsg = 4,
  kInvkSubrMsg = 5,
  kCfgMsg = 6,
  kEndMsg = 7,
  kQuitMsg = 8,
  kSaveMsg = 9,
  kDependencyMsg = 10,
  kNoDependencyMsg = 11,
  kOleUnloadAppMsg = 12,
  kPreQuitMsg = 13,
  kInitDialogMsg = 14,
  kEndDialogMsg = 15,
  kSuspendMsg = 16,
  kInitTabGroupMsg = 17,
  kEndTabGroupMsg = 18,
};

enum AppRetCode { kRetOK = 0, kRetError = 3 };

}  // namespace AcRx

/// The service that loads modules, found in the system registry:
///     AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"))->loadModule(name, false);
/// A file name without a folder is looked for in the folders of modules (cad::HostSettings), then
/// in the current one; the endings ".so" and ".arx.so" may be left out. Module names are compared
/// without folder, ending and letter case.
///
/// A module starts locked: it cannot be unloaded until it unlocks itself with the packet of its
/// kInitAppMsg, whose value identifies it.
class AcRxDynamicLinker : public AcRxObject {
  PN_RX_MEMBERS(AcRxDynamicLinker)
 public:
  /// True when the module is loaded afterwards. Loading it again counts references. With `print`
  /// the reason of a failure is printed on the command line.
  bool loadModule(const ACHAR* file, bool print, bool as_command = false);
  /// Takes back one load; the last one unloads the module. False for a module that is locked or not
  /// loaded, and then nothing changes.
  bool unloadModule(const ACHAR* file, bool as_command = false);

  /// These accept the packet of kInitAppMsg only; false for anything else.
  bool unlockApplication(void* packet) const;
  bool lockApplication(void* packet) const;
  bool registerAppMDIAware(void* packet) const;
  bool registerAppNotMDIAware(void* packet) const;
  /// By module name. False for a module that is not loaded.
  bool isApplicationLocked(const ACHAR* name) const;
};

bool acrxLoadModule(const ACHAR* file, bool print, bool as_command = false);
bool acrxUnloadModule(const ACHAR* file, bool as_command = false);

namespace cad {

using ModuleEntry = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);

/// Makes loadModule(name) find this entry instead of a file: a module linked into the program.
void register_static_module(const ACHAR* name, ModuleEntry entry);

}  // namespace cad
