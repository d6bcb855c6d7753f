#include "host/app/modules.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "host/app/aced.h"
#include "host/app/console.h"
#include "host/app/host.h"
#include "host/app/invocation.h"
#include "host/app/session.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/lisp/printer.h"

namespace cad {
namespace {

/// Marks the module whose code runs, so that acedDefun() knows for whom.
class ServingScope {
 public:
  ServingScope(Module*& serving, Module& module)
      : serving_(serving), outer_(std::exchange(serving, &module)), module_(module) {
    ++module.calls;
  }
  ~ServingScope() {
    --module_.calls;
    serving_ = outer_;
  }
  ServingScope(const ServingScope&) = delete;
  ServingScope& operator=(const ServingScope&) = delete;

 private:
  Module*& serving_;
  Module* const outer_;
  Module& module_;
};

bool ends_with_no_case(std::string_view text, std::string_view end) {
  return text.size() > end.size() && equal_no_case(text.substr(text.size() - end.size()), end);
}

bool has_folder(std::string_view file) { return file.find('/') != std::string_view::npos; }

std::string with_slashes(std::string_view file) {
  std::string path(file);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

/// "survey.arx" for "/opt/x/Survey.arx.so".
std::string shown_name(std::string_view file) {
  std::string name = folded(with_slashes(file));
  name.erase(0, name.rfind('/') + 1);
  if (ends_with_no_case(name, ".so")) name.resize(name.size() - 3);
  return name;
}

/// What tells modules apart: the shown name without ".arx".
std::string module_key(std::string_view file) {
  std::string key = shown_name(file);
  if (ends_with_no_case(key, ".arx")) key.resize(key.size() - 4);
  return key;
}

bool is_file(const std::string& path) {
  struct stat facts;
  return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

/// The path to load: the file itself or with the endings that may be left out, in the folders of
/// modules when none is named; empty when there is none.
std::string find_module_file(std::string_view file) {
  const std::string name = with_slashes(file);
  std::vector<std::string> folders = {""};
  if (!has_folder(name)) {
    folders.clear();
    for (const std::string& folder : host_settings().module_folders)
      folders.push_back(folder + "/");
    folders.push_back("./");
  }
  for (const std::string& folder : folders) {
    for (const char* ending : {"", ".so", ".arx.so"}) {
      std::string path = folder + name + ending;
      if (is_file(path)) return path;
    }
  }
  return {};
}

constexpr char kNotAModule[] = "is no module of this host";

}  // namespace

Modules& Modules::instance() {
  static Modules* const modules = new Modules;  // outlives every static object of a module
  return *modules;
}

Module* Modules::find(const void* packet) {
  for (const auto& module : modules_)
    if (module->packet() == packet) return module.get();
  return nullptr;
}

Module* Modules::find_name(std::string_view file) {
  const std::string key = module_key(file);
  for (const auto& module : modules_)
    if (module_key(module->name) == key) return module.get();
  return nullptr;
}

const Module* Modules::single_document_module() const {
  for (const auto& module : modules_)
    if (!module->serves_many) return module.get();
  return nullptr;
}

void Modules::add_static(std::string name, ModuleEntry entry) {
  static_modules_.insert_or_assign(module_key(name), entry);
}

AcRx::AppRetCode Modules::send(Module& module, AcRx::AppMsgCode message) {
  ServingScope scope(serving_, module);
  try {
    return module.entry(message, module.packet());
  } catch (const std::exception& error) {
    print_console(L"\n" + from_utf8(module.name + ": " + error.what()) + L"\n");
  } catch (...) {
    print_console(L"\n" + from_utf8(module.name) + L": unknown exception\n");
  }
  return AcRx::kRetError;
}

Status Modules::load(const std::string& file) {
  if (Module* loaded = find_name(file)) {
    ++loaded->references;
    return {};
  }
  auto module = std::make_unique<Module>();
  module->name = shown_name(file);
  if (const auto known = static_modules_.find(module_key(file)); known != static_modules_.end()) {
    module->entry = known->second;
    return start(std::move(module));
  }
  module->path = find_module_file(file);
  if (module->path.empty()) return fail(file, "the module is not found");
  // A path without a slash would be looked for in the system's folders.
  const std::string path = has_folder(module->path) ? module->path : "./" + module->path;
  module->library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module->library) {
    const char* reason = ::dlerror();
    return fail(module->path, std::string("cannot be loaded: ") + (reason ? reason : ""));
  }
  module->entry = reinterpret_cast<ModuleEntry>(::dlsym(module->library, "acrxEntryPoint"));
  if (!module->entry || !::dlsym(module->library, "acrxGetApiVersion")) {
    ::dlclose(module->library);
    return fail(module->path, kNotAModule);
  }
  return start(std::move(module));
}

Status Modules::start(std::unique_ptr<Module> owned) {
  Module& module = *owned;
  module.number = ++last_number_;
  modules_.push_back(std::move(owned));
  if (send(module, AcRx::kInitAppMsg) != AcRx::kRetOK) {
    const std::string name = module.name;
    stop(module);
    return fail(name, "the module refused to start");
  }
  if (!module.serves_many && acDocManager->documentCount() > 1) {
    const std::string name = module.name;
    send(module, AcRx::kUnloadAppMsg);
    stop(module);
    return fail(name, "the module serves one drawing only, and several are open");
  }
  if (AcApDocument* document = acDocManager->curDocument()) load_drawing(*document);
  return {};
}

/// Forgets the module and closes its library, after its last message.
void Modules::stop(Module& module) {
  void* const library = module.library;
  std::erase_if(modules_, [&](const auto& one) { return one.get() == &module; });
  if (library) ::dlclose(library);
}

void Modules::leave_document(Module& module, AcApDocument& document) {
  DocumentSession& session = document.session();
  if (std::erase(session.modules, module.number) == 0) return;
  send(module, AcRx::kUnloadDwgMsg);
  session.interpreter().undefine_externals(module.number);
}

Status Modules::unload(const std::string& name) {
  Module* const module = find_name(name);
  if (!module) return fail(name, "the module is not loaded");
  if (module->references > 1) {
    --module->references;
    return {};
  }
  if (module->locked) return fail(name, "the module is locked and cannot be unloaded");
  if (module->calls > 0) return fail(name, "the module is in use");
  module->leaving = true;
  AcApDocument* const current = acDocManager->curDocument();
  for (AcApDocument* document : acDocManager->documents()) {
    acDocManager->setCurDocument(document);
    leave_document(*module, *document);
  }
  if (current) acDocManager->setCurDocument(current);
  send(*module, AcRx::kUnloadAppMsg);
  stop(*module);
  return {};
}

void Modules::unload_all() {
  while (!modules_.empty()) {
    Module& module = *modules_.back();
    send(module, AcRx::kUnloadAppMsg);
    stop(module);
  }
}

void Modules::load_drawing(AcApDocument& document) {
  std::vector<std::uint64_t>& told = document.session().modules;
  for (std::size_t i = 0; i < modules_.size(); ++i) {
    Module& module = *modules_[i];
    if (module.leaving || std::find(told.begin(), told.end(), module.number) != told.end())
      continue;
    told.push_back(module.number);
    send(module, AcRx::kLoadDwgMsg);
  }
}

void Modules::unload_drawing(AcApDocument& document) {
  for (std::size_t i = modules_.size(); i-- > 0;)
    if (i < modules_.size()) leave_document(*modules_[i], document);
}

void Modules::broadcast(AcRx::AppMsgCode message) {
  for (std::size_t i = 0; i < modules_.size(); ++i) send(*modules_[i], message);
}

namespace {

bool is_success(const Invocation& call, bool direct, int returned) {
  if (direct) return returned == RTNORM || returned == RSRSLT;
  if (call.status) return *call.status == RSRSLT;
  return returned == AcRx::kRetOK || returned == RSRSLT;
}

}  // namespace

Result<lisp::Value> Modules::invoke(DocumentSession& session, const lisp::External& function,
                                    std::span<const lisp::Value> arguments) {
  const std::wstring& name = function.name->name;
  Module* const module = find(reinterpret_cast<void*>(static_cast<std::uintptr_t>(function.owner)));
  if (!module) return fail({}, to_utf8(L"no function definition: " + name));
  Invocation call(session, static_cast<short>(function.code));
  for (const lisp::Value& argument : arguments) {
    const lisp::Value* refused = call.arguments.append(argument, session.selection_sets);
    if (refused)
      return fail({},
                  to_utf8(L"bad argument type: " + lisp::to_text(*refused, lisp::Quoting::kPrin1)));
  }
  bool done = false;
  {
    ServingScope scope(serving_, *module);
    const auto direct = module->functions.find(call.code);
    try {
      const int returned = direct != module->functions.end()
                               ? direct->second()
                               : module->entry(AcRx::kInvkSubrMsg, module->packet());
      done = is_success(call, direct != module->functions.end(), returned);
    } catch (const std::exception& error) {
      return fail({}, to_utf8(name) + ": " + error.what());
    } catch (...) {
      return fail({}, to_utf8(name) + ": unknown exception");
    }
  }
  if (!done) return fail({}, to_utf8(L"ADS request error: " + name));
  return std::move(call.result);
}

void register_static_module(const ACHAR* name, ModuleEntry entry) {
  Modules::instance().add_static(to_utf8(name), entry);
}

}  // namespace cad

using cad::Module;
using cad::Modules;

PN_RX_DEFINE(AcRxDynamicLinker, AcRxObject, L"")

namespace {

/// Files the service before any module is loaded.
const bool linker_filed = [] {
  static AcRxDynamicLinker* const linker = new AcRxDynamicLinker;
  acrxSysRegistry()->atPut(L"DynamicLinker", linker);
  return AcRxDynamicLinker::desc() != nullptr;
}();

bool report(const cad::Status& status, bool print) {
  if (!status && print)
    cad::print_console(L"\n" + cad::from_utf8(status.error().message()) + L"\n");
  return static_cast<bool>(status);
}

}  // namespace

bool AcRxDynamicLinker::loadModule(const ACHAR* file, bool print, bool) {
  return file && report(Modules::instance().load(cad::to_utf8(file)), print);
}

bool AcRxDynamicLinker::unloadModule(const ACHAR* file, bool) {
  return file && report(Modules::instance().unload(cad::to_utf8(file)), false);
}

namespace {

bool set_flag(void* packet, bool Module::*flag, bool value) {
  Module* const module = Modules::instance().find(packet);
  if (module) module->*flag = value;
  return module != nullptr;
}

}  // namespace

bool AcRxDynamicLinker::unlockApplication(void* packet) const {
  return set_flag(packet, &Module::locked, false);
}

bool AcRxDynamicLinker::lockApplication(void* packet) const {
  return set_flag(packet, &Module::locked, true);
}

bool AcRxDynamicLinker::registerAppMDIAware(void* packet) const {
  return set_flag(packet, &Module::serves_many, true);
}

bool AcRxDynamicLinker::registerAppNotMDIAware(void* packet) const {
  return set_flag(packet, &Module::serves_many, false);
}

bool AcRxDynamicLinker::isApplicationLocked(const ACHAR* name) const {
  const Module* const module = name ? Modules::instance().find_name(cad::to_utf8(name)) : nullptr;
  return module && module->locked;
}

bool acrxLoadModule(const ACHAR* file, bool print, bool as_command) {
  return AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"))
      ->loadModule(file, print, as_command);
}

bool acrxUnloadModule(const ACHAR* file, bool as_command) {
  return AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"))
      ->unloadModule(file, as_command);
}
