#include <pthread.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"
#include "host/lisp/reader.h"
#include "host/lisp/stream.h"

namespace cad::lisp {
namespace {

// Left for builtins and module code called at the deepest point.
constexpr std::size_t kStackReserve = std::size_t{256} << 10;
// However much a thread may have.
constexpr std::size_t kStackMost = std::size_t{64} << 20;

// The lowest address of the stack of this thread.
const char* stack_bottom() {
  thread_local const char* const bottom = [] {
    void* address = nullptr;
    std::size_t size = 0;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
      pthread_attr_getstack(&attributes, &address, &size);
      pthread_attr_destroy(&attributes);
    }
    return static_cast<const char*>(address);
  }();
  return bottom;
}

const char* lowest_allowed(std::size_t budget) {
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  const auto bottom = reinterpret_cast<std::uintptr_t>(stack_bottom());
  const std::size_t left = here > bottom + kStackReserve ? here - bottom - kStackReserve : 0;
  const std::size_t most = budget != 0 ? budget : kStackMost;
  return reinterpret_cast<const char*>(here - std::min(left, most));
}

}  // namespace

// Open while a top-level call is under way. The outermost one finds out how much stack there is and
// starts counting steps.
class Interpreter::Entry {
 public:
  explicit Entry(Interpreter& interp) : interp_(interp) {
    if (interp.entries_++ > 0) return;
    interp.stack_end_ = lowest_allowed(interp.limits_.stack_bytes);
    interp.steps_done_ = 0;
    interp.shown_depth_ = 0;
    interp.slice_ = interp.fuel_ = 0;
    interp.step_ceiling_ = interp.limits_.steps;
    interp.interrupted_.store(false, std::memory_order_relaxed);
  }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;
  ~Entry() { --interp_.entries_; }

 private:
  Interpreter& interp_;
};

void Interpreter::look_at_limits() {
  constexpr std::int64_t kSlice = 1024;
  steps_done_ += static_cast<std::uint64_t>(slice_);
  slice_ = fuel_ = 0;
  if (interrupted_.exchange(false, std::memory_order_relaxed)) {
    throw LispError{L"Function cancelled", /*catchable=*/false};
  }
  std::int64_t slice = kSlice;
  if (limits_.steps != 0) {
    if (steps_done_ >= step_ceiling_) {
      throw LispError{L"step limit of " + std::to_wstring(limits_.steps) + L" reached" +
                          services_.step_limit_hint,
                      /*catchable=*/false};
    }
    slice = static_cast<std::int64_t>(std::min<std::uint64_t>(kSlice, step_ceiling_ - steps_done_));
  }
  slice_ = slice;
  fuel_ = slice - 1;  // the step that asked is the first of the slice
}

template <class Run>
std::optional<LispError> Interpreter::error_of(Run&& run, Value& exit_value) {
  try {
    run();
    return std::nullopt;
  } catch (ProgramExit& exit) {
    exit_value = std::move(exit.value);
    return std::nullopt;
  } catch (LispError& error) {
    return std::move(error);
  } catch (const std::bad_alloc&) {
    return LispError{L"insufficient node space"};
  } catch (const std::exception& error) {  // out of a service of the application
    return LispError{from_utf8(error.what())};
  }
}

template <class Run>
Result<Value> Interpreter::run_at_top_level(Run&& run) {
  const Entry entry(*this);
  const std::size_t mark = binding_mark();
  Value result;
  std::optional<LispError> error = error_of([&] { result = run(); }, result);
  if (error) report(*error);
  unbind_to(mark);
  if (error) return Error{std::move(error->where), to_utf8(error->message)};
  return result;
}

// Bindings still stand here as they did where the error happened.
void Interpreter::report(const LispError& error) {
  // A handler restores what the program changed; it may go on a little beyond the limit.
  if (limits_.steps != 0) step_ceiling_ = steps() + limits_.steps / 8 + 1000;
  const std::wstring calls = call_trace_ ? calls_under_way(&error) : std::wstring();
  shown_depth_ = 0;
  const auto print_calls = [&] {
    if (!calls.empty()) print((at_line_start_ ? L"; in\n" : L"\n; in\n") + calls);
  };
  std::optional<LispError> second;
  if (error_handler_->value) {
    print_calls();
    Value ignored;
    second = error_of(
        [&] {
          const Value message = string(error.message);
          apply(error_handler_->value, {&message, 1});
        },
        ignored);
    if (!second) return;
  }
  std::wstring text = at_line_start_ ? L"" : L"\n";
  if (second)
    text +=
        L"; error: An error has occurred inside the *error* function: " + second->message + L"\n";
  text += L"; error: " + error.message + L"\n";
  if (!error.where.empty()) text += L"; at " + from_utf8(error.where) + L"\n";
  print(text);
  if (!second) print_calls();
}

Result<Value> Interpreter::eval_string(std::string_view utf8, std::string_view name) {
  return run_at_top_level([&] { return eval_text(from_utf8(utf8), name); });
}

Result<Value> Interpreter::load_file(const std::string& path) {
  return run_at_top_level([&] { return load(path); });
}

Result<Value> Interpreter::call_function(const Value& function, std::span<const Value> args) {
  return run_at_top_level([&] { return apply(function, args); });
}

void Interpreter::echo(const Value& value) {
  if (value.is_blank()) return;
  Value ignored;
  const std::optional<LispError> error = error_of(
      [&] { print((at_line_start_ ? L"" : L"\n") + to_text(value, Quoting::kPrin1) + L"\n"); },
      ignored);
  if (error) report(*error);
}

Result<Value> Interpreter::try_apply(const Value& function, std::span<const Value> args) {
  const Entry entry(*this);
  const std::size_t mark = binding_mark();
  Value result;
  std::optional<LispError> error = error_of([&] { result = apply(function, args); }, result);
  unbind_to(mark);
  if (error) return Error{std::move(error->where), to_utf8(error->message)};
  return result;
}

Value Interpreter::eval_text(std::wstring_view text, std::string_view name) {
  Reader reader(*this, text);
  try {
    Value result;
    while (const std::optional<Value> form = reader.next()) result = eval(*form);
    return result;
  } catch (LispError& error) {
    if (error.where.empty() && !name.empty()) {
      error.where.append(name).append(":").append(std::to_string(reader.line()));
    }
    throw;
  }
}

Value Interpreter::load(const std::string& path) {
  std::wstring text;
  {
    const Result<MappedFile> file = MappedFile::open(path);
    if (!file) throw LispError{from_utf8(file.error().what), true, path};
    text = with_plain_line_ends(decode_file(file->bytes()));
  }
  // A file that loads itself must meet the memory limit before the memory of the machine.
  const std::size_t bytes = text.size() * sizeof(wchar_t);
  heap_.charge(bytes);
  struct Discharge {
    Heap& heap;
    std::size_t bytes;
    ~Discharge() { heap.discharge(bytes); }
  } discharge{heap_, bytes};
  return eval_text(text, path);
}

}  // namespace cad::lisp
