#include "host/gi/text_styles.h"

#include <numbers>

#include "host/db/drawing.h"
#include "host/dxf/tag_reader.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

std::wstring decoded(std::string_view stored, const dxf::Dialect& dialect) {
  std::wstring text;
  dxf::append_decoded(stored, dialect, text);
  return text;
}

font::FontStyle style_of(std::string_view record, const dxf::Dialect& dialect) {
  constexpr int kVertical = 4, kBackward = 2, kUpsideDown = 4;
  constexpr int kApplication = 1001, kTypeface = 1000, kTypefaceFlags = 1071;
  font::FontStyle style;
  bool of_host = false;  // extended data of the host itself
  dxf::Tag tag;
  const auto integer = [&] { return dxf::int_value(tag, dialect); };
  for (dxf::TagReader tags(record, dialect); tags.next(tag);) {
    switch (tag.code) {
      case 3:
        style.file = decoded(tag.value, dialect);
        break;
      case 4:
        style.big_file = decoded(tag.value, dialect);
        break;
      case 40:
        style.fixed_height = dxf::real_value(tag, dialect);
        break;
      case 41:
        style.width_factor = dxf::real_value(tag, dialect);
        break;
      case 50:
        style.oblique = dxf::real_value(tag, dialect) * (std::numbers::pi / 180);
        break;
      case 70:
        style.vertical = (integer() & kVertical) != 0;
        break;
      case 71:
        style.backward = (integer() & kBackward) != 0;
        style.upside_down = (integer() & kUpsideDown) != 0;
        break;
      case kApplication:
        of_host = tag.value == "ACAD";
        break;
      case kTypeface:
        if (of_host) style.typeface = decoded(tag.value, dialect);
        break;
      case kTypefaceFlags:
        if (of_host) {
          style.bold = font::is_bold(integer());
          style.italic = font::is_italic(integer());
        }
        break;
      default:
        break;
    }
  }
  return style;
}

}  // namespace

font::FontStyle TextStyles::read(std::string_view stored_name) const {
  if (!drawing_) return {};
  const std::wstring name =
      stored_name.empty() ? L"Standard" : decoded(stored_name, drawing_->dialect());
  const Stub* const record = drawing_->table_record("STYLE", name);
  return record ? style_of(drawing_->bytes_of(*record), drawing_->dialect()) : font::FontStyle();
}

const TextStyles::Style& TextStyles::style(std::string_view stored_name) {
  const auto [place, is_new] = styles_.try_emplace(std::string(stored_name));
  if (is_new) {
    place->second.font = read(stored_name);
    place->second.face = &font::face_for(place->second.font);
  }
  return place->second;
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
