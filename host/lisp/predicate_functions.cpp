#include <string_view>

#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

struct TypeName {
  Kind kind;
  std::wstring_view name;
};
constexpr TypeName kTypeNames[] = {
    {Kind::kBlank, L"SYM"},         {Kind::kInteger, L"INT"},
    {Kind::kReal, L"REAL"},         {Kind::kSymbol, L"SYM"},
    {Kind::kCons, L"LIST"},         {Kind::kString, L"STR"},
    {Kind::kEname, L"ENAME"},       {Kind::kPickset, L"PICKSET"},
    {Kind::kFile, L"FILE"},         {Kind::kSubr, L"SUBR"},
    {Kind::kSpecialForm, L"SUBR"},  {Kind::kUsubr, L"USUBR"},
    {Kind::kExternal, L"EXRXSUBR"}, {Kind::kCatchError, L"VL-CATCH-ALL-APPLY-ERROR"},
};

Value fn_type(Call& call) {
  for (const TypeName& row : kTypeNames) {
    if (row.kind == call.arg(0).kind()) return Value::symbol(&call.interp().intern(row.name));
  }
  return Value();
}

Value fn_null(Call& call) { return call.truth(call.arg(0).is_nil()); }
Value fn_atom(Call& call) { return call.truth(!call.arg(0).is_cons()); }
Value fn_listp(Call& call) { return call.truth(call.arg(0).is_list()); }
Value fn_consp(Call& call) { return call.truth(call.arg(0).is_cons()); }
Value fn_numberp(Call& call) { return call.truth(call.arg(0).is_number()); }
Value fn_symbolp(Call& call) {
  return call.truth(call.arg(0).is_symbol() || call.arg(0).is_blank());
}

// clang-format off
constexpr Builtin kPredicateFunctions[] = {
    {"type",       1, 1, fn_type,    "(type value)",       "INT REAL STR SYM LIST ENAME PICKSET FILE SUBR USUBR ...; nil of nil"},
    {"null",       1, 1, fn_null,    "(null value)",       "T for nil"},
    {"not",        1, 1, fn_null,    "(not value)",        "T for nil"},
    {"atom",       1, 1, fn_atom,    "(atom value)",       "T for everything but lists that have elements"},
    {"listp",      1, 1, fn_listp,   "(listp value)",      "T for a list, a dotted pair and nil"},
    {"vl-consp",   1, 1, fn_consp,   "(vl-consp value)",   "T for a list that has elements"},
    {"numberp",    1, 1, fn_numberp, "(numberp value)",    "T for an integer or a real"},
    {"vl-symbolp", 1, 1, fn_symbolp, "(vl-symbolp value)", "T for a symbol other than nil"},
};
// clang-format on

}  // namespace

std::span<const Builtin> predicate_functions() { return kPredicateFunctions; }

}  // namespace cad::lisp
