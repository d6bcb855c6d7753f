#include <utility>

#include "host/base/codepage.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"

namespace cad::lisp {
namespace {

std::size_t count_forms(const Value& forms) {
  std::size_t count = 0;
  const Value* at = &forms;
  for (; at->is_cons(); at = &at->cons()->cdr) ++count;
  if (!at->is_nil()) raise(L"bad list: " + quoted_start(forms));
  return count;
}

[[noreturn, gnu::cold]] void raise_wrong_count(bool too_few) {
  raise(too_few ? L"too few arguments" : L"too many arguments");
}

// ((x) (+ x 1)) and (lambda (x) (+ x 1)) can be called.
bool looks_like_function(const Value& list, const Symbol* lambda) {
  const Value& first = list.car();
  return first.is_list() || (first.is_symbol() && first.symbol() == lambda);
}

}  // namespace

[[gnu::cold]] void Interpreter::raise_not_callable(const Value& head, const Value& function) const {
  if (!function.is_nil()) raise(L"bad function: " + quoted_start(function));
  if (head.is_symbol() && services_.missing_function) {
    std::wstring reason = services_.missing_function(head.symbol()->name);
    if (!reason.empty()) raise(std::move(reason));
  }
  raise(L"no function definition: " + quoted_start(head));
}

inline void Interpreter::check_stack() const {
  if (static_cast<const char*>(__builtin_frame_address(0)) < stack_end_) [[unlikely]] {
    raise(L"internal stack limit reached (simulated)");
  }
}

// Evaluates the forms in order and hands the values on.
template <class Call>
inline Value Interpreter::with_arguments(const Value& forms, Call&& call) {
  ArgumentFrame frame(arguments_, count_forms(forms));
  for (const Value* at = &forms; at->is_cons(); at = &at->cons()->cdr) {
    frame.emplace([&] { return eval(at->cons()->car); });
  }
  return call(frame.values());
}

Value Interpreter::eval_list(const Value& list) {
  check_stack();
  const Value* form = &list;
  for (;;) {
    count_step();
    const Cons& expression = *form->cons();
    const Value& head = expression.car;
    Value held;  // keeps a function alive that is redefined while it runs
    const Value* function = &head;
    if (head.is_symbol()) [[likely]] {
      function = &head.symbol()->value;
    } else if (head.is_cons()) {
      held = callable_head(head);
      function = &held;
    }
    const Kind kind = function->kind();
    if (kind == Kind::kSubr) {
      const Builtin& row = *function->subr()->row;
      return with_arguments(expression.cdr,
                            [&](std::span<Value> args) { return call_subr(row, args); });
    }
    switch (kind) {
      case Kind::kSpecialForm: {
        Forms forms(*this, expression.cdr);
        Value result = call_special(*function->special()->row, forms);
        if (forms.tail_ == nullptr) return result;
        if (!forms.tail_->is_cons()) return eval(*forms.tail_);
        form = forms.tail_;  // part of this form, so it lives as long
        break;
      }
      case Kind::kCons:
        if (!looks_like_function(*function, lambda_)) raise_not_callable(head, *function);
        held = callable(*function);
        function = &held;
        [[fallthrough]];
      case Kind::kUsubr: {
        held = *function;
        return with_arguments(expression.cdr, [&](std::span<Value> args) {
          return call_usubr(std::move(held), args);
        });
      }
      case Kind::kExternal: {
        held = *function;
        return with_arguments(expression.cdr, [&](std::span<Value> args) {
          return call_external(*held.external(), args);
        });
      }
      default:
        raise_not_callable(head, *function);
    }
  }
}

inline Value Interpreter::call_special(const SpecialForm& row, Forms& forms) {
  // Without an upper bound only the lower one needs counting.
  const int enough = row.max_args == kMany ? row.min_args : row.max_args + 1;
  int count = 0;
  for (const Value* at = &forms.rest(); count < enough && at->is_cons(); at = &at->cons()->cdr) {
    ++count;
  }
  if (count < row.min_args) raise_wrong_count(true);
  if (row.max_args != kMany && count > row.max_args) raise_wrong_count(false);
  return row.function(forms);
}

inline Value Interpreter::call_subr(const Builtin& row, std::span<const Value> args) {
  const int count = static_cast<int>(args.size());
  if (count < row.min_args) raise_wrong_count(true);
  if (row.max_args != kMany && count > row.max_args) raise_wrong_count(false);
  if (call_trace_) [[unlikely]]
    return call_subr_noted(row, args);
  Call call(*this, row, args);
  return row.function(call);
}

inline Value Interpreter::call_usubr(Value held, std::span<Value> args) {
  Usubr& function = *held.usubr();
  if (args.size() != function.parameter_count) {
    raise_wrong_count(args.size() < function.parameter_count);
  }
  if (function.traced) [[unlikely]]
    show_entry(function, args);
  const std::size_t mark = binding_mark();
  bindings_.push_back({nullptr, std::move(held)});
  Symbol* const* symbols = function.symbols();
  std::uint32_t i = 0;
  for (; i < function.parameter_count; ++i) bind(*symbols[i], std::move(args[i]));
  for (; i < function.symbol_count; ++i) bind(*symbols[i], Value());
  Value result = eval_all(function.body());
  if (function.traced) [[unlikely]]
    show_result(result);
  unbind_to(mark);
  return result;
}

Value Interpreter::call_external(External& function, std::span<const Value> args) {
  if (!services_.call_external) {
    raise(L"no function definition: " + function.name->name);
  }
  Result<Value> result = services_.call_external(*this, function, args);
  if (!result) raise(from_utf8(result.error().what));
  return *std::move(result);
}

Value Interpreter::call(const Value& function, std::span<Value> args) {
  count_step();
  check_stack();
  switch (function.kind()) {
    case Kind::kSubr:
      return call_subr(*function.subr()->row, args);
    case Kind::kUsubr:
      return call_usubr(function, args);
    case Kind::kExternal:
      return call_external(*function.external(), args);
    case Kind::kSpecialForm: {
      const Value values = list(args);
      Forms forms(*this, values, /*are_values=*/true);
      return call_special(*function.special()->row, forms);
    }
    default:
      raise_not_callable(function, function);
  }
}

Value Interpreter::apply(const Value& function, std::span<const Value> args) {
  const Value target = callable(function);
  ArgumentFrame frame(arguments_, args.size());
  for (const Value& arg : args) frame.push(arg);
  return call(target, frame.values());
}

Value Interpreter::callable(const Value& function) {
  const Value& target = function.is_symbol() ? function.symbol()->value : function;
  switch (target.kind()) {
    case Kind::kSubr:
    case Kind::kSpecialForm:
    case Kind::kUsubr:
    case Kind::kExternal:
      return target;
    case Kind::kCons:
      if (!looks_like_function(target, lambda_)) break;
      return make_function(target.car().is_symbol() ? target.cdr() : target, nullptr);
    default:
      break;
  }
  raise_not_callable(function, target);
}

// In ((lambda (x) ...) 1) the head is the function itself, in ((choose) 1) it makes one.
Value Interpreter::callable_head(const Value& head) {
  return looks_like_function(head, lambda_) ? callable(head) : callable(eval(head));
}

Value Interpreter::make_function(const Value& source, Symbol* name) {
  const Value& parameters = source.car();
  const auto refuse = [&]() { raise(L"bad formal argument list: " + quoted_start(parameters)); };
  std::uint32_t symbols = 0;
  std::uint32_t before_slash = 0;
  bool slash = false;
  const Value* at = &parameters;
  for (; at->is_cons(); at = &at->cons()->cdr) {
    const Value& item = at->cons()->car;
    if (!item.is_symbol()) refuse();
    if (item.symbol()->name == L"/") {
      if (slash) refuse();
      slash = true;
      continue;
    }
    ++symbols;
    if (!slash) ++before_slash;
  }
  if (!at->is_nil()) refuse();

  auto* function =
      heap_.make<Usubr>(symbols * sizeof(Symbol*), source, name, ++numbers_, before_slash, symbols);
  Symbol** next = function->symbols();
  for (const Value& item : List(parameters)) {
    if (item.symbol()->name != L"/") *next++ = item.symbol();
  }
  return Value::adopt(function);
}

}  // namespace cad::lisp
