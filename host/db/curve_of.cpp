// From the tags of an entity to its curve.

#include <algorithm>
#include <vector>

#include "host/db/curve.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/db/object_access.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

/// An entity's record, and where its vertices are found.
struct Source {
  std::string_view kind;
  std::string_view bytes;
  const dxf::Dialect& dialect;
  const Stub* stub;  // null for an object of no drawing
};

AcGePoint3d in_world(const EntityFields& fields, int code) {
  return ocs_to_wcs(fields.normal()) * fields.point(code);
}

std::optional<Curve> line_curve(const Source& source) {
  const EntityFields fields(source.bytes, source.dialect);
  return Curve::line(fields.point(10), fields.point(11));
}

std::optional<Curve> ray_curve(const Source& source) {
  const EntityFields fields(source.bytes, source.dialect);
  return Curve::ray(fields.point(10), fields.vector(11).normal());
}

std::optional<Curve> xline_curve(const Source& source) {
  const EntityFields fields(source.bytes, source.dialect);
  return Curve::xline(fields.point(10), fields.vector(11).normal());
}

std::optional<Curve> arc_curve(const Source& source) {
  const EntityFields fields(source.bytes, source.dialect);
  return Curve::arc(in_world(fields, 10), fields.normal(), fields.real(40), fields.angle(50),
                    fields.angle(51));
}

std::optional<Curve> circle_curve(const Source& source) {
  const EntityFields fields(source.bytes, source.dialect);
  return Curve::circle(in_world(fields, 10), fields.normal(), fields.real(40));
}

std::optional<Curve> ellipse_curve(const Source& source) {
  const EntityFields fields(source.bytes, source.dialect);
  constexpr double kTurn = 6.28318530717958647692;
  return Curve::ellipse(fields.point(10), fields.normal(), fields.vector(11), fields.real(40, 1.0),
                        fields.real(41, 0.0), fields.real(42, kTurn));
}

std::optional<Curve> light_polyline_curve(const Source& source) {
  std::vector<Curve::Vertex> vertices;
  OwnTags tags(source.bytes, source.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    const double value = tag.code == 10 || tag.code == 20 || tag.code == 42
                             ? dxf::real_value(tag, source.dialect)
                             : 0.0;
    if (tag.code == 10) vertices.push_back({{value, 0.0}, 0.0});
    if (vertices.empty()) continue;
    if (tag.code == 20) vertices.back().point.y = value;
    if (tag.code == 42) vertices.back().bulge = value;
  }
  if (vertices.empty()) return std::nullopt;
  const EntityFields fields(source.bytes, source.dialect);
  return Curve::polyline(vertices, (fields.integer(70) & 1) != 0, fields.normal(), fields.real(38));
}

/// A POLYLINE with its VERTEXs. Of a smoothed one the vertices of the frame are passed over.
std::optional<Curve> heavy_polyline_curve(const Source& source) {
  constexpr int kClosed = 1, kInSpace = 8, kMesh = 16 | 64, kFrame = 16;
  if (!source.stub) return std::nullopt;
  const EntityFields head(source.bytes, source.dialect);
  const int flags = head.integer(70);
  if (flags & kMesh) return std::nullopt;
  Drawing& drawing = StubStore::drawing_of(*source.stub);
  std::vector<Curve::Vertex> flat;
  std::vector<AcGePoint3d> spatial;
  for (const Stub* part : drawing.sub_entities(*source.stub)) {
    if (part->erased() || drawing.kind_name(*part) != "VERTEX") continue;
    const EntityFields vertex(drawing.bytes_of(*part), source.dialect);
    if (vertex.integer(70) & kFrame) continue;
    const AcGePoint3d p = vertex.point(10);
    spatial.push_back(p);
    flat.push_back({{p.x, p.y}, vertex.real(42)});
  }
  if (flat.empty()) return std::nullopt;
  const bool closed = (flags & kClosed) != 0;
  if (flags & kInSpace) return Curve::polyline3d(spatial, closed);
  // The head's point holds the elevation; R12 and before may give it by the vertices.
  const double elevation = head.has(30) ? head.real(30) : spatial.front().z;
  return Curve::polyline(flat, closed, head.normal(), elevation);
}

std::optional<Curve> spline_curve(const Source& source) {
  constexpr int kClosed = 1;
  SplineShape shape;
  shape.degree = 3;
  std::vector<AcGePoint3d>* points = nullptr;
  OwnTags tags(source.bytes, source.dialect);
  dxf::Tag tag;
  const auto real = [&] { return dxf::real_value(tag, source.dialect); };
  while (tags.next(tag)) {
    switch (tag.code) {
      case 70:
        shape.closed = (dxf::int_value(tag, source.dialect) & kClosed) != 0;
        break;
      case 71:
        shape.degree = static_cast<int>(dxf::int_value(tag, source.dialect));
        break;
      case 40:
        shape.knots.push_back(real());
        break;
      case 41:
        shape.weights.push_back(real());
        break;
      case 10:
      case 11:
        points = tag.code == 10 ? &shape.controls : &shape.fit_points;
        points->push_back({real(), 0.0, 0.0});
        break;
      case 20:
      case 21:
        if (points) points->back().y = real();
        break;
      case 30:
      case 31:
        if (points) points->back().z = real();
        break;
      default:
        break;
    }
  }
  const EntityFields fields(source.bytes, source.dialect);
  shape.start_tangent = fields.vector(12);
  shape.end_tangent = fields.vector(13);
  return Curve::spline(shape);
}

/// The line of a leader; one drawn as a spline goes through its vertices.
std::optional<Curve> leader_curve(const Source& source) {
  SplineShape shape;
  OwnTags tags(source.bytes, source.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 10) shape.fit_points.push_back({dxf::real_value(tag, source.dialect), 0, 0});
    if (shape.fit_points.empty()) continue;
    if (tag.code == 20) shape.fit_points.back().y = dxf::real_value(tag, source.dialect);
    if (tag.code == 30) shape.fit_points.back().z = dxf::real_value(tag, source.dialect);
  }
  if (shape.fit_points.empty()) return std::nullopt;
  constexpr int kPathType = 72;
  if (EntityFields(source.bytes, source.dialect).integer(kPathType) == 1) {
    if (std::optional<Curve> curve = Curve::spline(shape)) return curve;
  }
  return Curve::polyline3d(shape.fit_points, false);
}

struct KindRow {
  std::string_view kind;
  std::optional<Curve> (*curve)(const Source&);
};
constexpr KindRow kKinds[] = {
    {"LINE", line_curve},       {"LWPOLYLINE", light_polyline_curve},
    {"ARC", arc_curve},         {"CIRCLE", circle_curve},
    {"ELLIPSE", ellipse_curve}, {"POLYLINE", heavy_polyline_curve},
    {"SPLINE", spline_curve},   {"RAY", ray_curve},
    {"XLINE", xline_curve},     {"LEADER", leader_curve},
};

std::optional<Curve> curve_of(const Source& source) {
  for (const KindRow& row : kKinds)
    if (row.kind == source.kind) return row.curve(source);
  return std::nullopt;
}

}  // namespace

std::optional<Curve> curve_of(AcDbObjectId id) {
  if (id.isNull()) return std::nullopt;
  const Stub& stub = *id.stub();
  if (stub.has(Stub::kMissing)) return std::nullopt;
  Drawing& drawing = StubStore::drawing_of(stub);
  return curve_of(
      Source{drawing.kind_name(stub), drawing.bytes_of(stub), drawing.dialect(), &stub});
}

std::optional<Curve> curve_of(const AcDbObject& object) {
  const dxf::Dialect& dialect = ObjectAccess::dialect(object);
  const std::string_view bytes = ObjectAccess::content(object);
  dxf::Tag kind;
  if (!dxf::TagReader(bytes, dialect).next(kind)) return std::nullopt;
  return curve_of(Source{kind.value, bytes, dialect, ObjectAccess::stub(object)});
}

}  // namespace cad
