// Kinds whose groups depend on each other: arcs, ellipses, block references, dimensions.

#include <cmath>
#include <numbers>
#include <utility>

#include "host/db/transform_rules.h"

namespace cad {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kFullTurn = 2.0 * std::numbers::pi;

AcGeVector3d direction(double degrees) {
  return {std::cos(degrees * kDegree), std::sin(degrees * kDegree), 0};
}

/// The angle of an object that is drawn mirrored in itself: its X axis points the other way.
double flipped_angle(const ObjectMap& map, double degrees) {
  return map.mirrored() ? normal_degrees(map.angle(degrees) + 180.0) : map.angle(degrees);
}

bool at_right_angles(const AcGeVector3d& a, const AcGeVector3d& b) {
  return std::fabs(a.dotProduct(b)) <= 1e-9 * a.length() * b.length();
}

double along(const ObjectMap& map, const AcGeVector3d& axis) {
  return map.only_moves() ? 1.0 : map.uniform() ? map.scale() : map.own_vector(axis).length();
}

}  // namespace

Acad::ErrorStatus map_arc(TagSheet& sheet, const ObjectMap& map, MirroredText) {
  const std::size_t start = sheet.find({}, 50);
  const std::size_t end = sheet.find({}, 51);
  if (start == TagSheet::kNone || end == TagSheet::kNone) return Acad::eInvalidInput;
  double from = map.angle(sheet.real(start));
  double to = map.angle(sheet.real(end));
  if (map.mirrored()) std::swap(from, to);  // arcs run counter-clockwise
  sheet.set_real(start, from);
  sheet.set_real(end, to);
  return Acad::eOk;
}

Acad::ErrorStatus map_ellipse(TagSheet& sheet, const ObjectMap& map, MirroredText) {
  const std::size_t axis = sheet.find({}, 11);
  const std::size_t ratio = sheet.find({}, 40);
  if (axis == TagSheet::kNone || ratio == TagSheet::kNone) return Acad::eInvalidInput;
  const AcGeVector3d major = sheet.point(axis).asVector();
  const AcGeVector3d minor = map.old_normal().normal().crossProduct(major) * sheet.real(ratio);
  double start = sheet.real({}, 41, 0.0);
  double end = sheet.real({}, 42, kFullTurn);
  const bool whole = std::fabs(end - start) >= kFullTurn - 1e-9;

  AcGeVector3d a = map.vector(major);
  if (!map.uniform()) {
    // The images of the axes are conjugate half-diameters; the axes proper are where the radius is
    // longest and shortest.
    const AcGeVector3d b = map.vector(minor);
    double shift = 0.5 * std::atan2(2.0 * a.dotProduct(b), a.lengthSqrd() - b.lengthSqrd());
    const AcGeVector3d longest = a * std::cos(shift) + b * std::sin(shift);
    const AcGeVector3d shortest = b * std::cos(shift) - a * std::sin(shift);
    if (shortest.length() == 0 || longest.length() == 0) return Acad::eInvalidInput;
    sheet.set_real(ratio, std::min(1.0, shortest.length() / longest.length()));
    a = longest;
    if (!whole) start -= shift, end -= shift;
  }
  if (map.mirrored() && !whole) start = std::exchange(end, -start), start = -start;
  if (!whole) {
    const double turns = std::floor(start / kFullTurn) * kFullTurn;
    if (turns != 0) start -= turns, end -= turns;
  }
  sheet.set_point(axis, AcGePoint3d::kOrigin + a);
  sheet.put_real(41, start, 0.0, {40});
  sheet.put_real(42, end, kFullTurn, {41, 40});
  return Acad::eOk;
}

Acad::ErrorStatus map_polyline(TagSheet& sheet, const ObjectMap& map, MirroredText) {
  // Its point only holds the elevation, of flat ones.
  const std::size_t point = sheet.find({}, 10);
  if (!is_flat_polyline(sheet) || point == TagSheet::kNone) return Acad::eOk;
  AcGePoint3d elevation = sheet.point(point);
  elevation.z = map.own_point({0, 0, elevation.z}).z;
  sheet.set_point(point, elevation);
  return Acad::eOk;
}

Acad::ErrorStatus map_block_reference(TagSheet& sheet, const ObjectMap& map, MirroredText) {
  const double turn = sheet.real({}, 50, 0.0);
  const AcGeVector3d axes[3] = {direction(turn), direction(turn + 90), AcGeVector3d::kZAxis};
  if (!map.uniform()) {
    const AcGeVector3d images[3] = {map.own_vector(axes[0]), map.own_vector(axes[1]),
                                    map.own_vector(axes[2])};
    for (int i = 0; i < 3; ++i) {
      if (!at_right_angles(images[i], images[(i + 1) % 3])) return Acad::eCannotScaleNonUniformly;
    }
  }
  const double side = map.mirrored() ? -1.0 : 1.0;
  const double scales[3] = {side * along(map, axes[0]), along(map, axes[1]), along(map, axes[2])};
  sheet.put_real(41, sheet.real({}, 41, 1.0) * scales[0], 1.0, {10, 2});
  sheet.put_real(42, sheet.real({}, 42, 1.0) * scales[1], 1.0, {41, 10, 2});
  sheet.put_real(43, sheet.real({}, 43, 1.0) * scales[2], 1.0, {42, 41, 10, 2});
  double angle = flipped_angle(map, turn);
  if (!map.uniform()) {
    const AcGeVector3d x = map.own_vector(axes[0]) * side;
    angle = normal_degrees(tidy_degrees(std::atan2(x.y, x.x) / kDegree));
  }
  sheet.put_real(50, angle, 0.0, {43, 42, 41, 10, 2});
  sheet.put_real(44, sheet.real({}, 44, 0.0) * scales[0], 0.0, {71, 70});
  sheet.put_real(45, sheet.real({}, 45, 0.0) * scales[1], 0.0, {44, 71, 70});
  return Acad::eOk;
}

Acad::ErrorStatus map_shape(TagSheet& sheet, const ObjectMap& map, MirroredText) {
  sheet.put_real(50, flipped_angle(map, sheet.real({}, 50, 0.0)), 0.0, {2});
  const double factor = sheet.real({}, 41, 1.0);
  sheet.put_real(41, map.mirrored() ? -factor : factor, 1.0, {50, 2});
  return Acad::eOk;
}

Acad::ErrorStatus map_dimension(TagSheet& sheet, const ObjectMap& map, MirroredText text) {
  constexpr std::int64_t kKindBits = 7, kAngular = 2, kThreePointAngular = 5;
  const std::int64_t kind = sheet.integer({}, 70, 0) & kKindBits;
  const std::size_t measured = sheet.find({}, 42);
  if (measured != TagSheet::kNone && kind != kAngular && kind != kThreePointAngular) {
    sheet.set_real(measured, sheet.real(measured) * map.scale());
  }
  const std::size_t slant = sheet.find({}, 52);
  if (slant != TagSheet::kNone && map.mirrored()) {
    sheet.set_real(slant, normal_degrees(-sheet.real(slant)));
  }
  const std::size_t turn = sheet.find({}, 53);  // of the text
  if (turn != TagSheet::kNone) {
    double angle = map.angle(sheet.real(turn));
    const bool readable = angle <= 90 || angle > 270;
    if (map.mirrored() && text == MirroredText::kReadable && !readable) {
      angle = normal_degrees(angle + 180);
    }
    sheet.set_real(turn, angle);
  }
  return Acad::eOk;
}

}  // namespace cad
