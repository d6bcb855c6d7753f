#include "host/db/text_box.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/dxf/text.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

/// Advances of the characters from blank to "~", in 1/21 of the height of a capital letter: the
/// widths of the Hershey Roman simplex characters, from which the usual font was made.
constexpr std::uint8_t kAdvance[] = {
    // blank ! " # $ % & ' ( ) * + , - . /
    16, 10, 16, 21, 20, 24, 26, 10, 14, 14, 16, 26, 10, 26, 10, 22,
    // 0 to 9, : ; < = > ? @
    20, 20, 20, 20, 20, 20, 20, 20, 20, 20, 10, 10, 24, 26, 24, 18, 27,
    // A to Z
    18, 21, 21, 21, 19, 18, 21, 22, 8, 16, 21, 17, 24, 22, 22, 21, 22, 21, 20, 16, 22, 18, 24, 20,
    18, 20,
    // [ \ ] ^ _ `
    14, 14, 14, 16, 16, 10,
    // a to z
    19, 19, 18, 19, 18, 12, 19, 19, 8, 10, 17, 8, 30, 19, 19, 19, 19, 13, 17, 12, 19, 16, 22, 17,
    16, 17,
    // { | } ~
    14, 8, 14, 24};
static_assert(std::size(kAdvance) == '~' - ' ' + 1);

constexpr double kUnits = 21.0;
constexpr double kOther = 20.0 / kUnits;     // any other letter: as wide as a digit
constexpr double kXHeight = 14.0 / kUnits;   // of "x"
constexpr double kDescender = 7.0 / kUnits;  // of "g"
constexpr double kLineDistance = 5.0 / 3.0;  // between base lines of single spacing

bool is_full_width(wchar_t c) {
  return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF) ||
         (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
         (c >= 0xFE30 && c <= 0xFE4F) || (c >= 0xFF00 && c <= 0xFF60) ||
         (c >= 0xFFE0 && c <= 0xFFE6) || (c >= 0x20000 && c <= 0x3FFFD);
}

double advance(wchar_t c) {
  if (c >= L' ' && c <= L'~') return kAdvance[c - L' '] / kUnits;
  return is_full_width(c) ? 1.0 : c < L' ' ? 0.0 : kOther;
}

double top_of(wchar_t c) {
  constexpr std::wstring_view kLow = L"acegmnopqrsuvwxyz+-=<>:;,._~";
  return c == L' ' ? 0.0 : kLow.find(c) != std::wstring_view::npos ? kXHeight : 1.0;
}

double bottom_of(wchar_t c) {
  constexpr std::wstring_view kDeep = L"gjpqy,;()[]{}|Q";
  return kDeep.find(c) != std::wstring_view::npos ? -kDescender : 0.0;
}

/// The characters that a TEXT shows: %% codes replaced.
std::wstring shown(std::wstring_view text) {
  std::wstring out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) != L"%%" || i + 2 >= text.size()) {
      out += text[i];
      continue;
    }
    const wchar_t code = text[i + 2];
    i += 2;
    switch (code) {
      case L'd':
      case L'D':
        out += L'\u00B0';
        break;
      case L'p':
      case L'P':
        out += L'\u00B1';
        break;
      case L'c':
      case L'C':
        out += L'\u2205';
        break;
      case L'u':
      case L'U':
      case L'o':
      case L'O':
      case L'k':
      case L'K':
        break;
      case L'%':
        out += L'%';
        break;
      default: {
        std::size_t digits = 0;
        unsigned number = 0;
        while (digits < 3 && i + digits < text.size() && text[i + digits] >= L'0' &&
               text[i + digits] <= L'9')
          number = number * 10 + static_cast<unsigned>(text[i + digits++] - L'0');
        if (digits == 3) {
          out += static_cast<wchar_t>(number);
          i += 2;
        } else {
          out += L"%%";
          --i;
        }
      }
    }
  }
  return out;
}

/// Measures the contents of a MTEXT: reads its formatting codes and breaks its lines.
class Paragraphs {
 public:
  Paragraphs(double height, double reference_width, double width_factor)
      : limit_(reference_width), formats_{{height, width_factor}}, first_height_(height) {}

  ParagraphSize measure(std::wstring_view contents, double line_spacing) {
    for (at_ = 0; at_ < contents.size(); ++at_) read(contents);
    end_line();
    const double lines = static_cast<double>(lines_ - 1);
    return {widest_, total_ + lines * first_height_ * (kLineDistance * line_spacing - 1.0)};
  }

 private:
  struct Format {
    double height;
    double width_factor;
  };

  void read(std::wstring_view text) {
    const wchar_t c = text[at_];
    constexpr std::size_t kDeepest = 64;
    if (c == L'{') {
      if (formats_.size() < kDeepest) formats_.push_back(formats_.back());
    } else if (c == L'}') {
      if (formats_.size() > 1) formats_.pop_back();
    } else if (c == L'\n') {
      end_line();
    } else if (c == L'\\' && at_ + 1 < text.size()) {
      ++at_;
      read_code(text);
    } else if (text.substr(at_, 2) == L"%%" && at_ + 2 < text.size()) {
      const std::wstring character = shown(text.substr(at_, 3));
      for (const wchar_t each : character) add(each);
      at_ += 2;
    } else {
      add(c);
    }
  }

  void read_code(std::wstring_view text) {
    const wchar_t code = text[at_];
    constexpr std::wstring_view kSwitches = L"LlOoKk", kWithValue = L"fFHhCcTtQqWwApSs";
    if (code == L'P' || code == L'N') return end_line();
    if (code == L'~') return add(L' ');
    if (kSwitches.find(code) != std::wstring_view::npos) return;
    if (code == L'U' && text.substr(at_ + 1, 1) == L"+") {
      at_ = std::min(at_ + 5, text.size() - 1);
      return add(L'M');
    }
    if (kWithValue.find(code) == std::wstring_view::npos) return add(code);  // an escaped one
    const std::size_t end = text.find(L';', at_);
    if (end == std::wstring_view::npos) return;
    const std::wstring value(text.substr(at_ + 1, end - at_ - 1));
    at_ = end;
    if (code == L'S') return add_stack(value);
    wchar_t* rest = nullptr;
    const double number = std::wcstod(value.c_str(), &rest);
    if (!(number > 0.0) || !std::isfinite(number)) return;
    Format& format = formats_.back();
    if (code == L'H') format.height = *rest == L'x' ? format.height * number : number;
    if (code == L'W') format.width_factor = *rest == L'x' ? format.width_factor * number : number;
  }

  /// A fraction is as wide as its wider half, which is drawn smaller.
  void add_stack(const std::wstring& value) {
    constexpr double kSmaller = 0.7;
    const std::size_t middle = std::min(value.find_first_of(L"^/#"), value.size());
    const auto width = [](std::wstring_view half) {
      double sum = 0.0;
      for (const wchar_t c : half) sum += advance(c);
      return sum;
    };
    const double wider =
        std::max(width(std::wstring_view(value).substr(0, middle)),
                 middle < value.size() ? width(std::wstring_view(value).substr(middle + 1)) : 0.0);
    grow(wider * kSmaller);
  }

  void add(wchar_t c) {
    if (c == L' ' || is_full_width(c)) word_start_ = line_;
    grow(advance(c));
    if (is_full_width(c)) word_start_ = line_;
    if (c == L' ') word_start_ = line_;
  }

  void grow(double units) {
    const Format& format = formats_.back();
    const double wide = units * format.height * format.width_factor;
    tallest_ = std::max(tallest_, format.height);
    if (limit_ > 0.0 && line_ + wide > limit_ && word_start_ > 0.0) {
      // The word that does not fit starts the next line.
      const double word = line_ - word_start_;
      line_ = word_start_;
      end_line();
      line_ = word;
      tallest_ = format.height;
    }
    line_ += wide;
  }

  void end_line() {
    widest_ = std::max(widest_, line_);
    total_ += tallest_ > 0.0 ? tallest_ : formats_.back().height;
    ++lines_;
    line_ = word_start_ = tallest_ = 0.0;
  }

  double limit_;
  std::vector<Format> formats_;
  double first_height_;
  std::size_t at_ = 0;
  double line_ = 0.0;        // width so far
  double word_start_ = 0.0;  // where the last word began
  double tallest_ = 0.0;
  double widest_ = 0.0;
  double total_ = 0.0;
  int lines_ = 0;
};

using Corners = std::array<AcGePoint3d, 4>;

/// A box of a text's own axes, placed: the axes turned by `rotation` about `place`.
Corners placed(const TextBox& box, const AcGePoint3d& place, double rotation,
               const AcGeMatrix3d& axes) {
  const double c = std::cos(rotation), s = std::sin(rotation);
  const auto corner = [&](double x, double y) {
    return axes * AcGePoint3d(place.x + x * c - y * s, place.y + x * s + y * c, place.z);
  };
  return {corner(box.left, box.bottom), corner(box.right, box.bottom), corner(box.right, box.top),
          corner(box.left, box.top)};
}

void shift(TextBox& box, double x, double y) {
  box.left += x, box.right += x;
  box.bottom += y, box.top += y;
}

std::optional<Corners> line_corners(const EntityFields& fields, std::wstring_view text) {
  enum { kLeft, kCenter, kRight, kAligned, kMiddle, kFit };
  enum { kBase, kBottom, kHalfway, kTop };
  const int across = fields.integer(72), down = fields.integer(73);
  double height = fields.real(40), factor = fields.real(41, 1.0);
  double rotation = fields.angle(50);
  const double oblique = fields.angle(51);
  TextBox box = line_box(text, height, factor, oblique);
  if (box.width() <= 0.0) return std::nullopt;
  const bool by_second = (across != kLeft || down != kBase) && fields.has(11);
  AcGePoint3d place = fields.point(10);
  if (by_second && (across == kAligned || across == kFit)) {
    const AcGeVector3d way = fields.point(11) - place;
    const double wanted = std::hypot(way.x, way.y);
    if (wanted > 0.0) {
      rotation = std::atan2(way.y, way.x);
      (across == kAligned ? height : factor) *= wanted / box.width();
      box = line_box(text, height, factor, oblique);
    }
  } else if (by_second) {
    place = fields.point(11);
    const double width = box.right;
    const double x = across == kCenter || across == kMiddle ? -width / 2
                     : across == kRight                     ? -width
                                                            : 0.0;
    const double y = across == kMiddle  ? -(box.bottom + box.top) / 2
                     : down == kBottom  ? height * kDescender
                     : down == kHalfway ? -height / 2
                     : down == kTop     ? -height
                                        : 0.0;
    shift(box, x, y);
  }
  constexpr int kBackward = 2, kUpsideDown = 4;
  const int generation = fields.integer(71);
  if (generation & kBackward) box = {-box.right, box.bottom, -box.left, box.top};
  if (generation & kUpsideDown) box = {box.left, -box.top, box.right, -box.bottom};
  return placed(box, place, rotation, ocs_to_wcs(fields.normal()));
}

std::optional<Corners> paragraph_corners(const EntityFields& fields, std::wstring_view contents) {
  const ParagraphSize size =
      paragraph_size(contents, fields.real(40), fields.real(41), fields.real(44, 1.0));
  if (size.width <= 0.0) return std::nullopt;
  const int attachment = std::clamp(fields.integer(71, 1), 1, 9) - 1;
  const double x = -size.width * (attachment % 3) / 2, y = -size.height * (2 - attachment / 3) / 2;
  const TextBox box{x, y, x + size.width, y + size.height};
  const AcGeMatrix3d axes = ocs_to_wcs(fields.normal());
  double rotation = fields.angle(50);
  if (fields.has(11)) {
    const AcGeVector3d along = axes.transpose() * fields.vector(11);
    if (!along.isZeroLength()) rotation = std::atan2(along.y, along.x);
  }
  return placed(box, axes.transpose() * fields.point(10), rotation, axes);
}

/// Groups 3 and 1 in order, joined.
std::wstring pieces(std::string_view bytes, const dxf::Dialect& dialect) {
  std::string joined;
  OwnTags tags(bytes, dialect);
  dxf::Tag tag;
  while (tags.next(tag))
    if (tag.code == 3 || tag.code == 1) joined += tag.value;
  std::wstring text;
  dxf::append_decoded(joined, dialect, text);
  return text;
}

}  // namespace

TextBox line_box(std::wstring_view text, double height, double width_factor, double oblique) {
  TextBox box;
  double x = 0.0;
  for (const wchar_t c : shown(text)) {
    x += advance(c);
    box.top = std::max(box.top, top_of(c));
    box.bottom = std::min(box.bottom, bottom_of(c));
  }
  box.right = x * height * width_factor;
  box.top *= height;
  box.bottom *= height;
  const double slant = std::tan(std::clamp(oblique, -1.48, 1.48));  // the host allows 85 degrees
  box.left += std::min({0.0, box.bottom * slant, box.top * slant});
  box.right += std::max({0.0, box.bottom * slant, box.top * slant});
  return box;
}

ParagraphSize paragraph_size(std::wstring_view contents, double height, double reference_width,
                             double line_spacing, double width_factor) {
  if (contents.empty()) return {};
  return Paragraphs(height, reference_width, width_factor).measure(contents, line_spacing);
}

std::optional<std::array<AcGePoint3d, 4>> text_corners(AcDbObjectId id) {
  if (id.isNull()) return std::nullopt;
  Drawing& drawing = StubStore::drawing_of(*id.stub());
  const std::string_view kind = drawing.kind_name(*id.stub());
  const std::string_view bytes = drawing.bytes_of(*id.stub());
  if (kind == "MTEXT")
    return paragraph_corners(EntityFields(bytes, drawing.dialect()),
                             pieces(bytes, drawing.dialect()));
  const bool definition = kind == "ATTDEF";
  if (kind != "TEXT" && kind != "ATTRIB" && !definition) return std::nullopt;
  const EntityFields fields(bytes, drawing.dialect());
  constexpr int kTag = 2, kText = 1;  // a definition shows its tag
  return line_corners(fields, fields.text(definition ? kTag : kText));
}

}  // namespace cad
