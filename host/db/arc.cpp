#include "host/db/arc.h"

PN_RX_DEFINE(AcDbArc, AcDbCurve, L"ARC")

namespace {

constexpr std::string_view kCirclePart = "AcDbCircle";
constexpr std::string_view kArcPart = "AcDbArc";

constexpr std::string_view kNewArc =
    "  0\nARC\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbCircle\n 10\n0.0\n"
    " 20\n0.0\n 30\n0.0\n 40\n0.0\n100\nAcDbArc\n 50\n0.0\n 51\n0.0\n";

}  // namespace

AcDbArc::AcDbArc() : AcDbCurve(kNewArc) {}

AcDbArc::AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle)
    : AcDbArc(center, AcGeVector3d::kZAxis, radius, startAngle, endAngle) {}

AcDbArc::AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                 double startAngle, double endAngle)
    : AcDbArc() {
  setNormal(normal);
  setCenter(center);
  setRadius(radius);
  setStartAngle(startAngle);
  setEndAngle(endAngle);
}

AcGePoint3d AcDbArc::center() const { return ocs_point_of(kCirclePart, 10); }
Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
  return set_ocs_point(kCirclePart, 10, center);
}
double AcDbArc::radius() const { return real_of(kCirclePart, 40); }
Acad::ErrorStatus AcDbArc::setRadius(double radius) {
  return radius < 0.0 ? Acad::eInvalidInput : set_real(kCirclePart, 40, radius);
}
double AcDbArc::thickness() const { return real_of(kCirclePart, 39); }
Acad::ErrorStatus AcDbArc::setThickness(double thickness) {
  return set_real(kCirclePart, 39, thickness);
}
double AcDbArc::startAngle() const { return angle_of(kArcPart, 50); }
Acad::ErrorStatus AcDbArc::setStartAngle(double angle) { return set_angle(kArcPart, 50, angle); }
double AcDbArc::endAngle() const { return angle_of(kArcPart, 51); }
Acad::ErrorStatus AcDbArc::setEndAngle(double angle) { return set_angle(kArcPart, 51, angle); }

double AcDbArc::length() const {
  const std::optional<cad::Curve> curve = cad::curve_of(*this);
  return curve ? curve->length() : 0.0;
}

AcGeVector3d AcDbArc::normal() const { return normal_of(kCirclePart); }
Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& normal) {
  const AcGePoint3d kept = center();
  const Acad::ErrorStatus status = set_direction(kCirclePart, 210, normal);
  return status == Acad::eOk ? setCenter(kept) : status;
}
