#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "host/lisp/value.h"

namespace cad::lisp {

/// The evaluated arguments of all calls under way, in blocks that never move: builtins hold views
/// of their arguments while they call back into the evaluator.
class ArgumentStack {
 public:
  ArgumentStack() = default;
  ArgumentStack(const ArgumentStack&) = delete;
  ArgumentStack& operator=(const ArgumentStack&) = delete;

 private:
  friend class ArgumentFrame;
  static constexpr std::size_t kBlockValues = 8192;
  struct FreeStorage {
    void operator()(Value* p) const { ::operator delete(p); }
  };
  using Storage = std::unique_ptr<Value, FreeStorage>;

  void next_block(std::size_t count) {
    const std::size_t size = count > kBlockValues ? count : kBlockValues;
    blocks_.emplace_back(static_cast<Value*>(::operator new(size * sizeof(Value))));
    top_ = blocks_.back().get();
    end_ = top_ + size;
  }
  void drop_block() { blocks_.pop_back(); }

  Value* top_ = nullptr;
  Value* end_ = nullptr;
  std::vector<Storage> blocks_;
};

/// Room for the arguments of one call, filled from the left; gone at the end of the scope.
class ArgumentFrame {
 public:
  ArgumentFrame(ArgumentStack& stack, std::size_t capacity)
      : stack_(stack), old_top_(stack.top_), old_end_(stack.end_) {
    if (static_cast<std::size_t>(stack.end_ - stack.top_) < capacity) stack.next_block(capacity);
    first_ = next_ = stack.top_;
    stack.top_ += capacity;
  }
  ArgumentFrame(const ArgumentFrame&) = delete;
  ArgumentFrame& operator=(const ArgumentFrame&) = delete;
  ~ArgumentFrame() {
    while (next_ != first_) (--next_)->~Value();
    if (stack_.end_ != old_end_) stack_.drop_block();
    stack_.top_ = old_top_;
    stack_.end_ = old_end_;
  }

  /// Appends what the function returns, constructed in place.
  template <class Make>
  void emplace(Make&& make) {
    new (next_) Value(make());
    ++next_;
  }
  void push(Value value) { new (next_++) Value(std::move(value)); }
  std::span<Value> values() { return {first_, next_}; }

 private:
  ArgumentStack& stack_;
  Value* old_top_;
  Value* old_end_;
  Value* first_;
  Value* next_;
};

}  // namespace cad::lisp
