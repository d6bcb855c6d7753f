#include "labeler/lisp_arguments.h"

#include <cstdint>

#include "module/platform/resbuf.h"

namespace labeler {

/// True at the end and at a nil, which is passed.
bool Arguments::at_nil() {
  if (!at_) return true;
  if (!is(RTNIL)) return false;
  at_ = at_->rbnext;
  return true;
}

/// `take` reads one buffer and moves on, false when it cannot.
template <class Take>
bool Arguments::one_or_list(Take take) {
  if (!is(RTLB)) return take();
  const resbuf* const begin = at_;
  at_ = at_->rbnext;
  while (at_ && !is(RTLE)) {
    if (take()) continue;
    at_ = begin;
    return false;
  }
  if (at_) at_ = at_->rbnext;
  return true;
}

bool Arguments::add_selection(std::vector<AcDbObjectId>& ids) {
  std::int32_t count = 0;
  if (acedSSLength(at_->resval.rlname, &count) != RTNORM) return false;
  for (std::int32_t i = 0; i < count; ++i) {
    ads_name name;
    AcDbObjectId id;
    if (acedSSName(at_->resval.rlname, i, name) != RTNORM) return false;
    if (ArxDbgUtils::enameToObjId(name, id) == Acad::eOk) ids.push_back(id);
  }
  at_ = at_->rbnext;
  return true;
}

bool Arguments::entities(std::vector<AcDbObjectId>& ids) {
  if (is(RTPICKS)) return add_selection(ids);
  return one_or_list([&] {
    AcDbObjectId id;
    if (!is(RTENAME) || ArxDbgUtils::enameToObjId(at_->resval.rlname, id) != Acad::eOk)
      return false;
    ids.push_back(id);
    at_ = at_->rbnext;
    return true;
  });
}

bool Arguments::entities_or_nil(std::vector<AcDbObjectId>& ids, bool& all) {
  all = at_nil();
  return all || entities(ids);
}

bool Arguments::text(CString& text) {
  if (!is(RTSTR)) return false;
  text = CString(dim::buffer_text(*at_));
  at_ = at_->rbnext;
  return true;
}

bool Arguments::optional_text(CString& value) { return at_nil() || text(value); }

bool Arguments::texts_or_nil(std::vector<CString>& texts) {
  if (at_nil()) return true;
  return one_or_list([&] {
    CString one;
    if (!text(one)) return false;
    texts.push_back(one);
    return true;
  });
}

bool Arguments::real(double& number) {
  if (is(RTREAL)) {
    number = at_->resval.rreal;
  } else if (is(RTSHORT)) {
    number = at_->resval.rint;
  } else if (is(RTLONG)) {
    number = at_->resval.rlong;
  } else {
    return false;
  }
  at_ = at_->rbnext;
  return true;
}

bool Arguments::optional_real(double& number) { return at_nil() || real(number); }

bool Arguments::flag() {
  if (at_nil()) return false;
  at_ = at_->rbnext;
  return true;
}

}  // namespace labeler
