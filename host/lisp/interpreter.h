#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/result.h"
#include "host/lisp/arguments.h"
#include "host/lisp/builtin.h"
#include "host/lisp/error.h"
#include "host/lisp/heap.h"
#include "host/lisp/value.h"

namespace cad::lisp {

/// What an interpreter asks of its surroundings. Every function may be left empty.
struct Services {
  /// Text of princ, prin1, print, prompt and error messages.
  std::function<void(std::wstring_view)> output;
  /// Runs a function of a module. Its value (Value::blank() for none); an Error becomes a LISP
  /// error with the text of `what`. The arguments live until it returns.
  std::function<Result<Value>(Interpreter&, const External&, std::span<const Value>)> call_external;
  /// LUNITS, LUPREC, DIMZIN, AUNITS, AUPREC, ANGBASE, ANGDIR, ...; nil for what there is not.
  std::function<Value(Interpreter&, std::wstring_view)> system_variable;
  /// The path of a file a program names, as load, open and findfile look for it; empty when there
  /// is no such file. Without this function names are paths, "\" taken for "/".
  std::function<std::optional<std::string>(std::wstring_view)> find_file;
  /// The path under which a program may create the file it names; the default is as above.
  std::function<std::string(std::wstring_view)> place_file;
  /// A line typed at the prompt, without its end; empty at the end of input.
  std::function<std::optional<std::wstring>()> read_line;
  /// Why there is no function of this name, told instead of "no function definition: NAME"; empty
  /// when nothing is known about it.
  std::function<std::wstring(std::wstring_view)> missing_function;
  /// How the user raises the step limit; stands behind the message.
  std::wstring step_limit_hint;
  /// Handed to builtins by Call::owner().
  void* owner = nullptr;
};

/// Bounds of one evaluation. Going beyond is an ordinary error, never a crash.
struct Limits {
  std::uint64_t steps = 0;                          ///< evaluated lists; 0 is no limit
  std::size_t stack_bytes = 0;                      ///< 0: what the thread has, less a reserve
  std::size_t memory_bytes = std::size_t{1} << 30;  ///< live cells and strings
};

/// One LISP environment: symbols, values, functions. Each document has its own.
///
/// eval_string() and load_file() are the top level: they run *error*, restore every variable bound
/// by functions that did not return, and never throw. Builtins use eval() and apply(), which raise
/// LispError; code with other people's frames above it uses try_apply().
class Interpreter {
 public:
  explicit Interpreter(Services services);
  ~Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  // --- Top level

  /// Evaluates all forms of a text in turn; the value of the last one, nil when there is none. The
  /// name stands before the line number in errors. An error was reported to *error* or the output
  /// already; the Result repeats it for the caller: where "init.lsp:12", what the message.
  Result<Value> eval_string(std::string_view utf8, std::string_view name = {});
  /// The same for a file: UTF-8, with or without a mark, or code page 936 when it is not UTF-8.
  Result<Value> load_file(const std::string& path);
  /// Prints a value on a line of its own as the command line echoes it: in prin1 form, nothing at
  /// all for the blank.
  void echo(const Value& value);
  /// Runs one function at top level, a command C:NAME for instance.
  Result<Value> call_function(const Value& function, std::span<const Value> args);
  /// Whether every error is followed by the calls that led to it.
  void set_call_trace(bool on) { call_trace_ = on; }
  bool call_trace() const { return call_trace_; }

  // --- Below the top level

  /// The form must stay alive meanwhile: let some Value other than the one being changed hold it.
  Value eval(const Value& form);
  Value apply(const Value& function, std::span<const Value> args);
  /// What a function argument stands for, found once for many calls of apply(): the value of a
  /// symbol, the function a lambda list describes, else the value itself. Raises "no function
  /// definition: X" or "bad function: X".
  Value callable(const Value& function);
  /// The function ((parameters / locals) form...) describes; no name makes it a lambda.
  Value make_function(const Value& source, Symbol* name);
  /// As apply(), but an error becomes the Result and what it had bound is restored; *error* does
  /// not run. For calls out of module code.
  Result<Value> try_apply(const Value& function, std::span<const Value> args);
  /// Evaluates all forms of a text; `where` of errors gets "name:line".
  Value eval_text(std::wstring_view text, std::string_view name);
  Value load(const std::string& path);

  /// Gives the symbol a value until unbind_to() goes back behind it. Scopes end with
  /// unbind_to(mark) when they return; after an error whoever catches it does that, so that
  /// *error* still sees the variables of the function that failed.
  /// The calls under way, the innermost first, one per line: functions written in LISP with what
  /// their parameters are now, and the built-in one that raised the error when that was noted (see
  /// set_call_trace). Long traces are cut in the middle.
  std::wstring calls_under_way(const LispError* error = nullptr) const;

  std::size_t binding_mark() const { return bindings_.size(); }
  void bind(Symbol& symbol, Value value);
  void unbind_to(std::size_t mark);
  /// One step of a loop that evaluates nothing by itself: keeps it under the limits.
  void step() { count_step(); }

  // --- Names

  Symbol& intern(std::wstring_view name);  ///< any letter case
  /// The symbol if it was ever named.
  Symbol* find_symbol(std::wstring_view name) const;
  Value variable(std::wstring_view name) const;
  void set_variable(std::wstring_view name, Value value);
  /// Names of all symbols that have a value, sorted.
  std::vector<std::wstring> bound_names() const;

  void define(std::span<const Builtin> table);
  void define(std::span<const SpecialForm> table);
  /// Binds the name to a function of a module, whatever it meant before.
  void define_external(std::wstring_view name, int code, std::uint64_t owner);
  /// Unsets the name; false when it is not, or no longer, that function.
  bool undefine_external(std::wstring_view name, int code, std::uint64_t owner);
  /// Unsets every function of an owner, before its module goes away.
  void undefine_externals(std::uint64_t owner);

  // --- Values

  Value truth(bool condition) const { return condition ? Value::symbol(t_) : Value(); }
  Value cons(Value first, Value rest) { return heap_.cons(std::move(first), std::move(rest)); }
  Value string(std::wstring_view text) { return heap_.string(text); }
  Value ename(std::uint64_t payload) { return heap_.ename(payload); }
  /// A new, empty selection set; its number counts up from 1.
  Value pickset();
  Value list(std::span<const Value> items);
  Value list(std::initializer_list<Value> items) {
    return list(std::span<const Value>(items.begin(), items.size()));
  }
  Heap& heap() { return heap_; }

  // --- Surroundings

  const Services& services() const { return services_; }
  void print(std::wstring_view text);
  /// The named system variable when it is an integer, else the fallback.
  std::int32_t system_integer(std::wstring_view name, std::int32_t fallback);

  void set_limits(const Limits& limits);
  const Limits& limits() const { return limits_; }
  /// Stops the running evaluation with "Function cancelled". May be called from a signal handler.
  void interrupt() noexcept { interrupted_.store(true, std::memory_order_relaxed); }
  /// Lists evaluated since the outermost top-level call began.
  std::uint64_t steps() const { return steps_done_ + static_cast<std::uint64_t>(slice_ - fuel_); }

 private:
  struct Binding {
    Symbol* symbol;  // null: `saved` is a function that was entered here, kept alive
    Value saved;
  };
  struct SymbolTable;
  class Entry;

  friend class Forms;

  Value eval_list(const Value& list);
  Value eval_all(const Value& forms);
  template <class Call>
  Value with_arguments(const Value& forms, Call&& call);
  Value call_special(const SpecialForm& row, Forms& forms);
  Value call_subr(const Builtin& row, std::span<const Value> args);
  Value call_subr_noted(const Builtin& row, std::span<const Value> args);
  Value call_usubr(Value function, std::span<Value> args);
  void show_entry(const Usubr& function, std::span<const Value> args);
  void show_result(const Value& result);
  [[noreturn]] void raise_not_callable(const Value& head, const Value& function) const;
  Value call_external(External& function, std::span<const Value> args);
  Value call(const Value& function, std::span<Value> args);
  Value callable_head(const Value& head);
  template <class Run>
  Result<Value> run_at_top_level(Run&& run);
  template <class Run>
  std::optional<LispError> error_of(Run&& run, Value& exit_value);
  void report(const LispError& error);
  void count_step() {
    if (--fuel_ < 0) look_at_limits();
  }
  void look_at_limits();
  void check_stack() const;

  Services services_;
  Limits limits_;
  Heap heap_;
  std::unique_ptr<SymbolTable> symbols_;
  Symbol* t_ = nullptr;
  Symbol* lambda_ = nullptr;
  Symbol* error_handler_ = nullptr;
  ArgumentStack arguments_;
  std::vector<Binding> bindings_;

  std::int64_t fuel_ = 0;         // lists to evaluate before the next look at the limits
  std::int64_t slice_ = 0;        // what fuel_ was filled to
  std::uint64_t steps_done_ = 0;  // before this slice
  std::uint64_t step_ceiling_ = 0;
  const char* stack_end_ = nullptr;  // the lowest address evaluation may reach
  int entries_ = 0;
  std::atomic<bool> interrupted_ = false;
  bool at_line_start_ = true;
  bool call_trace_ = false;
  std::uint32_t shown_depth_ = 0;  // of traced functions
  std::uint32_t numbers_ = 0;
  std::uint32_t pickset_numbers_ = 0;
};

inline void Interpreter::bind(Symbol& symbol, Value value) {
  bindings_.push_back({&symbol, std::exchange(symbol.value, std::move(value))});
}

inline Value Interpreter::eval(const Value& form) {
  if (form.is_symbol()) return form.symbol()->value;
  return form.is_cons() ? eval_list(form) : form;
}

inline Value Interpreter::eval_all(const Value& forms) {
  if (!forms.is_cons()) return Value();
  const Cons* at = forms.cons();
  for (; at->cdr.is_cons(); at = at->cdr.cons()) eval(at->car);
  return eval(at->car);
}

inline const Value& Forms::next() {
  if (!rest_->is_cons()) raise(L"too few arguments");
  const Cons& cell = *rest_->cons();
  rest_ = &cell.cdr;
  return cell.car;
}

inline Value Forms::eval(const Value& form) { return are_values_ ? form : interp_.eval(form); }

inline Value Forms::eval_all(const Value& forms) {
  if (!are_values_) return interp_.eval_all(forms);
  const Value* last = &kNil;
  for (const Value& value : List(forms)) last = &value;
  return *last;
}

inline Value Forms::tail(const Value& form) {
  if (are_values_) return form;
  tail_ = &form;
  return Value();
}

inline Value Forms::tail_all(const Value& forms) {
  if (are_values_ || !forms.is_cons()) return eval_all(forms);
  const Cons* at = forms.cons();
  for (; at->cdr.is_cons(); at = at->cdr.cons()) interp_.eval(at->car);
  return tail(at->car);
}

inline Value Forms::truth(bool condition) const { return interp_.truth(condition); }

}  // namespace cad::lisp
