#pragma once

#include "network/strings.h"  // CString, CStringArray

/// Root of the published classes.
class CObject {
 public:
  virtual ~CObject() = default;

 protected:
  CObject() = default;
  CObject(const CObject&) = default;
  CObject& operator=(const CObject&) = default;
};

/// Root of what is thrown inside the module. Nothing thrown leaves an operation.
class CException : public CObject {};
