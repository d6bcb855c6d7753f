#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "host/font/face.h"
#include "host/font/line_layout.h"
#include "host/font/style.h"
#include "host/gi/text_style.h"

namespace cad {

class Drawing;

/// The text styles of a drawing, read once.
class TextStyles {
 public:
  struct Style {
    font::FontStyle font;
    const font::Face* face;
  };

  /// `drawing` null: every style is a plain one.
  explicit TextStyles(Drawing* drawing) : drawing_(drawing) {}
  /// By the name as stored in an entity; Standard when it is empty, a plain one when the drawing
  /// has no such style. Stays where it is as long as this object.
  const Style& style(std::string_view stored_name);

 private:
  font::FontStyle read(std::string_view stored_name) const;

  Drawing* drawing_;
  std::unordered_map<std::string, Style> styles_;
};

/// The same for drawings that know no glyphs.
AcGiTextStyle published_style(const font::FontStyle& style, const font::LineShape& shape);

}  // namespace cad
