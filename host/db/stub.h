#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <unordered_map>
#include <vector>

#include "host/dxf/scan.h"

class AcDbObject;

namespace cad {

class Drawing;

/// Index entry of one object: what an AcDbObjectId points to. Made for every object when the
/// drawing is read, so it is kept to 40 bytes; the AcDbObject itself is made on first open.
struct Stub {
  enum Flag : std::uint8_t {
    kErased = 1,
    kNew = 2,         ///< made in this session: has no bytes in the file
    kEdited = 4,      ///< differs from the file
    kMissing = 8,     ///< stands for a handle that resolves to nothing
    kStrayTwin = 16,  ///< has a handle that an earlier object owns
    kListed = 32      ///< on the drawing's list of edits, where it stays when they are taken back
  };

  std::uint64_t handle = 0;
  std::uint64_t owner = 0;
  std::uint64_t begin = 0;  ///< offset in the file; for new objects where they go in
  AcDbObject* object = nullptr;
  std::uint32_t length = 0;
  std::uint16_t kind = 0;
  dxf::Section section = dxf::Section::kNone;
  std::uint8_t flags = 0;

  bool has(Flag flag) const { return (flags & flag) != 0; }
  bool erased() const { return has(kErased); }
};

static_assert(sizeof(Stub) == 40);

/// Stubs by index, at addresses that never change. They live in aligned chunks, so that a stub
/// finds its drawing and its index without holding either.
class StubStore {
 public:
  explicit StubStore(Drawing& drawing) : drawing_(drawing) {}
  StubStore(const StubStore&) = delete;
  StubStore& operator=(const StubStore&) = delete;
  ~StubStore() {
    for (Chunk* chunk : chunks_) std::free(chunk);
  }

  std::size_t size() const { return size_; }
  Stub& operator[](std::size_t index) { return chunks_[index / kPerChunk]->at(index % kPerChunk); }
  Stub& add() {
    if (size_ % kPerChunk == 0) add_chunk();
    Stub* stub = new (&chunks_.back()->at(size_ % kPerChunk)) Stub;
    ++size_;
    return *stub;
  }
  static Drawing& drawing_of(const Stub& stub) { return chunk_of(stub)->drawing; }
  static std::size_t index_of(const Stub& stub) {
    const Chunk* chunk = chunk_of(stub);
    return chunk->first + static_cast<std::size_t>(&stub - &const_cast<Chunk*>(chunk)->at(0));
  }

 private:
  static constexpr std::size_t kChunkBytes = std::size_t{1} << 18;
  struct Chunk {
    Drawing& drawing;
    std::size_t first;
    Stub& at(std::size_t i) { return reinterpret_cast<Stub*>(this + 1)[i]; }
  };
  static constexpr std::size_t kPerChunk = (kChunkBytes - sizeof(Chunk)) / sizeof(Stub);

  static Chunk* chunk_of(const Stub& stub) {
    return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(&stub) & ~(kChunkBytes - 1));
  }
  void add_chunk() {
    void* memory = std::aligned_alloc(kChunkBytes, kChunkBytes);
    if (!memory) throw std::bad_alloc();
    chunks_.push_back(new (memory) Chunk{drawing_, size_});
  }

  Drawing& drawing_;
  std::vector<Chunk*> chunks_;
  std::size_t size_ = 0;
};

/// Finds stubs by handle. Handles of real drawings are small and dense, so most live in a plain
/// array indexed by handle; the few that would make it sparse go to a hash table.
class HandleTable {
 public:
  /// The index filed under `handle`, or kNone.
  std::size_t find(std::uint64_t handle) const {
    if (handle < dense_.size() && dense_[handle] != 0) return dense_[handle] - 1;
    if (sparse_.empty()) return kNone;
    const auto found = sparse_.find(handle);
    return found == sparse_.end() ? kNone : found->second;
  }
  /// False, and nothing changed, when the handle is taken.
  bool add(std::uint64_t handle, std::size_t index) {
    if (find(handle) != kNone) return false;
    ++count_;
    if (handle >= kAlwaysDense + kSpread * count_) {
      sparse_.emplace(handle, static_cast<std::uint32_t>(index));
      return true;
    }
    if (handle >= dense_.size()) {
      if (handle >= dense_.capacity()) dense_.reserve((handle + 1) + (handle + 1) / 2);
      dense_.resize(handle + 1);
    }
    dense_[handle] = static_cast<std::uint32_t>(index + 1);
    return true;
  }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

 private:
  static constexpr std::uint64_t kAlwaysDense = 4096;
  static constexpr std::uint64_t kSpread = 4;  // array slots a handle may cost

  std::vector<std::uint32_t> dense_;  // index + 1; 0 is free
  std::unordered_map<std::uint64_t, std::uint32_t> sparse_;
  std::uint64_t count_ = 0;
};

}  // namespace cad
