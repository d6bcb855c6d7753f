#include "host/font/font_file.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

namespace cad::font {
namespace {

/// Collects the steps of an outline, quadratic curves as cubic ones.
struct Collector {
  Outline& outline;
  double unit;
  FT_Vector last{};
  bool open = false;

  Point point(const FT_Vector& v) const {
    return {static_cast<double>(v.x) * unit, static_cast<double>(v.y) * unit};
  }
  void close() {
    if (open) outline.steps.push_back(Outline::Step::kClose);
    open = false;
  }
  static Collector& of(void* user) { return *static_cast<Collector*>(user); }

  static int move(const FT_Vector* to, void* user) {
    Collector& self = of(user);
    self.close();
    self.open = true;
    return self.add(Outline::Step::kMove, {self.point(*to)}, *to);
  }
  static int line(const FT_Vector* to, void* user) {
    return of(user).add(Outline::Step::kLine, {of(user).point(*to)}, *to);
  }
  static int conic(const FT_Vector* control, const FT_Vector* to, void* user) {
    Collector& self = of(user);
    const Point from = self.point(self.last), by = self.point(*control), end = self.point(*to);
    const auto third = [](const Point& a, const Point& b) {
      return Point{a.x + (b.x - a.x) * 2.0 / 3.0, a.y + (b.y - a.y) * 2.0 / 3.0};
    };
    return self.add(Outline::Step::kCurve, {third(from, by), third(end, by), end}, *to);
  }
  static int cubic(const FT_Vector* a, const FT_Vector* b, const FT_Vector* to, void* user) {
    Collector& self = of(user);
    return self.add(Outline::Step::kCurve, {self.point(*a), self.point(*b), self.point(*to)}, *to);
  }
  int add(Outline::Step step, std::initializer_list<Point> points, const FT_Vector& to) {
    outline.steps.push_back(step);
    outline.points.insert(outline.points.end(), points);
    last = to;
    return 0;
  }
};

/// Around the ends and controls; a curve lies within them.
Box around(const std::vector<Point>& points) {
  if (points.empty()) return {};
  Box box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (const Point& p : points) {
    box.left = std::min(box.left, p.x), box.right = std::max(box.right, p.x);
    box.bottom = std::min(box.bottom, p.y), box.top = std::max(box.top, p.y);
  }
  return box;
}

}  // namespace

/// FreeType itself, as long as the program runs.
struct FontFile::Library {
  FT_Library handle = nullptr;
  Library() {
    if (FT_Init_FreeType(&handle) != 0) handle = nullptr;
  }
  static FT_Library get() {
    static const Library* const library = new Library;
    return library->handle;
  }
};

struct FontFile::Face {
  FT_Face handle = nullptr;
  bool embolden = false;
  bool slant = false;
  double unit = 1.0;  // of the font's own numbers, in ems
  ~Face() {
    if (handle) FT_Done_Face(handle);
  }
};

const FontFile* FontFile::of(const InstalledFont& font, bool bold, bool italic) {
  constexpr int kSemiBold = 180;
  auto face = std::make_unique<Face>();
  face->embolden = bold && font.weight < kSemiBold;
  face->slant = italic && !font.slanted;
  using Key = std::tuple<std::string, int, bool, bool>;
  static auto& files = *new std::map<Key, std::unique_ptr<FontFile>>;
  const auto [place, is_new] =
      files.try_emplace(Key(font.path, font.index, face->embolden, face->slant));
  if (!is_new || !Library::get()) return place->second.get();
  if (FT_New_Face(Library::get(), font.path.c_str(), font.index, &face->handle) != 0)
    return nullptr;
  if (!FT_IS_SCALABLE(face->handle) || face->handle->units_per_EM == 0) return nullptr;
  FT_Select_Charmap(face->handle, FT_ENCODING_UNICODE);
  face->unit = 1.0 / face->handle->units_per_EM;
  place->second.reset(new FontFile(std::move(face)));
  return place->second.get();
}

FontFile::FontFile(std::unique_ptr<Face> face) : face_(std::move(face)) {
  constexpr double kUsualCapital = 0.7, kUsualDigit = 0.55;
  const std::optional<Glyph> letter = glyph('H'), zero = glyph('0');
  if (letter) capital_ = letter->ink.top;
  const auto* const os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face_->handle, FT_SFNT_OS2));
  if (!(capital_ > 0.0) && os2 && os2->version != 0xFFFF && os2->version >= 2)
    capital_ = os2->sCapHeight * face_->unit;
  constexpr double kLeast = 0.05;  // a font that says less is damaged
  if (!(capital_ > kLeast)) capital_ = kUsualCapital;
  if (zero) digit_ = zero->advance;
  if (!(digit_ > kLeast)) digit_ = kUsualDigit;
}

FontFile::~FontFile() = default;

bool FontFile::has(std::uint32_t character) const {
  return FT_Get_Char_Index(face_->handle, character) != 0;
}

std::optional<Glyph> FontFile::glyph(std::uint32_t character) const {
  const FT_Face face = face_->handle;
  const FT_UInt index = FT_Get_Char_Index(face, character);
  if (index == 0 || FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE) != 0) return std::nullopt;
  if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return std::nullopt;
  Glyph glyph;
  glyph.advance =
      std::max(0.0, static_cast<double>(face->glyph->metrics.horiAdvance) * face_->unit);
  FT_Outline& shape = face->glyph->outline;
  if (face_->embolden) {
    constexpr int kPart = 24;  // of the em: as strong as a usual bold font
    FT_Outline_Embolden(&shape, face->units_per_EM / kPart);
  }
  if (face_->slant) {
    constexpr FT_Fixed kOne = 0x10000, kSlant = 0x366A;  // 12 degrees
    FT_Matrix matrix{kOne, kSlant, 0, kOne};
    FT_Outline_Transform(&shape, &matrix);
  }
  Collector collector{glyph.outline, face_->unit};
  const FT_Outline_Funcs functions{
      Collector::move, Collector::line, Collector::conic, Collector::cubic, 0, 0};
  if (FT_Outline_Decompose(&shape, &functions, &collector) != 0) return std::nullopt;
  collector.close();
  glyph.ink = around(glyph.outline.points);
  return glyph;
}

}  // namespace cad::font
