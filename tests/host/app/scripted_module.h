#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/app/acrx_app.h"

/// A module linked into the test. It writes down the messages it gets, defines the functions it is
/// told to, and serves them as the test says.
class ScriptedModule {
 public:
  explicit ScriptedModule(const std::wstring& name = L"scripted.arx");
  ~ScriptedModule();
  ScriptedModule(const ScriptedModule&) = delete;
  ScriptedModule& operator=(const ScriptedModule&) = delete;

  /// Defined at kLoadDwgMsg; `serve` returns what the entry hands to set_invoke_result().
  void given_function(const std::wstring& name, std::function<int()> serve);

  std::vector<std::string> messages;  // "init", "load plan.dxf", ...
  std::vector<int> define_results;
  bool unlocks = true;
  bool serves_many = true;
  AcRx::AppRetCode answer_to_init = AcRx::kRetOK;
  void* packet = nullptr;

 private:
  static AcRx::AppRetCode entry(AcRx::AppMsgCode message, void* packet);
  AcRx::AppRetCode receive(AcRx::AppMsgCode message, void* packet);

  struct Function {
    std::wstring name;
    std::function<int()> serve;
  };
  std::vector<Function> functions_;  // code = index
};

/// The chain as text: RTLB "a" 1 RTLE is `( "a" s1 )`.
std::string chain_text(const struct resbuf* chain);
