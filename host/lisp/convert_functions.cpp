#include <cmath>

#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"
#include "host/lisp/units.h"

namespace cad::lisp {
namespace {

constexpr double kTwoPi = 6.28318530717958647692;

// A setting given as an argument, or the system variable that stands in for it.
int setting(Call& call, std::size_t i, std::wstring_view variable, int fallback) {
  return call.has(i) ? call.integer(i) : call.interp().system_integer(variable, fallback);
}

LengthUnits length_units(Call& call) {
  const int mode = setting(call, 1, L"LUNITS", 2);
  if (mode < 1 || mode > 5) raise_bad_value(L"units mode", call.arg(1));
  return static_cast<LengthUnits>(mode);
}

AngleUnits angle_units(Call& call) {
  const int mode = setting(call, 1, L"AUNITS", 0);
  if (mode < 0 || mode > 4) raise_bad_value(L"units mode", call.arg(1));
  return static_cast<AngleUnits>(mode);
}

Value fn_rtos(Call& call) {
  const double value = call.real(0);
  const LengthUnits units = length_units(call);
  return call.interp().string(length_text(value, units, setting(call, 2, L"LUPREC", 4),
                                          call.interp().system_integer(L"DIMZIN", 0)));
}

Value fn_distof(Call& call) {
  const auto value = parse_length(call.string(0), length_units(call));
  return value ? Value::real(*value) : Value();
}

// The zero direction and the sense of counting are the drawing's.
struct AngleFrame {
  double base = 0;
  bool clockwise = false;
};
AngleFrame angle_frame(Interpreter& interp) {
  AngleFrame frame;
  frame.clockwise = interp.system_integer(L"ANGDIR", 0) == 1;
  if (interp.services().system_variable) {
    const Value base = interp.services().system_variable(interp, L"ANGBASE");
    if (base.is_number()) frame.base = base.number();
  }
  return frame;
}

Value fn_angtos(Call& call) {
  const AngleFrame frame = angle_frame(call.interp());
  double angle = call.real(0) - frame.base;
  if (frame.clockwise) angle = -angle;
  angle = std::isfinite(angle) ? std::fmod(angle, kTwoPi) : 0;
  if (angle < 0) angle += kTwoPi;
  const AngleUnits units = angle_units(call);
  return call.interp().string(angle_text(angle, units, setting(call, 2, L"AUPREC", 0)));
}

Value fn_angtof(Call& call) {
  const auto value = parse_angle(call.string(0), angle_units(call));
  if (!value) return Value();
  const AngleFrame frame = angle_frame(call.interp());
  return Value::real((frame.clockwise ? -*value : *value) + frame.base);
}

// clang-format off
constexpr Builtin kConvertFunctions[] = {
    {"rtos",   1, 3, fn_rtos,   "(rtos n [mode [precision]])",       "a length as text; modes 1 to 5 as LUNITS"},
    {"distof", 1, 2, fn_distof, "(distof text [mode])",              "the length a text spells; nil if none"},
    {"angtos", 1, 3, fn_angtos, "(angtos angle [mode [precision]])", "an angle as text; modes 0 to 4 as AUNITS"},
    {"angtof", 1, 2, fn_angtof, "(angtof text [mode])",              "the angle a text spells, in radians; nil if none"},
};
// clang-format on

}  // namespace

std::span<const Builtin> convert_functions() { return kConvertFunctions; }

}  // namespace cad::lisp
