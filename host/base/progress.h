#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

/// How far long work has come, for an application that shows it. Nothing is shown until somebody
/// listens; one listener for the process.
namespace cad {

/// Takes what is being done, UTF-8, and how much of it is: 0 to 1. With an empty label nothing is
/// to be shown any more.
using ProgressSink = std::function<void(std::string_view label, double done)>;

/// The new listener, called by the thread that works, about a hundred times for each loop; an empty
/// function ends it.
void set_progress_sink(ProgressSink sink);
void show_progress(std::string_view label, double done);
void hide_progress();

/// A loop of `total` turns; shown while it lives. A turn costs a comparison.
///     ProgressMeter meter("drawing", pipes.size());
///     for (const Pipe& pipe : pipes) draw(pipe), meter.step();
class ProgressMeter {
 public:
  ProgressMeter(std::string label, std::size_t total);
  ~ProgressMeter() { hide_progress(); }
  ProgressMeter(const ProgressMeter&) = delete;
  ProgressMeter& operator=(const ProgressMeter&) = delete;

  void step() {
    if (++done_ >= next_) show();
  }

 private:
  void show();

  const std::string label_;
  const std::size_t total_;
  std::size_t done_ = 0;
  std::size_t next_ = 0;  // when something is shown again
};

}  // namespace cad
