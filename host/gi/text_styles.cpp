#include "host/gi/text_styles.h"

#include "host/db/drawing.h"

namespace cad {

const TextStyle& TextStyles::style(std::string_view stored_name) {
  const auto [place, is_new] = styles_.try_emplace(std::string(stored_name));
  if (is_new) place->second = drawing_ ? text_style(*drawing_, stored_name) : plain_text_style();
  return *place->second;
}

AcGiTextStyle published_style(const font::FontStyle& style, const font::LineShape& shape) {
  AcGiTextStyle published;
  published.setFileName(style.file.c_str());
  published.setBigFontFileName(style.big_file.c_str());
  published.setFont(style.typeface.c_str(), style.bold, style.italic);
  published.setTextSize(shape.height);
  published.setXScale(shape.width_factor);
  published.setObliquingAngle(shape.oblique);
  published.setVertical(shape.vertical);
  return published;
}

}  // namespace cad
