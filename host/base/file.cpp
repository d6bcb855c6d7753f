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
#include <optional>
#include <random>
#include <utility>

#include "host/base/write_behind.h"

namespace cad {
namespace {

// Pieces are collected up to here; larger ones go to the file directly.
constexpr std::size_t kCollected = 256 * 1024;
// From here on a span is copied by the kernel. 150 MB in one span take 40 to 50 ms that way (and
// nothing on a file system that shares blocks), 45 to 60 ms written from the mapping; in 20000
// spans the calls cost more than they save.
constexpr std::size_t kKernelCopy = 64 * 1024;
// Without O_NONBLOCK a pipe nobody writes to would wait.
constexpr int kOpenFlags = O_CLOEXEC | O_NONBLOCK;
constexpr std::size_t kLongestName = 255;
constexpr int kNameAttempts = 100;

Error failure(const std::string& path, const char* what, int error_number) {
  const char* const text = strerrordesc_np(error_number);  // strerror would translate
  return fail(path, std::string(what) + ": " + (text ? text : "Unknown error"));
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
  Descriptor fd(retried([&] { return ::open(path.c_str(), O_RDONLY | kOpenFlags); }));
  if (!fd) return cannot(errno);
  struct stat info {};
  if (fstat(fd.get(), &info) != 0) return cannot(errno);
  if (S_ISDIR(info.st_mode)) return cannot(EISDIR);
  if (!S_ISREG(info.st_mode)) return fail(path, "cannot be opened: Not a regular file");
  const auto size = static_cast<std::size_t>(info.st_size);
  if (size == 0) return MappedFile(std::move(fd), nullptr, 0);
  void* const data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd.get(), 0);
  if (data == MAP_FAILED) return cannot(errno);
  // A scan of 150 MB in the page cache takes 44 ms with any advice or none; this starts the disk.
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
    // Network file systems grant an exclusive lock only to who may write.
    Descriptor fd(retried([&] { return open(path.c_str(), O_RDWR | kOpenFlags); }));
    if (!fd && (errno == EACCES || errno == EROFS)) {
      fd = Descriptor(retried([&] { return open(path.c_str(), O_RDONLY | kOpenFlags); }));
    }
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

/// The temporary file and what is still to be written to it, in this order: collected bytes, then
/// a span of another file. Both are empty after a failure.
class AtomicFile::Writer {
 public:
  Writer(std::string shown, std::string target)
      : shown_(std::move(shown)), target_(std::move(target)) {}
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() {
    if (!temporary_.empty()) unlink(temporary_.c_str());
  }

  Status open_temporary();
  Status append(std::string_view piece);
  Status copy_range(const MappedFile& source, std::size_t offset, std::size_t length);
  Status commit(bool keep_backup, FileLock* lock);

 private:
  struct Span {
    int fd = -1;
    const char* data = nullptr;  // where the span is mapped
    std::size_t offset = 0;      // in the file
    std::size_t length = 0;
  };

  Status refuse(const char* what, int error_number);
  Status collect(std::string_view piece);
  Status flush_span();
  Status flush();
  Status write_collected();
  Status write_directly(std::string_view piece);
  Status keep_old_file();

  std::string shown_;      // the path as the caller gave it, for messages
  std::string target_;     // with links resolved
  std::string temporary_;  // empty once it has become the target
  Descriptor fd_;
  std::optional<WriteBehind> behind_;  // of fd_
  std::string collected_;
  Span span_;
  Status failure_;  // the first one, answered by every later call
};

Status AtomicFile::Writer::open_temporary() {
  if (folder_of(target_) == target_) return refuse("cannot write", ENOENT);  // no file name
  struct stat old {};
  const bool exists = stat(target_.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return refuse("cannot write", errno);
  if (exists && S_ISDIR(old.st_mode)) return refuse("cannot write", EISDIR);
  if (exists && !S_ISREG(old.st_mode)) return fail(shown_, "cannot write: Not a regular file");
  // A rename would replace even a file that nobody may write.
  if (exists && faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0)
    return refuse("cannot write", errno);

  errno = EEXIST;
  for (int attempt = 0; attempt < kNameAttempts && !fd_ && errno == EEXIST; ++attempt) {
    const std::string name = temporary_name(target_);
    const mode_t mode = exists ? 0600 : 0666;
    fd_ = Descriptor(
        retried([&] { return open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode); }));
    if (fd_) temporary_ = name;
  }
  if (!fd_) return refuse("cannot write", errno);
  behind_.emplace(fd_.get());
  if (!exists) return {};
  // The owner first, it clears mode bits. Only root can give files away; then it becomes ours.
  [[maybe_unused]] const int given = fchown(fd_.get(), old.st_uid, old.st_gid);
  if (fchmod(fd_.get(), old.st_mode & 07777) != 0) return refuse("cannot write", errno);
  return {};
}

Status AtomicFile::Writer::refuse(const char* what, int error_number) {
  failure_ = failure(shown_, what, error_number);
  return failure_;
}

Status AtomicFile::Writer::write_collected() {
  if (collected_.empty()) return {};
  const int error = behind_->write(collected_);
  collected_.reserve(kCollected);
  return error == 0 ? Status() : refuse("cannot write", error);
}

/// Behind everything collected.
Status AtomicFile::Writer::write_directly(std::string_view piece) {
  if (Status status = write_collected(); !status) return status;
  if (const int error = behind_->wait()) return refuse("cannot write", error);
  const int error = write_whole(fd_.get(), piece);
  return error == 0 ? Status() : refuse("cannot write", error);
}

Status AtomicFile::Writer::collect(std::string_view piece) {
  if (piece.size() > kCollected) return write_directly(piece);
  if (collected_.size() + piece.size() > kCollected)
    if (Status status = write_collected(); !status) return status;
  collected_ += piece;
  return {};
}

Status AtomicFile::Writer::flush_span() {
  Span span = std::exchange(span_, {});
  if (span.length < kKernelCopy) return collect({span.data, span.length});
  if (Status status = write_directly({}); !status) return status;
  auto from = static_cast<off_t>(span.offset);
  while (span.length > 0) {
    const ssize_t copied = retried(
        [&] { return copy_file_range(span.fd, &from, fd_.get(), nullptr, span.length, 0); });
    // Its last pages are no longer there to be read from the mapping either.
    if (copied == 0) return failure_ = fail(shown_, "cannot write: the source was shortened");
    // Two file systems, or one that cannot; a true failure shows again in write.
    if (copied < 0) return write_directly({span.data, span.length});
    span.data += copied;
    span.length -= static_cast<std::size_t>(copied);
  }
  return {};
}

Status AtomicFile::Writer::flush() {
  if (!failure_) return failure_;
  if (Status status = flush_span(); !status) return status;
  return write_directly({});
}

Status AtomicFile::Writer::append(std::string_view piece) {
  if (!failure_) return failure_;
  if (Status status = flush_span(); !status) return status;
  return collect(piece);
}

Status AtomicFile::Writer::copy_range(const MappedFile& source, std::size_t offset,
                                      std::size_t length) {
  assert(offset <= source.size_ && length <= source.size_ - offset);
  if (!failure_) return failure_;
  const char* const data = source.data_ + offset;
  if (span_.length > 0 && span_.data + span_.length == data) {
    span_.length += length;
    return {};
  }
  if (Status status = flush_span(); !status) return status;
  span_ = {source.fd_.get(), data, offset, length};
  return {};
}

Status AtomicFile::Writer::keep_old_file() {
  const std::string backup = target_ + ".bak";
  // Linked under a name of its own, then renamed: at no moment is there no backup.
  const std::string linked = temporary_name(target_);
  if (link(target_.c_str(), linked.c_str()) == 0) {
    const bool renamed = rename(linked.c_str(), backup.c_str()) == 0;
    const int error_number = errno;
    unlink(linked.c_str());  // a rename between two links of one file leaves both
    return renamed ? Status() : refuse("cannot keep a backup", error_number);
  }
  if (errno == ENOENT) return {};  // nothing to keep
  // A file system without hard links.
  Result<MappedFile> old = MappedFile::open(target_);
  if (!old) return failure_ = old.error();
  Result<AtomicFile> copy = AtomicFile::create(backup);
  if (!copy) return failure_ = copy.error();
  if (Status status = copy->copy_range(*old, 0, old->size_); !status) return failure_ = status;
  return failure_ = copy->commit(false);
}

Status AtomicFile::Writer::commit(bool keep_backup, FileLock* lock) {
  if (Status status = flush(); !status) return status;
  if (fsync(fd_.get()) != 0) return refuse("cannot write", errno);
  if (lock && retried([&] { return flock(fd_.get(), LOCK_EX | LOCK_NB); }) != 0) {
    return refuse("cannot be locked", errno);
  }
  if (keep_backup) {
    if (Status status = keep_old_file(); !status) return status;
  }
  if (rename(temporary_.c_str(), target_.c_str()) != 0) return refuse("cannot write", errno);
  temporary_.clear();
  sync_folder_of(target_);
  Descriptor done = std::move(fd_);
  if (lock) lock->fd_ = std::move(done);
  return {};
}

AtomicFile::AtomicFile(std::unique_ptr<Writer> writer) : writer_(std::move(writer)) {}
AtomicFile::AtomicFile(AtomicFile&& other) noexcept = default;
AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept = default;
AtomicFile::~AtomicFile() = default;

Result<AtomicFile> AtomicFile::create(const std::string& target) {
  auto writer = std::make_unique<Writer>(target, resolved(target));
  if (Status status = writer->open_temporary(); !status) return status.error();
  return AtomicFile(std::move(writer));
}

Status AtomicFile::append(std::string_view piece) { return writer_->append(piece); }

Status AtomicFile::append(std::span<const std::string_view> pieces) {
  for (const std::string_view piece : pieces) {
    if (Status status = append(piece); !status) return status;
  }
  return {};
}

Status AtomicFile::copy_range(const MappedFile& source, std::size_t offset, std::size_t length) {
  return writer_->copy_range(source, offset, length);
}

Status AtomicFile::commit(bool keep_backup, FileLock* lock) {
  return writer_->commit(keep_backup, lock);
}

}  // namespace cad
