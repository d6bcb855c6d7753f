#include <cmath>
#include <vector>

#include "host/lisp/compare.h"
#include "host/lisp/printer.h"
#include "host/lisp/tables.h"

namespace cad::lisp {

bool is_eq(const Value& a, const Value& b) {
  if (a.same(b)) return true;
  if (a.is_real()) return b.is_real() && a.real() == b.real();  // 0.0 and -0.0
  if (a.is_string()) return b.is_string() && a.text() == b.text();
  if (a.is_ename()) return b.is_ename() && a.ename() == b.ename();
  return false;
}

bool is_same_value(const Value& a, const Value& b) {
  if (a.is_number() && b.is_number()) return a.number() == b.number();
  return is_eq(a, b);
}

namespace {

// Of two values that are not both lists with elements.
bool equal_atoms(const Value& a, const Value& b, double fuzz) {
  if (a.is_number() && b.is_number()) {
    const double x = a.number(), y = b.number();
    return x == y || std::fabs(x - y) <= fuzz;
  }
  return is_eq(a, b);
}

}  // namespace

bool is_equal(Interpreter& interp, const Value& a, const Value& b, double fuzz) {
  struct Pair {
    const Value* a;
    const Value* b;
  };
  std::vector<Pair> later;  // allocates for lists in lists only
  Pair at{&a, &b};
  for (;;) {
    while (at.a->is_cons() && at.b->is_cons() && !at.a->same(*at.b)) {
      interp.step();
      const Cons &x = *at.a->cons(), &y = *at.b->cons();
      if (x.car.is_cons() && y.car.is_cons()) {
        later.push_back({&x.cdr, &y.cdr});
        at = {&x.car, &y.car};
      } else {
        if (!equal_atoms(x.car, y.car, fuzz)) return false;
        at = {&x.cdr, &y.cdr};
      }
    }
    if (!equal_atoms(*at.a, *at.b, fuzz)) return false;
    if (later.empty()) return true;
    at = later.back();
    later.pop_back();
  }
}

int order(const Value& a, const Value& b) {
  if (a.is_integer() && b.is_integer()) {
    return a.integer() < b.integer() ? -1 : a.integer() > b.integer();
  }
  if (a.is_number() && b.is_number()) {
    const double x = a.number(), y = b.number();
    return x < y ? -1 : x > y ? 1 : x == y ? 0 : 2;
  }
  if (a.is_string() && b.is_string()) {
    const int sign = a.text().compare(b.text());
    return sign < 0 ? -1 : sign > 0;
  }
  raise(L"bad argument type for compare: " + quoted_start(a) + L" " + quoted_start(b));
}

namespace {

// (op a b c): whether every argument stands in this relation to the next.
template <class Relation>
Value chain(Call& call, Relation relation) {
  const std::span<const Value> args = call.args();
  for (std::size_t i = 1; i < args.size(); ++i) {
    if (!relation(args[i - 1], args[i])) return Value();
  }
  return call.truth(true);
}

Value fn_same(Call& call) { return chain(call, is_same_value); }
Value fn_differ(Call& call) {
  return chain(call, [](const Value& a, const Value& b) { return !is_same_value(a, b); });
}
Value fn_less(Call& call) {
  return chain(call, [](const Value& a, const Value& b) { return order(a, b) == -1; });
}
Value fn_greater(Call& call) {
  return chain(call, [](const Value& a, const Value& b) { return order(a, b) == 1; });
}
Value fn_at_most(Call& call) {
  return chain(call, [](const Value& a, const Value& b) { return order(a, b) <= 0; });
}
Value fn_at_least(Call& call) {
  return chain(call, [](const Value& a, const Value& b) {
    const int sign = order(a, b);
    return sign == 0 || sign == 1;
  });
}
Value fn_eq(Call& call) { return call.truth(is_eq(call.arg(0), call.arg(1))); }
Value fn_equal(Call& call) {
  return call.truth(
      is_equal(call.interp(), call.arg(0), call.arg(1), call.has(2) ? call.real(2) : 0.0));
}

// clang-format off
constexpr Builtin kCompareFunctions[] = {
    {"=",     1, kMany, fn_same,     "(= a b ...)",          "T when all are the same number or the same text"},
    {"/=",    1, kMany, fn_differ,   "(/= a b ...)",         "T when no two neighbours are the same"},
    {"<",     1, kMany, fn_less,     "(< a b ...)",          "T when every number or text is less than the next"},
    {">",     1, kMany, fn_greater,  "(> a b ...)",          "T when every number or text is greater than the next"},
    {"<=",    1, kMany, fn_at_most,  "(<= a b ...)",         "T when none is greater than the next"},
    {">=",    1, kMany, fn_at_least, "(>= a b ...)",         "T when none is less than the next"},
    {"eq",    2, 2,     fn_eq,       "(eq a b)",             "T when both are the same object"},
    {"equal", 2, 3,     fn_equal,    "(equal a b [fuzz])",   "T when both look the same; numbers may differ by fuzz"},
};
// clang-format on

}  // namespace

std::span<const Builtin> compare_functions() { return kCompareFunctions; }

}  // namespace cad::lisp
