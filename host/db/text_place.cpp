#include "host/db/text_place.h"

#include <algorithm>
#include <cmath>

#include "host/dxf/text.h"

namespace cad {
namespace {

/// A number that stands for nothing is read as 0.
template <class T>
T listed(int code, T last) {
  return code >= 0 && code <= static_cast<int>(last) ? static_cast<T>(code) : T{};
}

font::Point flat(const AcGePoint3d& point) { return {point.x, point.y}; }

}  // namespace

StoredLine stored_line(std::string_view kind, const EntityFields& fields,
                       const font::FontStyle& style) {
  constexpr int kTag = 2, kText = 1;  // a definition shows its tag
  constexpr int kBackward = 2, kUpsideDown = 4;
  StoredLine line;
  line.text = fields.text(kind == "ATTDEF" ? kTag : kText);
  font::LinePlace& place = line.place;
  place.first = flat(fields.point(10));
  place.rotation = fields.angle(50);
  place.shape = {fields.real(40), fields.real(41, 1.0), fields.angle(51), style.vertical};
  const int generation = fields.integer(71);
  place.backward = (generation & kBackward) != 0;
  place.upside_down = (generation & kUpsideDown) != 0;
  if (!fields.has(11)) return line;
  place.second = flat(fields.point(11));
  place.across = listed(fields.integer(72), font::Across::kFit);
  // Attributes have the length of their field in group 73.
  place.up = listed(fields.integer(kind == "TEXT" ? 73 : 74), font::Up::kTop);
  return line;
}

StoredParagraphs stored_paragraphs(std::string_view bytes, const dxf::Dialect& dialect,
                                   const AcGeMatrix3d& axes) {
  constexpr std::int64_t kExactly = 2;
  constexpr double kDegree = 3.14159265358979323846 / 180.0;
  StoredParagraphs stored;
  std::string joined;
  AcGeVector3d along;
  bool by_direction = false, in_columns = false;
  OwnTags tags(bytes, dialect);
  dxf::Tag tag;
  while (tags.next(tag)) {
    const auto real = [&] { return dxf::real_value(tag, dialect); };
    const auto integer = [&] { return dxf::int_value(tag, dialect); };
    switch (tag.code) {
      case 3:
      case 1:
        joined += tag.value;
        break;
      case 11:
        along.x = real(), by_direction = true;
        break;
      case 21:
        along.y = real();
        break;
      case 31:
        along.z = real();
        break;
      case 40:
        stored.shape.height = real();
        break;
      case 41:
        stored.shape.reference_width = real();
        break;
      case 44:
        stored.shape.line_spacing = real();
        break;
      case 50:  // of direction and angle the later one counts; then come heights of columns
        if (in_columns) break;
        stored.rotation = real() * kDegree, by_direction = false;
        break;
      case 71:
        stored.shape.attachment = static_cast<int>(std::clamp<std::int64_t>(integer(), 1, 9));
        break;
      case 73:
        stored.shape.exact_spacing = integer() == kExactly;
        break;
      case 75:
      case 76:
        in_columns = true;
        break;
      default:
        break;
    }
  }
  dxf::append_decoded(joined, dialect, stored.contents);
  const AcGeVector3d own = axes.transpose() * along;
  if (by_direction && !own.isZeroLength()) stored.rotation = std::atan2(own.y, own.x);
  return stored;
}

font::PlacedLine placed_line(const StoredLine& line, const TextStyleRef& style) {
  return font::place_line(line.text, *(style ? style : plain_text_style())->face, line.place);
}

}  // namespace cad
