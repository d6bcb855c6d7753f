#include "module/registry/registry.h"

#include <new>

#include "module/platform/trace.h"
#include "module/registry/vocabulary.h"

CDimupateRegisiter::CDimupateRegisiter() { Initialize(nullptr); }

int CDimupateRegisiter::Initialize(const wchar_t*) {
  for (const dim::VocabularyRow& row : dim::kDimTypeNames) {
    type_names_.emplace(row.name, row.description);
  }
  for (const dim::VocabularyRow& row : dim::kDimNames) {
    dim_names_.emplace(row.name, row.description);
  }
  return 1;
}

int CDimupateRegisiter::refresh() { return Initialize(nullptr); }

int CDimupateRegisiter::isRegisted(const wchar_t* dimTypeName) const {
  const std::wstring_view name = dim::text_of(dimTypeName);
  return type_names_.contains(name) || handlers_.contains(name);
}

int CDimupateRegisiter::isDimName(const wchar_t* dimName) const {
  std::wstring_view name = dim::text_of(dimName);
  if (const auto at = name.find(L'@'); at != name.npos) name.remove_prefix(at + 1);
  return dim_names_.contains(name);
}

int CDimupateRegisiter::regist(const CString& dimTypeName, CDimFacade* handler) {
  if (!handler) return 0;
  if (!handlers_.emplace(dimTypeName, handler).second) {
    dim::trace_format(L"The dimTypeName: %s has in the registery already!", dimTypeName.c_str());
    return 0;
  }
  return 1;
}

CDimFacade* CDimupateRegisiter::getAt(const CString& dimTypeName) const {
  return handler_of(dimTypeName);
}

CDimFacade* CDimupateRegisiter::handler_of(std::wstring_view type) const {
  const auto found = handlers_.find(type);
  return found == handlers_.end() ? nullptr : found->second;
}

void CDimupateRegisiter::logout(const CString& dimTypeName) {
  const auto found = handlers_.find(dimTypeName);
  if (found == handlers_.end()) return;
  // Kept: the interface has no destructor, so the memory goes back as it was taken.
  // Test: Registry.LoggingOutFreesTheHandlerWithoutADestructor
  ::operator delete(static_cast<void*>(found->second));
  handlers_.erase(found);
}
