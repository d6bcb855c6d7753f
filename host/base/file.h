#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "host/base/result.h"

/// Files as the drawing document needs them: mapped for reading, replaced as a whole, locked
/// against a second writer. Paths are UTF-8 and stand as `where` in every Error.
namespace cad {

/// An open file descriptor; closes it. -1 is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor() { reset(); }

  explicit operator bool() const { return fd_ >= 0; }
  int get() const { return fd_; }
  void reset();

 private:
  int fd_ = -1;
};

/// A file seen as memory, read-only. The view stays valid when the file is replaced by rename or
/// removed; shortening it in place (nobody who uses AtomicFile does) faults the reader.
class MappedFile {
 public:
  /// Only regular files. Errors read "plan.dxf: cannot be opened: No such file or directory".
  static Result<MappedFile> open(const std::string& path);

  MappedFile(MappedFile&& other) noexcept;
  MappedFile& operator=(MappedFile&& other) noexcept;
  ~MappedFile();

  /// All bytes; empty for an empty file. Valid as long as this object, wherever it is moved.
  std::string_view bytes() const { return {data_, size_}; }

 private:
  friend class AtomicFile;
  MappedFile(Descriptor fd, const char* data, std::size_t size)
      : fd_(std::move(fd)), data_(data), size_(size) {}
  void unmap();

  Descriptor fd_;  // kept open: AtomicFile copies from file to file inside the kernel
  const char* data_ = nullptr;
  std::size_t size_ = 0;
};

/// The right to change a drawing, held from construction to destruction against every other
/// program that asks. Advisory: readers are not kept away.
class FileLock {
 public:
  /// Locks the file itself, which must exist. "plan.dxf: the drawing is in use by another program"
  /// when somebody holds it. The lock belongs to the file, not to its name: a replacement has to
  /// take it over, see AtomicFile::commit.
  static Result<FileLock> acquire(const std::string& path);

  /// Whether the path still leads to the file that is locked.
  bool holds(const std::string& path) const;

 private:
  friend class AtomicFile;
  explicit FileLock(Descriptor fd) : fd_(std::move(fd)) {}

  Descriptor fd_;
};

/// The new content of a file, written beside it and put in its place as a whole.
///     Result<AtomicFile> file = AtomicFile::create("plan.dxf");
///     if (!file) return file.error();
///     if (Status s = file->append(text); !s) return s;
///     return file->commit(/*keep_backup=*/true);
/// Until commit() the target is untouched; destroyed before, the temporary file disappears. A
/// crash at any moment leaves the old or the new file, whole. A target that is a symbolic link
/// stays one: the file it leads to is replaced.
class AtomicFile {
 public:
  /// The target need not exist; its folder must, and must be writable.
  static Result<AtomicFile> create(const std::string& target);

  AtomicFile(AtomicFile&& other) noexcept;
  AtomicFile& operator=(AtomicFile&& other) noexcept;
  ~AtomicFile();

  /// Small pieces are collected and written in larger ones, so an error may appear at a later
  /// call. After any failure the file cannot be committed.
  Status append(std::string_view piece);
  Status append(std::span<const std::string_view> pieces);

  /// Appends source.bytes().substr(offset, length). Spans that follow each other are joined, and
  /// large ones copied inside the kernel, so source must live until commit(). The span must lie
  /// inside the file (asserted).
  Status copy_range(const MappedFile& source, std::size_t offset, std::size_t length);

  /// Flushes to the disk and replaces the target, which keeps its mode bits. With keep_backup the
  /// file replaced stays as "<target>.bak", in the place of an older one. A lock held on the old
  /// file moves to the new one without a gap. Call once, last.
  Status commit(bool keep_backup, FileLock* lock = nullptr);

 private:
  class Writer;
  explicit AtomicFile(std::unique_ptr<Writer> writer);

  std::unique_ptr<Writer> writer_;  // null when moved from
};

}  // namespace cad
