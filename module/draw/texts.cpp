#include <cmath>
#include <numbers>

#include "module/draw/draw.h"
#include "module/platform/pipe_library.h"
#include "module/platform/trace.h"

namespace {

constexpr double kFactorOfSettings = -1.0;
constexpr double kFactorTolerance = 0.001;

/// How far a text's justification point is from where the text begins. A world draw knows no
/// justification.
AcGeVector3d to_start(const CString& text, AcDb::TextHorzMode horizontal,
                      AcDb::TextVertMode vertical, double rotation, double height,
                      double width_factor) {
  double width = 0.0;
  KT::GetTextWidth(text, height, width, 0, width_factor);
  AcGeVector3d x = AcGeVector3d::kXAxis, y = AcGeVector3d::kXAxis;
  x.rotateBy(rotation, AcGeVector3d::kZAxis);
  y.rotateBy(rotation + std::numbers::pi / 2, AcGeVector3d::kZAxis);
  AcGeVector3d way;
  if (horizontal == AcDb::kTextCenter) way -= x * (width / 2);
  if (horizontal == AcDb::kTextRight) way -= x * width;
  if (vertical == AcDb::kTextVertMid) way -= y * (height / 2);
  if (vertical == AcDb::kTextTop) way -= y * height;
  return way;
}

}  // namespace

AcDbObjectId CDimDraw::DrawTextW(const CString& string, AcGePoint3d point,
                                 AcDb::TextHorzMode horizontal, AcDb::TextVertMode vertical,
                                 double rotation, double height, double widthFactor) {
  if (height <= 0.0) height = TextHeight();
  const double factor = KT::IsDoubleEQ(widthFactor, kFactorOfSettings, kFactorTolerance)
                            ? Gx::GetTextWidthFactor()
                            : widthFactor;
  const double numbers[] = {point.x, point.y, point.z, rotation, height, factor};
  for (const double number : numbers) {
    if (std::isfinite(number)) continue;
    dim::trace(L"a text was not drawn: its place or size is not finite");
    return {};
  }
  auto text = std::make_unique<AcDbText>();
  if (world_draw_) {
    point += to_start(string, horizontal, vertical, rotation, height, factor);
    text->setTextStyle(text_style_);
  }
  text->setHorizontalMode(horizontal);
  text->setVerticalMode(vertical);
  text->setAlignmentPoint(point);
  text->setPosition(point);
  text->setTextString(string.c_str());
  text->setHeight(height);
  text->setWidthFactor(factor);
  text->setRotation(rotation);
  return DrawEntity(text.release(), true);
}

AcDbObjectId CDimDraw::DrawLBText(const CString& text, AcGePoint3d point, double rotation,
                                  double height, double widthFactor) {
  return DrawTextW(text, point, AcDb::kTextLeft, AcDb::kTextBottom, rotation, height, widthFactor);
}

AcDbObjectId CDimDraw::DrawRBText(const CString& text, AcGePoint3d point, double rotation,
                                  double height, double widthFactor) {
  return DrawTextW(text, point, AcDb::kTextRight, AcDb::kTextBottom, rotation, height, widthFactor);
}

AcDbObjectId CDimDraw::DrawMMText(const CString& text, AcGePoint3d point, double rotation,
                                  double height, double widthFactor) {
  return DrawTextW(text, point, AcDb::kTextCenter, AcDb::kTextVertMid, rotation, height,
                   widthFactor);
}

AcDbObjectId CDimDraw::DrawMBText(const CString& text, AcGePoint3d point, double rotation,
                                  double height, double widthFactor) {
  return DrawTextW(text, point, AcDb::kTextCenter, AcDb::kTextBottom, rotation, height,
                   widthFactor);
}

AcDbObjectId CDimDraw::DrawMTText(const CString& text, AcGePoint3d point, double rotation,
                                  double height, double widthFactor) {
  return DrawTextW(text, point, AcDb::kTextCenter, AcDb::kTextTop, rotation, height, widthFactor);
}
