#pragma once

#include <memory>
#include <string_view>

#include "host/db/object_id.h"
#include "host/dxf/dialect.h"
#include "host/font/face.h"
#include "host/font/style.h"

namespace cad {

class Drawing;

/// A STYLE record as texts need it: what it says, and the face that draws it.
struct TextStyle {
  font::FontStyle font;
  const font::Face* face;  ///< never null; lives as long as the program
};
/// Never null. What is held stays as it was when the record changes or its drawing closes.
using TextStyleRef = std::shared_ptr<const TextStyle>;

/// The style of that name, as group 7 stores it; Standard for none; a plain one when the drawing
/// has no such record. Records are read again only when they have changed.
TextStyleRef text_style(Drawing& drawing, std::string_view stored_name);
/// By its record; the plain one for null.
TextStyleRef text_style(AcDbObjectId style);
/// The style for texts that have none.
const TextStyleRef& plain_text_style();

/// What the tags of a STYLE record say.
font::FontStyle read_font_style(std::string_view record, const dxf::Dialect& dialect);

}  // namespace cad
