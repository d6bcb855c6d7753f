#pragma once

#include "module/platform/objects.h"

/// Asks a handler to redraw the labels of one annotation type.
struct DimUpdateRequest {
  CString dimTypeName;                ///< the type to redraw
  AcDbObjectIdArray entityIds{0, 8};  ///< the annotated entities, not their labels
  int flag = 0;                       ///< for the handler's own use
};

/// What a module implements to redraw the labels of an annotation type it knows:
///     class SlopeLabels : public CDimFacade {
///      public:
///       int update(DimUpdateRequest& request) override { ...; return 1; }
///     };
///     CDimUpdateServ::getInstance().getDimRegServ().regist(L"pipe_slope", new SlopeLabels);
/// The registry owns a registered handler and gives its memory back without running a destructor:
/// make it with plain `new`, give it CDimFacade as its first base and no members that own anything.
/// The order of the virtual operations is part of the interface.
class CDimFacade {
 public:
  /// Never called by this module.
  virtual void reserved() {}
  /// Redraws; nonzero for success. May change the request. One that throws has failed.
  virtual int update(DimUpdateRequest& request) = 0;
};
