#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/tag_writer.h"
#include "host/geometry/point2d.h"

namespace cad {

/// The vertices of a LWPOLYLINE and where each stands among its tags.
struct PolylineVertex {
  AcGePoint2d point;
  double bulge = 0.0;
  std::optional<double> start_width;
  std::optional<double> end_width;
  std::size_t begin = 0;  ///< offset of its group 10
  std::size_t end = 0;    ///< offset behind its last tag
};

std::vector<PolylineVertex> read_vertices(std::string_view bytes, const dxf::Dialect& dialect);
/// The tags of one vertex.
std::string vertex_tags(const PolylineVertex& vertex, const dxf::Dialect& dialect);
void write_vertex(dxf::TagWriter& tags, const PolylineVertex& vertex);

}  // namespace cad
