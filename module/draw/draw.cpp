#include "module/draw/draw.h"

#include <cmath>
#include <numbers>

#include "module/draw/layers.h"
#include "module/platform/opened.h"
#include "module/platform/pipe_library.h"
#include "module/platform/trace.h"

namespace {

constexpr double kLeastScale = 1.0;
constexpr double kUsualScale = 500.0;
constexpr double kUsualTextHeight = 3.5;  // paper
constexpr Adesk::UInt16 kByLayer = 256;
constexpr double kAngleTolerance = 0.05;

/// The record of that name; null when the drawing has none.
template <class Table>
AcDbObjectId record_named(const CString& name) {
  AcDbDatabase* const drawing = acdbHostApplicationServices()->workingDatabase();
  AcDbObjectId id;
  Table* table = nullptr;
  if (!drawing || drawing->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return id;
  table->getAt(name.c_str(), id);
  table->close();
  return id;
}

AcGeVector3d direction_of(double angle) { return {std::cos(angle), std::sin(angle), 0.0}; }

}  // namespace

CDimDraw::CDimDraw(double scale, const wchar_t* layerName) : scale_(scale) {
  Init(layerName);
  CString current;
  KT::GetCADStrVar(L"clayer", current);
  if (!dim::turn_on_and_unlock(record_named<AcDbLayerTable>(current))) return;
  CGxData::Instance()->GetErr()->Report(dim::format_text(
      L"当前图层%s被关闭,或锁定,将不能看到拖放效果,在命令退出时程序才能自动打开图层!!",
      current.c_str()));
}

CDimDraw::CDimDraw(double scale, AcGiWorldDraw* worldDraw, const wchar_t* layerName)
    : scale_(scale), world_draw_(worldDraw) {
  Init(layerName);
}

CDimDraw::~CDimDraw() = default;

void CDimDraw::Init(const wchar_t* layerName) {
  matrix_.setToIdentity();
  color_ = kByLayer;
  text_height_ = KT::GetTextHigh();
  if (text_height_ < 0.0) {
    CGxData::Instance()->GetErr()->Report2Cmd(L"\n 取文字字高设置失败");
    text_height_ = kUsualTextHeight;
  }
  CString style;
  KT::GetCADStrVar(L"TEXTSTYLE", style);
  const AcDbObjectId style_id = record_named<AcDbTextStyleTable>(style);
  if (const dim::Opened<AcDbTextStyleTableRecord> record{style_id, AcDb::kForRead})
    text_style_ = style_id;
  if (!(scale_ > kLeastScale)) scale_ = kUsualScale;
  if (!layerName) return;
  layer_name_ = layerName;
  layer_id_ = Gx::GetLayer(layerName);
  dim::make_layer_ready(layer_id_);
}

AcDbObjectId CDimDraw::DrawEntity(AcDbEntity* given, bool transform) {
  if (!given) return {};
  std::unique_ptr<AcDbEntity> entity(given);
  if (transform) entity->transformBy(matrix_);
  if (world_draw_) {
    entity->worldDraw(world_draw_);
    return {};
  }
  const Acad::ErrorStatus added = ArxDbgUtils::addToCurrentSpace(entity.get());
  if (added != Acad::eOk) {
    dim::trace_format(L"a %s was not drawn: status %d", entity->isA()->dxfName(), added);
    return {};
  }
  const AcDbEntity* const held = entity.release();  // the drawing's from here on
  const AcDbObjectId id = held->objectId();
  given->setColorIndex(color_);
  if (!layer_id_.isNull()) given->setLayer(layer_id_);
  given->close();
  entity_ids_.append(id);
  return id;
}

AcDbObjectId CDimDraw::DrawLine(AcGePoint3d from, AcGePoint3d to, double width) {
  if (width >= 0.0) return DrawPl({from, to}, width);
  auto line = std::make_unique<AcDbLine>();
  if (line->setStartPoint(from) != Acad::eOk || line->setEndPoint(to) != Acad::eOk) {
    dim::trace(L"a line was not drawn: its coordinates are not finite");
    return {};
  }
  return DrawEntity(line.release(), true);
}

AcDbObjectId CDimDraw::DrawPl(AcGePoint3dArray points, double width) {
  if (points.length() < 2) return {};
  auto polyline = std::make_unique<AcDbPolyline>(static_cast<unsigned>(points.length()));
  Acad::ErrorStatus status = Acad::eOk;
  for (int i = 0; i < points.length() && status == Acad::eOk; ++i)
    status = polyline->addVertexAt(static_cast<unsigned>(i),
                                   points[i].convert2d(AcGePlane::kXYPlane), 0.0, -1.0, -1.0);
  if (status == Acad::eOk && width >= 0.0) status = polyline->setConstantWidth(width);
  if (status != Acad::eOk) {
    dim::trace(L"a polyline was not drawn: its coordinates or its width are not finite");
    return {};
  }
  return DrawEntity(polyline.release(), true);
}

Adesk::UInt16 CDimDraw::SetDrawColor(Adesk::UInt16 color) {
  const Adesk::UInt16 before = color_;
  if (color == before) return before;
  color_ = color;
  if (world_draw_) world_draw_->subEntityTraits().setColor(color);
  return before;
}

bool CDimDraw::SetDrawLayer(const CString& name) {
  if (name.empty()) return false;
  layer_name_ = name;
  layer_id_ = Gx::GetLayer(name.c_str());
  dim::make_layer_ready(layer_id_);
  return true;
}

void CDimDraw::SetReferenceDirection(const AcGePoint3d& base, double referenceAngle,
                                     double labelAngle) {
  constexpr double kPi = std::numbers::pi;
  matrix_.setToIdentity();
  const double angle = Gx::CalcDimAng(labelAngle);
  AcGeVector3d label = direction_of(angle);
  AcGeVector3d reference = direction_of(referenceAngle);
  const double between = std::fmod(std::fabs(angle - referenceAngle), kPi);
  if (KT::IsDoubleEQ(between, kPi / 2, kAngleTolerance)) {
    // Across the reference a label reads along it when both are turned by a right angle.
    if (std::fabs(angle - 3 * kPi / 2) < kAngleTolerance) label.negate();
    reference.rotateBy(kPi / 2, AcGeVector3d::kZAxis);
  }
  if (label.dotProduct(reference) < 0.0)
    matrix_ = AcGeMatrix3d::rotation(kPi, AcGeVector3d::kZAxis, base);
}

AcGePoint3d CDimDraw::DrawToOriginalPoint(AcGePoint3d point) const {
  return point.transformBy(matrix_);
}

bool CDimDraw::TestNearestDist(AcGePoint3d first, AcGePoint3d second, AcGePoint3d target) const {
  first.z = second.z = 0.0;
  return CKtGxUtils::IsFirstPointNear(first.transformBy(matrix_), second.transformBy(matrix_),
                                      target);
}
