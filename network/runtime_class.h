#pragma once

/// A class of the pipe library, for questions at run time.
struct CRuntimeClass {
  const char* m_lpszClassName;
  const CRuntimeClass* m_pBaseClass;  ///< null for a root

  bool IsDerivedFrom(const CRuntimeClass* base) const {
    const CRuntimeClass* one = this;
    while (one && one != base) one = one->m_pBaseClass;
    return one != nullptr;
  }
};
