#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/lisp/error.h"
#include "host/lisp/value.h"

/// Functions written in C++ are rows of tables, registered with Interpreter::define():
///     Value fn_nth(Call& call) { return call.list(1).at_or_nil(call.integer(0)); }
///     constexpr Builtin kListBuiltins[] = {
///         // name  args   function  usage             help
///         {"nth",  2, 2,  fn_nth,   "(nth n list)",   "element n, from 0; nil past the end"},
///     };
/// A table is never freed: give it static storage. A later row replaces an earlier one of its name.
namespace cad::lisp {

class Interpreter;
class Call;
class Forms;

inline constexpr int kMany = -1;  ///< no upper bound of arguments

struct Builtin {
  const char* name;  ///< any letter case
  int min_args;
  int max_args;
  Value (*function)(Call&);
  const char* usage;  ///< printed by (help 'name), above the help
  const char* help;
};

/// A function that gets its arguments unevaluated.
struct SpecialForm {
  const char* name;
  int min_args;
  int max_args;
  Value (*function)(Forms&);
  const char* usage;
  const char* help;
};

/// The evaluated arguments of one call. Getters name an argument by position from 0 and raise the
/// error of the host when it is of another type; asking beyond size() finds nil, so an optional
/// argument is `call.size() > 1 ? call.integer(1) : 6`.
class Call {
 public:
  Call(Interpreter& interp, const Builtin& row, std::span<const Value> args)
      : interp_(interp), row_(row), args_(args) {}

  Interpreter& interp() const { return interp_; }
  /// The row of the function being called: several rows may share one C++ function.
  const Builtin& row() const { return row_; }
  std::size_t size() const { return args_.size(); }
  std::span<const Value> args() const { return args_; }
  const Value& arg(std::size_t i) const { return i < args_.size() ? args_[i] : kNil; }
  bool has(std::size_t i) const { return i < args_.size(); }

  std::int32_t integer(std::size_t i) const;      ///< fixnump; a real is refused
  double real(std::size_t i) const;               ///< numberp: an integer or a real
  std::wstring_view string(std::size_t i) const;  ///< stringp; valid during the call
  List list(std::size_t i) const;                 ///< listp: nil or a cons
  Symbol& symbol(std::size_t i) const;            ///< symbolp
  std::uint64_t ename(std::size_t i) const;       ///< lentityp
  Pickset& pickset(std::size_t i) const;          ///< lselsetp
  File& file(std::size_t i) const;                ///< streamp
  /// Something that can be called: a function, a lambda list or a symbol. For Interpreter::apply.
  const Value& function(std::size_t i) const;

  /// T or nil.
  Value truth(bool condition) const;
  /// What Services::owner points to: the document of the application layer.
  template <class T>
  T& owner() const {
    return *static_cast<T*>(owner_pointer());
  }

 private:
  void* owner_pointer() const;

  Interpreter& interp_;
  const Builtin& row_;
  std::span<const Value> args_;
};

/// The unevaluated arguments of a special form, read from left to right. When a program passes the
/// special form to apply or mapcar, the arguments are values already, and evaluating gives them
/// back: (apply 'and (list 'a nil)).
class Forms {
 public:
  Forms(Interpreter& interp, const Value& rest, bool are_values = false)
      : interp_(interp), rest_(&rest), are_values_(are_values) {}

  Interpreter& interp() const { return interp_; }
  bool more() const { return rest_->is_cons(); }
  /// What is left, as a list.
  const Value& rest() const { return *rest_; }
  /// The next form as it stands; "too few arguments" when there is none.
  const Value& next();
  /// The next form, which must be a symbol.
  Symbol& next_symbol();

  /// The value of a form that came from here.
  Value eval(const Value& form);
  Value eval_next() { return eval(next()); }
  /// Evaluates forms as progn does: the last value, nil when there are none.
  Value eval_all(const Value& forms);
  Value eval_rest() { return eval_all(*rest_); }

  /// `return forms.tail(form);` is `return forms.eval(form);` without taking stack: the evaluator
  /// goes on with the form once the function has returned.
  Value tail(const Value& form);
  /// The same for `return forms.eval_all(list);`.
  Value tail_all(const Value& forms);

  Value truth(bool condition) const;

 private:
  friend class Interpreter;

  Interpreter& interp_;
  const Value* rest_;
  const Value* tail_ = nullptr;
  bool are_values_;
};

}  // namespace cad::lisp
