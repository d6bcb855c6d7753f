#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/app/acrx_app.h"
#include "host/app/documents.h"
#include "host/base/result.h"
#include "host/lisp/interpreter.h"

namespace cad {

class DocumentSession;

/// A loaded module. Its packet is its number, so that a packet of a module that is gone is known.
struct Module {
  std::uint64_t number = 0;
  std::string name;  // without folder and ".so", lower case: "survey.arx"
  std::string path;  // empty when linked into the program
  void* library = nullptr;
  ModuleEntry entry = nullptr;
  int references = 1;
  bool locked = true;
  bool serves_many = false;              // registered as able to serve several documents
  bool leaving = false;                  // being unloaded: no drawing is told of it any more
  int calls = 0;                         // messages being served
  std::map<short, int (*)()> functions;  // of acedRegFunc()

  void* packet() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(number)); }
};

/// All loaded modules, in loading order.
class Modules {
 public:
  static Modules& instance();

  Status load(const std::string& file);
  Status unload(const std::string& name);
  /// At the end of the host, whether they are locked or not; latest first.
  void unload_all();

  /// kLoadDwgMsg from every module that has not sent it to this document yet.
  void load_drawing(AcApDocument& document);
  /// kUnloadDwgMsg to those that have, latest first.
  void unload_drawing(AcApDocument& document);
  /// A message to every module.
  void broadcast(AcRx::AppMsgCode message);

  /// Calls a module's function for LISP.
  Result<lisp::Value> invoke(DocumentSession& session, const lisp::External& function,
                             std::span<const lisp::Value> arguments);

  Module* find(const void* packet);
  Module* find_name(std::string_view file);
  /// The module that serves a message or call at this moment; null when none does.
  Module* serving() const { return serving_; }
  const std::vector<std::unique_ptr<Module>>& all() const { return modules_; }
  /// A module that cannot serve a second document; null when there is none.
  const Module* single_document_module() const;

  void add_static(std::string name, ModuleEntry entry);

 private:
  AcRx::AppRetCode send(Module& module, AcRx::AppMsgCode message);
  Status start(std::unique_ptr<Module> module);
  void stop(Module& module);
  void leave_document(Module& module, AcApDocument& document);

  std::vector<std::unique_ptr<Module>> modules_;
  std::map<std::string, ModuleEntry> static_modules_;
  Module* serving_ = nullptr;
  std::uint64_t last_number_ = 0;
};

}  // namespace cad
