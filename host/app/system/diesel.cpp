#include "host/app/system/diesel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "host/app/system/picture_time.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/lisp/letters.h"
#include "host/lisp/units.h"

namespace cad {
namespace {

constexpr int kDeepest = 100;
const std::wstring kUnknown = L"??";

struct BadArguments {};

std::wstring number_text(double value) {
  if (value == std::trunc(value) && std::fabs(value) < 1e15) {
    return std::to_wstring(static_cast<std::int64_t>(value));
  }
  char text[40];
  std::snprintf(text, sizeof text, "%.12g", value);
  return from_utf8(text);
}

class Evaluator {
 public:
  using Arguments = std::span<const std::wstring>;

  explicit Evaluator(const DieselSurroundings& surroundings) : surroundings_(surroundings) {}

  std::wstring text(std::wstring_view source);

  // --- For the functions below

  const DieselSurroundings& surroundings() const { return surroundings_; }
  int setting(Arguments args, std::size_t i, std::wstring_view variable, int fallback) const;

 private:
  std::wstring call(std::wstring_view inside);

  const DieselSurroundings& surroundings_;
  int depth_ = 0;
};

using Arguments = Evaluator::Arguments;

double number(const std::wstring& text) {
  const auto value = parse_real(to_utf8(text));
  if (!value) throw BadArguments{};
  return *value;
}

std::int64_t whole(const std::wstring& text) {
  const double value = std::trunc(number(text));
  if (!(std::fabs(value) < 9e15)) throw BadArguments{};
  return static_cast<std::int64_t>(value);
}

int Evaluator::setting(Arguments args, std::size_t i, std::wstring_view variable,
                       int fallback) const {
  if (i < args.size()) return static_cast<int>(std::clamp<std::int64_t>(whole(args[i]), -1, 100));
  const auto value = surroundings_.number(variable);
  return value ? static_cast<int>(*value) : fallback;
}

// --- Functions

template <class Operation>
std::wstring fold(Arguments args, Operation operation) {
  double result = number(args[0]);
  for (const std::wstring& arg : args.subspan(1)) result = operation(result, number(arg));
  if (!std::isfinite(result)) throw BadArguments{};
  return number_text(result);
}
std::wstring fn_add(Evaluator&, Arguments args) { return fold(args, std::plus()); }
std::wstring fn_subtract(Evaluator&, Arguments args) { return fold(args, std::minus()); }
std::wstring fn_multiply(Evaluator&, Arguments args) { return fold(args, std::multiplies()); }
std::wstring fn_divide(Evaluator&, Arguments args) { return fold(args, std::divides()); }

template <class Operation>
std::wstring fold_bits(Arguments args, Operation operation) {
  std::int64_t result = whole(args[0]);
  for (const std::wstring& arg : args.subspan(1)) result = operation(result, whole(arg));
  return std::to_wstring(result);
}
std::wstring fn_and(Evaluator&, Arguments args) { return fold_bits(args, std::bit_and()); }
std::wstring fn_or(Evaluator&, Arguments args) { return fold_bits(args, std::bit_or()); }
std::wstring fn_xor(Evaluator&, Arguments args) { return fold_bits(args, std::bit_xor()); }

std::wstring truth(bool condition) { return condition ? L"1" : L"0"; }
std::wstring fn_same(Evaluator&, Arguments args) {
  return truth(number(args[0]) == number(args[1]));
}
std::wstring fn_differ(Evaluator&, Arguments args) {
  return truth(number(args[0]) != number(args[1]));
}
std::wstring fn_less(Evaluator&, Arguments args) {
  return truth(number(args[0]) < number(args[1]));
}
std::wstring fn_greater(Evaluator&, Arguments args) {
  return truth(number(args[0]) > number(args[1]));
}
std::wstring fn_at_most(Evaluator&, Arguments args) {
  return truth(number(args[0]) <= number(args[1]));
}
std::wstring fn_at_least(Evaluator&, Arguments args) {
  return truth(number(args[0]) >= number(args[1]));
}
std::wstring fn_eq(Evaluator&, Arguments args) { return truth(args[0] == args[1]); }

std::wstring fn_if(Evaluator&, Arguments args) {
  if (number(args[0]) != 0) return args[1];
  return args.size() > 2 ? args[2] : std::wstring();
}
std::wstring fn_eval(Evaluator& evaluator, Arguments args) { return evaluator.text(args[0]); }
std::wstring fn_fix(Evaluator&, Arguments args) { return std::to_wstring(whole(args[0])); }

std::wstring fn_getvar(Evaluator& evaluator, Arguments args) {
  return evaluator.surroundings().variable(args[0]);
}
std::wstring fn_getenv(Evaluator& evaluator, Arguments args) {
  return evaluator.surroundings().environment(args[0]);
}

/// Element n, from 0, of a text divided by commas.
std::wstring fn_index(Evaluator&, Arguments args) {
  std::wstring_view rest = args[1];
  for (std::int64_t n = whole(args[0]); n > 0; --n) {
    const std::size_t comma = rest.find(L',');
    if (comma == rest.npos) return {};
    rest.remove_prefix(comma + 1);
  }
  return std::wstring(rest.substr(0, rest.find(L',')));
}

std::wstring fn_nth(Evaluator&, Arguments args) {
  const std::int64_t n = whole(args[0]);
  if (n < 0 || n + 1 >= static_cast<std::int64_t>(args.size())) throw BadArguments{};
  return args[static_cast<std::size_t>(n) + 1];
}

/// The host shows as many characters of a status line.
std::wstring fn_linelen(Evaluator&, Arguments) { return L"240"; }
std::wstring fn_strlen(Evaluator&, Arguments args) { return std::to_wstring(args[0].size()); }

std::wstring fn_substr(Evaluator&, Arguments args) {
  const std::int64_t start = whole(args[1]);
  const std::int64_t length = args.size() > 2 ? whole(args[2]) : INT32_MAX;
  if (start < 1 || length < 0) throw BadArguments{};
  const auto from = std::min(static_cast<std::size_t>(start) - 1, args[0].size());
  return args[0].substr(from, static_cast<std::size_t>(length));
}

std::wstring fn_upper(Evaluator&, Arguments args) {
  std::wstring text = args[0];
  std::ranges::transform(text, text.begin(), lisp::to_upper);
  return text;
}

std::wstring fn_rtos(Evaluator& evaluator, Arguments args) {
  const int mode = evaluator.setting(args, 1, L"LUNITS", 2);
  if (mode < 1 || mode > 5) throw BadArguments{};
  return lisp::length_text(number(args[0]), static_cast<lisp::LengthUnits>(mode),
                           evaluator.setting(args, 2, L"LUPREC", 4),
                           evaluator.setting(args, 3, L"DIMZIN", 0));
}

std::wstring fn_angtos(Evaluator& evaluator, Arguments args) {
  constexpr double kTurn = 6.28318530717958647692;
  const int mode = evaluator.setting(args, 1, L"AUNITS", 0);
  double angle = std::fmod(number(args[0]), kTurn);
  if (mode < 0 || mode > 4) throw BadArguments{};
  if (angle < 0) angle += kTurn;
  return lisp::angle_text(angle, static_cast<lisp::AngleUnits>(mode),
                          evaluator.setting(args, 2, L"AUPREC", 0));
}

/// The picture may hold commas: they divide the arguments and are put back.
std::wstring fn_edtime(Evaluator&, Arguments args) {
  std::wstring picture = args[1];
  for (const std::wstring& more : args.subspan(2)) picture += L"," + more;
  return picture_of_time(number(args[0]), picture);
}

struct Row {
  std::wstring_view name;
  std::size_t min_args;
  std::size_t max_args;
  std::wstring (*function)(Evaluator&, Arguments);
};
constexpr std::size_t kMost = 9;  // arguments of one call

constexpr Row kFunctions[] = {
    {L"+", 1, kMost, fn_add},      {L"-", 1, kMost, fn_subtract},
    {L"*", 1, kMost, fn_multiply}, {L"/", 1, kMost, fn_divide},
    {L"=", 2, 2, fn_same},         {L"!=", 2, 2, fn_differ},
    {L"<", 2, 2, fn_less},         {L">", 2, 2, fn_greater},
    {L"<=", 2, 2, fn_at_most},     {L">=", 2, 2, fn_at_least},
    {L"and", 1, kMost, fn_and},    {L"or", 1, kMost, fn_or},
    {L"xor", 1, kMost, fn_xor},    {L"eq", 2, 2, fn_eq},
    {L"if", 2, 3, fn_if},          {L"eval", 1, 1, fn_eval},
    {L"fix", 1, 1, fn_fix},        {L"getvar", 1, 1, fn_getvar},
    {L"getenv", 1, 1, fn_getenv},  {L"index", 2, 2, fn_index},
    {L"nth", 2, kMost, fn_nth},    {L"linelen", 0, 0, fn_linelen},
    {L"strlen", 1, 1, fn_strlen},  {L"substr", 2, 3, fn_substr},
    {L"upper", 1, 1, fn_upper},    {L"rtos", 1, 4, fn_rtos},
    {L"angtos", 1, 3, fn_angtos},  {L"edtime", 2, kMost, fn_edtime},
};

// --- Reading

/// Where the parenthesis opened before `at` is closed; npos when it is not. Quotes hide others.
std::size_t closing(std::wstring_view source, std::size_t at) {
  int open = 1;
  bool in_quotes = false;
  for (; at < source.size(); ++at) {
    if (source[at] == L'"') in_quotes = !in_quotes;
    if (in_quotes) continue;
    if (source[at] == L'(') ++open;
    if (source[at] == L')' && --open == 0) return at;
  }
  return source.npos;
}

/// The parts between the commas of one call.
std::vector<std::wstring_view> parts_of(std::wstring_view inside) {
  std::vector<std::wstring_view> parts;
  std::size_t from = 0;
  int open = 0;
  bool in_quotes = false;
  for (std::size_t at = 0; at < inside.size(); ++at) {
    if (inside[at] == L'"') in_quotes = !in_quotes;
    if (in_quotes) continue;
    open += inside[at] == L'(';
    open -= inside[at] == L')';
    if (inside[at] != L',' || open > 0) continue;
    parts.push_back(inside.substr(from, at - from));
    from = at + 1;
  }
  parts.push_back(inside.substr(from));
  return parts;
}

/// A quoted argument is taken as it is, with "" for a quote.
std::optional<std::wstring> unquoted(std::wstring_view part) {
  if (part.size() < 2 || part.front() != L'"' || part.back() != L'"') return std::nullopt;
  std::wstring text;
  for (std::size_t i = 1; i + 1 < part.size(); ++i) {
    text += part[i];
    if (part[i] == L'"') ++i;
  }
  return text;
}

std::wstring Evaluator::call(std::wstring_view inside) {
  const std::vector<std::wstring_view> parts = parts_of(inside);
  const std::wstring name(parts[0]);
  const Row* const row = std::ranges::find_if(
      kFunctions, [&](const Row& candidate) { return equal_no_case(candidate.name, name); });
  if (row == std::end(kFunctions)) return L"$(" + name + L")" + kUnknown;
  std::vector<std::wstring> args;
  for (std::size_t i = 1; i < parts.size(); ++i) {
    std::optional<std::wstring> plain = unquoted(parts[i]);
    args.push_back(plain ? *std::move(plain) : text(parts[i]));
  }
  if (args.size() < row->min_args || args.size() > row->max_args)
    return L"$(" + name + L"," + kUnknown + L")";
  try {
    return row->function(*this, args);
  } catch (const BadArguments&) {
    return L"$(" + name + L"," + kUnknown + L")";
  }
}

std::wstring Evaluator::text(std::wstring_view source) {
  if (depth_ >= kDeepest) return L"$?";
  ++depth_;
  std::wstring out;
  for (std::size_t at = 0; at < source.size();) {
    if (!source.substr(at).starts_with(L"$(")) {
      out += source[at++];
      continue;
    }
    const std::size_t end = closing(source, at + 2);
    if (end == source.npos) {
      out += L"$?";
      break;
    }
    out += call(source.substr(at + 2, end - at - 2));
    at = end + 1;
  }
  --depth_;
  return out;
}

}  // namespace

std::wstring evaluate_diesel(std::wstring_view text, const DieselSurroundings& surroundings) {
  return Evaluator(surroundings).text(text);
}

}  // namespace cad
