#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "host/db/text_style.h"
#include "host/font/line_layout.h"
#include "host/gi/text_style.h"

namespace cad {

class Drawing;

/// The text styles of a drawing, looked up once.
class TextStyles {
 public:
  /// `drawing` null: every style is a plain one.
  explicit TextStyles(Drawing* drawing) : drawing_(drawing) {}
  /// By the name as stored in an entity. Stays where it is as long as this object.
  const TextStyle& style(std::string_view stored_name);

 private:
  Drawing* drawing_;
  std::unordered_map<std::string, TextStyleRef> styles_;
};

/// The same for drawings that know no glyphs.
AcGiTextStyle published_style(const font::FontStyle& style, const font::LineShape& shape);

}  // namespace cad
