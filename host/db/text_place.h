#pragma once

#include <string>
#include <string_view>

#include "host/db/entity_fields.h"
#include "host/db/text_style.h"
#include "host/font/mtext_layout.h"
#include "host/font/placement.h"

/// What texts store of their place and size, ready to be laid out. Points are in the plane of the
/// text's own coordinates.
namespace cad {

/// Of a TEXT, ATTRIB or ATTDEF: what it shows, and where it says it stands.
struct StoredLine {
  std::wstring text;
  font::LinePlace place;
};
StoredLine stored_line(std::string_view kind, const EntityFields& fields,
                       const font::FontStyle& style);

/// Of a MTEXT.
struct StoredParagraphs {
  std::wstring contents;
  font::MTextShape shape;
  double rotation = 0.0;  ///< from the x axis of its plane, radians
};
StoredParagraphs stored_paragraphs(std::string_view bytes, const dxf::Dialect& dialect,
                                   const AcGeMatrix3d& axes);

/// Where CAD programs expect the first point (group 10) of such a text: where its base line starts.
/// Whoever sets the text, size, style, justification or alignment point of a TEXT stores it. Height
/// and width factor as they come out are in `shape`: they differ from what is stored in aligned and
/// fitted texts. `style` null: the plain one.
font::PlacedLine placed_line(const StoredLine& line, const TextStyleRef& style);

}  // namespace cad
