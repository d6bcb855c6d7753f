#include "labeler/handlers.h"

#include <map>

#include "labeler/labeler.h"
#include "labeler/messages.h"
#include "module/platform/lisp.h"
#include "module/platform/resbuf.h"
#include "module/registry/update_service.h"

namespace labeler {
namespace {

/// Brings labels of one type up to date. With a flag of 1 those that somebody has edited, too.
class LabelHandler : public CDimFacade {
 public:
  int update(DimUpdateRequest& request) override {
    const LabelType* const type = find_type(request.dimTypeName);
    if (!type) return 0;
    Messages messages;
    Labeler labeler([&](const CString& line) { messages.tell(line); });
    bool done = true;
    for (const AcDbObjectId id : request.entityIds) {
      const std::optional<Owner> owner = owner_of(id);
      if (!owner) {
        done = false;
        continue;
      }
      Check check = labeler.check(*owner, *type);
      done = labeler.update(*owner, *type, check, request.flag == 1) && done;
    }
    return done;
  }
};

// Handlers own nothing, for the registry gives their memory back without running a destructor:
// what a LISP handler needs to know stands here.
struct Registered {
  CDimFacade* handler;
  CString function;  // empty: the module's own
};
std::map<CString, Registered>& registered() {
  static std::map<CString, Registered> handlers;
  return handlers;
}

CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }

resbuf* ename_buffer(AcDbObjectId id) {
  resbuf* const buffer = acutNewRb(RTENAME);
  if (buffer) ArxDbgUtils::objIdToEname(id, buffer->resval.rlname);
  return buffer;
}

class LispHandler : public CDimFacade {
 public:
  int update(DimUpdateRequest& request) override {
    const auto row = registered().find(request.dimTypeName);
    if (row == registered().end()) return 0;
    dim::ChainBuilder call;
    call.add(dim::new_text_buffer(RTSTR, row->second.function));
    call.add(dim::new_text_buffer(RTSTR, request.dimTypeName));
    call.add(acutNewRb(RTLB));
    for (const AcDbObjectId id : request.entityIds) call.add(ename_buffer(id));
    call.add(acutNewRb(RTLE));
    resbuf* const flag = acutNewRb(RTSHORT);
    flag->resval.rint = static_cast<short>(request.flag);
    call.add(flag);
    resbuf* result = nullptr;
    const int done = acedInvoke(call.head(), &result);
    const dim::ResbufChain owned(result);
    return done == RTNORM && result != nullptr;
  }
};

bool add(const CString& type, CDimFacade* handler, const CString& function) {
  if (!registry().regist(type, handler)) {
    ::operator delete(handler);  // as the registry would: handlers own nothing
    return false;
  }
  registered()[type] = {handler, function};
  return true;
}

void remove(const CString& type) {
  const auto row = registered().find(type);
  if (row == registered().end()) return;
  if (registry().getAt(type) == row->second.handler) registry().logout(type);
  registered().erase(row);
}

}  // namespace

void register_handlers() {
  for (const LabelType& type : label_types()) add(type.name, new LabelHandler, {});
}

void unregister_handlers() {
  while (!registered().empty()) remove(CString(registered().begin()->first));
}

bool set_lisp_handler(const CString& type, const CString& function) {
  const CDimFacade* const there = registry().getAt(type);
  const auto ours = registered().find(type);
  if (there && (ours == registered().end() || ours->second.handler != there)) return false;
  remove(type);
  if (!function.empty()) return add(type, new LispHandler, function);
  if (find_type(type)) return add(type, new LabelHandler, {});
  return true;
}

}  // namespace labeler
