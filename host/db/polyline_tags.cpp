#include "host/db/polyline_tags.h"

#include "host/db/entity_fields.h"
namespace cad {

std::vector<PolylineVertex> read_vertices(std::string_view bytes, const dxf::Dialect& dialect) {
  std::vector<PolylineVertex> vertices;
  OwnTags tags(bytes, dialect);
  dxf::Tag tag;
  bool in_vertex = false;
  while (tags.next(tag)) {
    if (tag.code == 10) {
      vertices.emplace_back();
      vertices.back().begin = tag.begin;
      vertices.back().point.x = dxf::real_value(tag, dialect);
      in_vertex = true;
    } else if (in_vertex) {
      const double value = dxf::real_value(tag, dialect);
      constexpr int kIdentifier = 91;
      if (tag.code == 20)
        vertices.back().point.y = value;
      else if (tag.code == 40)
        vertices.back().start_width = value;
      else if (tag.code == 41)
        vertices.back().end_width = value;
      else if (tag.code == 42)
        vertices.back().bulge = value;
      else
        in_vertex = tag.code == kIdentifier;
    }
    if (in_vertex) vertices.back().end = tag.end;
  }
  return vertices;
}

void write_vertex(dxf::TagWriter& tags, const PolylineVertex& vertex) {
  tags.real(10, vertex.point.x);
  tags.real(20, vertex.point.y);
  if (vertex.start_width || vertex.end_width) {
    tags.real(40, vertex.start_width.value_or(0.0));
    tags.real(41, vertex.end_width.value_or(0.0));
  }
  if (vertex.bulge != 0.0) tags.real(42, vertex.bulge);
}

std::string vertex_tags(const PolylineVertex& vertex, const dxf::Dialect& dialect) {
  std::string text;
  dxf::TagWriter tags(text, dialect);
  write_vertex(tags, vertex);
  return text;
}

}  // namespace cad
