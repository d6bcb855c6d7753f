#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/db/resbuf.h"
#include "host/lisp/value.h"

namespace cad {

class SelectionSets;

/// LISP values as a chain of buffers that the host owns: acutRelRb() leaves it alone, so that a
/// module may free its arguments or not. Memory is kept from call to call.
class ArgumentChain {
 public:
  ArgumentChain();
  ~ArgumentChain();
  ArgumentChain(const ArgumentChain&) = delete;
  ArgumentChain& operator=(const ArgumentChain&) = delete;

  /// Appends one value: an atom is one buffer, a list RTLB ... RTLE, a list of 2 or 3 reals a
  /// point. Null, or the atom inside the value that a buffer cannot hold.
  const lisp::Value* append(const lisp::Value& value, SelectionSets& sets);
  resbuf* head() const { return head_; }
  void clear();

  bool owns(const resbuf* buffer) const;

 private:
  template <class T>
  struct Blocks {
    struct Block {
      std::unique_ptr<T[]> items;
      std::size_t size;
    };
    T* take(std::size_t count, std::size_t block_size);
    void clear() { current = used = 0; }
    std::vector<Block> blocks;
    std::size_t current = 0;  // block being filled
    std::size_t used = 0;     // items of it in use
  };

  resbuf* add(short type);
  void add_text(std::wstring_view text);
  bool append_atom(const lisp::Value& value, SelectionSets& sets);
  bool append_point(const lisp::Value& list);

  Blocks<resbuf> buffers_;
  Blocks<ACHAR> texts_;
  std::vector<const lisp::Value*> open_;  // rests of the lists around the one being written
  resbuf* head_ = nullptr;
  resbuf* tail_ = nullptr;
};

}  // namespace cad
