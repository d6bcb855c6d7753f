#include <utility>

#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

Value sf_quote(Forms& forms) { return forms.next(); }

// (function (lambda ...)) is the function; (function name) stays a name.
Value sf_function(Forms& forms) {
  const Value& form = forms.next();
  return form.is_cons() ? forms.interp().callable(form) : form;
}

Value sf_setq(Forms& forms) {
  for (;;) {
    Symbol& symbol = forms.next_symbol();
    Value value = forms.eval_next();
    symbol.value = value;
    if (!forms.more()) return value;
  }
}

Value sf_if(Forms& forms) {
  const Value& test = forms.next();
  const Value& then = forms.next();
  if (forms.eval(test)) return forms.tail(then);
  return forms.more() ? forms.tail(forms.next()) : Value();
}

Value sf_cond(Forms& forms) {
  while (forms.more()) {
    const Value& clause = forms.next();
    if (!clause.is_list()) raise_bad_type(L"listp", clause);
    if (clause.is_nil()) continue;
    Value test = forms.eval(clause.car());
    if (!test) continue;
    if (!clause.cdr().is_cons()) return test;
    return forms.tail_all(clause.cdr());
  }
  return Value();
}

Value sf_while(Forms& forms) {
  const Value& test = forms.next();
  const Value& body = forms.rest();
  Value result;
  while (forms.eval(test)) {
    forms.interp().step();
    result = forms.eval_all(body);
  }
  return result;
}

Value sf_repeat(Forms& forms) {
  const Value count = forms.eval_next();
  if (!count.is_integer()) raise_bad_type(L"fixnump", count);
  const Value& body = forms.rest();
  Value result;
  for (std::int32_t i = 0; i < count.integer(); ++i) {
    forms.interp().step();
    result = forms.eval_all(body);
  }
  return result;
}

Value sf_foreach(Forms& forms) {
  Interpreter& interp = forms.interp();
  Symbol& symbol = forms.next_symbol();
  const Value list = forms.eval_next();
  if (!list.is_list()) raise_bad_type(L"listp", list);
  const Value& body = forms.rest();
  const std::size_t mark = interp.binding_mark();
  interp.bind(symbol, Value());
  Value result;
  for (const Value& item : List(list)) {
    interp.step();
    symbol.value = item;
    result = forms.eval_all(body);
  }
  interp.unbind_to(mark);
  return result;
}

Value sf_progn(Forms& forms) { return forms.tail_all(forms.rest()); }

Value sf_and(Forms& forms) {
  while (forms.more()) {
    if (!forms.eval_next()) return Value();
  }
  return forms.truth(true);
}

Value sf_or(Forms& forms) {
  while (forms.more()) {
    if (forms.eval_next()) return forms.truth(true);
  }
  return Value();
}

Value sf_lambda(Forms& forms) { return forms.interp().make_function(forms.rest(), nullptr); }

Value sf_defun(Forms& forms) {
  Symbol& name = forms.next_symbol();
  name.value = forms.interp().make_function(forms.rest(), &name);
  return Value::symbol(&name);
}

// The function stays a list that programs take apart.
Value sf_defun_q(Forms& forms) {
  Symbol& name = forms.next_symbol();
  forms.interp().make_function(forms.rest(), &name);  // refuses bad parameters
  name.value = forms.rest();
  return Value::symbol(&name);
}

// clang-format off
constexpr SpecialForm kSpecialForms[] = {
    {"quote",    1, 1,     sf_quote,    "(quote form)",                    "the form itself, unevaluated; also 'form"},
    {"function", 1, 1,     sf_function, "(function f)",                    "f as a function argument: a name or a lambda"},
    {"setq",     2, kMany, sf_setq,     "(setq name value ...)",           "sets each variable in turn; the last value"},
    {"if",       2, 3,     sf_if,       "(if test then [else])",           "then unless test is nil; nil without else"},
    {"cond",     0, kMany, sf_cond,     "(cond (test form ...) ...)",      "the forms of the first clause whose test is not nil"},
    {"while",    1, kMany, sf_while,    "(while test form ...)",           "repeats the forms until test is nil; the last value"},
    {"repeat",   1, kMany, sf_repeat,   "(repeat n form ...)",             "the forms n times; the last value"},
    {"foreach",  2, kMany, sf_foreach,  "(foreach name list form ...)",    "the forms with name set to each element in turn"},
    {"progn",    0, kMany, sf_progn,    "(progn form ...)",                "evaluates the forms; the last value"},
    {"and",      0, kMany, sf_and,      "(and form ...)",                  "T unless some form is nil; stops there"},
    {"or",       0, kMany, sf_or,       "(or form ...)",                   "T when some form is not nil; stops there"},
    {"lambda",   1, kMany, sf_lambda,   "(lambda (args / locals) form ...)", "a function without a name"},
    {"defun",    2, kMany, sf_defun,    "(defun name (args / locals) form ...)", "defines a function; a name C:XYZ makes a command"},
    {"defun-q",  2, kMany, sf_defun_q,  "(defun-q name (args / locals) form ...)", "defines a function kept as a list"},
};
// clang-format on

}  // namespace

std::span<const SpecialForm> special_forms() { return kSpecialForms; }

}  // namespace cad::lisp
