#include "host/db/text_style.h"

#include <numbers>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/base/fold.h"
#include "host/db/drawing.h"
#include "host/dxf/tag_reader.h"
#include "host/dxf/text.h"

namespace cad {
namespace {

TextStyleRef made(font::FontStyle font) {
  const font::Face& face = font::face_for(font);
  return std::make_shared<const TextStyle>(TextStyle{std::move(font), &face});
}

/// A record that was read. Valid while the record at that place still has these bytes.
struct Known {
  std::string bytes;
  dxf::Release release;
  CodePage code_page;
  TextStyleRef style;

  bool is(std::string_view record, const dxf::Dialect& dialect) const {
    return bytes == record && release == dialect.release && code_page == dialect.code_page;
  }
};

TextStyleRef style_of(const Drawing& drawing, const Stub& stub) {
  static auto& known = *new std::unordered_map<const Stub*, Known>;
  const std::string_view record = drawing.bytes_of(stub);
  const dxf::Dialect& dialect = drawing.dialect();
  const auto found = known.find(&stub);
  if (found != known.end() && found->second.is(record, dialect)) return found->second.style;
  constexpr std::size_t kMost = 4096;  // records of closed drawings are among them
  if (known.size() >= kMost) known.clear();
  TextStyleRef style = made(read_font_style(record, dialect));
  known.insert_or_assign(&stub,
                         Known{std::string(record), dialect.release, dialect.code_page, style});
  return style;
}

}  // namespace

const TextStyleRef& plain_text_style() {
  static const TextStyleRef plain = made({});
  return plain;
}

TextStyleRef text_style(Drawing& drawing, std::string_view stored_name) {
  std::wstring name;
  if (stored_name.empty())
    name = L"Standard";
  else
    dxf::append_decoded(stored_name, drawing.dialect(), name);
  const Stub* const record = drawing.table_record("STYLE", name);
  return record ? style_of(drawing, *record) : plain_text_style();
}

TextStyleRef text_style(AcDbObjectId style) {
  return style.isNull() ? plain_text_style()
                        : style_of(StubStore::drawing_of(*style.stub()), *style.stub());
}

font::FontStyle read_font_style(std::string_view record, const dxf::Dialect& dialect) {
  constexpr int kFile = 3, kBigFile = 4, kHeight = 40, kWidthFactor = 41, kOblique = 50,
                kFlags = 70, kGeneration = 71, kApplication = 1001, kTypeface = 1000,
                kTypefaceFlags = 1071;
  constexpr std::int64_t kVertical = 4, kBackward = 2, kUpsideDown = 4;
  font::FontStyle style;
  bool of_host = false;  // whether extended data is the host's own
  dxf::Tag tag;
  for (dxf::TagReader tags(record, dialect); tags.next(tag);) {
    const auto integer = [&] { return dxf::int_value(tag, dialect); };
    switch (tag.code) {
      case kFile:
        style.file = dxf::text_value(tag, dialect);
        break;
      case kBigFile:
        style.big_file = dxf::text_value(tag, dialect);
        break;
      case kHeight:
        style.fixed_height = dxf::real_value(tag, dialect);
        break;
      case kWidthFactor:
        style.width_factor = dxf::real_value(tag, dialect);
        break;
      case kOblique:
        style.oblique = dxf::real_value(tag, dialect) * (std::numbers::pi / 180.0);
        break;
      case kFlags:
        style.vertical = (integer() & kVertical) != 0;
        break;
      case kGeneration:
        style.backward = (integer() & kBackward) != 0;
        style.upside_down = (integer() & kUpsideDown) != 0;
        break;
      case kApplication:
        of_host = equal_no_case(tag.value, std::string_view("ACAD"));
        break;
      case kTypeface:
        if (of_host) style.typeface = dxf::text_value(tag, dialect);
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

}  // namespace cad
