#include "host/lisp/heap.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <memory>

#include "host/lisp/error.h"

namespace cad::lisp {
namespace {

// The size a cell was made with.
std::size_t bytes_of(Cell* cell) {
  switch (cell->kind()) {
    case Kind::kCons:
      return sizeof(Cons);
    case Kind::kString:
      return sizeof(String) + static_cast<String*>(cell)->length * sizeof(wchar_t);
    case Kind::kEname:
      return sizeof(Ename);
    case Kind::kPickset:
      return sizeof(Pickset);
    case Kind::kFile:
      return sizeof(File);
    case Kind::kSubr:
      return sizeof(Subr);
    case Kind::kSpecialForm:
      return sizeof(SpecialCell);
    case Kind::kUsubr:
      return sizeof(Usubr) + static_cast<Usubr*>(cell)->symbol_count * sizeof(Symbol*);
    case Kind::kExternal:
      return sizeof(External);
    case Kind::kCatchError:
      return sizeof(CatchError);
    default:
      break;  // the others are no cells
  }
  assert(false);
  return 0;
}

}  // namespace

Heap::~Heap() {
  assert(live_ == 0 && "a value outlives its interpreter");
  while (chunks_ != nullptr) {
    Chunk* next = chunks_->next;
    std::free(chunks_);
    chunks_ = next;
  }
}

Heap& Heap::of(const Cell* cell) {
  if ((cell->word & Cell::kLarge) != 0)
    return *(reinterpret_cast<const LargeHead*>(cell) - 1)->heap;
  const auto address = reinterpret_cast<std::uintptr_t>(cell);
  return *reinterpret_cast<const Chunk*>(address & ~(kChunkBytes - 1))->heap;
}

void Heap::charge(std::size_t bytes) {
  if (bytes > room()) raise(L"insufficient node space");
  live_ += bytes;
}

String* Heap::blank_string(std::size_t length) {
  const std::size_t bytes = length * sizeof(wchar_t);
  if (length > limit_ / sizeof(wchar_t) || sizeof(String) + bytes > room()) {
    raise(L"insufficient string space");
  }
  return make<String>(bytes, length);
}

Value Heap::string(std::wstring_view text) {
  String* cell = blank_string(text.size());
  std::copy(text.begin(), text.end(), cell->data());
  return Value::adopt(cell);
}

void* Heap::allocate_slowly(std::size_t bytes, bool& large) {
  charge(bytes);
#ifndef PN_LISP_PLAIN_MALLOC
  if (bytes <= kLargestSmall) {
    const std::size_t size_class = (bytes + 7) / 8;
    if (free_[size_class] == nullptr) {
      void* memory = std::aligned_alloc(kChunkBytes, kChunkBytes);
      if (memory == nullptr) {
        live_ -= bytes;
        raise(L"insufficient node space");
      }
      chunks_ = new (memory) Chunk{this, chunks_};
      const std::size_t step = size_class * 8;
      char* at = static_cast<char*>(memory) + sizeof(Chunk);
      const char* end = static_cast<char*>(memory) + kChunkBytes;
      // Linked in address order: lists made in one go lie in one piece.
      FreeBlock** link = &free_[size_class];
      for (; at + step <= end; at += step) {
        *link = new (at) FreeBlock{nullptr};
        link = &(*link)->next;
      }
    }
    FreeBlock* block = free_[size_class];
    free_[size_class] = block->next;
    return block;
  }
#endif
  void* memory = std::malloc(sizeof(LargeHead) + bytes);
  if (memory == nullptr) {
    live_ -= bytes;
    raise(L"insufficient string space");
  }
  large = true;
  return new (memory) LargeHead{0, this} + 1;
}

void Heap::free_cell(Cell* cell, std::size_t bytes) noexcept {
  live_ -= bytes;
  if ((cell->word & Cell::kLarge) != 0) {
    std::free(reinterpret_cast<LargeHead*>(cell) - 1);
    return;
  }
  FreeBlock*& head = free_[(bytes + 7) / 8];
  head = new (cell) FreeBlock{head};
}

// Cells whose count has come to zero wait in a chain through the bits of the count, so freeing a
// list of a million elements, or one nested as deep, takes neither stack nor memory.
void Heap::destroy(Cell* cell) noexcept {
  Cell* waiting = nullptr;
  const auto wait = [&waiting](Cell* dead) {
    dead->word = (dead->word & ~Cell::kCountMask) | reinterpret_cast<std::uintptr_t>(waiting);
    waiting = dead;
  };
  const auto drop = [&wait](Value& member) {
    if (!member.is_counted()) return;
    Cell* held = member.cell();
    member.bits_ = Value::kNilBits;
    if ((--held->word & Cell::kCountMask) == 0) wait(held);
  };

  wait(cell);
  while (waiting != nullptr) {
    Cell* dead = waiting;
    waiting = reinterpret_cast<Cell*>(static_cast<std::uintptr_t>(dead->word & Cell::kCountMask));
    const std::size_t bytes = bytes_of(dead);
    switch (dead->kind()) {
      case Kind::kCons:
        drop(static_cast<Cons*>(dead)->cdr);
        drop(static_cast<Cons*>(dead)->car);
        break;
      case Kind::kUsubr:
        drop(static_cast<Usubr*>(dead)->source);
        break;
      case Kind::kCatchError:
        drop(static_cast<CatchError*>(dead)->message);
        break;
      case Kind::kPickset:
        std::destroy_at(static_cast<Pickset*>(dead));
        break;
      case Kind::kFile:
        std::destroy_at(static_cast<File*>(dead));
        break;
      default:
        break;
    }
    free_cell(dead, bytes);
  }
}

void destroy_cell(Cell* cell) noexcept { Heap::of(cell).destroy(cell); }

}  // namespace cad::lisp
