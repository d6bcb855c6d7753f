#pragma once

#include <optional>

#include "host/db/entity.h"
#include "host/geometry/curve.h"

namespace cad {

/// What the published classes compute with. Nothing for kinds that are no curve, and for records
/// whose numbers make none (a polyline without vertices, a spline whose knots do not fit).
/// Kinds: LINE XLINE RAY ARC CIRCLE ELLIPSE LWPOLYLINE SPLINE LEADER, and POLYLINE where it is no
/// mesh: of one that was smoothed the curve drawn, not its frame.
std::optional<Curve> curve_of(AcDbObjectId id);
std::optional<Curve> curve_of(const AcDbObject& object);

}  // namespace cad

/// Whatever has a parameter that runs from a start to an end; see host/geometry/curve.h for what it
/// is in each class. eInvalidInput for a parameter or distance that is not on the curve, for a
/// point beside it and for an object whose numbers make no curve; eNotApplicable where the class
/// has no such thing (the end of a ray, the area of a line without end). Results are set on eOk
/// only.
class AcDbCurve : public AcDbEntity {
  PN_RX_MEMBERS(AcDbCurve)
 public:
  bool isClosed() const;
  bool isPeriodic() const;
  bool isPlanar() const;

  Acad::ErrorStatus getStartParam(double& param) const;
  Acad::ErrorStatus getEndParam(double& param) const;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const;

  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const;
  Acad::ErrorStatus getParamAtPoint(const AcGePoint3d& point, double& param) const;
  Acad::ErrorStatus getDistAtParam(double param, double& distance) const;
  Acad::ErrorStatus getParamAtDist(double distance, double& param) const;
  Acad::ErrorStatus getDistAtPoint(const AcGePoint3d& point, double& distance) const;
  Acad::ErrorStatus getPointAtDist(double distance, AcGePoint3d& point) const;

  /// By the parameter; at a vertex of the piece behind it.
  Acad::ErrorStatus getFirstDeriv(double param, AcGeVector3d& derivative) const;
  Acad::ErrorStatus getFirstDeriv(const AcGePoint3d& point, AcGeVector3d& derivative) const;
  Acad::ErrorStatus getSecondDeriv(double param, AcGeVector3d& derivative) const;
  Acad::ErrorStatus getSecondDeriv(const AcGePoint3d& point, AcGeVector3d& derivative) const;

  /// With `extend`, of the curve prolonged at both ends.
  Acad::ErrorStatus getClosestPointTo(const AcGePoint3d& given, AcGePoint3d& on_curve,
                                      bool extend = false) const;
  /// The point whose image along `direction` is nearest to the given point's.
  Acad::ErrorStatus getClosestPointTo(const AcGePoint3d& given, const AcGeVector3d& direction,
                                      AcGePoint3d& on_curve, bool extend = false) const;
  /// What the curve encloses, an open one with the straight line between its ends. eNotApplicable
  /// for a curve that is not plane.
  Acad::ErrorStatus getArea(double& area) const;
  Acad::ErrorStatus getPlane(AcGePlane& plane) const;

 protected:
  using AcDbEntity::AcDbEntity;
};
