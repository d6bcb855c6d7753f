#include "host/base/progress.h"

#include <algorithm>
#include <utility>

namespace cad {
namespace {

constexpr std::size_t kStepsShown = 100;

ProgressSink& listener() {
  static ProgressSink sink;
  return sink;
}

}  // namespace

void set_progress_sink(ProgressSink sink) { listener() = std::move(sink); }

void show_progress(std::string_view label, double done) {
  if (listener()) listener()(label, std::clamp(done, 0.0, 1.0));
}

void hide_progress() {
  if (listener()) listener()({}, 0.0);
}

ProgressMeter::ProgressMeter(std::string label, std::size_t total)
    : label_(std::move(label)), total_(std::max<std::size_t>(total, 1)) {
  show();
}

void ProgressMeter::show() {
  next_ = done_ + std::max<std::size_t>(total_ / kStepsShown, 1);
  show_progress(label_, static_cast<double>(done_) / static_cast<double>(total_));
}

}  // namespace cad
