#include "host/db/transform_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr double kNoise = 1e-9;  // relative, of maps put together from several

bool linear_part_is_identity(const AcGeMatrix3d& m) {
  for (unsigned row = 0; row < 3; ++row) {
    for (unsigned column = 0; column < 3; ++column) {
      if (m(row, column) != (row == column ? 1.0 : 0.0)) return false;
    }
  }
  return true;
}

bool is_uniform(const AcGeMatrix3d& m) {
  const AcGeVector3d axes[3] = {m.column(0), m.column(1), m.column(2)};
  const double square = axes[0].lengthSqrd();
  for (unsigned i = 0; i < 3; ++i) {
    if (std::fabs(axes[i].lengthSqrd() - square) > kNoise * square) return false;
    if (std::fabs(axes[i].dotProduct(axes[(i + 1) % 3])) > kNoise * square) return false;
  }
  return true;
}

/// A unit vector without the noise that would spoil the axes.
AcGeVector3d tidy_direction(AcGeVector3d v) {
  constexpr double kClose = 1e-12;
  for (unsigned i = 0; i < 3; ++i) {
    if (std::fabs(v[i]) < kClose) v[i] = 0;
    if (std::fabs(std::fabs(v[i]) - 1) < kClose) v[i] = v[i] < 0 ? -1 : 1;
  }
  return v;
}

}  // namespace

double normal_degrees(double degrees) {
  const double within = std::fmod(degrees, 360.0);
  if (within >= 0) return within;
  return within + 360.0 >= 360.0 ? 0.0 : within + 360.0;
}

double tidy_degrees(double degrees) {
  constexpr double kPerDegree = 1e9;
  constexpr double kClose = 1e-11;
  const double near = std::round(degrees * kPerDegree) / kPerDegree;
  return std::fabs(near - degrees) <= kClose ? near : degrees;
}

ObjectMap::ObjectMap(const AcGeMatrix3d& map, const AcGeVector3d& normal)
    : world_(map), old_normal_(normal) {
  const AcGeMatrix3d from = ocs_to_wcs(normal);
  only_moves_ = linear_part_is_identity(map);
  if (only_moves_) {
    normal_ = normal;
    own_.setTranslation(from.transpose() * map.translation());
    return;
  }
  uniform_ = is_uniform(map);
  mirrored_ = map.det() < 0;

  const AcGeVector3d unit = from.column(2);
  const AcGeVector3d raised = map * unit;
  AcGeVector3d across = (map * from.column(0)).crossProduct(map * from.column(1));
  if (across.dotProduct(raised) < 0) across = -across;
  normal_ = tidy_direction(across.normal());
  if ((normal_ - unit).length() < 1e-12) normal_ = normal;
  normal_scale_ = raised.dotProduct(normal_.normal());

  const AcGeMatrix3d into = ocs_to_wcs(normal_).transpose();
  own_ = into * map * from;
  own_.entry[2][0] = own_.entry[2][1] = 0;  // what lies in the plane stays in the plane
  if (uniform_) own_.entry[0][2] = own_.entry[1][2] = 0;

  scale_ = map.column(0).length();
  if (std::fabs(scale_ - 1) < 1e-12) scale_ = 1;
  if (std::fabs(normal_scale_ - scale_) < 1e-12 * scale_) normal_scale_ = scale_;
  turn_ = tidy_degrees(std::atan2(own_(1, 0), own_(0, 0)) * 180.0 / std::numbers::pi);
}

double ObjectMap::angle(double degrees) const {
  if (mirrored_) return normal_degrees(tidy_degrees(turn_ - degrees));
  return turn_ == 0 ? degrees : normal_degrees(tidy_degrees(turn_ + degrees));
}

}  // namespace cad
