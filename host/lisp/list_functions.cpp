#include <string>
#include <utility>

#include "host/lisp/interpreter.h"
#include "host/lisp/printer.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

// One step of car, cdr and their compounds.
const Value& part(const Value& list, bool rest) {
  if (list.is_cons()) return rest ? list.cons()->cdr : list.cons()->car;
  if (!list.is_nil()) raise_bad_type(L"consp", list);
  return kNil;
}

// The letters between c and r, the last one applied first: kLetters<'a', 'd'> is cadr.
template <char... kLetters>
Value fn_part(Call& call) {
  constexpr char letters[] = {kLetters...};
  const Value* at = &call.arg(0);
  for (std::size_t i = sizeof letters; i-- > 0;) at = &part(*at, letters[i] == 'd');
  return *at;
}

[[noreturn]] void raise_bad_list(const Value& list) { raise(L"bad list: " + quoted_start(list)); }

// The end of a proper list; raises for a dotted one.
void want_proper(const Value& list) {
  const Value* at = &list;
  while (at->is_cons()) at = &at->cons()->cdr;
  if (!at->is_nil()) raise_bad_list(list);
}

Value fn_cons(Call& call) { return call.interp().cons(call.arg(0), call.arg(1)); }

Value fn_list(Call& call) { return call.interp().list(call.args()); }

// (vl-list* a b c) is (a b . c).
Value fn_list_star(Call& call) {
  ListBuilder builder(call.interp().heap());
  for (const Value& item : call.args().first(call.size() - 1)) builder.append(item);
  return builder.finish(call.args().back());
}

Value fn_append(Call& call) {
  if (call.size() == 0) return Value();
  ListBuilder builder(call.interp().heap());
  for (std::size_t i = 0; i + 1 < call.size(); ++i) {
    for (const Value& item : call.list(i)) builder.append(item);
  }
  return builder.finish(call.args().back());
}

Value fn_reverse(Call& call) {
  Value result;
  for (const Value& item : call.list(0)) result = call.interp().cons(item, std::move(result));
  return result;
}

Value fn_nth(Call& call) { return call.list(1).at_or_nil(call.integer(0)); }

Value fn_last(Call& call) {
  const Value* last = &kNil;
  for (const Value& item : call.list(0)) last = &item;
  return *last;
}

Value fn_length(Call& call) {
  const List list = call.list(0);
  want_proper(call.arg(0));
  return Value::integer(static_cast<std::int32_t>(list.size()));
}

// nil for a dotted list, where length is an error.
Value fn_list_length(Call& call) {
  const Value* at = &call.arg(0);
  if (!at->is_list()) raise_bad_type(L"listp", *at);
  std::int32_t count = 0;
  for (; at->is_cons(); at = &at->cons()->cdr) ++count;
  return at->is_nil() ? Value::integer(count) : Value();
}

#define PN_PART(name, ...)                                     \
  {                                                            \
    name, 1, 1, fn_part<__VA_ARGS__>, "(" name " list)",       \
        "a for first element, d for rest, read from the right" \
  }

// clang-format off
constexpr Builtin kListFunctions[] = {
    {"car",  1, 1, fn_part<'a'>, "(car list)", "the first element; nil of nil"},
    {"cdr",  1, 1, fn_part<'d'>, "(cdr list)", "the list without its first element; nil of nil"},
    PN_PART("caar", 'a', 'a'), PN_PART("cadr", 'a', 'd'), PN_PART("cdar", 'd', 'a'), PN_PART("cddr", 'd', 'd'),
    PN_PART("caaar", 'a', 'a', 'a'), PN_PART("caadr", 'a', 'a', 'd'), PN_PART("cadar", 'a', 'd', 'a'), PN_PART("caddr", 'a', 'd', 'd'),
    PN_PART("cdaar", 'd', 'a', 'a'), PN_PART("cdadr", 'd', 'a', 'd'), PN_PART("cddar", 'd', 'd', 'a'), PN_PART("cdddr", 'd', 'd', 'd'),
    PN_PART("caaaar", 'a', 'a', 'a', 'a'), PN_PART("caaadr", 'a', 'a', 'a', 'd'), PN_PART("caadar", 'a', 'a', 'd', 'a'), PN_PART("caaddr", 'a', 'a', 'd', 'd'),
    PN_PART("cadaar", 'a', 'd', 'a', 'a'), PN_PART("cadadr", 'a', 'd', 'a', 'd'), PN_PART("caddar", 'a', 'd', 'd', 'a'), PN_PART("cadddr", 'a', 'd', 'd', 'd'),
    PN_PART("cdaaar", 'd', 'a', 'a', 'a'), PN_PART("cdaadr", 'd', 'a', 'a', 'd'), PN_PART("cdadar", 'd', 'a', 'd', 'a'), PN_PART("cdaddr", 'd', 'a', 'd', 'd'),
    PN_PART("cddaar", 'd', 'd', 'a', 'a'), PN_PART("cddadr", 'd', 'd', 'a', 'd'), PN_PART("cdddar", 'd', 'd', 'd', 'a'), PN_PART("cddddr", 'd', 'd', 'd', 'd'),
    {"cons",     2, 2,     fn_cons,      "(cons item to)",           "item in front of a list, or a dotted pair"},
    {"list",     0, kMany, fn_list,      "(list item ...)",          "a list of the values"},
    {"vl-list*", 1, kMany, fn_list_star, "(vl-list* item ... rest)", "the items in front of rest"},
    {"append",   0, kMany, fn_append,    "(append list ...)",        "the elements of all lists in one"},
    {"reverse",  1, 1,     fn_reverse,   "(reverse list)",           "the elements from last to first"},
    {"nth",      2, 2,     fn_nth,       "(nth n list)",             "element n, from 0; nil past the end"},
    {"last",     1, 1,     fn_last,      "(last list)",              "the last element"},
    {"length",   1, 1,     fn_length,    "(length list)",            "the number of elements"},
    {"vl-list-length", 1, 1, fn_list_length, "(vl-list-length list)", "the number of elements; nil for a dotted list"},
};
// clang-format on
#undef PN_PART

}  // namespace

std::span<const Builtin> list_functions() { return kListFunctions; }

}  // namespace cad::lisp
