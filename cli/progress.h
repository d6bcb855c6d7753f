#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace cli {

/// Shows on the terminal of stderr what is being done and for how long, once it has taken a second:
///     [#######---] net.dxf: drawing labels, 73%, 7 s
///     [####------] 4/10 net.dxf: updating labels, 12%, 7 s
/// The bar is that of what is being done (see cad::set_progress_sink), or of several drawings.
/// Without a terminal nothing is shown. One lives at a time.
class Progress {
 public:
  explicit Progress(std::size_t drawings);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// The next drawing; only its file name is shown.
  void next(const std::string& path);
  /// What is done with it from now on: "reading".
  void show(std::string doing);
  /// Until the next show(), so that something else can be printed.
  void hide();
  /// The same for the one there is, if any.
  static void hide_current();

 private:
  void run(const std::stop_token& stop);
  void draw();
  std::string bar() const;
  void erase();

  const std::size_t drawings_;
  const std::chrono::steady_clock::time_point start_;
  std::mutex mutex_;  // of all below
  std::condition_variable_any wake_;
  std::size_t number_ = 0;
  std::string drawing_;
  std::string doing_;  // empty: nothing is shown
  std::string part_;   // what a meter shows of it; empty: none does
  double done_ = 0.0;  // of that part
  bool drawn_ = false;
  std::jthread indicator_;  // last: it uses all the others
};

}  // namespace cli
