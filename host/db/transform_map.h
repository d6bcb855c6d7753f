#pragma once

#include "host/geometry/ge.h"

namespace cad {

/// A map of space as an object with a normal feels it: how its normal, its own coordinates, its
/// lengths and its angles change.
class ObjectMap {
 public:
  ObjectMap(const AcGeMatrix3d& map, const AcGeVector3d& normal);

  /// Lengths change alike in all directions, and angles are kept.
  bool uniform() const { return uniform_; }
  bool mirrored() const { return mirrored_; }
  /// Nothing but points changes.
  bool only_moves() const { return only_moves_; }
  double scale() const { return scale_; }  ///< of all lengths, when uniform

  const AcGeVector3d& old_normal() const { return old_normal_; }
  const AcGeVector3d& normal() const { return normal_; }
  AcGePoint3d point(const AcGePoint3d& p) const { return world_ * p; }
  AcGeVector3d vector(const AcGeVector3d& v) const { return only_moves_ ? v : world_ * v; }
  /// Between the old and the new object's own coordinates.
  AcGePoint3d own_point(const AcGePoint3d& p) const { return own_ * p; }
  AcGeVector3d own_vector(const AcGeVector3d& v) const { return only_moves_ ? v : own_ * v; }
  double along_normal(double length) const { return length * normal_scale_; }

  /// How far angles turn, in degrees: an angle becomes turn + angle, mirrored turn - angle.
  double turn() const { return turn_; }
  double angle(double degrees) const;

 private:
  AcGeMatrix3d world_;
  AcGeMatrix3d own_;
  AcGeVector3d old_normal_;
  AcGeVector3d normal_;
  double scale_ = 1;
  double normal_scale_ = 1;
  double turn_ = 0;
  bool uniform_ = true;
  bool mirrored_ = false;
  bool only_moves_ = false;
};

/// Into 0 <= angle < 360.
double normal_degrees(double degrees);
/// The angle without the noise that sines and cosines of round angles leave behind.
double tidy_degrees(double degrees);

}  // namespace cad
