#include "host/db/curve.h"

#include <cmath>

#include "host/geometry/plane.h"

PN_RX_DEFINE(AcDbCurve, AcDbEntity, L"")

namespace {

using Acad::eInvalidInput;
using Acad::eNotApplicable;
using Acad::eOk;
using Acad::ErrorStatus;
using cad::Curve;

/// Parameters a hair outside, as sums of lengths give them, count as the end.
bool on_curve(const Curve& curve, double param) {
  const double slack = 1e-9 * std::fmax(1.0, std::fabs(param));
  return param >= curve.start_param() - slack && param <= curve.end_param() + slack;
}

/// Runs `compute` on the object's curve.
template <class Compute>
ErrorStatus with_curve(const AcDbCurve& object, Compute&& compute) {
  const std::optional<Curve> curve = cad::curve_of(object);
  return curve ? compute(*curve) : eInvalidInput;
}

template <class Compute>
ErrorStatus at_param(const AcDbCurve& object, double param, Compute&& compute) {
  return with_curve(object, [&](const Curve& curve) {
    return on_curve(curve, param) ? compute(curve, param) : eInvalidInput;
  });
}

template <class Compute>
ErrorStatus at_point(const AcDbCurve& object, const AcGePoint3d& point, Compute&& compute) {
  return with_curve(object, [&](const Curve& curve) {
    const std::optional<double> param = curve.param_at(point);
    return param ? compute(curve, *param) : eInvalidInput;
  });
}

template <class Compute>
ErrorStatus at_distance(const AcDbCurve& object, double distance, Compute&& compute) {
  return with_curve(object, [&](const Curve& curve) {
    const double most = curve.length(), slack = 1e-9 * std::fmax(1.0, most);
    const double least = curve.is_bounded() ? 0.0 : curve.start_param();
    if (!(distance >= least - slack && distance <= most + slack)) return eInvalidInput;
    return compute(curve, curve.param_at_distance(distance));
  });
}

}  // namespace

bool AcDbCurve::isClosed() const {
  const std::optional<Curve> curve = cad::curve_of(*this);
  return curve && curve->is_closed();
}

bool AcDbCurve::isPeriodic() const {
  const std::optional<Curve> curve = cad::curve_of(*this);
  return curve && curve->is_periodic();
}

bool AcDbCurve::isPlanar() const {
  const std::optional<Curve> curve = cad::curve_of(*this);
  return curve && curve->plane_normal();
}

ErrorStatus AcDbCurve::getStartParam(double& param) const {
  return with_curve(*this, [&](const Curve& curve) {
    if (!std::isfinite(curve.start_param())) return eNotApplicable;
    param = curve.start_param();
    return eOk;
  });
}

ErrorStatus AcDbCurve::getEndParam(double& param) const {
  return with_curve(*this, [&](const Curve& curve) {
    if (!std::isfinite(curve.end_param())) return eNotApplicable;
    param = curve.end_param();
    return eOk;
  });
}

ErrorStatus AcDbCurve::getStartPoint(AcGePoint3d& point) const {
  double param = 0.0;
  const ErrorStatus status = getStartParam(param);
  return status == eOk ? getPointAtParam(param, point) : status;
}

ErrorStatus AcDbCurve::getEndPoint(AcGePoint3d& point) const {
  double param = 0.0;
  const ErrorStatus status = getEndParam(param);
  return status == eOk ? getPointAtParam(param, point) : status;
}

ErrorStatus AcDbCurve::getPointAtParam(double param, AcGePoint3d& point) const {
  return at_param(*this, param, [&](const Curve& curve, double t) {
    point = curve.point_at(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getParamAtPoint(const AcGePoint3d& point, double& param) const {
  return at_point(*this, point, [&](const Curve&, double t) {
    param = t;
    return eOk;
  });
}

ErrorStatus AcDbCurve::getDistAtParam(double param, double& distance) const {
  return at_param(*this, param, [&](const Curve& curve, double t) {
    distance = curve.distance_at(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getParamAtDist(double distance, double& param) const {
  return at_distance(*this, distance, [&](const Curve&, double t) {
    param = t;
    return eOk;
  });
}

ErrorStatus AcDbCurve::getDistAtPoint(const AcGePoint3d& point, double& distance) const {
  return at_point(*this, point, [&](const Curve& curve, double t) {
    distance = curve.distance_at(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getPointAtDist(double distance, AcGePoint3d& point) const {
  return at_distance(*this, distance, [&](const Curve& curve, double t) {
    point = curve.point_at(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getFirstDeriv(double param, AcGeVector3d& derivative) const {
  return at_param(*this, param, [&](const Curve& curve, double t) {
    derivative = curve.first_derivative(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getFirstDeriv(const AcGePoint3d& point, AcGeVector3d& derivative) const {
  return at_point(*this, point, [&](const Curve& curve, double t) {
    derivative = curve.first_derivative(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getSecondDeriv(double param, AcGeVector3d& derivative) const {
  return at_param(*this, param, [&](const Curve& curve, double t) {
    derivative = curve.second_derivative(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getSecondDeriv(const AcGePoint3d& point, AcGeVector3d& derivative) const {
  return at_point(*this, point, [&](const Curve& curve, double t) {
    derivative = curve.second_derivative(t);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getClosestPointTo(const AcGePoint3d& given, AcGePoint3d& on_curve,
                                         bool extend) const {
  return with_curve(*this, [&](const Curve& curve) {
    on_curve = curve.closest_point(given, extend);
    return eOk;
  });
}

ErrorStatus AcDbCurve::getClosestPointTo(const AcGePoint3d& given, const AcGeVector3d& direction,
                                         AcGePoint3d& on_curve, bool extend) const {
  return with_curve(*this, [&](const Curve& curve) {
    if (direction.isZeroLength()) return eInvalidInput;
    on_curve = curve.nearest_in_projection(given, direction, extend).point;
    return eOk;
  });
}

ErrorStatus AcDbCurve::getArea(double& area) const {
  return with_curve(*this, [&](const Curve& curve) {
    if (!curve.is_bounded() || !curve.plane_normal()) return eNotApplicable;
    area = curve.area();
    return eOk;
  });
}

ErrorStatus AcDbCurve::getPlane(AcGePlane& plane) const {
  return with_curve(*this, [&](const Curve& curve) {
    const std::optional<AcGeVector3d> normal = curve.plane_normal();
    if (!normal) return eNotApplicable;
    plane.set(curve.segments().front().start(), *normal);
    return eOk;
  });
}
