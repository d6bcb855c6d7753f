#include "host/db/line.h"

#include "host/db/new_tags.h"

PN_RX_DEFINE(AcDbLine, AcDbCurve, L"LINE")
PN_RX_DEFINE(AcDbRay, AcDbCurve, L"RAY")
PN_RX_DEFINE(AcDbXline, AcDbCurve, L"XLINE")

namespace {

constexpr std::string_view kLinePart = "AcDbLine";
constexpr std::string_view kRayPart = "AcDbRay";
constexpr std::string_view kXlinePart = "AcDbXline";

constexpr std::string_view kLineParts[] = {"AcDbEntity", kLinePart};
constexpr cad::NewTag kLineTags[] = {{0, 67, 0}, {0, 8},  {0, 6},  {0, 62, 256},
                                     {1, 39, 0}, {1, 10}, {1, 11}, {1, 210}};
constexpr cad::NewLayout kNewLine{"LINE", kLineParts, kLineTags};
constexpr std::string_view kNewRay =
    "  0\nRAY\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbRay\n 10\n0.0\n"
    " 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n0.0\n 31\n0.0\n";
constexpr std::string_view kNewXline =
    "  0\nXLINE\n  5\n0\n330\n0\n100\nAcDbEntity\n  8\n\n100\nAcDbXline\n 10\n0.0\n"
    " 20\n0.0\n 30\n0.0\n 11\n1.0\n 21\n0.0\n 31\n0.0\n";

}  // namespace

AcDbLine::AcDbLine() : AcDbCurve(kNewLine) {
  setStartPoint(AcGePoint3d::kOrigin);
  setEndPoint(AcGePoint3d::kOrigin);
}

AcDbLine::AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) : AcDbLine() {
  setStartPoint(start);
  setEndPoint(end);
}

AcGePoint3d AcDbLine::startPoint() const { return point_of(kLinePart, 10); }
AcGePoint3d AcDbLine::endPoint() const { return point_of(kLinePart, 11); }
Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& point) {
  return set_point(kLinePart, 10, point);
}
Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& point) {
  return set_point(kLinePart, 11, point);
}
double AcDbLine::thickness() const { return real_of(kLinePart, 39); }
Acad::ErrorStatus AcDbLine::setThickness(double thickness) {
  return set_real(kLinePart, 39, thickness);
}
AcGeVector3d AcDbLine::normal() const { return normal_of(kLinePart); }
Acad::ErrorStatus AcDbLine::setNormal(const AcGeVector3d& normal) {
  return set_direction(kLinePart, 210, normal);
}

AcDbRay::AcDbRay() : AcDbCurve(kNewRay) {}

AcGePoint3d AcDbRay::basePoint() const { return point_of(kRayPart, 10); }
AcGeVector3d AcDbRay::unitDir() const { return point_of(kRayPart, 11).asVector().normal(); }
Acad::ErrorStatus AcDbRay::setBasePoint(const AcGePoint3d& point) {
  return set_point(kRayPart, 10, point);
}
Acad::ErrorStatus AcDbRay::setUnitDir(const AcGeVector3d& direction) {
  return set_direction(kRayPart, 11, direction);
}

AcDbXline::AcDbXline() : AcDbCurve(kNewXline) {}

AcGePoint3d AcDbXline::basePoint() const { return point_of(kXlinePart, 10); }
AcGeVector3d AcDbXline::unitDir() const { return point_of(kXlinePart, 11).asVector().normal(); }
Acad::ErrorStatus AcDbXline::setBasePoint(const AcGePoint3d& point) {
  return set_point(kXlinePart, 10, point);
}
Acad::ErrorStatus AcDbXline::setUnitDir(const AcGeVector3d& direction) {
  return set_direction(kXlinePart, 11, direction);
}
