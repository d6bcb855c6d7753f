#include "host/base/write_behind.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace cad {
namespace {

constexpr std::size_t kPiecesAtOnce = 8;
/// The disk is told of so many bytes at a time; otherwise all would wait for the final flush.
constexpr std::size_t kStretch = std::size_t{8} << 20;

}  // namespace

int write_whole(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? errno : ENOSPC;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

WriteBehind::~WriteBehind() = default;  // the thread writes what it has, then ends

int WriteBehind::write_now(std::string_view piece) {
  if (const int error = write_whole(file_, piece)) return error;
  written_ += piece.size();
  if (written_ - on_their_way_ < kStretch) return 0;
  // A hint: where it fails, the final flush takes longer.
  const off_t end = ::lseek(file_, 0, SEEK_CUR);
  const auto length = static_cast<off_t>(written_ - on_their_way_);
  if (end >= length) ::sync_file_range(file_, end - length, length, SYNC_FILE_RANGE_WRITE);
  on_their_way_ = written_;
  return 0;
}

void WriteBehind::run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  // Ends when told to, but not before the last piece is written.
  while (changed_.wait(lock, stop, [&] { return waiting_; })) {
    const std::string_view piece = piece_;
    lock.unlock();
    const int error = write_now(piece);
    lock.lock();
    if (failure_ == 0) failure_ = error;
    waiting_ = false;
    changed_.notify_all();
  }
}

int WriteBehind::write(std::string& piece) {
  if (++pieces_ > kPiecesAtOnce && !thread_.joinable()) {
    try {
      thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
    } catch (const std::system_error&) {
      // The system gives no thread: this one writes.
    }
  }
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return !waiting_; });
  if (failure_ != 0) return failure_;
  if (!thread_.joinable()) {
    failure_ = write_now(piece);
    piece.clear();
    return failure_;
  }
  piece_.swap(piece);
  piece.clear();
  waiting_ = true;
  changed_.notify_all();
  return 0;
}

int WriteBehind::wait() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return !waiting_; });
  return failure_;
}

}  // namespace cad
