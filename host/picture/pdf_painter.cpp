// PDF, one page. Characters are those of fonts that hold their outlines and say which letters they
// are, so that a picture can be searched; each is stored once, whatever its size and direction.

#include <zlib.h>

#include <cmath>
#include <map>
#include <unordered_map>
#include <vector>

#include "host/base/codepage.h"
#include "host/picture/number_text.h"
#include "host/picture/painter.h"
#include "host/picture/pixel_path.h"

namespace cad::picture {
namespace {

constexpr double kPointsPerPixel = 0.75;
constexpr double kGlyphUnits = 1000.0;
constexpr std::size_t kPerFont = 256;

std::string compressed(const std::string& bytes) {
  uLongf length = compressBound(static_cast<uLong>(bytes.size()));
  std::string packed(length, '\0');
  constexpr int kLevel = 6;
  compress2(reinterpret_cast<Bytef*>(packed.data()), &length,
            reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()), kLevel);
  packed.resize(length);
  return packed;
}

void append_hex(unsigned value, int digits, std::string& out) {
  constexpr char kHex[] = "0123456789ABCDEF";
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) out += kHex[(value >> shift) & 0xFU];
}

/// UTF-16, as text is named in the file.
void append_utf16(wchar_t character, std::string& out) {
  const auto code = static_cast<unsigned>(character);
  if (code < 0x10000U) return append_hex(code, 4, out);
  append_hex(0xD800U + ((code - 0x10000U) >> 10), 4, out);
  append_hex(0xDC00U + ((code - 0x10000U) & 0x3FFU), 4, out);
}

/// The objects of a file: their numbers are given first, their contents when they are known.
class Objects {
 public:
  std::size_t reserve() {
    bodies_.emplace_back();
    return bodies_.size();
  }
  void set(std::size_t number, std::string body) { bodies_[number - 1] = std::move(body); }
  std::size_t add(std::string body) {
    bodies_.push_back(std::move(body));
    return bodies_.size();
  }
  std::size_t add_stream(const std::string& bytes) {
    const std::string packed = compressed(bytes);
    return add("<< /Length " + std::to_string(packed.size()) +
               " /Filter /FlateDecode >>\nstream\n" + packed + "\nendstream");
  }
  static std::string reference(std::size_t number) { return std::to_string(number) + " 0 R"; }

  std::string file(std::size_t catalog, std::size_t info) const {
    std::string out = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < bodies_.size(); ++i) {
      offsets.push_back(out.size());
      out += std::to_string(i + 1) + " 0 obj\n" + bodies_[i] + "\nendobj\n";
    }
    const std::size_t table = out.size();
    out += "xref\n0 " + std::to_string(bodies_.size() + 1) + "\n0000000000 65535 f \n";
    for (const std::size_t offset : offsets) {
      const std::string digits = std::to_string(offset);
      out +=
          std::string(10 - std::min<std::size_t>(10, digits.size()), '0') + digits + " 00000 n \n";
    }
    out += "trailer\n<< /Size " + std::to_string(bodies_.size() + 1) + " /Root " +
           reference(catalog) + " /Info " + reference(info) + " >>\nstartxref\n" +
           std::to_string(table) + "\n%%EOF\n";
    return out;
  }

 private:
  std::vector<std::string> bodies_;
};

/// The characters of a picture, 256 to a font.
class Fonts {
 public:
  struct Place {
    std::size_t font;
    unsigned code;
  };
  Place place_of(const RunGlyph& glyph) {
    const auto [found, is_new] = places_.try_emplace(glyph.glyph, glyphs_.size());
    if (is_new) glyphs_.push_back({glyph.glyph, glyph.character});
    return {found->second / kPerFont, static_cast<unsigned>(found->second % kPerFont)};
  }

  /// The resources' dictionary of fonts.
  std::string write(Objects& objects) const {
    std::string fonts = "<<";
    for (std::size_t first = 0; first < glyphs_.size(); first += kPerFont) {
      const std::size_t count = std::min(kPerFont, glyphs_.size() - first);
      fonts += " /F" + std::to_string(first / kPerFont) + ' ' +
               Objects::reference(write_font(std::span(glyphs_).subspan(first, count), objects));
    }
    return fonts + " >>";
  }

 private:
  struct Entry {
    const font::Glyph* glyph;
    wchar_t character;
  };

  static std::size_t write_font(std::span<const Entry> entries, Objects& objects) {
    std::string procedures = "<<", names, widths, letters;
    font::Box box;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const font::Glyph& glyph = *entries[i].glyph;
      const std::string name = "/g" + std::to_string(i);
      procedures += ' ' + name + ' ' + Objects::reference(objects.add_stream(procedure(glyph)));
      names += name;
      widths += std::to_string(std::lround(glyph.advance * kGlyphUnits)) + ' ';
      box.add(glyph.ink);
      letters += '<';
      append_hex(static_cast<unsigned>(i), 2, letters);
      letters += "> <";
      append_utf16(entries[i].character, letters);
      letters += ">\n";
    }
    return objects.add("<< /Type /Font /Subtype /Type3 /FontBBox " + box_text(box) +
                       " /FontMatrix [0.001 0 0 0.001 0 0] /FirstChar 0 /LastChar " +
                       std::to_string(entries.size() - 1) + " /Widths [" + widths +
                       "] /Encoding << /Type /Encoding /Differences [0 " + names +
                       "] >> /CharProcs " + procedures + " >> /Resources << >> /ToUnicode " +
                       Objects::reference(objects.add_stream(letter_map(letters, entries.size()))) +
                       " >>");
  }

  static std::string letter_map(const std::string& letters, std::size_t count) {
    // A table holds no more than a hundred letters.
    constexpr std::size_t kPerTable = 100;
    std::string map =
        "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
        "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
        "/CMapName /Letters def\n/CMapType 2 def\n"
        "1 begincodespacerange\n<00> <FF>\nendcodespacerange\n";
    std::size_t at = 0;
    for (std::size_t first = 0; first < count; first += kPerTable) {
      const std::size_t rows = std::min(kPerTable, count - first);
      map += std::to_string(rows) + " beginbfchar\n";
      for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t end = letters.find('\n', at) + 1;
        map += letters.substr(at, end - at);
        at = end;
      }
      map += "endbfchar\n";
    }
    return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
  }

  static std::string unit(double value) { return std::to_string(std::lround(value * kGlyphUnits)); }
  static std::string box_text(const font::Box& box) {
    return '[' + unit(box.left) + ' ' + unit(box.bottom) + ' ' + unit(box.right) + ' ' +
           unit(box.top) + ']';
  }

  static std::string procedure(const font::Glyph& glyph) {
    std::string out = unit(glyph.advance) + " 0 " + unit(glyph.ink.left) + ' ' +
                      unit(glyph.ink.bottom) + ' ' + unit(glyph.ink.right) + ' ' +
                      unit(glyph.ink.top) + " d1\n";
    const font::Point* p = glyph.outline.points.data();
    const auto add = [&](int points, std::string_view operation) {
      for (int i = 0; i < points; ++i, ++p) out += unit(p->x) + ' ' + unit(p->y) + ' ';
      out += operation;
    };
    for (const font::Outline::Step step : glyph.outline.steps) {
      switch (step) {
        case font::Outline::Step::kMove:
          add(1, "m\n");
          break;
        case font::Outline::Step::kLine:
          add(1, "l\n");
          break;
        case font::Outline::Step::kCurve:
          add(3, "c\n");
          break;
        case font::Outline::Step::kClose:
          add(0, "h\n");
          break;
      }
    }
    return out + "f\n";
  }

  std::unordered_map<const font::Glyph*, std::size_t> places_;
  std::vector<Entry> glyphs_;
};

class PdfPainter : public Painter {
 public:
  explicit PdfPainter(const Sheet& sheet) : sheet_(sheet) {
    // Pixels, y down, from here on.
    append_factor(kPointsPerPixel, body_);
    body_ += " 0 0 ";
    append_factor(-kPointsPerPixel, body_);
    body_ += " 0 ";
    append_factor(sheet.height * kPointsPerPixel, body_);
    body_ += " cm\n";
    set_color(sheet.background, "rg", fill_color_);
    body_ += "0 0 " + std::to_string(sheet.width) + ' ' + std::to_string(sheet.height) + " re f\n";
  }

  void stroke(PathView path, const Stroke& stroke) override {
    set_color(stroke.rgb, "RG", stroke_color_);
    set_opacity(stroke.opacity);
    std::string pen;
    append_pixels(stroke.width, pen);
    pen += stroke.is_wide ? " w 0 J 0 j [" : " w 1 J 1 j [";
    for (const double dash : stroke.dashes) {
      append_pixels(dash, pen);
      pen += ' ';
    }
    pen += "] 0 d\n";
    if (pen != pen_) body_ += pen;
    pen_ = std::move(pen);
    append(path);
    body_ += "S\n";
  }

  void fill(PathView path, const Fill& fill) override {
    set_color(fill.rgb, "rg", fill_color_);
    set_opacity(fill.opacity);
    append(path);
    body_ += fill.even_odd ? "f*\n" : "f\n";
  }

  void run(const PixelRun& run) override {
    set_color(run.rgb, "rg", fill_color_);
    set_opacity(1.0);
    body_ += "BT\n";
    for (std::size_t begin = 0, end; begin < run.glyphs.size(); begin = end) {
      const RunGlyph& first = run.glyphs[begin];
      const std::size_t font = fonts_.place_of(first).font;
      end = begin + 1;
      while (end < run.glyphs.size() && goes_on(first, run.glyphs[end], font)) ++end;
      show(run, begin, end, font);
    }
    body_ += "ET\n";
  }

  Result<std::string> finish() override {
    Objects objects;
    const std::size_t catalog = objects.reserve(), pages = objects.reserve();
    const std::size_t page = objects.reserve();
    std::string states = "<<";
    for (const auto& [opacity, name] : opacities_) {
      states += " /" + name + " << /CA ";
      append_factor(opacity / 1000.0, states);
      states += " /ca ";
      append_factor(opacity / 1000.0, states);
      states += " >>";
    }
    const std::string fonts = fonts_.write(objects);
    const std::size_t contents = objects.add_stream(body_);
    std::string box = "[0 0 ";
    append_factor(sheet_.width * kPointsPerPixel, box);
    box += ' ';
    append_factor(sheet_.height * kPointsPerPixel, box);
    box += ']';
    objects.set(catalog, "<< /Type /Catalog /Pages " + Objects::reference(pages) + " >>");
    objects.set(pages, "<< /Type /Pages /Count 1 /Kids [" + Objects::reference(page) + "] >>");
    objects.set(page, "<< /Type /Page /Parent " + Objects::reference(pages) + " /MediaBox " + box +
                          " /Contents " + Objects::reference(contents) + " /Resources << /Font " +
                          fonts + " /ExtGState " + states + " >> >> >>");
    const std::size_t info = objects.add("<< /Title " + text_string(sheet_.title) + " /Subject " +
                                         text_string(sheet_.description) + " >>");
    return objects.file(catalog, info);
  }

 private:
  bool goes_on(const RunGlyph& first, const RunGlyph& next, std::size_t font) {
    return first.xx == next.xx && first.xy == next.xy && first.yy == next.yy &&
           first.dy == next.dy && first.xx != 0.0 && fonts_.place_of(next).font == font;
  }

  void show(const PixelRun& run, std::size_t begin, std::size_t end, std::size_t font) {
    const RunGlyph& first = run.glyphs[begin];
    const Point x = run.x_axis * first.xx;
    const Point y = run.x_axis * first.xy + run.y_axis * first.yy;
    const Point at = run.place(first.dx, first.dy);
    body_ += "/F" + std::to_string(font) + " 1 Tf ";
    for (const double factor : {x.x, x.y, y.x, y.y}) {
      append_factor(factor, body_);
      body_ += ' ';
    }
    append_pixels(at.x, body_);
    body_ += ' ';
    append_pixels(at.y, body_);
    body_ += " Tm [<";
    double pen = first.dx;  // where the next character would go by itself
    for (std::size_t i = begin; i < end; ++i) {
      const RunGlyph& glyph = run.glyphs[i];
      const long back = std::lround((pen - glyph.dx) / glyph.xx * kGlyphUnits);
      if (back != 0) body_ += "> " + std::to_string(back) + " <";
      append_hex(fonts_.place_of(glyph).code, 2, body_);
      pen = glyph.dx + glyph.glyph->advance * glyph.xx;
    }
    body_ += ">] TJ\n";
  }

  void set_color(std::uint32_t rgb, std::string_view operation, std::int64_t& current) {
    if (current == static_cast<std::int64_t>(rgb)) return;
    current = rgb;
    for (const int shift : {16, 8, 0}) {
      append_thousandths(std::lround(((rgb >> shift) & 0xFFU) / 255.0 * 1000.0), body_);
      body_ += ' ';
    }
    body_ += operation;
    body_ += '\n';
  }

  void set_opacity(double opacity) {
    const int thousandths = static_cast<int>(std::lround(opacity * 1000.0));
    if (thousandths == opacity_) return;
    opacity_ = thousandths;
    const auto [place, is_new] =
        opacities_.try_emplace(thousandths, "O" + std::to_string(thousandths));
    body_ += '/' + place->second + " gs\n";
  }

  void append(PathView path) {
    const auto point = [&](Point p) {
      append_pixels(p.x, body_);
      body_ += ' ';
      append_pixels(p.y, body_);
      body_ += ' ';
    };
    const auto cubic = [&](Point a, Point b, Point to) {
      point(a), point(b), point(to);
      body_ += "c\n";
    };
    const Point* p = path.points.data();
    for (const Step step : path.steps) {
      switch (step) {
        case Step::kMove:
          point(*p);
          body_ += "m\n";
          break;
        case Step::kLine:
          point(*p);
          body_ += "l\n";
          break;
        case Step::kCurve:
          cubic(p[0], p[1], p[2]);
          break;
        case Step::kArc:
          arc_to_cubics(p, cubic);
          break;
        case Step::kClose:
          body_ += "h\n";
          break;
      }
      p += point_count(step);
    }
  }

  /// UTF-16 in hexadecimal.
  static std::string text_string(const std::string& utf8) {
    std::string out = "<FEFF";
    for (const wchar_t c : from_utf8(utf8)) append_utf16(c, out);
    return out + '>';
  }

  const Sheet sheet_;
  std::string body_;
  Fonts fonts_;
  std::string pen_;
  std::int64_t fill_color_ = -1, stroke_color_ = -1;
  int opacity_ = 1000;
  std::map<int, std::string> opacities_;  // by thousandths
};

}  // namespace

std::unique_ptr<Painter> make_pdf_painter(const Sheet& sheet) {
  return std::make_unique<PdfPainter>(sheet);
}

}  // namespace cad::picture
