// What runs: the calls that led to an error, and the calls of traced functions.

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/lisp/interpreter.h"
#include "host/lisp/names.h"
#include "host/lisp/printer.h"

namespace cad::lisp {
namespace {

constexpr std::size_t kMostArgument = 60;  // characters of one argument
constexpr std::size_t kFirstCalls = 20;    // of a long trace
constexpr std::size_t kLastCalls = 5;
constexpr std::uint32_t kDeepestShown = 40;  // beyond, traced calls are indented no further

std::wstring function_name(const Usubr& function) {
  return function.name != nullptr ? function.name->name : L"lambda";
}

std::wstring short_text(const Value& value) {
  std::wstring text = quoted_start(value);
  if (text.size() <= kMostArgument) return text;
  text.resize(kMostArgument);
  return text + L"...";
}

std::wstring call_text(std::wstring_view name, std::span<const Value> args) {
  std::wstring text = L"(";
  text += name;
  for (const Value& arg : args) text += L" " + short_text(arg);
  return text + L")";
}

}  // namespace

std::wstring Interpreter::calls_under_way(const LispError* error) const {
  // From the innermost binding outwards: below a binding its symbol has the value it saved.
  std::vector<const Value*> bound(bindings_.size());  // what each binding stands for now
  std::unordered_map<const Symbol*, const Value*> outer;
  std::vector<std::size_t> entries;
  for (std::size_t i = bindings_.size(); i-- > 0;) {
    const Binding& binding = bindings_[i];
    if (binding.symbol == nullptr) {
      entries.push_back(i);
      continue;
    }
    const Value*& value = outer.try_emplace(binding.symbol, &binding.symbol->value).first->second;
    bound[i] = std::exchange(value, &binding.saved);
  }

  std::wstring text;
  if (error != nullptr && !error->call.empty()) text = L";   " + error->call + L"\n";
  for (std::size_t n = 0; n < entries.size(); ++n) {
    if (n == kFirstCalls && entries.size() > kFirstCalls + kLastCalls) {
      n = entries.size() - kLastCalls;
      text += L";   ... " + std::to_wstring(n - kFirstCalls) + L" more ...\n";
    }
    const Usubr& function = *bindings_[entries[n]].saved.usubr();
    std::vector<Value> args;
    for (std::size_t p = 1; p <= function.parameter_count; ++p)
      args.push_back(*bound[entries[n] + p]);
    text += L";   " + call_text(function_name(function), args) + L"\n";
  }
  return text;
}

// Only the innermost call is noted: those around it are seen by the functions they call.
Value Interpreter::call_subr_noted(const Builtin& row, std::span<const Value> args) {
  try {
    Call call(*this, row, args);
    return row.function(call);
  } catch (LispError& error) {
    if (error.call.empty()) error.call = call_text(symbol_name(std::string_view(row.name)), args);
    throw;
  }
}

void Interpreter::show_entry(const Usubr& function, std::span<const Value> args) {
  print((at_line_start_ ? L"" : L"\n") + std::wstring(2 * std::size_t{shown_depth_}, L' ') +
        L"Entering " + call_text(function_name(function), args) + L"\n");
  if (shown_depth_ < kDeepestShown) ++shown_depth_;
}

void Interpreter::show_result(const Value& result) {
  if (shown_depth_ > 0) --shown_depth_;
  print((at_line_start_ ? L"" : L"\n") + std::wstring(2 * std::size_t{shown_depth_}, L' ') +
        L"Result: " + quoted_start(result) + L"\n");
}

}  // namespace cad::lisp
