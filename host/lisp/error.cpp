#include "host/lisp/error.h"

#include <utility>

#include "host/lisp/printer.h"

namespace cad::lisp {
void raise(std::wstring message) { throw LispError{std::move(message)}; }

void raise_bad_type(std::wstring_view predicate, const Value& found) {
  std::wstring message = L"bad argument type: ";
  raise(message.append(predicate).append(L": ").append(quoted_start(found)));
}

void raise_bad_value(std::wstring_view wanted, const Value& found) {
  std::wstring message = L"bad argument value: ";
  raise(message.append(wanted).append(L": ").append(quoted_start(found)));
}

}  // namespace cad::lisp
