#pragma once

#include "network/gx_error.h"
#include "network/label_files.h"
#include "network/label_settings.h"

/// The pipe library's settings, one object for the process.
///
/// The label settings are those of the installation's files, read at the first question and again
/// after the installation's folder has become another or Update() was called. Null when the file is
/// not there, cannot be read or is empty. A pointer that is not null stays valid for as long as the
/// process lives; what stands behind it changes when the file is read again, so ask anew for every
/// piece of work, which costs next to nothing.
class CGxData {
 public:
  static CGxData* Instance();

  const DimUtility::tdfGdcdpdbz* getGcGpBzSz() { return labels_.plan(); }
  const DimUtility::tdfZdm_bzsz* getZdmGdBzSz() { return labels_.profile(); }
  const DimUtility::tagPcBzSz* getPcBzSz() { return labels_.calculation(); }
  /// The files may have changed: they are read again at the next question.
  void Update() { labels_.forget(); }

  CGxError* GetErr() { return &error_; }

 private:
  CGxData() = default;
  network::LabelFiles labels_;
  CGxError error_;
};
