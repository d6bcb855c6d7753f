#include "host/db/explode_text.h"

#include <cmath>

#include "host/db/drawing.h"
#include "host/db/object_groups.h"
#include "host/db/text_place.h"
#include "host/font/mtext_reader.h"
#include "host/geometry/ocs.h"

namespace cad {

std::wstring plain_line(std::wstring_view contents) {
  constexpr bool kKeepPercent = true;
  constexpr wchar_t kFirmBlank = L'\u00A0';
  std::wstring line;
  font::MTextReader reader(contents, {}, kKeepPercent);
  for (font::MTextPiece piece; reader.next(piece);) {
    switch (piece.kind) {
      case font::MTextPiece::Kind::kCharacter:
        line += piece.character == kFirmBlank ? L' ' : piece.character;
        break;
      case font::MTextPiece::Kind::kFraction:
        line += piece.upper;
        if (!piece.upper.empty() && !piece.lower.empty()) line += L'/';
        line += piece.lower;
        break;
      default:
        line += L' ';
    }
  }
  return line;
}

std::vector<GroupList> lines_of_mtext(AcDbObjectId mtext) {
  Drawing& drawing = StubStore::drawing_of(*mtext.stub());
  const std::string_view bytes = drawing.bytes_of(*mtext.stub());
  const EntityFields fields(bytes, drawing.dialect());
  const AcGeVector3d normal = fields.normal();
  const AcGeMatrix3d axes = ocs_to_wcs(normal);
  const StoredParagraphs stored = stored_paragraphs(bytes, drawing.dialect(), axes);
  const TextStyleRef style = text_style(drawing, fields.bytes(7));
  const font::MTextLayout layout = font::layout_mtext(stored.contents, style->font, stored.shape);

  const AcGePoint3d at = axes.transpose() * fields.point(10);
  const AcGeVector3d reading(std::cos(stored.rotation), std::sin(stored.rotation), 0);
  const AcGeVector3d up(-reading.y, reading.x, 0);
  const std::int64_t column = (stored.shape.attachment - 1) % 3;
  std::vector<GroupList> texts;
  for (const font::MTextLine& line : layout.lines) {
    const std::wstring text_line = plain_line(line.source);
    if (text_line.find_first_not_of(L' ') == std::wstring::npos) continue;
    const AcGePoint3d start = at + reading * line.left + up * line.base;
    GroupList text = like(mtext, L"TEXT");
    text.point(10, start).real(40, line.height).text(1, text_line).real(50, stored.rotation);
    if (style->font.width_factor > 0.0 && style->font.width_factor != 1.0)
      text.real(41, style->font.width_factor);
    if (style->font.oblique != 0.0) text.real(51, style->font.oblique);
    if (fields.has(7)) text.text(7, fields.text(7));
    // Readers place a centred or right text by its second point.
    if (column != 0) {
      const double share = column == 1 ? 0.5 : 1.0;
      text.integer(72, column).point(11, start + reading * (line.width * share));
    }
    text.point(210, AcGePoint3d::kOrigin + normal);
    texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace cad
