#include "host/db/old_polyline.h"

#include "host/dxf/tag_reader.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

struct Vertex {
  double x = 0, y = 0, start_width = 0, end_width = 0, bulge = 0;
};

struct Parts {
  std::string frame;     ///< groups in braces
  std::string common;    ///< layer, linetype, colour: of the vertices too
  std::string own;       ///< thickness, normal
  std::string extended;  ///< data of applications
  std::vector<Vertex> vertices;
  std::int64_t flags = 0;
  double elevation = 0;
  double width = 0;
};

Parts read(std::string_view bytes, const dxf::Dialect& dialect) {
  Parts parts;
  bool in_frame = true, in_braces = false;
  dxf::Tag tag;
  for (dxf::TagReader tags(bytes, dialect); tags.next(tag);) {
    const std::string_view raw = bytes.substr(tag.begin, tag.end - tag.begin);
    if (tag.code == 100) in_frame = false;
    if (tag.code >= 1000) {
      parts.extended += raw;
    } else if (in_frame) {
      if (tag.code == 102) in_braces = tag.value.starts_with('{');
      if (in_braces || tag.code == 102) parts.frame += raw;
    } else if (tag.code == 8 || tag.code == 6 || tag.code == 62) {
      parts.common += raw;
    } else if (tag.code == 39 || tag.code == 210 || tag.code == 220 || tag.code == 230) {
      parts.own += raw;
    } else if (tag.code == 70) {
      parts.flags = dxf::int_value(tag, dialect);
    } else if (tag.code == 38) {
      parts.elevation = dxf::real_value(tag, dialect);
    } else if (tag.code == 43) {
      parts.width = dxf::real_value(tag, dialect);
    } else if (tag.code == 10) {
      parts.vertices.push_back({.x = dxf::real_value(tag, dialect)});
    } else if (!parts.vertices.empty()) {
      Vertex& last = parts.vertices.back();
      double* const field = tag.code == 20   ? &last.y
                            : tag.code == 40 ? &last.start_width
                            : tag.code == 41 ? &last.end_width
                            : tag.code == 42 ? &last.bulge
                                             : nullptr;
      if (field) *field = dxf::real_value(tag, dialect);
    }
  }
  return parts;
}

}  // namespace

std::vector<OldRecord> old_polyline(std::string_view lwpolyline, const dxf::Dialect& dialect) {
  constexpr std::int64_t kClosed = 1, kContinuousPattern = 128;
  const Parts parts = read(lwpolyline, dialect);
  std::vector<OldRecord> records;
  const auto begin = [&](std::string_view kind) -> std::string& {
    std::string& bytes = records.emplace_back(OldRecord{kind, {}}).bytes;
    dxf::TagWriter(bytes, dialect).raw(0, kind);
    return bytes;
  };
  {
    std::string& bytes = begin("POLYLINE");
    bytes += parts.frame + parts.common;
    dxf::TagWriter writer(bytes, dialect);
    writer.integer(66, 1);
    writer.point(10, 0, 0, parts.elevation);
    bytes += parts.own;
    writer.integer(70, parts.flags & (kClosed | kContinuousPattern));
    if (parts.width != 0) {
      writer.real(40, parts.width);
      writer.real(41, parts.width);
    }
    bytes += parts.extended;
  }
  for (const Vertex& vertex : parts.vertices) {
    std::string& bytes = begin("VERTEX");
    bytes += parts.common;
    dxf::TagWriter writer(bytes, dialect);
    writer.point(10, vertex.x, vertex.y, parts.elevation);
    const double start = parts.width != 0 ? parts.width : vertex.start_width;
    const double end = parts.width != 0 ? parts.width : vertex.end_width;
    if (start != 0 || end != 0) {
      writer.real(40, start);
      writer.real(41, end);
    }
    if (vertex.bulge != 0) writer.real(42, vertex.bulge);
    writer.integer(70, 0);
  }
  begin("SEQEND") += parts.common;
  return records;
}

}  // namespace cad
