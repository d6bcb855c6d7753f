#include "network/drawing_geometry.h"

#include <cmath>
#include <numbers>

#include "host/db/drawing.h"
#include "host/db/text_style.h"
#include "host/font/line_layout.h"

double Gx::CalcDimAng(double angle) {
  constexpr double kTurn = 2 * std::numbers::pi, kQuarter = std::numbers::pi / 2;
  constexpr double kNoise = 1e-6;
  const auto within_turn = [](double a) {
    const double rest = std::fmod(a, kTurn);
    const double positive = rest < 0.0 ? rest + kTurn : rest;
    return positive < kTurn ? positive : 0.0;
  };
  const double a = within_turn(angle);
  const bool backwards = a > kQuarter + kNoise && a <= 3 * kQuarter + kNoise;
  return backwards ? within_turn(a + std::numbers::pi) : a;
}

bool KT::GetTextWidth(const CString& text, double height, double& width, int /*mode*/,
                      double widthFactor) {
  width = 0.0;
  if (!std::isfinite(height) || !std::isfinite(widthFactor)) return false;
  AcDbObjectId style;
  if (AcDbDatabase* const drawing = acdbHostApplicationServices()->workingDatabase())
    style =
        AcDbObjectId(drawing->drawing().table_record("STYLE", drawing->header_value("$TEXTSTYLE")));
  const cad::font::Face& face = *cad::text_style(style)->face;
  width = cad::font::measure_line(text, face, {height, widthFactor}).advance;
  return width != 0.0;
}

bool CKtGxUtils::IsFirstPointNear(const AcGePoint3d& first, const AcGePoint3d& second,
                                  const AcGePoint3d& target) {
  return first.distanceTo(target) < second.distanceTo(target);
}
