#include "host/db/ellipse.h"

#include <cmath>

PN_RX_DEFINE(AcDbEllipse, AcDbCurve, L"ELLIPSE")

namespace {

constexpr std::string_view kPart = "AcDbEllipse";
constexpr double kTurn = 6.28318530717958647692;

constexpr std::string_view kNewEllipse =
    "  0\nELLIPSE\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbEllipse\n"
    " 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n0.0\n 31\n0.0\n210\n0.0\n220\n0.0\n"
    "230\n1.0\n 40\n1.0\n 41\n0.0\n 42\n6.283185307179586\n";

}  // namespace

AcDbEllipse::AcDbEllipse() : AcDbCurve(kNewEllipse) {}

AcDbEllipse::AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                         const AcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                         double endAngle)
    : AcDbEllipse() {
  set(center, unitNormal, majorAxis, radiusRatio, startAngle, endAngle);
}

AcGePoint3d AcDbEllipse::center() const { return point_of(kPart, 10); }
Acad::ErrorStatus AcDbEllipse::setCenter(const AcGePoint3d& center) {
  return set_point(kPart, 10, center);
}
AcGeVector3d AcDbEllipse::majorAxis() const { return point_of(kPart, 11).asVector(); }
AcGeVector3d AcDbEllipse::minorAxis() const {
  return normal().normal().crossProduct(majorAxis()) * radiusRatio();
}
AcGeVector3d AcDbEllipse::normal() const { return normal_of(kPart); }
double AcDbEllipse::radiusRatio() const { return real_of(kPart, 40, 1.0); }
Acad::ErrorStatus AcDbEllipse::setRadiusRatio(double ratio) {
  return ratio > 0.0 && ratio <= 1.0 ? set_real(kPart, 40, ratio) : Acad::eInvalidInput;
}
double AcDbEllipse::startParam() const { return real_of(kPart, 41); }
Acad::ErrorStatus AcDbEllipse::setStartParam(double param) { return set_real(kPart, 41, param); }
double AcDbEllipse::endParam() const { return real_of(kPart, 42, kTurn); }
Acad::ErrorStatus AcDbEllipse::setEndParam(double param) { return set_real(kPart, 42, param); }

Acad::ErrorStatus AcDbEllipse::set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                                   const AcGeVector3d& majorAxis, double radiusRatio,
                                   double startAngle, double endAngle) {
  constexpr double kRightAngle = 1e-6;
  const AcGeVector3d across = unitNormal.normal(), along = majorAxis.normal();
  const bool sound = !unitNormal.isZeroLength() && !majorAxis.isZeroLength() &&
                     std::fabs(across.dotProduct(along)) <= kRightAngle && radiusRatio > 0.0 &&
                     radiusRatio <= 1.0 && std::isfinite(startAngle) && std::isfinite(endAngle);
  if (!sound) return Acad::eInvalidInput;
  const Acad::ErrorStatus status = setCenter(center);
  if (status != Acad::eOk) return status;
  set_point(kPart, 11, AcGePoint3d::kOrigin + majorAxis);
  set_direction(kPart, 210, unitNormal);
  setRadiusRatio(radiusRatio);
  setStartParam(startAngle);
  return setEndParam(endAngle);
}
