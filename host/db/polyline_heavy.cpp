#include "host/db/polyline_heavy.h"

#include <cmath>

#include "host/db/drawing.h"
#include "host/db/lens.h"
#include "host/db/object_access.h"
#include "host/geometry/ocs.h"

PN_RX_DEFINE(AcDbObjectIterator, AcRxObject, L"")
PN_RX_DEFINE(AcDbVertex, AcDbEntity, L"VERTEX")
PN_RX_DEFINE(AcDb2dVertex, AcDbVertex, L"VERTEX")
PN_RX_DEFINE(AcDb3dPolylineVertex, AcDbVertex, L"VERTEX")
PN_RX_DEFINE(AcDb2dPolyline, AcDbCurve, L"POLYLINE")
PN_RX_DEFINE(AcDb3dPolyline, AcDbCurve, L"POLYLINE")

namespace {

using cad::Lens;
using cad::LensWriter;

constexpr std::string_view k2dPart = "AcDb2dPolyline";
constexpr std::string_view k3dPart = "AcDb3dPolyline";
constexpr std::string_view kVertexParts[] = {"AcDb2dVertex", "AcDb3dPolylineVertex"};

constexpr int kClosed = 1, kCurveFit = 2, kSplineFit = 4;
constexpr int kQuadratic = 5;  // of group 75

/// Vertices of the record, erased ones left out.
std::vector<AcDbObjectId> vertices_of(const AcDbObject& polyline) {
  std::vector<AcDbObjectId> ids;
  const cad::Stub* own = cad::ObjectAccess::stub(polyline);
  if (!own) return ids;
  cad::Drawing& drawing = cad::StubStore::drawing_of(*own);
  for (cad::Stub* part : drawing.sub_entities(*own))
    if (!part->erased() && drawing.kind_name(*part) == "VERTEX") ids.emplace_back(part);
  return ids;
}

/// The class part in which a vertex holds its point.
std::string_view vertex_part(const Lens& lens) {
  return lens.find(kVertexParts[0], 10) ? kVertexParts[0] : kVertexParts[1];
}

}  // namespace

AcGePoint3d AcDbVertex::point() const {
  const Lens lens(content(), dialect());
  return lens.point(vertex_part(lens), 10);
}

Acad::ErrorStatus AcDbVertex::set_point(const AcGePoint3d& point) {
  if (!std::isfinite(point.x + point.y + point.z)) return Acad::eInvalidInput;
  const std::string_view part = vertex_part(Lens(content(), dialect()));
  return patch([&](LensWriter& tags) { tags.set_point(part, 10, point); });
}

double AcDbVertex::real_of(int code) const {
  const Lens lens(content(), dialect());
  return lens.real(vertex_part(lens), code, 0.0);
}

Acad::ErrorStatus AcDbVertex::set_real(int code, double value) {
  if (!std::isfinite(value)) return Acad::eInvalidInput;
  const std::string_view part = vertex_part(Lens(content(), dialect()));
  return patch([&](LensWriter& tags) { tags.set_real(part, code, value); });
}

int AcDbVertex::flags() const {
  const Lens lens(content(), dialect());
  return static_cast<int>(lens.integer(vertex_part(lens), 70, 0));
}

AcDb::Vertex2dType AcDb2dVertex::vertexType() const {
  if (flags() & 16) return AcDb::k2dSplineCtlVertex;
  if (flags() & 8) return AcDb::k2dSplineFitVertex;
  return flags() & 1 ? AcDb::k2dCurveFitVertex : AcDb::k2dVertex;
}

AcDb::Vertex3dType AcDb3dPolylineVertex::vertexType() const {
  if (flags() & 16) return AcDb::k3dControlVertex;
  return flags() & 8 ? AcDb::k3dFitVertex : AcDb::k3dSimpleVertex;
}

AcDb::Poly2dType AcDb2dPolyline::polyType() const {
  const Lens lens(content(), dialect());
  const auto flags = lens.integer(k2dPart, 70, 0);
  if (flags & kSplineFit)
    return lens.integer(k2dPart, 75, 0) == kQuadratic ? AcDb::k2dQuadSplinePoly
                                                      : AcDb::k2dCubicSplinePoly;
  return flags & kCurveFit ? AcDb::k2dFitCurvePoly : AcDb::k2dSimplePoly;
}

double AcDb2dPolyline::elevation() const { return real_of(k2dPart, 30); }
Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
  return set_point(k2dPart, 10, {0.0, 0.0, elevation});
}
double AcDb2dPolyline::thickness() const { return real_of(k2dPart, 39); }
Acad::ErrorStatus AcDb2dPolyline::setThickness(double thickness) {
  return set_real(k2dPart, 39, thickness);
}
AcGeVector3d AcDb2dPolyline::normal() const { return normal_of(k2dPart); }
double AcDb2dPolyline::defaultStartWidth() const { return real_of(k2dPart, 40); }
double AcDb2dPolyline::defaultEndWidth() const { return real_of(k2dPart, 41); }

Acad::ErrorStatus AcDb2dPolyline::makeClosed() {
  const auto flags = Lens(content(), dialect()).integer(k2dPart, 70, 0);
  return patch([&](LensWriter& tags) { tags.set_integer(k2dPart, 70, flags | kClosed); });
}

Acad::ErrorStatus AcDb2dPolyline::makeOpen() {
  const auto flags = Lens(content(), dialect()).integer(k2dPart, 70, 0);
  return patch([&](LensWriter& tags) { tags.set_integer(k2dPart, 70, flags & ~kClosed); });
}

AcGePoint3d AcDb2dPolyline::vertexPosition(const AcDb2dVertex& vertex) const {
  const AcGePoint3d p = vertex.position();
  return cad::ocs_to_wcs(normal()) * AcGePoint3d(p.x, p.y, elevation());
}

AcDbObjectIterator* AcDb2dPolyline::vertexIterator() const {
  return new AcDbObjectIterator(vertices_of(*this));
}

AcDb::Poly3dType AcDb3dPolyline::polyType() const {
  const Lens lens(content(), dialect());
  if (!(lens.integer(k3dPart, 70, 0) & kSplineFit)) return AcDb::k3dSimplePoly;
  return lens.integer(k3dPart, 75, 0) == kQuadratic ? AcDb::k3dQuadSplinePoly
                                                    : AcDb::k3dCubicSplinePoly;
}

Acad::ErrorStatus AcDb3dPolyline::makeClosed() {
  const auto flags = Lens(content(), dialect()).integer(k3dPart, 70, 0);
  return patch([&](LensWriter& tags) { tags.set_integer(k3dPart, 70, flags | kClosed); });
}

Acad::ErrorStatus AcDb3dPolyline::makeOpen() {
  const auto flags = Lens(content(), dialect()).integer(k3dPart, 70, 0);
  return patch([&](LensWriter& tags) { tags.set_integer(k3dPart, 70, flags & ~kClosed); });
}

AcDbObjectIterator* AcDb3dPolyline::vertexIterator() const {
  return new AcDbObjectIterator(vertices_of(*this));
}
