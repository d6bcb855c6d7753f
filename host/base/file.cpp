#include "host/base/file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

namespace cad {
namespace {

// Pieces are collected up to here; larger ones go to the file directly.
constexpr std::size_t kPending = 256 * 1024;
constexpr std::size_t kLongestName = 255;
constexpr int kNameAttempts = 100;

Error failure(const std::string& path, const char* what, int error_number) {
  return fail(path, std::string(what) + ": " + std::strerror(error_number));
}

/// The call again as long as a signal interrupts it.
template <class Call>
auto retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// The file a path leads to, with links resolved; the path itself when nothing is there. A link
/// to nothing gives the place where its target will be.
std::string resolved(std::string path) {
  if (const std::unique_ptr<char, void (*)(void*)> real{realpath(path.c_str(), nullptr),
                                                        std::free}) {
    return real.get();
  }
  for (int hops = 0; hops < 40; ++hops) {
    std::array<char, PATH_MAX> link;
    const ssize_t length = readlink(path.c_str(), link.data(), link.size());
    if (length <= 0) break;
    const std::string next(link.data(), static_cast<std::size_t>(length));
    path = next[0] == '/' ? next : path.substr(0, path.rfind('/') + 1) + next;
  }
  return path;
}

/// "dir/" of a path, with the separator; empty for the current folder.
std::string folder_of(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

std::string temporary_name(const std::string& target) {
  static std::mt19937_64 random{std::random_device{}()};
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuv";
  std::string mark;
  for (std::uint64_t bits = random(); mark.size() < 12; bits >>= 5) mark += kDigits[bits & 31];
  const std::string folder = folder_of(target);
  const std::string suffix = "." + mark + ".tmp";
  std::string name = target.substr(folder.size());
  name.resize(std::min(name.size(), kLongestName - 1 - suffix.size()));
  return folder + "." + name + suffix;
}

void sync_folder_of(const std::string& path) {
  const std::string folder = folder_of(path);
  const Descriptor fd(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Not every file system can; the rename itself has succeeded by now.
  if (fd) fsync(fd.get());
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    reset();
    fd_ = std::exchange(other.fd_, -1);
  }
  return *this;
}

void Descriptor::reset() {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
}

// MappedFile

Result<MappedFile> MappedFile::open(const std::string& path) {
  const auto cannot = [&](int error_number) {
    return failure(path, "cannot be opened", error_number);
  };
  // O_NONBLOCK: a pipe without a writer must answer, not wait.
  Descriptor fd(retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  if (!fd) return cannot(errno);
  struct stat info {};
  if (fstat(fd.get(), &info) != 0) return cannot(errno);
  if (S_ISDIR(info.st_mode)) return cannot(EISDIR);
  if (!S_ISREG(info.st_mode)) return fail(path, "cannot be opened: Not a regular file");
  const auto size = static_cast<std::size_t>(info.st_size);
  if (size == 0) return MappedFile(std::move(fd), nullptr, 0);
  void* const data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd.get(), 0);
  if (data == MAP_FAILED) return cannot(errno);
  madvise(data, size, MADV_WILLNEED);
  return MappedFile(std::move(fd), static_cast<const char*>(data), size);
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : fd_(std::move(other.fd_)),
      data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
  if (this != &other) {
    unmap();
    fd_ = std::move(other.fd_);
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
  }
  return *this;
}

MappedFile::~MappedFile() { unmap(); }

void MappedFile::unmap() {
  if (data_) munmap(const_cast<char*>(data_), size_);
  data_ = nullptr;
  size_ = 0;
}

// FileLock

Result<FileLock> FileLock::acquire(const std::string& path) {
  // The file may be replaced between open and flock; then the lock is one on a file without a
  // name, and the new file is tried.
  constexpr int kAttempts = 100;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Descriptor fd(retried([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    if (!fd) return failure(path, "cannot be opened", errno);
    if (retried([&] { return flock(fd.get(), LOCK_EX | LOCK_NB); }) != 0) {
      if (errno == EWOULDBLOCK) return fail(path, "the drawing is in use by another program");
      return failure(path, "cannot be locked", errno);
    }
    FileLock lock(std::move(fd));
    if (lock.holds(path)) return lock;
  }
  return fail(path, "the drawing is in use by another program");
}

bool FileLock::holds(const std::string& path) const {
  struct stat locked {
  }, named{};
  return fd_ && fstat(fd_.get(), &locked) == 0 && stat(path.c_str(), &named) == 0 &&
         locked.st_dev == named.st_dev && locked.st_ino == named.st_ino;
}

// AtomicFile

Result<AtomicFile> AtomicFile::create(const std::string& target) {
  AtomicFile file;
  file.shown_ = target;
  file.target_ = resolved(target);
  const auto cannot = [&](int error_number) {
    return failure(target, "cannot write", error_number);
  };

  struct stat old {};
  const bool exists = stat(file.target_.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return cannot(errno);
  if (exists && S_ISDIR(old.st_mode)) return cannot(EISDIR);
  if (exists && !S_ISREG(old.st_mode)) return fail(target, "cannot write: Not a regular file");
  // A rename would replace even a file that nobody may write.
  if (exists && access(file.target_.c_str(), W_OK) != 0) return cannot(errno);

  for (int attempt = 0; attempt < kNameAttempts && !file.fd_; ++attempt) {
    const std::string name = temporary_name(file.target_);
    const mode_t mode = exists ? 0600 : 0666;
    file.fd_ = Descriptor(
        retried([&] { return open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode); }));
    if (file.fd_) {
      file.temporary_ = name;
    } else if (errno != EEXIST) {
      return cannot(errno);
    }
  }
  if (!file.fd_) return cannot(EEXIST);
  if (exists) {
    // The owner first, it clears mode bits. Only root can give files away: not a failure.
    if (fchown(file.fd_.get(), old.st_uid, old.st_gid) != 0) errno = 0;
    if (fchmod(file.fd_.get(), old.st_mode & 07777) != 0) return cannot(errno);
  }
  return file;
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : fd_(std::move(other.fd_)),
      shown_(std::move(other.shown_)),
      target_(std::move(other.target_)),
      temporary_(std::exchange(other.temporary_, {})),
      pending_(std::exchange(other.pending_, {})),
      failure_(std::move(other.failure_)),
      failed_(other.failed_) {}

AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept {
  if (this != &other) {
    discard();
    fd_ = std::move(other.fd_);
    shown_ = std::move(other.shown_);
    target_ = std::move(other.target_);
    temporary_ = std::exchange(other.temporary_, {});
    pending_ = std::exchange(other.pending_, {});
    failure_ = std::move(other.failure_);
    failed_ = other.failed_;
  }
  return *this;
}

AtomicFile::~AtomicFile() { discard(); }

void AtomicFile::discard() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
  temporary_.clear();
  pending_.clear();
  fd_.reset();
}

Status AtomicFile::refuse(const char* what, int error_number) {
  failed_ = true;
  failure_ = failure(shown_, what, error_number);
  return failure_;
}

Status AtomicFile::write_all(std::string_view piece) {
  while (!piece.empty()) {
    const ssize_t written = retried([&] { return write(fd_.get(), piece.data(), piece.size()); });
    if (written < 0) return refuse("cannot write", errno);
    piece.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

Status AtomicFile::flush() {
  if (failed_) return failure_;
  const Status status = write_all(pending_);
  pending_.clear();
  return status;
}

Status AtomicFile::append(std::string_view piece) {
  assert(fd_ && "append after commit");
  if (failed_) return failure_;
  if (pending_.size() + piece.size() <= kPending) {
    pending_ += piece;
    return {};
  }
  if (Status status = flush(); !status) return status;
  if (piece.size() >= kPending) return write_all(piece);
  pending_ = piece;
  return {};
}

Status AtomicFile::append(std::span<const std::string_view> pieces) {
  for (const std::string_view piece : pieces) {
    if (Status status = append(piece); !status) return status;
  }
  return {};
}

Status AtomicFile::copy_range(const MappedFile& source, std::size_t offset, std::size_t length) {
  assert(offset <= source.size_ && length <= source.size_ - offset);
  return append(source.bytes().substr(offset, length));
}

Status AtomicFile::commit(bool keep_backup, FileLock* lock) {
  assert(fd_ && "commit twice");
  if (Status status = flush(); !status) return status;
  if (fsync(fd_.get()) != 0) return refuse("cannot write", errno);
  if (lock && retried([&] { return flock(fd_.get(), LOCK_EX | LOCK_NB); }) != 0) {
    return refuse("cannot be locked", errno);
  }
  if (keep_backup) {
    // Linked under a name of its own and renamed: at no moment is there no backup.
    const std::string linked = temporary_name(target_);
    const std::string backup = target_ + ".bak";
    if (link(target_.c_str(), linked.c_str()) == 0) {
      if (rename(linked.c_str(), backup.c_str()) != 0) {
        const int error_number = errno;
        unlink(linked.c_str());
        return refuse("cannot keep a backup", error_number);
      }
      unlink(linked.c_str());  // still there when the backup was this very file already
    } else if (errno != ENOENT) {
      return refuse("cannot keep a backup", errno);
    }
  }
  if (rename(temporary_.c_str(), target_.c_str()) != 0) return refuse("cannot write", errno);
  temporary_.clear();
  sync_folder_of(target_);
  if (lock) {
    lock->fd_ = std::move(fd_);
  } else {
    fd_.reset();
  }
  return {};
}

}  // namespace cad
