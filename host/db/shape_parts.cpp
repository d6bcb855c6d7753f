// From the tags of an entity to what is seen of it.

#include "host/db/shape_parts.h"

#include <algorithm>
#include <cmath>

#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/db/text_box.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

struct Source {
  AcDbObjectId id;
  std::string_view bytes;
  const dxf::Dialect& dialect;
};
using Parts = std::vector<ShapePart>;

void append_curve(const Source& source, Parts& parts) {
  if (std::optional<Curve> curve = curve_of(source.id)) parts.emplace_back(std::move(*curve));
}

void append_point(const Source& source, Parts& parts) {
  parts.emplace_back(EntityFields(source.bytes, source.dialect).point(10));
}

/// The third and fourth corners are stored crosswise; a triangle repeats the third.
void append_solid(const Source& source, Parts& parts) {
  const EntityFields fields(source.bytes, source.dialect);
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  FilledArea area;
  for (const int code : {10, 11, 13, 12}) {
    if (!fields.has(code)) continue;
    const AcGePoint3d corner = axes * fields.point(code);
    if (area.corners.empty() || !area.corners.back().isEqualTo(corner))
      area.corners.push_back(corner);
  }
  if (!area.corners.empty()) parts.emplace_back(std::move(area));
}

void append_face(const Source& source, Parts& parts) {
  const EntityFields fields(source.bytes, source.dialect);
  std::vector<AcGePoint3d> corners;
  for (const int code : {10, 11, 12, 13})
    if (fields.has(code)) corners.push_back(fields.point(code));
  if (!corners.empty()) parts.emplace_back(Curve::polyline3d(corners, true));
}

void append_text(const Source& source, Parts& parts) {
  if (const auto corners = text_corners(source.id))
    parts.emplace_back(FilledArea{{corners->begin(), corners->end()}});
}

void append_hatch(const Source& source, Parts& parts) {
  append_hatch_paths(source.bytes, source.dialect, parts);
}

void append_viewport(const Source& source, Parts& parts) {
  const EntityFields fields(source.bytes, source.dialect);
  const AcGePoint3d center = fields.point(10);
  const double x = fields.real(40) / 2, y = fields.real(41) / 2;
  const AcGePoint3d corners[] = {center + AcGeVector3d(-x, -y, 0), center + AcGeVector3d(x, -y, 0),
                                 center + AcGeVector3d(x, y, 0), center + AcGeVector3d(-x, y, 0)};
  parts.emplace_back(Curve::polyline3d(corners, true));
}

/// The frame of an image, or of its clipped part. Clip corners count pixels, from the middle of the
/// upper left one.
void append_image(const Source& source, Parts& parts) {
  const EntityFields fields(source.bytes, source.dialect);
  const AcGePoint3d origin = fields.point(10);
  const AcGeVector3d right = fields.vector(11), up = fields.vector(12);
  const double width = fields.real(13), height = fields.real(23);
  std::vector<AcGePoint2d> clip;
  OwnTags tags(source.bytes, source.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 14) clip.emplace_back(dxf::real_value(tag, source.dialect), 0.0);
    if (tag.code == 24 && !clip.empty()) clip.back().y = dxf::real_value(tag, source.dialect);
  }
  constexpr double kHalfPixel = 0.5;
  if (clip.size() == 2) clip = {clip[0], {clip[1].x, clip[0].y}, clip[1], {clip[0].x, clip[1].y}};
  if (clip.size() < 3)
    clip = {{-kHalfPixel, -kHalfPixel},
            {width - kHalfPixel, -kHalfPixel},
            {width - kHalfPixel, height - kHalfPixel},
            {-kHalfPixel, height - kHalfPixel}};
  FilledArea area;
  for (const AcGePoint2d& pixel : clip)
    area.corners.push_back(origin + right * (pixel.x + kHalfPixel) +
                           up * (height - kHalfPixel - pixel.y));
  parts.emplace_back(std::move(area));
}

/// The line along which the parallel ones run.
void append_mline(const Source& source, Parts& parts) {
  std::vector<AcGePoint3d> points;
  OwnTags tags(source.bytes, source.dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    if (tag.code == 11) points.emplace_back(dxf::real_value(tag, source.dialect), 0.0, 0.0);
    if (points.empty()) continue;
    if (tag.code == 21) points.back().y = dxf::real_value(tag, source.dialect);
    if (tag.code == 31) points.back().z = dxf::real_value(tag, source.dialect);
  }
  constexpr int kClosed = 2;
  const bool closed = EntityFields(source.bytes, source.dialect).integer(71) & kClosed;
  if (!points.empty()) parts.emplace_back(Curve::polyline3d(points, closed));
}

struct MeshVertex {
  AcGePoint3d point;
  int flags;
  int faces[4];  // numbers of a face's corners, from 1; negative: no edge is drawn behind it
};

std::vector<MeshVertex> mesh_vertices(const Source& source) {
  std::vector<MeshVertex> vertices;
  Drawing& drawing = StubStore::drawing_of(*source.id.stub());
  for (const Stub* part : drawing.sub_entities(*source.id.stub())) {
    if (part->erased() || drawing.kind_name(*part) != "VERTEX") continue;
    const EntityFields fields(drawing.bytes_of(*part), source.dialect);
    vertices.push_back(
        {fields.point(10),
         fields.integer(70),
         {fields.integer(71), fields.integer(72), fields.integer(73), fields.integer(74)}});
  }
  return vertices;
}

void append_face_mesh(const std::vector<MeshVertex>& vertices, Parts& parts) {
  constexpr int kPlace = 64;
  const auto first_face = std::find_if(vertices.begin(), vertices.end(),
                                       [](const MeshVertex& v) { return (v.flags & kPlace) == 0; });
  const auto count = first_face - vertices.begin();
  for (auto face = first_face; face != vertices.end(); ++face) {
    std::vector<AcGePoint3d> corners;
    for (const int number : face->faces)
      if (number != 0 && std::abs(number) <= count)
        corners.push_back(vertices[static_cast<std::size_t>(std::abs(number) - 1)].point);
    if (!corners.empty()) parts.emplace_back(Curve::polyline3d(corners, true));
  }
}

/// Rows and columns of a mesh of M by N vertices.
void append_grid(const std::vector<MeshVertex>& all, const EntityFields& head, Parts& parts) {
  constexpr int kClosedM = 1, kSmooth = 4, kClosedN = 32, kFrame = 16;
  const int flags = head.integer(70);
  std::vector<AcGePoint3d> points;
  for (const MeshVertex& v : all)
    if (!(flags & kSmooth) || !(v.flags & kFrame)) points.push_back(v.point);
  const bool smooth = (flags & kSmooth) != 0;
  const int rows = head.integer(smooth ? 73 : 71), columns = head.integer(smooth ? 74 : 72);
  if (rows < 1 || columns < 1) return;
  const auto m = static_cast<std::size_t>(rows), n = static_cast<std::size_t>(columns);
  if (points.size() < m * n) return;
  std::vector<AcGePoint3d> line;
  for (std::size_t i = 0; i < m; ++i) {
    const auto row = points.begin() + static_cast<std::ptrdiff_t>(i * n);
    line.assign(row, row + static_cast<std::ptrdiff_t>(n));
    parts.emplace_back(Curve::polyline3d(line, (flags & kClosedN) != 0));
  }
  for (std::size_t j = 0; j < n; ++j) {
    line.clear();
    for (std::size_t i = 0; i < m; ++i) line.push_back(points[i * n + j]);
    parts.emplace_back(Curve::polyline3d(line, (flags & kClosedM) != 0));
  }
}

void append_polyline(const Source& source, Parts& parts) {
  constexpr int kMesh = 16, kFaces = 64;
  const EntityFields head(source.bytes, source.dialect);
  const int flags = head.integer(70);
  if (flags & kFaces)
    append_face_mesh(mesh_vertices(source), parts);
  else if (flags & kMesh)
    append_grid(mesh_vertices(source), head, parts);
  else
    append_curve(source, parts);
}

struct KindRow {
  std::string_view kind;
  void (*append)(const Source&, Parts&);
};
constexpr KindRow kKinds[] = {
    {"LINE", append_curve},        {"TEXT", append_text},         {"LWPOLYLINE", append_curve},
    {"MTEXT", append_text},        {"CIRCLE", append_curve},      {"ARC", append_curve},
    {"POLYLINE", append_polyline}, {"POINT", append_point},       {"ATTRIB", append_text},
    {"ATTDEF", append_text},       {"HATCH", append_hatch},       {"SOLID", append_solid},
    {"TRACE", append_solid},       {"3DFACE", append_face},       {"ELLIPSE", append_curve},
    {"SPLINE", append_curve},      {"LEADER", append_curve},      {"RAY", append_curve},
    {"XLINE", append_curve},       {"VIEWPORT", append_viewport}, {"IMAGE", append_image},
    {"WIPEOUT", append_image},     {"MLINE", append_mline},       {"MPOLYGON", append_hatch},
};

}  // namespace

bool append_parts(AcDbObjectId id, std::vector<ShapePart>& parts) {
  Drawing& drawing = StubStore::drawing_of(*id.stub());
  const std::string_view kind = drawing.kind_name(*id.stub());
  for (const KindRow& row : kKinds) {
    if (row.kind != kind) continue;
    row.append({id, drawing.bytes_of(*id.stub()), drawing.dialect()}, parts);
    return true;
  }
  return false;
}

}  // namespace cad
