#include "host/db/spline.h"

#include <cmath>

#include "host/db/entity_fields.h"
#include "host/db/lens.h"

PN_RX_DEFINE(AcDbSpline, AcDbCurve, L"SPLINE")
PN_RX_DEFINE(AcDbLeader, AcDbCurve, L"LEADER")

namespace {

using cad::EntityFields;

struct Repeated {
  double value;
  std::size_t begin, end;
};

/// All values of a code, in order.
std::vector<Repeated> all_of(std::string_view bytes, const cad::dxf::Dialect& dialect, int code) {
  std::vector<Repeated> found;
  cad::OwnTags tags(bytes, dialect);
  cad::dxf::Tag tag;
  while (tags.next(tag))
    if (tag.code == code) found.push_back({cad::dxf::real_value(tag, dialect), tag.begin, tag.end});
  return found;
}

AcGePoint3dArray points_of(std::string_view bytes, const cad::dxf::Dialect& dialect, int code) {
  AcGePoint3dArray points;
  cad::OwnTags tags(bytes, dialect);
  cad::dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == code) points.append({cad::dxf::real_value(tag, dialect), 0.0, 0.0});
    if (points.isEmpty()) continue;
    if (tag.code == code + 10) points.last().y = cad::dxf::real_value(tag, dialect);
    if (tag.code == code + 20) points.last().z = cad::dxf::real_value(tag, dialect);
  }
  return points;
}

constexpr int kClosed = 1, kPeriodic = 2, kRational = 4;

}  // namespace

int AcDbSpline::degree() const { return EntityFields(content(), dialect()).integer(71, 3); }

bool AcDbSpline::isRational() const {
  return (EntityFields(content(), dialect()).integer(70) & kRational) != 0;
}

int AcDbSpline::numControlPoints() const { return points_of(content(), dialect(), 10).length(); }

Acad::ErrorStatus AcDbSpline::getControlPointAt(int index, AcGePoint3d& point) const {
  const AcGePoint3dArray points = points_of(content(), dialect(), 10);
  if (!points.isValid(index)) return Acad::eInvalidIndex;
  point = points[index];
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::setControlPointAt(int index, const AcGePoint3d& point) {
  if (!std::isfinite(point.x + point.y + point.z)) return Acad::eInvalidInput;
  const std::vector<Repeated> x = all_of(content(), dialect(), 10);
  if (index < 0 || static_cast<std::size_t>(index) >= x.size()) return Acad::eInvalidIndex;
  const std::size_t begin = x[static_cast<std::size_t>(index)].begin;
  // Its y and z follow; a z that the file leaves out is 0.
  std::size_t end = x[static_cast<std::size_t>(index)].end;
  cad::dxf::TagReader tags(content(), dialect(), end);
  cad::dxf::Tag tag;
  while (tags.next(tag) && (tag.code == 20 || tag.code == 30)) end = tag.end;
  std::string text;
  cad::dxf::TagWriter(text, dialect()).point(10, point.x, point.y, point.z);
  return patch([&](cad::LensWriter& writer) {
    writer.remove(begin, end);
    writer.insert(begin, text);
  });
}

double AcDbSpline::weightAt(int index) const {
  const std::vector<Repeated> weights = all_of(content(), dialect(), 41);
  if (index < 0 || static_cast<std::size_t>(index) >= weights.size()) return 1.0;
  return weights[static_cast<std::size_t>(index)].value;
}

int AcDbSpline::numFitPoints() const { return points_of(content(), dialect(), 11).length(); }

Acad::ErrorStatus AcDbSpline::getFitPointAt(int index, AcGePoint3d& point) const {
  const AcGePoint3dArray points = points_of(content(), dialect(), 11);
  if (!points.isValid(index)) return Acad::eInvalidIndex;
  point = points[index];
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getNurbsData(int& degree, bool& rational, bool& closed,
                                           bool& periodic, AcGePoint3dArray& controlPoints,
                                           AcGeDoubleArray& knots, AcGeDoubleArray& weights,
                                           double& controlPtTol, double& knotTol) const {
  const EntityFields fields(content(), dialect());
  const int flags = fields.integer(70);
  degree = fields.integer(71, 3);
  rational = (flags & kRational) != 0;
  closed = (flags & kClosed) != 0;
  periodic = (flags & kPeriodic) != 0;
  controlPoints = points_of(content(), dialect(), 10);
  knots.removeAll();
  weights.removeAll();
  for (const Repeated& knot : all_of(content(), dialect(), 40)) knots.append(knot.value);
  for (const Repeated& weight : all_of(content(), dialect(), 41)) weights.append(weight.value);
  constexpr double kUsual = 1e-7;
  knotTol = fields.real(42, kUsual);
  controlPtTol = fields.real(43, kUsual);
  return Acad::eOk;
}

int AcDbLeader::numVertices() const { return points_of(content(), dialect(), 10).length(); }

AcGePoint3d AcDbLeader::vertexAt(int index) const {
  const AcGePoint3dArray points = points_of(content(), dialect(), 10);
  return points.isValid(index) ? points[index] : AcGePoint3d::kOrigin;
}

bool AcDbLeader::isSplined() const { return EntityFields(content(), dialect()).integer(72) == 1; }
bool AcDbLeader::hasArrowHead() const {
  return EntityFields(content(), dialect()).integer(71, 1) != 0;
}
