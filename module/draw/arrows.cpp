#include <cmath>

#include "module/draw/draw.h"
#include "module/platform/pipe_library.h"
#include "module/platform/trace.h"

namespace {

// Paper millimetres.
constexpr double kShaft = 7.0;
constexpr double kHead = 3.5;
constexpr double kHeadWidth = 0.7;
constexpr double kInsertedLength = 15.0;

constexpr const wchar_t* kFlowArrow = L"szwdl\\psjt.dwg";
constexpr const wchar_t* kArrowOnLine = L"Dwg\\ktwdljtk\\cd01015.dwg";

bool points_nowhere(const AcGeVector3d& direction) {
  if (!direction.isZeroLength() && std::isfinite(direction.lengthSqrd())) return false;
  dim::trace(L"an arrow was not drawn: it has no direction");
  return true;
}

}  // namespace

AcDbObjectId CDimDraw::Arrow(AcGePoint3d point, AcGeVector3d direction) {
  if (points_nowhere(direction)) return {};
  if (!matrix_.isEqualTo(AcGeMatrix3d::kIdentity)) direction.negate();
  const AcGeVector3d along = direction.normal();
  const double shaft = PaperLongToCAD(kShaft), head = PaperLongToCAD(kHead);
  const AcGePoint3d start = point - along * ((shaft + head) / 2);

  struct Vertex {
    AcGePoint3d point;
    double start_width, end_width;
  };
  const Vertex vertices[] = {{start, 0.0, 0.0},
                             {start + along * shaft, PaperLongToCAD(kHeadWidth), 0.0},
                             {start + along * (shaft + head), -1.0, -1.0}};
  auto arrow = std::make_unique<AcDbPolyline>(3u);
  for (unsigned i = 0; i < 3; ++i) {
    const Vertex& vertex = vertices[i];
    const Acad::ErrorStatus status = arrow->addVertexAt(
        i, vertex.point.convert2d(AcGePlane::kXYPlane), 0.0, vertex.start_width, vertex.end_width);
    if (status == Acad::eOk) continue;
    dim::trace(L"an arrow was not drawn: its place or size is not finite");
    return {};
  }
  return DrawEntity(arrow.release(), true);
}

AcDbObjectId CDimDraw::LeftInsertArrow(AcGePoint3d point, AcGeVector3d direction, bool transform,
                                       const wchar_t* layer) {
  if (points_nowhere(direction)) return {};
  // Kept: unlike the other two, this arrow is not turned around by a matrix that flips.
  // Test: InsertedArrows.TheLeftArrowKeepsItsDirectionUnderAFlip
  const double rotation = direction.angleOnPlane(AcGePlane::kXYPlane);
  if (transform) point.transformBy(matrix_);
  const AcGePoint3d start = point - direction.normal() * (PaperLongToCAD(kInsertedLength) / 2);
  return draw_arrow_block(kFlowArrow, start, rotation, PaperLongToCAD(1.0), layer);
}

AcDbObjectId CDimDraw::MidInsertArrow(AcGePoint3d point, AcGeVector3d direction, bool transform,
                                      const wchar_t* layer, double scale) {
  return insert_turned(kFlowArrow, point, direction, transform, layer, scale);
}

AcDbObjectId CDimDraw::InsertArrowONline(AcGePoint3d point, AcGeVector3d direction, bool transform,
                                         const wchar_t* layer, double scale) {
  return insert_turned(kArrowOnLine, point, direction, transform, layer, scale);
}

AcDbObjectId CDimDraw::insert_turned(const wchar_t* file, AcGePoint3d point, AcGeVector3d direction,
                                     bool transform, const wchar_t* layer, double scale) {
  if (points_nowhere(direction)) return {};
  if (!(scale > 0.0)) scale = PaperLongToCAD(1.0);
  if (transform) {
    point.transformBy(matrix_);
    if (!matrix_.isEqualTo(AcGeMatrix3d::kIdentity)) direction.negate();
  }
  const double rotation = direction.angleOnPlane(AcGePlane::kXYPlane);
  return draw_arrow_block(file, point, rotation, scale, layer);
}

AcDbObjectId CDimDraw::draw_arrow_block(const wchar_t* file, const AcGePoint3d& point,
                                        double rotation, double scale, const wchar_t* layer) {
  CString folder;
  KT::GetInstallDir(folder);
  AcDbBlockReference* const arrow = GetBlkEnt(folder + file, L"", point, rotation, scale);
  if (!arrow) return {};
  // A preview is on no layer; asking for one might make it.
  if (!layer || world_draw_) return DrawEntity(arrow, false);
  const AcDbObjectId own_layer = layer_id_;
  layer_id_ = Gx::GetLayer(layer);
  const AcDbObjectId id = DrawEntity(arrow, false);
  layer_id_ = own_layer;
  return id;
}
