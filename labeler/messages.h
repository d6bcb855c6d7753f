#pragma once

#include <set>

#include "module/platform/foundation.h"

namespace labeler {

/// Tells lines on the command line, each once and not too many of them.
class Messages {
 public:
  Messages() = default;
  Messages(const Messages&) = delete;
  /// How many there were beyond what was shown is told at the end.
  ~Messages();
  void tell(const CString& line);

 private:
  static constexpr int kMostShown = 50;
  std::set<CString> told_;
  int shown_ = 0;
  int unshown_ = 0;
};

}  // namespace labeler
