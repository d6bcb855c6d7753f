#include "host/db/circle.h"

PN_RX_DEFINE(AcDbCircle, AcDbCurve, L"CIRCLE")

namespace {

constexpr std::string_view kCirclePart = "AcDbCircle";

constexpr std::string_view kNewCircle =
    "  0\nCIRCLE\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbCircle\n 10\n0.0\n"
    " 20\n0.0\n 30\n0.0\n 40\n0.0\n";

}  // namespace

AcDbCircle::AcDbCircle() : AcDbCurve(kNewCircle) {}

AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius)
    : AcDbCircle() {
  setNormal(normal);
  setCenter(center);
  setRadius(radius);
}

AcGePoint3d AcDbCircle::center() const { return ocs_point_of(kCirclePart, 10); }
Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
  return set_ocs_point(kCirclePart, 10, center);
}
double AcDbCircle::radius() const { return real_of(kCirclePart, 40); }
Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
  return radius < 0.0 ? Acad::eInvalidInput : set_real(kCirclePart, 40, radius);
}
double AcDbCircle::thickness() const { return real_of(kCirclePart, 39); }
Acad::ErrorStatus AcDbCircle::setThickness(double thickness) {
  return set_real(kCirclePart, 39, thickness);
}
AcGeVector3d AcDbCircle::normal() const { return normal_of(kCirclePart); }
Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& normal) {
  const AcGePoint3d kept = center();
  const Acad::ErrorStatus status = set_direction(kCirclePart, 210, normal);
  return status == Acad::eOk ? setCenter(kept) : status;
}
