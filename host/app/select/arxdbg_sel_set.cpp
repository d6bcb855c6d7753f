#include "host/app/select/arxdbg_sel_set.h"

void ArxDbgSelSet::clear() {
  if (set_[0] != 0) acedSSFree(set_);
  set_[0] = set_[1] = 0;
}

ArxDbgSelSet::SelSetStatus ArxDbgSelSet::userSelect(const ACHAR* selectPrompt,
                                                    const ACHAR* removePrompt,
                                                    const resbuf* filter) {
  clear();
  const ACHAR* const prompts[] = {selectPrompt, removePrompt};
  const int result = acedSSGet(L":$", prompts, nullptr, filter, set_);
  status_ = result == RTNORM  ? kSelected
            : result == RTCAN ? kCanceled
            : result == RTREJ ? kRejected
                              : kNone;
  return status_;
}

std::int32_t ArxDbgSelSet::length() const {
  std::int32_t count = 0;
  return acedSSLength(set_, &count) == RTNORM ? count : 0;
}

void ArxDbgSelSet::asArray(AcDbObjectIdArray& ids) const {
  const std::int32_t count = length();
  for (std::int32_t i = 0; i < count; ++i) {
    ads_name name;
    AcDbObjectId id;
    if (acedSSName(set_, i, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk)
      ids.append(id);
  }
}
