// vlax-curve-...: curves of the drawing, measured.

#include <cmath>
#include <optional>

#include "host/app/builtin_tables.h"
#include "host/app/data/entget.h"
#include "host/app/prompt/values.h"
#include "host/db/curve.h"
#include "host/db/drawing.h"
#include "host/lisp/error.h"
#include "host/lisp/interpreter.h"

namespace cad {
namespace {

using lisp::Call;
using lisp::Interpreter;
using lisp::Value;

/// The curve of the first argument. Whatever is no curve is an error, as the host has it.
Curve curve_argument(Call& call) {
  const AcDbObjectId id = id_of_name(call.ename(0));
  std::optional<Curve> curve = id.isErased() ? std::nullopt : curve_of(id);
  if (!curve) lisp::raise_bad_type(L"curve", call.arg(0));
  return std::move(*curve);
}

AcGePoint3d point_argument(Call& call, std::size_t i) {
  const std::optional<AcGePoint3d> point = point_of(call.arg(i));
  if (!point) lisp::raise_bad_type(L"2D/3D point", call.arg(i));
  return *point;
}

Value vector_value(Interpreter& interp, const AcGeVector3d& v) {
  return list_of(interp, AcGePoint3d::kOrigin + v);
}

/// A parameter or distance that is on the curve; a hair outside, as sums of lengths give it, counts
/// as the end.
std::optional<double> within(double value, double least, double most) {
  const double slack = 1e-9 * std::fmax(1.0, std::fabs(value));
  if (!(value >= least - slack && value <= most + slack)) return std::nullopt;
  return std::fmin(std::fmax(value, least), most);
}

std::optional<double> param_argument(Call& call, const Curve& curve) {
  return within(call.real(1), curve.start_param(), curve.end_param());
}

std::optional<double> param_of_distance(Call& call, const Curve& curve) {
  const double least = curve.is_bounded() ? 0.0 : curve.start_param();
  const auto distance = within(call.real(1), least, curve.length());
  return distance ? std::optional(curve.param_at_distance(*distance)) : std::nullopt;
}

Value real_or_nil(std::optional<double> number) {
  return number && std::isfinite(*number) ? Value::real(*number) : Value();
}

Value fn_start_param(Call& call) { return real_or_nil(curve_argument(call).start_param()); }
Value fn_end_param(Call& call) { return real_or_nil(curve_argument(call).end_param()); }

Value point_at(Call& call, const Curve& curve, double param) {
  return std::isfinite(param) ? list_of(call.interp(), curve.point_at(param)) : Value();
}

Value fn_start_point(Call& call) {
  const Curve curve = curve_argument(call);
  return point_at(call, curve, curve.start_param());
}

Value fn_end_point(Call& call) {
  const Curve curve = curve_argument(call);
  return point_at(call, curve, curve.end_param());
}

Value fn_is_closed(Call& call) { return call.truth(curve_argument(call).is_closed()); }
Value fn_is_periodic(Call& call) { return call.truth(curve_argument(call).is_periodic()); }
Value fn_is_planar(Call& call) {
  return call.truth(curve_argument(call).plane_normal().has_value());
}

Value fn_area(Call& call) {
  const Curve curve = curve_argument(call);
  if (!curve.is_bounded() || !curve.plane_normal()) return Value();
  return Value::real(curve.area());
}

Value fn_point_at_param(Call& call) {
  const Curve curve = curve_argument(call);
  const auto param = param_argument(call, curve);
  return param ? point_at(call, curve, *param) : Value();
}

Value fn_param_at_point(Call& call) {
  const Curve curve = curve_argument(call);
  return real_or_nil(curve.param_at(point_argument(call, 1)));
}

Value fn_dist_at_param(Call& call) {
  const Curve curve = curve_argument(call);
  const auto param = param_argument(call, curve);
  return param ? real_or_nil(curve.distance_at(*param)) : Value();
}

Value fn_param_at_dist(Call& call) {
  const Curve curve = curve_argument(call);
  return real_or_nil(param_of_distance(call, curve));
}

Value fn_dist_at_point(Call& call) {
  const Curve curve = curve_argument(call);
  const auto param = curve.param_at(point_argument(call, 1));
  return param ? real_or_nil(curve.distance_at(*param)) : Value();
}

Value fn_point_at_dist(Call& call) {
  const Curve curve = curve_argument(call);
  const auto param = param_of_distance(call, curve);
  return param ? point_at(call, curve, *param) : Value();
}

Value fn_first_derivative(Call& call) {
  const Curve curve = curve_argument(call);
  const auto param = param_argument(call, curve);
  return param ? vector_value(call.interp(), curve.first_derivative(*param)) : Value();
}

Value fn_second_derivative(Call& call) {
  const Curve curve = curve_argument(call);
  const auto param = param_argument(call, curve);
  return param ? vector_value(call.interp(), curve.second_derivative(*param)) : Value();
}

Value fn_closest_point(Call& call) {
  const Curve curve = curve_argument(call);
  const AcGePoint3d given = point_argument(call, 1);
  return list_of(call.interp(), curve.closest_point(given, static_cast<bool>(call.arg(2))));
}

Value fn_closest_in_projection(Call& call) {
  const Curve curve = curve_argument(call);
  const AcGePoint3d given = point_argument(call, 1);
  const AcGeVector3d normal = point_argument(call, 2).asVector();
  if (normal.isZeroLength()) return Value();
  const bool extend = static_cast<bool>(call.arg(3));
  return list_of(call.interp(), curve.nearest_in_projection(given, normal, extend).point);
}

// clang-format off
constexpr lisp::Builtin kCurveFunctions[] = {
    {"vlax-curve-getstartparam",    1, 1, fn_start_param,       "(vlax-curve-getStartParam curve)",           "the parameter at the start; nil for a curve without one"},
    {"vlax-curve-getendparam",      1, 1, fn_end_param,         "(vlax-curve-getEndParam curve)",             "the parameter at the end; nil for a curve without one"},
    {"vlax-curve-getstartpoint",    1, 1, fn_start_point,       "(vlax-curve-getStartPoint curve)",           "where the curve starts"},
    {"vlax-curve-getendpoint",      1, 1, fn_end_point,         "(vlax-curve-getEndPoint curve)",             "where the curve ends"},
    {"vlax-curve-isclosed",         1, 1, fn_is_closed,         "(vlax-curve-isClosed curve)",                "whether the curve ends where it starts"},
    {"vlax-curve-isperiodic",       1, 1, fn_is_periodic,       "(vlax-curve-isPeriodic curve)",              "whether the curve repeats itself"},
    {"vlax-curve-isplanar",         1, 1, fn_is_planar,         "(vlax-curve-isPlanar curve)",                "whether the curve lies in a plane"},
    {"vlax-curve-getarea",          1, 1, fn_area,              "(vlax-curve-getArea curve)",                 "what the curve encloses, an open one with the line between its ends; nil when it lies in no plane"},
    {"vlax-curve-getpointatparam",  2, 2, fn_point_at_param,    "(vlax-curve-getPointAtParam curve param)",   "the point at a parameter; nil beyond the ends"},
    {"vlax-curve-getparamatpoint",  2, 2, fn_param_at_point,    "(vlax-curve-getParamAtPoint curve point)",   "the parameter at a point; nil for one beside the curve"},
    {"vlax-curve-getdistatparam",   2, 2, fn_dist_at_param,     "(vlax-curve-getDistAtParam curve param)",    "the length from the start to a parameter"},
    {"vlax-curve-getparamatdist",   2, 2, fn_param_at_dist,     "(vlax-curve-getParamAtDist curve distance)", "the parameter at a length from the start; nil beyond the end"},
    {"vlax-curve-getdistatpoint",   2, 2, fn_dist_at_point,     "(vlax-curve-getDistAtPoint curve point)",    "the length from the start to a point; nil for one beside the curve"},
    {"vlax-curve-getpointatdist",   2, 2, fn_point_at_dist,     "(vlax-curve-getPointAtDist curve distance)", "the point at a length from the start; nil beyond the end"},
    {"vlax-curve-getfirstderiv",    2, 2, fn_first_derivative,  "(vlax-curve-getFirstDeriv curve param)",     "the first derivative by the parameter: the direction there"},
    {"vlax-curve-getsecondderiv",   2, 2, fn_second_derivative, "(vlax-curve-getSecondDeriv curve param)",    "the second derivative by the parameter"},
    {"vlax-curve-getclosestpointto", 2, 3, fn_closest_point,    "(vlax-curve-getClosestPointTo curve point [extend])", "the point of the curve nearest to a point; with extend of the curve prolonged"},
    {"vlax-curve-getclosestpointtoprojection", 3, 4, fn_closest_in_projection, "(vlax-curve-getClosestPointToProjection curve point normal [extend])", "the point of the curve nearest to a point when both are seen along the normal"},
};
// clang-format on

}  // namespace

std::span<const lisp::Builtin> curve_functions() { return kCurveFunctions; }

}  // namespace cad
