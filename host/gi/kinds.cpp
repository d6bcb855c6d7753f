#include "host/gi/kinds.h"

namespace cad {
namespace {

struct KindRow {
  std::string_view kind;
  DrawKind draw;
};
constexpr KindRow kKinds[] = {
    {"LINE", draw_curve},
    {"LWPOLYLINE", draw_light_polyline},
    {"TEXT", draw_line_of_text},
    {"MTEXT", draw_mtext},
    {"CIRCLE", draw_curve},
    {"ARC", draw_curve},
    {"POLYLINE", draw_heavy_polyline},
    {"ATTRIB", draw_line_of_text},
    {"ATTDEF", draw_line_of_text},
    {"POINT", draw_point},
    {"HATCH", draw_hatch},
    {"SOLID", draw_solid},
    {"TRACE", draw_solid},
    {"3DFACE", draw_face},
    {"ELLIPSE", draw_curve},
    {"SPLINE", draw_curve},
    {"LEADER", draw_leader},
    {"MLINE", draw_mline},
    {"RAY", draw_curve},
    {"XLINE", draw_curve},
    {"VIEWPORT", draw_viewport},
    {"IMAGE", draw_image},
    {"WIPEOUT", draw_wipeout},
    {"MPOLYGON", draw_hatch},
    {"MULTILEADER", draw_mleader},
};

}  // namespace

DrawKind draw_kind(std::string_view kind) {
  for (const KindRow& row : kKinds)
    if (row.kind == kind) return row.draw;
  return nullptr;
}

}  // namespace cad
