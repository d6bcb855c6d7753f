#include <string>

#include "host/app/builtin_tables.h"
#include "host/app/data/units_of_measure.h"
#include "host/base/codepage.h"
#include "host/lisp/error.h"
#include "host/lisp/heap.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Value;

Value fn_cvunit(Call& call) {
  const Value& value = call.arg(0);
  const auto from = unit_of_measure(to_utf8(call.string(1)));
  const auto to = unit_of_measure(to_utf8(call.string(2)));
  if (!value.is_number() && !value.is_cons()) lisp::raise_bad_type(L"numberp", value);
  if (!from || !to || !from->same_kind(*to)) return Value();
  const auto convert = [&](const Value& number) {
    if (!number.is_number()) lisp::raise_bad_type(L"numberp", number);
    return Value::real((number.number() * from->factor + from->offset - to->offset) / to->factor);
  };
  if (value.is_number()) return convert(value);
  lisp::ListBuilder numbers(call.interp().heap());
  for (const Value& number : lisp::List(value)) numbers.append(convert(number));
  return numbers.finish();
}

constexpr lisp::Builtin kUnitFunctions[] = {
    // name, arguments, function, usage, help
    {"cvunit", 3, 3, fn_cvunit, "(cvunit value from to)",
     "a number, or the numbers of a list, in another unit: \"feet\", \"km\", \"sq m\", \"m^3\", "
     "\"kg/m^2\"; nil for what is no unit or of another kind"},
};

}  // namespace

std::span<const lisp::Builtin> unit_functions() { return kUnitFunctions; }

}  // namespace cad
