#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/db/resbuf.h"

class AcRxClass;

/// Root of the host's run-time typed objects.
class AcRxObject {
 public:
  AcRxObject() = default;
  AcRxObject(const AcRxObject&) = default;
  AcRxObject& operator=(const AcRxObject&) = default;
  virtual ~AcRxObject() = default;
  static AcRxClass* desc();
  virtual AcRxClass* isA() const;
  bool isKindOf(const AcRxClass* ancestor) const;
};

/// Run-time description of a class: its name, its parent and, for database classes, the DXF name.
class AcRxClass : public AcRxObject {
 public:
  AcRxClass(const ACHAR* name, AcRxClass* parent, const ACHAR* dxf_name = L"")
      : name_(name), dxf_name_(dxf_name), parent_(parent) {}
  static AcRxClass* desc();
  AcRxClass* isA() const override;
  const ACHAR* name() const { return name_; }
  const ACHAR* dxfName() const { return dxf_name_; }
  AcRxClass* myParent() const { return parent_; }
  bool isDerivedFrom(const AcRxClass* ancestor) const;

 private:
  const ACHAR* name_;
  const ACHAR* dxf_name_;
  AcRxClass* parent_;
};

/// Objects by exact name. Holds the system registry ("ClassDictionary", "DynamicLinker") and the
/// class dictionary itself. Does not own its entries.
class AcRxDictionary : public AcRxObject {
 public:
  static AcRxClass* desc();
  AcRxClass* isA() const override;
  /// The entry of that name, or null.
  AcRxObject* at(const ACHAR* name) const;
  /// Files `object` under `name`; the entry it replaces, or null.
  AcRxObject* atPut(const ACHAR* name, AcRxObject* object);
  AcRxObject* remove(const ACHAR* name);
  bool has(const ACHAR* name) const { return at(name) != nullptr; }

 private:
  std::map<std::wstring, AcRxObject*, std::less<>> entries_;
};

/// The host's registry of services. Lives as long as the process.
AcRxDictionary* acrxSysRegistry();
/// The class dictionary, also found in the registry under "ClassDictionary".
AcRxDictionary* acrxClassDictionary();

namespace cad {
/// Makes the description of a class and files it in the class dictionary.
AcRxClass* new_rx_class(const ACHAR* name, AcRxClass* parent, const ACHAR* dxf_name = L"");
}  // namespace cad

/// Declares what every run-time typed class offers: desc(), isA(), cast().
#define PN_RX_MEMBERS(CLASS)                                          \
 public:                                                              \
  static AcRxClass* desc();                                           \
  AcRxClass* isA() const override;                                    \
  static CLASS* cast(const AcRxObject* object) {                      \
    return object && object->isKindOf(CLASS::desc())                  \
               ? static_cast<CLASS*>(const_cast<AcRxObject*>(object)) \
               : nullptr;                                             \
  }

/// Defines them; the class is filed under its own name.
#define PN_RX_DEFINE(CLASS, PARENT, DXF_NAME)                                                      \
  AcRxClass* CLASS::desc() {                                                                       \
    static AcRxClass* const description = cad::new_rx_class(L"" #CLASS, PARENT::desc(), DXF_NAME); \
    return description;                                                                            \
  }                                                                                                \
  AcRxClass* CLASS::isA() const { return CLASS::desc(); }
