#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "host/lisp/interpreter.h"
#include "host/lisp/tables.h"

namespace cad::lisp {
namespace {

constexpr double kTwoPi = 6.28318530717958647692;

struct Point {
  std::array<double, 3> at{};
  bool has_z = false;

  Point minus(const Point& other) const {
    return {{at[0] - other.at[0], at[1] - other.at[1], at[2] - other.at[2]}, has_z};
  }
  Point plus_scaled(const Point& direction, double t) const {
    return {{at[0] + t * direction.at[0], at[1] + t * direction.at[1], at[2] + t * direction.at[2]},
            has_z};
  }
  double dot(const Point& b) const { return at[0] * b.at[0] + at[1] * b.at[1] + at[2] * b.at[2]; }
  Point cross(const Point& b) const {
    return {{at[1] * b.at[2] - at[2] * b.at[1], at[2] * b.at[0] - at[0] * b.at[2],
             at[0] * b.at[1] - at[1] * b.at[0]},
            true};
  }
};

// A list of two or three numbers.
Point point(Call& call, std::size_t i) {
  const Value& value = call.arg(i);
  Point result;
  std::size_t count = 0;
  for (const Value& number : List(value)) {
    if (count == 3 || !number.is_number()) raise_bad_type(L"2D/3D point", value);
    result.at[count++] = number.number();
  }
  if (count < 2) raise_bad_type(L"2D/3D point", value);
  result.has_z = count == 3;
  return result;
}

Value to_list(Interpreter& interp, const Point& p) {
  const Value items[] = {Value::real(p.at[0]), Value::real(p.at[1]), Value::real(p.at[2])};
  return interp.list(std::span(items, p.has_z ? 3 : 2));
}

Point flat(Point p) {
  p.at[2] = 0;
  p.has_z = false;
  return p;
}

// In the plane when either point is.
Value fn_distance(Call& call) {
  Point a = point(call, 0), b = point(call, 1);
  if (!a.has_z || !b.has_z) a = flat(a), b = flat(b);
  const Point d = b.minus(a);
  return Value::real(std::hypot(d.at[0], d.at[1], d.at[2]));
}

// From 0 up to a full turn, in the XY plane.
Value fn_angle(Call& call) {
  const Point d = point(call, 1).minus(point(call, 0));
  double angle = std::atan2(d.at[1], d.at[0]);
  if (angle < 0) angle += kTwoPi;
  return Value::real(angle == 0.0 || angle >= kTwoPi ? 0.0 : angle);
}

Value fn_polar(Call& call) {
  Point p = point(call, 0);
  p.at[0] += std::cos(call.real(1)) * call.real(2);
  p.at[1] += std::sin(call.real(1)) * call.real(2);
  return to_list(call.interp(), p);
}

// Where the lines a + t*u and b + s*v meet. Lines in space must pass within a hair of each other.
std::optional<Point> intersection(const Point& a, const Point& u, const Point& b, const Point& v,
                                  bool within) {
  constexpr double kTolerance = 1e-10;
  const Point normal = u.cross(v);
  const double square = normal.dot(normal);
  if (square <= kTolerance * kTolerance * u.dot(u) * v.dot(v)) return std::nullopt;
  const Point ab = b.minus(a);
  const double size = std::max(std::sqrt(ab.dot(ab)), 1.0);
  if (std::fabs(ab.dot(normal)) > 1e-8 * size * std::sqrt(square)) return std::nullopt;
  const double t = ab.cross(v).dot(normal) / square;
  const double s = ab.cross(u).dot(normal) / square;
  const auto inside = [](double x) { return x >= -kTolerance && x <= 1 + kTolerance; };
  if (within && !(inside(t) && inside(s))) return std::nullopt;
  return a.plus_scaled(u, t);
}

Value fn_inters(Call& call) {
  std::array<Point, 4> p;
  for (std::size_t i = 0; i < 4; ++i) p[i] = point(call, i);
  if (!std::ranges::all_of(p, &Point::has_z)) std::ranges::transform(p, p.begin(), flat);
  const bool within = !call.has(4) || static_cast<bool>(call.arg(4));
  const auto found = intersection(p[0], p[1].minus(p[0]), p[2], p[3].minus(p[2]), within);
  return found ? to_list(call.interp(), *found) : Value();
}

// clang-format off
constexpr Builtin kGeometryFunctions[] = {
    {"distance", 2, 2, fn_distance, "(distance p q)",              "the distance; in the plane when either point is"},
    {"angle",    2, 2, fn_angle,    "(angle p q)",                 "the direction from p to q in the XY plane, radians"},
    {"polar",    3, 3, fn_polar,    "(polar p angle distance)",    "the point at that direction and distance"},
    {"inters",   4, 5, fn_inters,   "(inters p q r s [onsegment])", "where two lines meet; anywhere when onsegment is nil"},
};
// clang-format on

}  // namespace

std::span<const Builtin> geometry_functions() { return kGeometryFunctions; }

}  // namespace cad::lisp
