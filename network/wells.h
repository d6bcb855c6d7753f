#pragma once

#include "host/db/object_id.h"
#include "network/strings.h"

/// A class of the pipe library, for questions at run time.
struct CRuntimeClass {
  const char* m_lpszClassName;
  const CRuntimeClass* m_pBaseClass;  ///< null for a root
};

/// A node of a network: a well, or what stands in for one.
class CGxJd {
 public:
  virtual ~CGxJd() = default;
  static const CRuntimeClass* GetThisClass();
  virtual const CRuntimeClass* GetRuntimeClass() const { return GetThisClass(); }
  /// Whether the object is of this class or of one derived from it.
  bool IsKindOf(const CRuntimeClass* kind) const;
};

/// A fire hydrant.
class CGxXhs : public CGxJd {
 public:
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

/// A well as the CAD library knows it.
class CKtGxWellType1 {
 public:
  virtual ~CKtGxWellType1() = default;
  static const CRuntimeClass* GetThisClass();
  virtual const CRuntimeClass* GetRuntimeClass() const { return GetThisClass(); }
  /// Whether the object is of this class or of one derived from it.
  bool IsKindOf(const CRuntimeClass* kind) const;
};

/// A fire hydrant of a water supply.
class CKtGxGsWellXHS : public CKtGxWellType1 {
 public:
  static const CRuntimeClass* GetThisClass();
  const CRuntimeClass* GetRuntimeClass() const override { return GetThisClass(); }
};

namespace DimUtility {

/// The well-number label of the well given by id; empty when the entity is no well or has no
/// number. A well is an entity with extended data of the application PIPENOTE that holds a text
/// named "number": 1000 number, 1000 W12. A text named "prefix" stands in front, joined by the
/// separator of the pipe library's label settings.
CString getJdbhDimStr(const AcDbObjectId& id);

}  // namespace DimUtility
