#pragma once

#include "network/gx_error.h"
#include "network/label_settings.h"

/// The pipe library's settings, one object for the process. The pointers stay valid and the same
/// for as long as the process lives.
class CGxData {
 public:
  static CGxData* Instance();

  const DimUtility::tdfGdcdpdbz* getGcGpBzSz() const { return &plan_labels_; }
  const DimUtility::tdfZdm_bzsz* getZdmGdBzSz() const { return &profile_labels_; }
  const DimUtility::tagPcBzSz* getPcBzSz() const { return &calculation_labels_; }

  CGxError* GetErr() { return &error_; }

 private:
  CGxData() = default;
  DimUtility::tdfGdcdpdbz plan_labels_;
  DimUtility::tdfZdm_bzsz profile_labels_;
  DimUtility::tagPcBzSz calculation_labels_;
  CGxError error_;
};
