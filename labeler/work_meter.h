#pragma once

#include <cstddef>

namespace labeler {

/// Shows on the status bar how far a loop has come, while it lives, and asks whether the user wants
/// it to end. A turn costs a comparison.
///     WorkMeter meter(L"drawing labels", pipes.size());
///     for (const Owner& pipe : pipes) {
///       if (!meter.step()) break;
///       ...
///     }
class WorkMeter {
 public:
  WorkMeter(const wchar_t* label, std::size_t turns);
  ~WorkMeter();
  WorkMeter(const WorkMeter&) = delete;
  WorkMeter& operator=(const WorkMeter&) = delete;

  /// A turn begins. False when the user has broken off: the loop is to end, leaving whole what it
  /// has done so far.
  bool step() { return ++begun_ < next_ || look(); }

 private:
  bool look();

  const std::size_t turns_;
  std::size_t begun_ = 0;
  std::size_t next_ = 0;  // when something is shown again
};

}  // namespace labeler
