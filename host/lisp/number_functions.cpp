#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <utility>

#include "host/lisp/printer.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

// Integers wrap at 32 bits.
std::int32_t wrap(std::int64_t n) { return static_cast<std::int32_t>(n); }

const Value& number(Call& call, std::size_t i) {
  const Value& value = call.arg(i);
  if (!value.is_number()) raise_bad_type(L"numberp", value);
  return value;
}

[[noreturn]] void raise_undefined(const Value& argument) {
  raise(L"function undefined for argument: " + quoted_start(argument));
}

// (op a b c) from the left. One real among the arguments makes all of them reals first.
template <class OnIntegers, class OnReals>
Value fold(Call& call, OnIntegers on_integers, OnReals on_reals) {
  const std::span<const Value> args = call.args();
  if (args.empty()) return Value::integer(0);
  bool all_integers = true;
  for (const Value& arg : args) {
    if (arg.is_integer()) continue;
    if (!arg.is_real()) raise_bad_type(L"numberp", arg);
    all_integers = false;
  }
  if (all_integers) {
    std::int32_t result = args[0].integer();
    for (const Value& arg : args.subspan(1)) {
      result = wrap(on_integers(std::int64_t{result}, std::int64_t{arg.integer()}));
    }
    return Value::integer(result);
  }
  double result = args[0].number();
  for (const Value& arg : args.subspan(1)) result = on_reals(result, arg.number());
  return Value::real(result);
}

template <class Number>
Number divisor(Number n) {
  if (n == 0) raise(L"divide by zero");
  return n;
}

Value fn_add(Call& call) { return fold(call, std::plus(), std::plus()); }
Value fn_subtract(Call& call) {
  if (call.size() != 1) return fold(call, std::minus(), std::minus());
  const Value& n = number(call, 0);
  if (n.is_integer()) return Value::integer(wrap(-std::int64_t{n.integer()}));
  return Value::real(-n.real());
}
Value fn_multiply(Call& call) { return fold(call, std::multiplies(), std::multiplies()); }
Value fn_divide(Call& call) {
  constexpr auto quotient = [](auto a, auto b) { return a / divisor(b); };
  return fold(call, quotient, quotient);
}
Value fn_rem(Call& call) {
  return fold(
      call, [](std::int64_t a, std::int64_t b) { return a % divisor(b); },
      [](double a, double b) { return std::fmod(a, divisor(b)); });
}
Value fn_max(Call& call) {
  constexpr auto larger = [](auto a, auto b) { return b > a ? b : a; };
  return fold(call, larger, larger);
}
Value fn_min(Call& call) {
  constexpr auto smaller = [](auto a, auto b) { return b < a ? b : a; };
  return fold(call, smaller, smaller);
}

Value plus(Call& call, std::int32_t step) {
  const Value& n = number(call, 0);
  if (n.is_integer()) return Value::integer(wrap(std::int64_t{n.integer()} + step));
  return Value::real(n.real() + step);
}
Value fn_increment(Call& call) { return plus(call, 1); }
Value fn_decrement(Call& call) { return plus(call, -1); }

Value fn_abs(Call& call) {
  const Value& n = number(call, 0);
  if (n.is_integer()) return Value::integer(wrap(std::llabs(n.integer())));
  return Value::real(std::fabs(n.real()));
}

// A real too large for an integer stays a real, cut.
Value fn_fix(Call& call) {
  const Value& n = number(call, 0);
  if (n.is_integer()) return n;
  const double whole = std::trunc(n.real());
  if (whole >= -2147483648.0 && whole <= 2147483647.0) {
    return Value::integer(static_cast<std::int32_t>(whole));
  }
  return Value::real(whole);
}

Value fn_float(Call& call) { return Value::real(call.real(0)); }

Value fn_sqrt(Call& call) {
  if (call.real(0) < 0) raise_undefined(call.arg(0));
  return Value::real(std::sqrt(call.real(0)));
}
Value fn_log(Call& call) {
  if (!(call.real(0) > 0)) raise_undefined(call.arg(0));
  return Value::real(std::log(call.real(0)));
}
Value fn_exp(Call& call) { return Value::real(std::exp(call.real(0))); }
Value fn_sin(Call& call) { return Value::real(std::sin(call.real(0))); }
Value fn_cos(Call& call) { return Value::real(std::cos(call.real(0))); }
Value fn_atan(Call& call) {
  return Value::real(call.has(1) ? std::atan2(call.real(0), call.real(1))
                                 : std::atan(call.real(0)));
}

// Two integers give an integer while it fits.
Value fn_expt(Call& call) {
  const Value &base = number(call, 0), &power = number(call, 1);
  if (base.number() == 0.0 && power.number() < 0) raise(L"divide by zero");
  const double result = std::pow(base.number(), power.number());
  if (std::isnan(result)) raise_undefined(base);
  if (base.is_integer() && power.is_integer() && power.integer() >= 0 &&
      std::fabs(result) <= 2147483647.0) {
    return Value::integer(static_cast<std::int32_t>(result));
  }
  return Value::real(result);
}

Value fn_gcd(Call& call) {
  std::int64_t a = std::llabs(call.integer(0)), b = std::llabs(call.integer(1));
  while (b != 0) a = std::exchange(b, a % b);
  return Value::integer(wrap(a));
}

// --- Bits

template <class Operation>
Value fold_bits(Call& call, std::int32_t start, Operation operation) {
  std::int32_t result = start;
  for (std::size_t i = 0; i < call.size(); ++i) result = operation(result, call.integer(i));
  return Value::integer(result);
}
Value fn_logand(Call& call) {
  if (call.size() == 0) return Value::integer(0);
  return fold_bits(call, -1, [](std::int32_t a, std::int32_t b) { return a & b; });
}
Value fn_logior(Call& call) {
  return fold_bits(call, 0, [](std::int32_t a, std::int32_t b) { return a | b; });
}
Value fn_complement(Call& call) { return Value::integer(~call.integer(0)); }

// Bits shifted out are lost, zeros come in, to the right as well.
Value fn_lsh(Call& call) {
  const auto bits = static_cast<std::uint32_t>(call.integer(0));
  const std::int32_t by = call.integer(1);
  if (by <= -32 || by >= 32) return Value::integer(0);
  return Value::integer(static_cast<std::int32_t>(by >= 0 ? bits << by : bits >> -by));
}

// The function number is a truth table: 1 for both set, 2 for a only, 4 for b only, 8 for none.
Value fn_boole(Call& call) {
  const std::int32_t table = call.integer(0);
  std::uint32_t a = static_cast<std::uint32_t>(call.integer(1));
  for (std::size_t i = 2; i < call.size(); ++i) {
    const auto b = static_cast<std::uint32_t>(call.integer(i));
    a = ((table & 1) != 0 ? a & b : 0) | ((table & 2) != 0 ? a & ~b : 0) |
        ((table & 4) != 0 ? ~a & b : 0) | ((table & 8) != 0 ? ~a & ~b : 0);
  }
  return Value::integer(static_cast<std::int32_t>(a));
}

Value fn_minusp(Call& call) { return call.truth(call.real(0) < 0); }
Value fn_zerop(Call& call) { return call.truth(call.real(0) == 0); }

// clang-format off
constexpr Builtin kNumberFunctions[] = {
    {"+",      0, kMany, fn_add,        "(+ n ...)",           "the sum; integers wrap at 32 bits"},
    {"-",      0, kMany, fn_subtract,   "(- n ...)",           "the first number less the others; one number negated"},
    {"*",      0, kMany, fn_multiply,   "(* n ...)",           "the product"},
    {"/",      0, kMany, fn_divide,     "(/ n ...)",           "the first number divided by the others; integers are cut"},
    {"1+",     1, 1,     fn_increment,  "(1+ n)",              "n plus one"},
    {"1-",     1, 1,     fn_decrement,  "(1- n)",              "n less one"},
    {"rem",    0, kMany, fn_rem,        "(rem n ...)",         "the remainder of the division, with the sign of n"},
    {"max",    0, kMany, fn_max,        "(max n ...)",         "the largest number"},
    {"min",    0, kMany, fn_min,        "(min n ...)",         "the smallest number"},
    {"abs",    1, 1,     fn_abs,        "(abs n)",             "n without its sign"},
    {"fix",    1, 1,     fn_fix,        "(fix n)",             "n without its decimals, an integer"},
    {"float",  1, 1,     fn_float,      "(float n)",           "n as a real"},
    {"sqrt",   1, 1,     fn_sqrt,       "(sqrt n)",            "the square root, a real"},
    {"exp",    1, 1,     fn_exp,        "(exp n)",             "e to the power n"},
    {"log",    1, 1,     fn_log,        "(log n)",             "the natural logarithm"},
    {"expt",   2, 2,     fn_expt,       "(expt base power)",   "base to the power; an integer for two integers"},
    {"sin",    1, 1,     fn_sin,        "(sin angle)",         "the sine; radians"},
    {"cos",    1, 1,     fn_cos,        "(cos angle)",         "the cosine; radians"},
    {"atan",   1, 2,     fn_atan,       "(atan y [x])",        "the angle of the slope y/x, in radians"},
    {"gcd",    2, 2,     fn_gcd,        "(gcd i j)",           "the greatest common divisor"},
    {"logand", 0, kMany, fn_logand,     "(logand i ...)",      "the bits set in all"},
    {"logior", 0, kMany, fn_logior,     "(logior i ...)",      "the bits set in any"},
    {"~",      1, 1,     fn_complement, "(~ i)",               "the bits turned over"},
    {"lsh",    2, 2,     fn_lsh,        "(lsh i n)",           "the bits moved n places left, or right when n is negative"},
    {"boole",  2, kMany, fn_boole,      "(boole table i ...)", "bits combined by a truth table (1 and, 6 xor, 7 or, 8 nor)"},
    {"minusp", 1, 1,     fn_minusp,     "(minusp n)",          "T for a negative number"},
    {"zerop",  1, 1,     fn_zerop,      "(zerop n)",           "T for zero"},
};
// clang-format on

}  // namespace

std::span<const Builtin> number_functions() { return kNumberFunctions; }

}  // namespace cad::lisp
