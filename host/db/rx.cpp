#include "host/db/rx.h"

#include <utility>
#include <vector>

AcRxClass* AcRxObject::desc() {
  static AcRxClass* const description = cad::new_rx_class(L"AcRxObject", nullptr);
  return description;
}
AcRxClass* AcRxObject::isA() const { return desc(); }

bool AcRxObject::isKindOf(const AcRxClass* ancestor) const {
  return isA()->isDerivedFrom(ancestor);
}

AcRxClass* AcRxClass::desc() {
  static AcRxClass* const description = cad::new_rx_class(L"AcRxClass", AcRxObject::desc());
  return description;
}
AcRxClass* AcRxClass::isA() const { return desc(); }

bool AcRxClass::isDerivedFrom(const AcRxClass* ancestor) const {
  for (const AcRxClass* candidate = this; candidate; candidate = candidate->parent_) {
    if (candidate == ancestor) return true;
  }
  return false;
}

AcRxClass* AcRxDictionary::desc() {
  static AcRxClass* const description = cad::new_rx_class(L"AcRxDictionary", AcRxObject::desc());
  return description;
}
AcRxClass* AcRxDictionary::isA() const { return desc(); }

AcRxObject* AcRxDictionary::at(const ACHAR* name) const {
  const auto found = entries_.find(std::wstring_view(name));
  return found == entries_.end() ? nullptr : found->second;
}

AcRxObject* AcRxDictionary::atPut(const ACHAR* name, AcRxObject* object) {
  AcRxObject*& entry = entries_[name];
  return std::exchange(entry, object);
}

AcRxObject* AcRxDictionary::remove(const ACHAR* name) {
  const auto found = entries_.find(std::wstring_view(name));
  if (found == entries_.end()) return nullptr;
  AcRxObject* removed = found->second;
  entries_.erase(found);
  return removed;
}

AcRxDictionary* acrxClassDictionary() {
  static AcRxDictionary classes;
  return &classes;
}

AcRxDictionary* acrxSysRegistry() {
  static AcRxDictionary registry;
  static const bool filled = [] {
    registry.atPut(L"ClassDictionary", acrxClassDictionary());
    return true;
  }();
  (void)filled;
  return &registry;
}

AcRxClass* cad::new_rx_class(const ACHAR* name, AcRxClass* parent, const ACHAR* dxf_name) {
  static std::vector<std::unique_ptr<AcRxClass>> classes;
  classes.push_back(std::make_unique<AcRxClass>(name, parent, dxf_name));
  acrxClassDictionary()->atPut(name, classes.back().get());
  return classes.back().get();
}
