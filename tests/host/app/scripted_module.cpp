#include "tests/host/app/scripted_module.h"

#include "host/app/aced.h"
#include "host/app/documents.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"

namespace {

ScriptedModule* live = nullptr;

AcRxDynamicLinker& linker() {
  return *AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"));
}

std::string title() {
  const AcApDocument* document = acDocManager->curDocument();
  return document ? cad::to_utf8(document->docTitle()) : "no drawing";
}

std::string real_text(double value) {
  std::string text;
  cad::append_real(text, value);
  return text;
}

}  // namespace

ScriptedModule::ScriptedModule(const std::wstring& name) {
  live = this;
  cad::register_static_module(name.c_str(), &ScriptedModule::entry);
}

ScriptedModule::~ScriptedModule() { live = nullptr; }

void ScriptedModule::given_function(const std::wstring& name, std::function<int()> serve) {
  functions_.push_back({name, std::move(serve)});
}

AcRx::AppRetCode ScriptedModule::entry(AcRx::AppMsgCode message, void* packet) {
  return live ? live->receive(message, packet) : AcRx::kRetOK;
}

AcRx::AppRetCode ScriptedModule::receive(AcRx::AppMsgCode message, void* message_packet) {
  switch (message) {
    case AcRx::kInitAppMsg:
      messages.push_back("init");
      packet = message_packet;
      if (unlocks) linker().unlockApplication(packet);
      if (serves_many) linker().registerAppMDIAware(packet);
      return answer_to_init;
    case AcRx::kUnloadAppMsg:
      messages.push_back("unload module");
      break;
    case AcRx::kLoadDwgMsg:
      messages.push_back("load " + title());
      for (std::size_t i = 0; i < functions_.size(); ++i)
        define_results.push_back(acedDefun(functions_[i].name.c_str(), static_cast<short>(i)));
      break;
    case AcRx::kUnloadDwgMsg:
      messages.push_back("unload " + title());
      break;
    case AcRx::kInvkSubrMsg:
      cad::set_invoke_result(functions_.at(static_cast<std::size_t>(acedGetFunCode())).serve());
      break;
    case AcRx::kSaveMsg:
      messages.push_back("save");
      break;
    case AcRx::kQuitMsg:
      messages.push_back("quit");
      break;
    default:
      messages.push_back("message " + std::to_string(message));
  }
  return AcRx::kRetOK;
}

std::string chain_text(const resbuf* chain) {
  std::string text;
  for (; chain; chain = chain->rbnext) {
    if (!text.empty()) text += ' ';
    const ads_u_val& v = chain->resval;
    switch (chain->restype) {
      case RTLB:
        text += '(';
        break;
      case RTLE:
        text += ')';
        break;
      case RTDOTE:
        text += '.';
        break;
      case RTNIL:
        text += "nil";
        break;
      case RTT:
        text += "T";
        break;
      case RTSHORT:
        text += "s" + std::to_string(v.rint);
        break;
      case RTLONG:
        text += "l" + std::to_string(v.rlong);
        break;
      case RTREAL:
        text += real_text(v.rreal);
        break;
      case RTSTR:
        text += '"' + cad::to_utf8(v.rstring) + '"';
        break;
      case RTPOINT:
        text += "<" + real_text(v.rpoint[0]) + "," + real_text(v.rpoint[1]) + ">";
        break;
      case RT3DPOINT:
        text += "<" + real_text(v.rpoint[0]) + "," + real_text(v.rpoint[1]) + "," +
                real_text(v.rpoint[2]) + ">";
        break;
      case RTENAME:
        text += "ename";
        break;
      case RTPICKS:
        text += "set";
        break;
      default:
        text += "?" + std::to_string(chain->restype);
    }
  }
  return text;
}
