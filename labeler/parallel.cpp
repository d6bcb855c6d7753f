#include "labeler/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace labeler {
namespace {

/// Less is not worth a thread.
constexpr std::size_t kPiece = 256;
/// More would wait for memory.
constexpr std::size_t kMostThreads = 8;

/// The pieces, dealt out to whoever asks.
class Pieces {
 public:
  Pieces(std::size_t count, const std::function<void(std::size_t, std::size_t)>& work)
      : count_(count), work_(work) {}

  void run() noexcept {
    try {
      for (std::size_t begin = next(); begin < count_; begin = next())
        work_(begin, std::min(begin + kPiece, count_));
    } catch (...) {
      next_ = count_;
      const std::lock_guard lock(mutex_);
      if (!failure_) failure_ = std::current_exception();
    }
  }
  void rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::size_t next() { return next_.fetch_add(kPiece); }

  const std::size_t count_;
  const std::function<void(std::size_t, std::size_t)>& work_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::exception_ptr failure_;
};

}  // namespace

void in_parallel(std::size_t count, const std::function<void(std::size_t, std::size_t)>& work) {
  const std::size_t wanted =
      std::min({(count + kPiece - 1) / kPiece, kMostThreads,
                static_cast<std::size_t>(std::max(1u, std::thread::hardware_concurrency()))});
  Pieces pieces(count, work);
  {
    std::vector<std::jthread> others;
    try {
      while (others.size() + 1 < wanted) others.emplace_back([&pieces] { pieces.run(); });
    } catch (const std::system_error&) {
      // The system gives no more threads: those that are there do it all.
    }
    pieces.run();
  }
  pieces.rethrow();
}

}  // namespace labeler
