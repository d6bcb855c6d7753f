#pragma once

#include "host/db/arxdbg_utils.h"
#include "host/db/block_reference.h"
#include "host/db/database.h"
#include "host/db/dictionary.h"
#include "host/db/entity.h"
#include "host/db/open.h"
#include "host/db/text.h"
#include "host/db/xrecord.h"
#include "module/platform/foundation.h"
#include "module/platform/status.h"

namespace dim {

/// Handle text of an object; empty when it cannot be opened for reading (erased, null, open for
/// write elsewhere).
inline CString handle_text(AcDbObjectId id) {
  CString text;
  ArxDbgUtils::objIdToHandleStr(id, text);
  return text;
}

/// The object of a handle text in the working drawing. Erased objects resolve; null otherwise.
inline AcDbObjectId object_of_handle(const wchar_t* text) {
  AcDbObjectId id;
  const Acad::ErrorStatus status =
      ArxDbgUtils::handleStrToObjId(acdbHostApplicationServices()->workingDatabase(), text, id);
  return status == Acad::eOk ? id : AcDbObjectId();
}

/// Replaces the record's values by a copy of `chain`; null stores none.
inline Acad::ErrorStatus store_chain(AcDbXrecord& record, const resbuf* chain) {
  static constexpr resbuf kNoValues{nullptr, RTNONE, {}};
  return record.setFromRbChain(chain ? *chain : kNoValues);
}

}  // namespace dim
