#pragma once

#include <optional>
#include <span>
#include <vector>

#include "host/app/command/edit/editing.h"
#include "host/app/command/edit/polyline_shape.h"
#include "host/geometry/curve.h"

namespace cad {

/// A part of a curve between two places; on a closed curve `to` may lie beyond its end.
struct Span {
  double from = 0.0;
  double to = 0.0;
};

/// A line, arc or polyline of the drawing while a command cuts it or makes it longer. Places on it
/// are numbers: that of the segment and the fraction of it; 0 is the start, end() the end, and on
/// lines without ends there are places from minus to plus infinity.
class CurveEntity {
 public:
  /// Nothing for what is no curve, and for kinds that cannot be cut (splines, meshes).
  static std::optional<CurveEntity> of(AcDbObjectId object);

  AcDbObjectId object() const { return object_; }
  const Curve& curve() const { return curve_; }
  Curve::Kind kind() const { return curve_.kind(); }
  bool closed() const { return closed_; }
  double start() const;
  double end() const;
  AcGePoint3d point_at(double place) const;
  /// The place nearest to a point as seen in the plan.
  double nearest(const AcGePoint3d& point) const;
  /// Both brought into the plan: what cuts what is judged there.
  Curve in_plan() const { return flattened(curve_); }
  static Curve flattened(const Curve& curve);

  /// Cuts the object down to these parts: it keeps the first, new objects take the others. Of an
  /// open curve a part may begin in front of its start or end behind its end. Where the kind has
  /// to become another (an arc out of a circle) the object is replaced. Steps are noted in `log`.
  /// The objects there are then; none when the command has refused.
  std::vector<AcDbObjectId> keep(CommandLine& line, std::span<const Span> parts,
                                 EditLog& log) const;

 private:
  CurveEntity(AcDbObjectId object, Curve curve) : object_(object), curve_(std::move(curve)) {}
  bool keeps_kind(const Span& part) const;
  GroupList groups_of(const Span& part) const;
  AcDbObjectId redraw(CommandLine& line, AcDbObjectId source, const Span& part) const;

  AcDbObjectId object_;
  Curve curve_;
  std::optional<PolylineShape> shape_;
  bool closed_ = false;
};

/// Draws a line, arc, circle, ray or plane polyline with the properties of another object. Null
/// when the command has refused.
AcDbObjectId draw_curve_like(CommandLine& line, AcDbObjectId source, const Curve& curve);

}  // namespace cad
