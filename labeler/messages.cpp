#include "labeler/messages.h"

#include "module/platform/lisp.h"

namespace labeler {

Messages::~Messages() {
  if (unshown_) acutPrintf(L"\nand %d more label%s", unshown_, unshown_ == 1 ? L"" : L"s");
}

void Messages::tell(const CString& line) {
  if (!told_.insert(line).second) return;
  if (shown_ == kMostShown) {
    ++unshown_;
    return;
  }
  ++shown_;
  acutPrintf(L"\n%s", line.c_str());
}

}  // namespace labeler
