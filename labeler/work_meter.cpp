#include "labeler/work_meter.h"

#include <algorithm>

#include "module/platform/application.h"

namespace labeler {
namespace {

constexpr int kPositions = 100;

}  // namespace

WorkMeter::WorkMeter(const wchar_t* label, std::size_t turns)
    : turns_(std::max<std::size_t>(turns, 1)) {
  acedSetStatusBarProgressMeter(label, 0, kPositions);
}

WorkMeter::~WorkMeter() { acedRestoreStatusBar(); }

bool WorkMeter::look() {
  if (acedUsrBrk()) return false;
  next_ = begun_ + std::max<std::size_t>(turns_ / kPositions, 1);
  acedSetStatusBarProgressMeterPos(static_cast<int>((begun_ - 1) * kPositions / turns_));
  return true;
}

}  // namespace labeler
