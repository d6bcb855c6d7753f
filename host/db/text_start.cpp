#include "host/db/text_start.h"

#include <cmath>
#include <string>
#include <utility>

#include "host/db/lens.h"
#include "host/db/object_access.h"
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

void lay_out_text(AcDbText& text) {
  constexpr std::string_view kPart = "AcDbText";
  constexpr int kString = 1, kStart = 10, kAnchor = 11;
  if (text.isA() != AcDbText::desc()) return;  // attributes have their string elsewhere
  const AcDb::TextHorzMode across = text.horizontalMode();
  if (text.isDefaultAlignment() || across == AcDb::kTextAlign || across == AcDb::kTextFit) return;
  const dxf::Dialect& dialect = ObjectAccess::dialect(text);
  std::string tags(ObjectAccess::content(text));
  const Lens lens(tags, dialect);
  if (!lens.find(kPart, kAnchor)) return;
  const AcGePoint3d start = text_start(text, lens.text(kPart, kString), lens.point(kPart, kAnchor));
  if (!std::isfinite(start.x + start.y + start.z) || start == lens.point(kPart, kStart)) return;
  LensWriter(tags, dialect).set_point(kPart, kStart, start);
  ObjectAccess::replace_content(text, std::move(tags));
}

}  // namespace cad
