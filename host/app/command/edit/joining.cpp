#include "host/app/command/edit/joining.h"

#include <algorithm>
#include <cmath>

#include "host/db/curve.h"
#include "host/db/record.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

constexpr double kSame = 1e-6;

double apart(const PolylineShape::Vertex& a, const PolylineShape::Vertex& b) {
  return a.point.distanceTo(b.point);
}

/// The same shape in the coordinates of another normal; nothing when the planes differ.
std::optional<PolylineShape> turned_to(PolylineShape shape, const AcGeVector3d& normal) {
  const AcGeVector3d from = shape.normal.normal(), to = normal.normal();
  const bool opposite = (from + to).length() < 1e-9;
  if (!opposite && (from - to).length() >= 1e-9) {
    // A straight piece lies in many planes.
    const bool straight = std::all_of(shape.vertices.begin(), shape.vertices.end(),
                                      [](const auto& v) { return v.bulge == 0.0; });
    if (!straight || shape.vertices.size() != 2) return std::nullopt;
  }
  const AcGeMatrix3d map = ocs_to_wcs(normal).transpose() * ocs_to_wcs(shape.normal);
  for (auto& vertex : shape.vertices) {
    vertex.point = map * vertex.point;
    if (opposite) vertex.bulge = -vertex.bulge;
  }
  shape.normal = normal;
  return shape;
}

/// Appends `more` behind the end; its first vertex is the last of the shape.
void append(PolylineShape& shape, const PolylineShape& more) {
  shape.vertices.pop_back();
  shape.vertices.insert(shape.vertices.end(), more.vertices.begin(), more.vertices.end());
}

}  // namespace

std::optional<PolylineShape> joinable_shape(AcDbObjectId object) {
  const std::string_view kind = record_kind(object);
  if (kind == "LWPOLYLINE" || kind == "POLYLINE") {
    std::optional<PolylineShape> shape = polyline_shape(object);
    return shape && !shape->closed && shape->flat && shape->vertices.size() > 1 ? shape
                                                                                : std::nullopt;
  }
  if (kind != "LINE" && kind != "ARC") return std::nullopt;
  const std::optional<Curve> curve = curve_of(object);
  if (!curve || curve->segments().empty()) return std::nullopt;
  const Segment& s = curve->segments()[0];
  if (s.kind() == Segment::Kind::kArc) return shape_of(curve->segments(), false, s.normal());
  if (std::fabs(s.start().z - s.end().z) > kSame) return std::nullopt;
  return shape_of(curve->segments(), false, AcGeVector3d::kZAxis);
}

std::vector<AcDbObjectId> join_to(PolylineShape& shape, const std::vector<AcDbObjectId>& objects,
                                  double fuzz) {
  const double reach = std::max(fuzz, kSame);
  std::vector<AcDbObjectId> joined;
  std::vector<std::pair<AcDbObjectId, PolylineShape>> left;
  for (const AcDbObjectId object : objects) {
    const std::optional<PolylineShape> other = joinable_shape(object);
    if (!other) continue;
    if (auto turned = turned_to(*other, shape.normal))
      left.emplace_back(object, std::move(*turned));
  }
  for (bool grown = true; grown && !shape.closed;) {
    grown = false;
    for (auto at = left.begin(); at != left.end(); ++at) {
      PolylineShape& other = at->second;
      const bool at_end = apart(shape.vertices.back(), other.vertices.front()) <= reach ||
                          apart(shape.vertices.back(), other.vertices.back()) <= reach;
      const bool at_start = apart(shape.vertices.front(), other.vertices.front()) <= reach ||
                            apart(shape.vertices.front(), other.vertices.back()) <= reach;
      if (!at_end && !at_start) continue;
      if (at_end) {
        if (apart(shape.vertices.back(), other.vertices.front()) > reach) other.reverse();
        append(shape, other);
      } else {
        if (apart(shape.vertices.front(), other.vertices.back()) > reach) other.reverse();
        append(other, shape);
        shape.vertices = other.vertices;
      }
      joined.push_back(at->first);
      left.erase(at);
      grown = true;
      break;
    }
    if (grown && shape.vertices.size() > 2 &&
        apart(shape.vertices.front(), shape.vertices.back()) <= reach) {
      shape.vertices.pop_back();
      shape.closed = true;
    }
  }
  return joined;
}

}  // namespace cad
