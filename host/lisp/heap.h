#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>
#include <utility>

#include "host/lisp/value.h"

#if defined(__SANITIZE_ADDRESS__)
#define PN_LISP_PLAIN_MALLOC 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PN_LISP_PLAIN_MALLOC 1
#endif
#endif

namespace cad::lisp {

/// Makes and frees the cells of one interpreter and keeps count of their bytes. Small cells come
/// from 64 KiB chunks, one free list per size; a cell finds its heap through the chunk, so that a
/// Value needs no pointer to it. Under AddressSanitizer every cell is a block of its own.
class Heap {
 public:
  explicit Heap(std::size_t limit) : limit_(limit) {}
  ~Heap();
  Heap(const Heap&) = delete;
  Heap& operator=(const Heap&) = delete;

  Value cons(Value first, Value rest) {
    return Value::adopt(make<Cons>(0, std::move(first), std::move(rest)));
  }
  Value string(std::wstring_view text);
  /// A string to be filled in before anybody else sees it.
  String* blank_string(std::size_t length);
  Value ename(std::uint64_t payload) { return Value::adopt(make<Ename>(0, payload)); }

  /// A new cell with one reference, for Value::adopt; `extra` bytes follow it. Raises
  /// "insufficient node space" at the limit, before anything is constructed.
  template <class T, class... Args>
  T* make(std::size_t extra, Args&&... args) {
    bool large = false;
    void* memory = allocate(sizeof(T) + extra, large);
    T* cell = new (memory) T(std::forward<Args>(args)...);
    if (large) cell->word |= Cell::kLarge;
    return cell;
  }

  /// Bytes of all cells alive, and what was charged.
  std::size_t live_bytes() const { return live_; }
  /// Bytes left below the limit.
  std::size_t room() const { return live_ < limit_ ? limit_ - live_ : 0; }
  void set_limit(std::size_t bytes) { limit_ = bytes; }
  /// Counts memory kept elsewhere (symbols, members of selection sets) against the limit.
  void charge(std::size_t bytes);
  void discharge(std::size_t bytes) { live_ -= bytes; }

  static Heap& of(const Cell* cell);

 private:
  friend void destroy_cell(Cell* cell) noexcept;

  static constexpr std::size_t kChunkBytes = std::size_t{64} << 10;
  static constexpr std::size_t kLargestSmall = 256;
  struct FreeBlock {
    FreeBlock* next;
  };
  struct alignas(16) Chunk {
    Heap* heap;
    Chunk* next;
  };
  struct alignas(16) LargeHead {
    std::size_t unused;
    Heap* heap;
  };

  void* allocate(std::size_t bytes, bool& large) {
#ifndef PN_LISP_PLAIN_MALLOC
    if (bytes <= kLargestSmall) {
      const std::size_t size_class = (bytes + 7) / 8;
      if (FreeBlock* block = free_[size_class]; block != nullptr && live_ + bytes <= limit_) {
        free_[size_class] = block->next;
        live_ += bytes;
        return block;
      }
    }
#endif
    return allocate_slowly(bytes, large);
  }
  void* allocate_slowly(std::size_t bytes, bool& large);
  void free_cell(Cell* cell, std::size_t bytes) noexcept;
  void destroy(Cell* cell) noexcept;

  std::array<FreeBlock*, kLargestSmall / 8 + 1> free_{};
  std::size_t live_ = 0;
  std::size_t limit_;
  Chunk* chunks_ = nullptr;
};

/// Builds a list from its first element to its last.
class ListBuilder {
 public:
  explicit ListBuilder(Heap& heap) : heap_(heap) {}
  ListBuilder(const ListBuilder&) = delete;
  ListBuilder& operator=(const ListBuilder&) = delete;

  void append(Value item) {
    Value cell = heap_.cons(std::move(item), Value());
    Cons* last = cell.cons();
    *(last_ != nullptr ? &last_->cdr : &head_) = std::move(cell);
    last_ = last;
  }
  bool empty() const { return last_ == nullptr; }
  /// The list, ending in nil or in the tail given. The builder is empty again.
  Value finish(Value tail = Value()) {
    if (last_ == nullptr) return tail;
    last_->cdr = std::move(tail);
    last_ = nullptr;
    return std::move(head_);
  }

 private:
  Heap& heap_;
  Value head_;
  Cons* last_ = nullptr;
};

}  // namespace cad::lisp
