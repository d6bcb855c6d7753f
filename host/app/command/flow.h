#pragma once

#include <coroutine>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

/// Commands are coroutines: they stop at each prompt and go on when the answer is there, which may
/// be in a later call of (command ...).
///     Flow<> line_command(CommandLine& line) {
///       const Answer first = co_await line.point({.text = L"Specify first point: "});
///       ...
/// A flow may wait for another as for a function: `const bool closed = co_await draw_arcs(line);`.
///
/// Rules that keep the compiler of the day happy: every co_await is a statement of its own (or the
/// initialiser of one), never inside a condition, a loop head or ?:, and no temporary that owns
/// something lives across it.
namespace cad {

/// The flows under way, each waiting for the one behind it. Resuming goes through one loop, so
/// that flows that finish at once take no stack.
class FlowStack {
 public:
  void push(std::coroutine_handle<> flow) { flows_.push_back(flow); }
  void pop() { flows_.pop_back(); }
  bool empty() const { return flows_.empty(); }

  /// Stops run() once the flow now running suspends.
  void pause() { paused_ = true; }
  /// Goes on until a flow pauses or all have finished.
  void run() {
    paused_ = false;
    while (!paused_ && !flows_.empty()) flows_.back().resume();
  }

 private:
  std::vector<std::coroutine_handle<>> flows_;
  bool paused_ = false;
};

namespace flow_detail {

struct PromiseBase {
  FlowStack* stack = nullptr;
  std::exception_ptr error;

  struct AtEnd {
    bool await_ready() const noexcept { return false; }
    template <class Promise>
    void await_suspend(std::coroutine_handle<Promise> flow) const noexcept {
      flow.promise().stack->pop();
    }
    void await_resume() const noexcept {}
  };
  std::suspend_always initial_suspend() const noexcept { return {}; }
  AtEnd final_suspend() const noexcept { return {}; }
  void unhandled_exception() noexcept { error = std::current_exception(); }
  void rethrow() {
    if (error) std::rethrow_exception(std::exchange(error, nullptr));
  }
};

template <class T>
struct Promise : PromiseBase {
  std::optional<T> value;
  void return_value(T result) { value.emplace(std::move(result)); }
  T take() {
    rethrow();
    return std::move(*value);
  }
};

template <>
struct Promise<void> : PromiseBase {
  void return_void() const noexcept {}
  void take() { rethrow(); }
};

}  // namespace flow_detail

/// A coroutine that has not run yet, is waiting, or is done. Destroying it abandons it: the locals
/// of all its parts are destroyed, the innermost first.
template <class T = void>
class [[nodiscard]] Flow {
 public:
  struct promise_type : flow_detail::Promise<T> {
    Flow get_return_object() {
      return Flow(std::coroutine_handle<promise_type>::from_promise(*this));
    }
  };

  Flow() = default;
  Flow(Flow&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
  Flow& operator=(Flow&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Flow() {
    if (handle_) handle_.destroy();
  }

  /// Puts the flow on a stack; the stack's run() starts it.
  void start(FlowStack& stack) {
    handle_.promise().stack = &stack;
    stack.push(handle_);
  }
  /// What the finished flow returned; what it threw is thrown again.
  T result() { return handle_.promise().take(); }

  // What waiting for it does.
  bool await_ready() const noexcept { return false; }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> waiting) {
    start(*waiting.promise().stack);
  }
  T await_resume() { return handle_.promise().take(); }

 private:
  explicit Flow(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
  std::coroutine_handle<promise_type> handle_;
};

}  // namespace cad
