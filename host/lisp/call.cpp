#include <utility>

#include "host/lisp/builtin.h"
#include "host/lisp/interpreter.h"

namespace cad::lisp {
namespace {

bool is_function(const Value& value) {
  switch (value.kind()) {
    case Kind::kSubr:
    case Kind::kSpecialForm:
    case Kind::kUsubr:
    case Kind::kExternal:
    case Kind::kSymbol:
    case Kind::kCons:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::int32_t Call::integer(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is_integer()) raise_bad_type(L"fixnump", value);
  return value.integer();
}

double Call::real(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is_number()) raise_bad_type(L"numberp", value);
  return value.number();
}

std::wstring_view Call::string(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is_string()) raise_bad_type(L"stringp", value);
  return value.text();
}

List Call::list(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is_list()) raise_bad_type(L"listp", value);
  return List(value);
}

Symbol& Call::symbol(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is_symbol()) raise_bad_type(L"symbolp", value);
  return *value.symbol();
}

std::uint64_t Call::ename(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is_ename()) raise_bad_type(L"lentityp", value);
  return value.ename();
}

Pickset& Call::pickset(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is(Kind::kPickset)) raise_bad_type(L"lselsetp", value);
  return *value.pickset();
}

File& Call::file(std::size_t i) const {
  const Value& value = arg(i);
  if (!value.is(Kind::kFile)) raise_bad_type(L"streamp", value);
  return *value.file();
}

const Value& Call::function(std::size_t i) const {
  const Value& value = arg(i);
  if (!is_function(value)) raise_bad_type(L"functionp", value);
  return value;
}

Value Call::truth(bool condition) const { return interp_.truth(condition); }

void* Call::owner_pointer() const { return interp_.services().owner; }

Symbol& Forms::next_symbol() {
  const Value& form = next();
  if (!form.is_symbol()) raise_bad_type(L"symbolp", form);
  return *form.symbol();
}

}  // namespace cad::lisp
