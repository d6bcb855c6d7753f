#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace cad {

/// Writes all of it; the error number of what failed, 0 when nothing did.
int write_whole(int file, std::string_view bytes);

/// Writes pieces one after the other on a thread of its own, so that its caller can put the next
/// one together meanwhile, and has the system begin to bring them to the disk. The first pieces,
/// which are all of a usual file, are written at once.
class WriteBehind {
 public:
  /// The file must stay open as long as this lives.
  explicit WriteBehind(int file) : file_(file) {}
  /// Waits for what is being written.
  ~WriteBehind();
  WriteBehind(const WriteBehind&) = delete;
  WriteBehind& operator=(const WriteBehind&) = delete;

  /// Takes the piece and leaves an empty text that may have room. Waits as long as the piece before
  /// is being written. The error number of this or an earlier piece, 0 when none has failed so far.
  int write(std::string& piece);
  /// Waits until everything is in the file. The error number of the first piece that failed, or 0.
  int wait();

 private:
  void run(const std::stop_token& stop);
  int write_now(std::string_view piece);

  const int file_;
  std::size_t pieces_ = 0;
  std::size_t written_ = 0;  // bytes, by whoever writes
  std::size_t on_their_way_ = 0;

  std::mutex mutex_;  // of what follows
  std::condition_variable_any changed_;
  std::string piece_;
  bool waiting_ = false;  // piece_ is still to be written
  int failure_ = 0;
  std::jthread thread_;  // last: it uses all the others
};

}  // namespace cad
