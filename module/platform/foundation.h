#pragma once

#include <string>
#include <vector>

/// The framework classes that the published interface is written in.
using CString = std::wstring;
using CStringArray = std::vector<CString>;

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
