#pragma once

#include "module/platform/foundation.h"

/// Walks something item by item. The order of the virtual operations is part of the interface.
///     for (walk.start(); !walk.done(); walk.step()) ...
class CDimIterator : public CObject {
 public:
  /// Nonzero when the walk is over.
  virtual int done() = 0;
  virtual void step() = 0;
  virtual void start() = 0;
};

/// Reserved for walking the known item names. Visits nothing: done() is always 1.
class CDimNameIterator : public CDimIterator {
 public:
  CDimNameIterator();
  int done() override;
  void step() override;
  void start() override;
  const wchar_t* getDimName();  ///< always null

 protected:
  void* cursor_ = nullptr;  // part of the published layout, like the next one
  void* end_ = nullptr;
};

/// Reserved for walking the registered type names. Visits nothing: done() is always 1.
class CDimTypeNameIterator : public CDimIterator {
 public:
  CDimTypeNameIterator();
  int done() override;
  void step() override;
  void start() override;
  const wchar_t* GetDimTypeName();  ///< always null
};
