#include <string>

#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

// Marks the functions the symbols stand for now; the last symbol.
Value mark(Forms& forms, bool traced) {
  Value last;
  while (forms.more()) {
    Symbol& symbol = forms.next_symbol();
    if (!symbol.value.is(Kind::kUsubr)) raise_bad_type(L"usubrp", Value::symbol(&symbol));
    symbol.value.usubr()->traced = traced;
    last = Value::symbol(&symbol);
  }
  return last;
}

Value sf_trace(Forms& forms) { return mark(forms, true); }
Value sf_untrace(Forms& forms) { return mark(forms, false); }

Value fn_backtrace(Call& call) {
  call.interp().print(L"Backtrace:\n" + call.interp().calls_under_way());
  return Value();
}

Value fn_backtrace_on(Call& call) {
  call.interp().set_call_trace(true);
  return Value();
}
Value fn_backtrace_off(Call& call) {
  call.interp().set_call_trace(false);
  return Value();
}

// clang-format off
constexpr SpecialForm kTraceForms[] = {
    {"trace",     0, kMany, sf_trace,         "(trace name ...)",   "shows every call of these functions with arguments and result"},
    {"untrace",   0, kMany, sf_untrace,       "(untrace name ...)", "ends what trace began"},
};
constexpr Builtin kTraceFunctions[] = {
    {"vl-bt",     0, 0,     fn_backtrace,     "(vl-bt)",     "prints the calls under way; in *error*, those that failed"},
    {"vl-bt-on",  0, 0,     fn_backtrace_on,  "(vl-bt-on)",  "from now on an error is followed by the calls that led to it"},
    {"vl-bt-off", 0, 0,     fn_backtrace_off, "(vl-bt-off)", "ends what vl-bt-on began"},
};
// clang-format on

}  // namespace

std::span<const SpecialForm> trace_forms() { return kTraceForms; }
std::span<const Builtin> trace_functions() { return kTraceFunctions; }

}  // namespace cad::lisp
