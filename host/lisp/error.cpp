#include "host/lisp/error.h"

#include <utility>

#include "host/lisp/printer.h"

namespace cad::lisp {
namespace {

// A message may quote any value; nobody reads more than this of it.
constexpr std::size_t kLongestQuote = 2000;

[[noreturn]] void raise_about(std::wstring message, std::wstring_view wanted, const Value& found) {
  message.append(wanted).append(L": ");
  std::wstring quote = to_text(found, Quoting::kPrin1);
  if (quote.size() > kLongestQuote) quote.replace(kLongestQuote, quote.npos, L"...");
  raise(std::move(message) + quote);
}

}  // namespace

void raise(std::wstring message) { throw LispError{std::move(message)}; }

void raise_bad_type(std::wstring_view predicate, const Value& found) {
  raise_about(L"bad argument type: ", predicate, found);
}

void raise_bad_value(std::wstring_view wanted, const Value& found) {
  raise_about(L"bad argument value: ", wanted, found);
}

}  // namespace cad::lisp
