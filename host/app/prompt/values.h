#pragma once

#include <optional>
#include <string>

#include "host/geometry/point3d.h"
#include "host/lisp/interpreter.h"
#include "host/lisp/value.h"

/// Points and numbers between LISP and the host.
namespace cad {

/// A list of two or three numbers, Z 0 unless given; empty for anything else.
std::optional<AcGePoint3d> point_of(const lisp::Value& value, double z = 0.0);
lisp::Value list_of(lisp::Interpreter& interp, const AcGePoint3d& point);

/// A number as somebody types it: as many digits as it takes, none behind the point unless needed.
std::wstring typed_number(double number);
std::wstring typed_point(const AcGePoint3d& point);
/// What a value given to a prompt looks like in the log.
std::wstring typed_value(const lisp::Value& value);

}  // namespace cad
