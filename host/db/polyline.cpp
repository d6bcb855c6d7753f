#include "host/db/polyline.h"

#include <algorithm>
#include <cmath>

#include "host/db/lens.h"
#include "host/db/new_tags.h"
#include "host/db/polyline_tags.h"
#include "host/geometry/ocs.h"

PN_RX_DEFINE(AcDbPolyline, AcDbCurve, L"LWPOLYLINE")

namespace {

using Acad::eInvalidIndex;
using Acad::eInvalidInput;
using Acad::eOk;
using Acad::ErrorStatus;
using cad::Lens;
using cad::LensWriter;
using cad::PolylineVertex;
using Vertices = std::vector<PolylineVertex>;

constexpr std::string_view kPart = "AcDbPolyline";
constexpr int kConstantWidth = 43, kClosed = 1, kPlinegen = 128;

constexpr int kCount = 90, kFlags = 70, kVertices = 10;

constexpr std::string_view kParts[] = {"AcDbEntity", kPart};
constexpr cad::NewTag kTags[] = {
    {0, 67, 0},          {0, 8},     {0, 6},     {0, 62, 256},   {1, kCount}, {1, kFlags},
    {1, kConstantWidth}, {1, 38, 0}, {1, 39, 0}, {1, kVertices}, {1, 210}};
constexpr cad::NewLayout kNewPolyline{"LWPOLYLINE", kParts, kTags};

/// Writes vertex i anew.
void replace(LensWriter& tags, const PolylineVertex& vertex, const cad::dxf::Dialect& dialect) {
  tags.remove(vertex.begin, vertex.end);
  tags.insert(vertex.begin, cad::vertex_tags(vertex, dialect));
}

}  // namespace

AcDbPolyline::AcDbPolyline() : AcDbCurve(kNewPolyline) {
  set_integer(kPart, kCount, 0);
  set_integer(kPart, kFlags, 0);
}
AcDbPolyline::AcDbPolyline(unsigned int numVerts) : AcDbPolyline() {
  if (cad::NewTags* values = fresh_for(kVertices)) values->vertices().reserve(numVerts);
}

AcDbPolyline::SegType AcDbPolyline::segType(unsigned int index) const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return kEmpty;
  if (index + 1 == vertices.size() && !isClosed()) return kPoint;
  const PolylineVertex& next = vertices[(index + 1) % vertices.size()];
  if (vertices[index].point.distanceTo(next.point) <= AcGeContext::gTol.equalPoint())
    return kCoincident;
  return vertices[index].bulge == 0.0 ? kLine : kArc;
}

unsigned int AcDbPolyline::numVerts() const {
  return static_cast<unsigned int>(cad::read_vertices(content(), dialect()).size());
}

ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& point) const {
  AcGePoint2d flat;
  const ErrorStatus status = getPointAt(index, flat);
  if (status != eOk) return status;
  point = cad::ocs_to_wcs(normal()) * AcGePoint3d(flat.x, flat.y, elevation());
  return eOk;
}

ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint2d& point) const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  point = vertices[index].point;
  return eOk;
}

ErrorStatus AcDbPolyline::setPointAt(unsigned int index, const AcGePoint2d& point) {
  if (!std::isfinite(point.x + point.y)) return eInvalidInput;
  Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  vertices[index].point = point;
  return patch([&](LensWriter& tags) { replace(tags, vertices[index], dialect()); });
}

ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  bulge = vertices[index].bulge;
  return eOk;
}

ErrorStatus AcDbPolyline::setBulgeAt(unsigned int index, double bulge) {
  if (!std::isfinite(bulge)) return eInvalidInput;
  Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  vertices[index].bulge = bulge;
  return patch([&](LensWriter& tags) { replace(tags, vertices[index], dialect()); });
}

ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& start, double& end) const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  const double constant = real_of(kPart, kConstantWidth);
  start = vertices[index].start_width.value_or(constant);
  end = vertices[index].end_width.value_or(constant);
  return eOk;
}

ErrorStatus AcDbPolyline::setWidthsAt(unsigned int index, double start, double end) {
  if (!(start >= 0.0 && end >= 0.0) || !std::isfinite(start + end)) return eInvalidInput;
  Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  vertices[index].start_width = start;
  vertices[index].end_width = end;
  const bool constant = Lens(content(), dialect()).find(kPart, kConstantWidth).has_value();
  const double width = real_of(kPart, kConstantWidth);
  const ErrorStatus status = patch([&](LensWriter& tags) {
    // From the last to the first, so that offsets in front stay true.
    for (std::size_t i = vertices.size(); i-- > 0;) {
      if (constant && !vertices[i].start_width) vertices[i].start_width = width;
      if (constant && !vertices[i].end_width) vertices[i].end_width = width;
      if (constant || i == index) replace(tags, vertices[i], dialect());
    }
  });
  if (status != eOk || !constant) return status;
  const auto tag = Lens(content(), dialect()).find(kPart, kConstantWidth);
  return patch([&](LensWriter& tags) { tags.remove(tag->begin, tag->end); });
}

ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge,
                                      double startWidth, double endWidth) {
  if (!std::isfinite(point.x + point.y + bulge + startWidth + endWidth)) return eInvalidInput;
  PolylineVertex fresh;
  fresh.point = point;
  fresh.bulge = bulge;
  const double widest = std::max(startWidth, endWidth);
  const bool among_wide_ones = real_of(kPart, kConstantWidth) > 0.0;
  if (widest > 0.0 || (widest == 0.0 && among_wide_ones)) {
    fresh.start_width = std::max(startWidth, 0.0);
    fresh.end_width = std::max(endWidth, 0.0);
  }
  if (cad::NewTags* values = fresh_for(kVertices);
      values && !(fresh.start_width && values->is_set(kConstantWidth))) {
    Vertices& held = values->vertices();
    if (index > held.size()) return eInvalidIndex;
    held.insert(held.begin() + index, fresh);
    values->set_integer(kCount, static_cast<std::int64_t>(held.size()));
    return eOk;
  }
  const Vertices vertices = cad::read_vertices(content(), dialect());
  if (index > vertices.size()) return eInvalidIndex;
  const std::size_t place = index < vertices.size() ? vertices[index].begin
                            : !vertices.empty()
                                ? vertices.back().end
                                : Lens(content(), dialect()).part_end(kPart).value_or(0);
  if (place == 0) return eInvalidInput;  // a record without its class part
  const ErrorStatus status = patch([&](LensWriter& tags) {
    tags.insert(place, cad::vertex_tags(fresh, dialect()));
    tags.set_integer(kPart, 90, static_cast<std::int64_t>(vertices.size() + 1));
  });
  if (status != eOk || !fresh.start_width || !Lens(content(), dialect()).find(kPart, 43))
    return status;
  return setWidthsAt(index, *fresh.start_width, *fresh.end_width);
}

ErrorStatus AcDbPolyline::removeVertexAt(unsigned int index) {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  if (index >= vertices.size()) return eInvalidIndex;
  if (vertices.size() <= 2) return eInvalidInput;
  return patch([&](LensWriter& tags) {
    tags.remove(vertices[index].begin, vertices[index].end);
    tags.set_integer(kPart, 90, static_cast<std::int64_t>(vertices.size() - 1));
  });
}

namespace {

std::int64_t with_bit(std::int64_t flags, int bit, bool on) {
  return on ? flags | bit : flags & ~static_cast<std::int64_t>(bit);
}

}  // namespace

void AcDbPolyline::setClosed(bool closed) {
  const std::int64_t flags = Lens(content(), dialect()).integer(kPart, 70, 0);
  patch([&](LensWriter& tags) { tags.set_integer(kPart, 70, with_bit(flags, kClosed, closed)); });
}

bool AcDbPolyline::hasPlinegen() const {
  return (Lens(content(), dialect()).integer(kPart, 70, 0) & kPlinegen) != 0;
}

void AcDbPolyline::setPlinegen(bool generated) {
  const std::int64_t flags = Lens(content(), dialect()).integer(kPart, 70, 0);
  patch([&](LensWriter& tags) {
    tags.set_integer(kPart, 70, with_bit(flags, kPlinegen, generated));
  });
}

bool AcDbPolyline::isOnlyLines() const { return !hasBulges(); }

bool AcDbPolyline::hasBulges() const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  return std::any_of(vertices.begin(), vertices.end(),
                     [](const PolylineVertex& v) { return v.bulge != 0.0; });
}

bool AcDbPolyline::hasWidth() const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  return real_of(kPart, kConstantWidth) != 0.0 ||
         std::any_of(vertices.begin(), vertices.end(), [](const PolylineVertex& v) {
           return v.start_width.value_or(0.0) != 0.0 || v.end_width.value_or(0.0) != 0.0;
         });
}

ErrorStatus AcDbPolyline::getConstantWidth(double& width) const {
  const Vertices vertices = cad::read_vertices(content(), dialect());
  const double constant = real_of(kPart, kConstantWidth);
  const double first = vertices.empty() ? constant : vertices[0].start_width.value_or(constant);
  for (const PolylineVertex& v : vertices) {
    if (v.start_width.value_or(constant) != first || v.end_width.value_or(constant) != first)
      return eInvalidInput;
  }
  width = first;
  return eOk;
}

ErrorStatus AcDbPolyline::setConstantWidth(double width) {
  if (!(width >= 0.0) || !std::isfinite(width)) return eInvalidInput;
  if (cad::NewTags* values = fresh_for(kConstantWidth)) {
    for (PolylineVertex& vertex : values->vertices()) {
      vertex.start_width.reset();
      vertex.end_width.reset();
    }
    values->set_real(kConstantWidth, width);
    return eOk;
  }
  Vertices vertices = cad::read_vertices(content(), dialect());
  const bool known = Lens(content(), dialect()).find(kPart, kConstantWidth).has_value();
  return patch([&](LensWriter& tags) {
    for (std::size_t i = vertices.size(); i-- > 0;) {
      if (!vertices[i].start_width && !vertices[i].end_width) continue;
      vertices[i].start_width.reset();
      vertices[i].end_width.reset();
      replace(tags, vertices[i], dialect());
    }
    if (known || vertices.empty()) {
      tags.set_real(kPart, kConstantWidth, width);
      return;
    }
    // In front of the vertices, where readers look for it.
    std::string text;
    cad::dxf::TagWriter(text, dialect()).real(kConstantWidth, width);
    tags.insert(vertices.front().begin, text);
  });
}

double AcDbPolyline::elevation() const { return real_of(kPart, 38); }
ErrorStatus AcDbPolyline::setElevation(double elevation) { return set_real(kPart, 38, elevation); }
double AcDbPolyline::thickness() const { return real_of(kPart, 39); }
ErrorStatus AcDbPolyline::setThickness(double thickness) { return set_real(kPart, 39, thickness); }
AcGeVector3d AcDbPolyline::normal() const { return normal_of(kPart); }
ErrorStatus AcDbPolyline::setNormal(const AcGeVector3d& normal) {
  return set_direction(kPart, 210, normal);
}
