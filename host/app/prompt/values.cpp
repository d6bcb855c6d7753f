#include "host/app/prompt/values.h"

#include <charconv>
#include <cmath>

#include "host/lisp/printer.h"

namespace cad {

std::optional<AcGePoint3d> point_of(const lisp::Value& value, double z) {
  double numbers[3] = {0, 0, z};
  std::size_t count = 0;
  const lisp::Value* at = &value;
  for (; at->is_cons(); at = &at->cdr()) {
    const lisp::Value& item = at->car();
    if (count == 3 || !item.is_number() || !std::isfinite(item.number())) return std::nullopt;
    numbers[count++] = item.number();
  }
  if (count < 2 || !at->is_nil()) return std::nullopt;
  return AcGePoint3d(numbers[0], numbers[1], numbers[2]);
}

lisp::Value list_of(lisp::Interpreter& interp, const AcGePoint3d& point) {
  return interp.list(
      {lisp::Value::real(point.x), lisp::Value::real(point.y), lisp::Value::real(point.z)});
}

std::wstring typed_number(double number) {
  char digits[64];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 15);
  return std::wstring(digits, error == std::errc() ? end : digits);
}

std::wstring typed_point(const AcGePoint3d& point) {
  std::wstring text = typed_number(point.x) + L"," + typed_number(point.y);
  if (point.z != 0.0) text += L"," + typed_number(point.z);
  return text;
}

std::wstring typed_value(const lisp::Value& value) {
  if (value.is_number()) return typed_number(value.number());
  if (const auto point = point_of(value)) return typed_point(*point);
  return lisp::to_text(value, lisp::Quoting::kPrinc);
}

}  // namespace cad
