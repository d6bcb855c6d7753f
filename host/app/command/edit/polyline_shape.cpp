#include "host/app/command/edit/polyline_shape.h"

#include <algorithm>
#include <cmath>

#include "host/db/database.h"
#include "host/db/make_object.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"
#include "host/geometry/ocs.h"
#include "host/geometry/offset.h"

namespace cad {
namespace {

using Vertex = PolylineShape::Vertex;

// Flags of group 70.
constexpr std::int64_t kClosed = 1, kCurveFit = 2, kSplined = 4, kInSpace = 8, kMesh = 16 | 64;
constexpr std::int64_t kContinuous = 128, kSpaceVertex = 32;

double real_of(const RecordGroups& record, int code, double absent) {
  const Group* const group = record.find(code);
  return group ? group->numbers[0] : absent;
}

std::int64_t integer_of(const RecordGroups& record, int code) {
  const Group* const group = record.find(code);
  return group ? group->integer : 0;
}

AcGePoint3d point_of(const Group& group) {
  return {group.numbers[0], group.numbers[1], group.numbers[2]};
}

AcGeVector3d normal_of(const RecordGroups& record) {
  const Group* const group = record.find(210);
  return group ? point_of(*group).asVector() : AcGeVector3d::kZAxis;
}

PolylineShape light_shape(const RecordGroups& record) {
  PolylineShape shape;
  const double elevation = real_of(record, 38, 0.0), width = real_of(record, 43, 0.0);
  for (const Group& group : record.groups()) {
    const double number = group.numbers[0];
    if (group.code == 10) {
      Vertex vertex{point_of(group), width, width, 0.0};
      vertex.point.z = elevation;
      shape.vertices.push_back(vertex);
    } else if (!shape.vertices.empty()) {
      Vertex& last = shape.vertices.back();
      if (group.code == 40) last.start_width = number;
      if (group.code == 41) last.end_width = number;
      if (group.code == 42) last.bulge = number;
    }
  }
  return shape;
}

std::optional<PolylineShape> heavy_shape(AcDbObjectId object, const RecordGroups& head) {
  PolylineShape shape;
  shape.flat = (integer_of(head, 70) & kInSpace) == 0;
  const double start = real_of(head, 40, 0.0), end = real_of(head, 41, 0.0);
  RecordGroups record;
  AcDbDatabase& database = *object.database();
  for (AcDbObjectId id = database.next_entity(object); record_kind(id) == "VERTEX";
       id = database.next_entity(id)) {
    record.read(id);
    const Group* const point = record.find(10);
    if (!point) return std::nullopt;
    shape.vertices.push_back({point_of(*point), real_of(record, 40, start),
                              real_of(record, 41, end), real_of(record, 42, 0.0)});
  }
  return shape;
}

bool one_width(const PolylineShape& shape) {
  return std::all_of(shape.vertices.begin(), shape.vertices.end(), [&](const Vertex& vertex) {
    const double width = shape.vertices.front().start_width;
    return vertex.start_width == width && vertex.end_width == width;
  });
}

void add_light(GroupList& groups, const PolylineShape& shape, bool has_width) {
  groups.integer(90, static_cast<std::int64_t>(shape.vertices.size()));
  groups.integer(70, (shape.closed ? kClosed : 0) | (shape.continuous_linetype ? kContinuous : 0));
  const bool constant = one_width(shape);
  const double width = shape.vertices.front().start_width;
  if (constant && (width != 0 || has_width)) groups.real(43, width);
  const double elevation = shape.vertices.front().point.z;
  groups.real(38, elevation);
  for (const Vertex& vertex : shape.vertices) {
    groups.point2d(10, {vertex.point.x, vertex.point.y});
    if (!constant) groups.real(40, vertex.start_width).real(41, vertex.end_width);
    groups.real(42, vertex.bulge);
  }
}

AcDbObjectId draw_heavy(CommandLine& line, AcDbObjectId source, const PolylineShape& shape,
                        Data data) {
  GroupList groups = like(source, L"POLYLINE", data);
  const double elevation = shape.flat ? shape.vertices.front().point.z : 0.0;
  const std::int64_t flags = (shape.closed ? kClosed : 0) | (shape.flat ? 0 : kInSpace) |
                             (shape.continuous_linetype ? kContinuous : 0);
  groups.integer(66, 1).point(10, {0, 0, elevation}).integer(70, flags);
  if (shape.flat) groups.point(210, AcGePoint3d::kOrigin + shape.normal);
  std::vector<GroupList> parts;
  for (const Vertex& vertex : shape.vertices) {
    GroupList& part = parts.emplace_back(L"VERTEX");
    part.point(10, vertex.point).integer(70, shape.flat ? 0 : kSpaceVertex);
    if (shape.flat) {
      part.real(40, vertex.start_width).real(41, vertex.end_width).real(42, vertex.bulge);
    }
  }
  return draw_beside(line, source, groups, parts);
}

double sub_bulge(double bulge, double from, double to) {
  return bulge == 0.0 ? 0.0 : std::tan(std::atan(bulge) * (to - from));
}

}  // namespace

std::size_t PolylineShape::segments() const {
  return closed || vertices.empty() ? vertices.size() : vertices.size() - 1;
}

Curve PolylineShape::curve() const {
  if (!flat) {
    std::vector<AcGePoint3d> points;
    for (const Vertex& vertex : vertices) points.push_back(vertex.point);
    return Curve::polyline3d(points, closed);
  }
  std::vector<Curve::Vertex> corners;
  for (const Vertex& v : vertices) corners.push_back({{v.point.x, v.point.y}, v.bulge});
  return Curve::polyline(corners, closed, normal, vertices.empty() ? 0.0 : vertices[0].point.z);
}

PolylineShape PolylineShape::part(double from, double to) const {
  PolylineShape out = *this;
  out.closed = false;
  out.vertices.clear();
  const std::size_t count = segments();
  if (count == 0) return out;
  const Curve whole = curve();
  const AcGeMatrix3d own = flat ? ocs_to_wcs(normal).transpose() : AcGeMatrix3d();
  const double last = static_cast<double>(count);
  // The number of the segment a param is in; those beyond an end belong to the end segments.
  const auto segment_of = [&](double t) {
    const double floor = std::floor(t);
    return closed ? floor : std::clamp(floor, 0.0, last - 1.0);
  };
  double at = from;
  while (at < to) {
    const double number = segment_of(at);
    const bool open_end = !closed && number == last - 1.0;
    const double stop = open_end ? to : std::min(to, number + 1.0);
    const auto i = static_cast<std::size_t>(std::fmod(number, last));
    const Vertex& source = vertices[i];
    const double u0 = at - number, u1 = stop - number;
    const double widening = source.end_width - source.start_width;
    const double w0 = std::clamp(u0, 0.0, 1.0), w1 = std::clamp(u1, 0.0, 1.0);
    Vertex vertex;
    vertex.point = u0 == 0.0 ? source.point : own * whole.segments()[i].point_at(u0);
    vertex.start_width = source.start_width + widening * w0;
    vertex.end_width = source.start_width + widening * w1;
    vertex.bulge = u0 == 0.0 && u1 == 1.0 ? source.bulge : sub_bulge(source.bulge, u0, u1);
    out.vertices.push_back(vertex);
    if (stop >= to) {
      Vertex end;
      const std::size_t next = (i + 1) % vertices.size();
      end.point = u1 == 1.0 ? vertices[next].point : own * whole.segments()[i].point_at(u1);
      end.start_width = end.end_width = vertex.end_width;
      out.vertices.push_back(end);
    }
    at = stop;
  }
  return out;
}

void PolylineShape::reverse() {
  std::vector<Vertex> out(vertices.size());
  const std::size_t count = vertices.size();
  for (std::size_t i = 0; i < count; ++i) {
    out[i].point = vertices[count - 1 - i].point;
    // What led to a vertex leads away from it now.
    const Vertex& segment = vertices[(2 * count - 2 - i) % count];
    out[i].start_width = segment.end_width;
    out[i].end_width = segment.start_width;
    out[i].bulge = segment.bulge == 0.0 ? 0.0 : -segment.bulge;
  }
  vertices = std::move(out);
}

std::optional<PolylineShape> polyline_shape(AcDbObjectId object) {
  RecordGroups record;
  const std::string_view kind = record_kind(object);
  if ((kind != "LWPOLYLINE" && kind != "POLYLINE") || !record.read(object)) return std::nullopt;
  const std::int64_t flags = integer_of(record, 70);
  const bool heavy = kind == "POLYLINE";
  if (heavy && (flags & (kMesh | kCurveFit | kSplined)) != 0) return std::nullopt;
  std::optional<PolylineShape> shape = heavy ? heavy_shape(object, record) : light_shape(record);
  if (!shape || shape->vertices.empty()) return std::nullopt;
  shape->closed = (flags & kClosed) != 0;
  shape->continuous_linetype = (flags & kContinuous) != 0;
  shape->normal = normal_of(record);
  return shape;
}

AcDbObjectId set_polyline_shape(CommandLine& line, AcDbObjectId object,
                                const PolylineShape& shape) {
  if (record_kind(object) == "POLYLINE") {
    const AcDbObjectId made = draw_heavy(line, object, shape, Data::kTake);
    if (!made.isNull()) erase(object);
    return made;
  }
  RecordGroups record;
  record.read(object);
  GroupList groups;
  add_light(groups, shape, record.find(43) != nullptr);
  return line.check(change_object(object, groups)) ? object : AcDbObjectId();
}

AcDbObjectId draw_polyline_like(CommandLine& line, AcDbObjectId source, const PolylineShape& shape,
                                Data data) {
  if (shape.vertices.size() < 2) return {};
  const bool heavy = record_kind(source) == "POLYLINE" || !shape.flat ||
                     !line.database().has_dictionaries();  // of R12
  if (heavy) return draw_heavy(line, source, shape, data);
  GroupList groups = like(source, L"LWPOLYLINE", data);
  add_light(groups, shape, false);
  groups.point(210, AcGePoint3d::kOrigin + shape.normal);
  return draw_beside(line, source, groups);
}

PolylineShape shape_of(std::span<const Segment> segments, bool closed, const AcGeVector3d& normal) {
  PolylineShape shape;
  shape.closed = closed;
  shape.normal = normal;
  const AcGeMatrix3d own = ocs_to_wcs(normal).transpose();
  for (const Segment& segment : segments) {
    shape.vertices.push_back({own * segment.start(), 0.0, 0.0, bulge_of(segment, normal)});
  }
  if (!closed && !segments.empty()) {
    shape.vertices.push_back({own * segments.back().end(), 0.0, 0.0, 0.0});
  }
  return shape;
}

}  // namespace cad
