#include "host/db/text_start.h"

#include "host/db/text.h"
#include "host/db/text_place.h"

namespace cad {

AcGePoint3d text_start(const AcDbText& text, std::wstring_view string, const AcGePoint3d& anchor) {
  const TextStyleRef style = text_style(text.textStyle());
  font::LinePlace place;
  place.second = {anchor.x, anchor.y};
  place.across = static_cast<font::Across>(text.horizontalMode());
  place.up = static_cast<font::Up>(text.verticalMode());
  place.rotation = text.rotation();
  place.backward = text.isMirroredInX();
  place.upside_down = text.isMirroredInY();
  place.shape = {text.height(), text.widthFactor(), text.oblique(), style->font.vertical};
  const font::Point start = font::place_line(string, *style->face, place).start;
  return {start.x, start.y, anchor.z};
}

}  // namespace cad
