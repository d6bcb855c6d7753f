// SVG. Characters are shapes that are defined once each, so that a picture looks the same
// everywhere; what a text says stands beside it for search and for screen readers.

#include <cmath>
#include <numbers>
#include <unordered_map>

#include "host/picture/number_text.h"
#include "host/picture/painter.h"
#include "host/picture/pixel_path.h"

namespace cad::picture {
namespace {

constexpr double kGlyphUnits = 1000.0;  // of the height of a capital letter

void append_color(std::uint32_t rgb, std::string& out) {
  constexpr char kHex[] = "0123456789abcdef";
  out += '#';
  const auto digit = [&](int place) { return (rgb >> (4 * place)) & 0xFU; };
  const bool is_short = digit(5) == digit(4) && digit(3) == digit(2) && digit(1) == digit(0);
  for (int place = 5; place >= 0; place -= is_short ? 2 : 1) out += kHex[digit(place)];
}

/// Characters that XML does not allow are left out.
void append_escaped(std::string_view text, std::string& out) {
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= ' ') out += c;
        break;
    }
  }
}

/// Writes path data; points relative to the last one, on the grid.
class PathData {
 public:
  explicit PathData(std::string& out) : out_(out) {}

  void append(PathView path) {
    const Point* p = path.points.data();
    for (const Step step : path.steps) {
      switch (step) {
        case Step::kMove:
          out_ += 'M';
          x_ = on_grid(p->x), y_ = on_grid(p->y);
          fresh_ = true;
          number(x_);
          number(y_);
          last_ = 'M';
          break;
        case Step::kLine:
          command('l');
          to(p[0], true);
          break;
        case Step::kCurve:
          command('c');
          to(p[0], false), to(p[1], false), to(p[2], true);
          break;
        case Step::kArc:
          arc(p);
          break;
        case Step::kClose:
          out_ += 'z';
          last_ = 'z';
          break;
      }
      p += point_count(step);
    }
  }

 private:
  void command(char letter) {
    if (last_ == letter) return;
    out_ += letter;
    last_ = letter;
    fresh_ = true;
  }
  void number(long long thousandths) {
    if (!fresh_ && thousandths >= 0) out_ += ' ';
    append_thousandths(thousandths, out_);
    fresh_ = false;
  }
  void to(Point p, bool arrive) {
    const long long x = on_grid(p.x), y = on_grid(p.y);
    number(x - x_);
    number(y - y_);
    if (arrive) x_ = x, y_ = y;
  }

  /// A full turn is written as two halves: an arc that ends where it starts is none.
  void arc(const Point* p) {
    const Point u = p[1], v = p[2];
    // Half axes at right angles of the ellipse that u and v span.
    const double a = (u.x * u.x + u.y * u.y - v.x * v.x - v.y * v.y) / 2.0;
    const double b = u.x * v.x + u.y * v.y;
    const double turn = 0.5 * std::atan2(b, a);
    const Point first = u * std::cos(turn) + v * std::sin(turn);
    const Point second = v * std::cos(turn) - u * std::sin(turn);
    const double sweep = p[3].y;
    const int pieces = std::abs(sweep) > 1.9 * std::numbers::pi ? 2 : 1;
    const bool clockwise = (u.x * v.y - u.y * v.x > 0.0) == (sweep > 0.0);
    for (int i = 1; i <= pieces; ++i) {
      const Point piece[] = {p[0], u, v, {p[3].x, sweep * i / pieces}};
      command('a');
      fresh_ = true;
      out_ += ' ';
      number(on_grid(first.length()));
      number(on_grid(second.length()));
      const bool round = std::abs(first.length() - second.length()) < 0.0005;
      number(round ? 0 : on_grid(std::atan2(first.y, first.x) * 180.0 / std::numbers::pi));
      number(std::abs(sweep) / pieces > std::numbers::pi ? 1000 : 0);
      number(clockwise ? 1000 : 0);
      to(end_of_arc(piece), true);
    }
  }

  std::string& out_;
  long long x_ = 0, y_ = 0;
  char last_ = 0;
  bool fresh_ = true;
};

class SvgPainter : public Painter {
 public:
  explicit SvgPainter(const Sheet& sheet) : sheet_(sheet) {}

  void stroke(PathView path, const Stroke& stroke) override {
    style_.clear();
    style_ += stroke.is_wide ? " class=\"w\" stroke=\"" : " stroke=\"";
    append_color(stroke.rgb, style_);
    style_ += "\" stroke-width=\"";
    append_pixels(stroke.width, style_);
    if (stroke.opacity < 1.0) {
      style_ += "\" stroke-opacity=\"";
      append_factor(stroke.opacity, style_);
    }
    if (!stroke.dashes.empty()) {
      style_ += "\" stroke-dasharray=\"";
      for (std::size_t i = 0; i < stroke.dashes.size(); ++i) {
        if (i > 0) style_ += ' ';
        append_pixels(stroke.dashes[i], style_);
      }
    }
    enter("<g fill=\"none\"");
    append_path(path);
  }

  void fill(PathView path, const Fill& fill) override {
    style_ = " fill=\"";
    append_color(fill.rgb, style_);
    if (fill.opacity < 1.0) {
      style_ += "\" fill-opacity=\"";
      append_factor(fill.opacity, style_);
    }
    if (fill.even_odd) style_ += "\" fill-rule=\"evenodd";
    enter("<g");
    append_path(path);
  }

  void run(const PixelRun& run) override {
    style_ = " fill=\"";
    append_color(run.rgb, style_);
    enter("<g");
    for (std::size_t begin = 0, end; begin < run.glyphs.size(); begin = end) {
      // One group for characters of one size and slant.
      const RunGlyph& first = run.glyphs[begin];
      end = begin + 1;
      while (end < run.glyphs.size() && same_shape(first, run.glyphs[end])) ++end;
      append_glyphs(run, begin, end);
    }
  }

  Result<std::string> finish() override {
    leave();
    std::string file = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                       std::to_string(sheet_.width) + "\" height=\"" +
                       std::to_string(sheet_.height) + "\" viewBox=\"0 0 " +
                       std::to_string(sheet_.width) + ' ' + std::to_string(sheet_.height) +
                       "\" role=\"img\" aria-labelledby=\"title desc\">\n<title id=\"title\">";
    append_escaped(sheet_.title, file);
    file += "</title>\n<desc id=\"desc\">";
    append_escaped(sheet_.description, file);
    // Lines stay thin however far the picture is zoomed, but for those with a width of their own.
    file +=
        "</desc>\n<style>g path{vector-effect:non-scaling-stroke;stroke-linecap:round;"
        "stroke-linejoin:round}g.w path{vector-effect:none;stroke-linecap:butt;"
        "stroke-linejoin:miter}</style>\n";
    if (!defined_.empty()) file += "<defs>\n" + definitions_ + "</defs>\n";
    file += "<rect width=\"100%\" height=\"100%\" fill=\"";
    append_color(sheet_.background, file);
    file += "\"/>\n";
    file.reserve(file.size() + body_.size() + 8);
    file += body_;
    file += "</svg>\n";
    return file;
  }

 private:
  static bool same_shape(const RunGlyph& a, const RunGlyph& b) {
    return a.xx == b.xx && a.xy == b.xy && a.yy == b.yy && a.dy == b.dy && a.xx != 0.0;
  }

  /// What follows is drawn in style_.
  void enter(std::string_view tag) {
    if (!current_.empty() && current_ == style_) return;
    leave();
    current_ = style_;
    body_ += tag;
    body_ += style_;
    body_ += "\">\n";
  }
  void leave() {
    if (!current_.empty()) body_ += "</g>\n";
    current_.clear();
  }

  void append_path(PathView path) {
    body_ += "<path d=\"";
    PathData(body_).append(path);
    body_ += "\"/>\n";
  }

  void append_glyphs(const PixelRun& run, std::size_t begin, std::size_t end) {
    const RunGlyph& first = run.glyphs[begin];
    const Point x = run.x_axis * (first.xx / kGlyphUnits);
    const Point y = (run.x_axis * first.xy + run.y_axis * first.yy) * (1.0 / kGlyphUnits);
    const Point at = run.place(first.dx, first.dy);
    body_ += "<g";
    if (begin == 0 && !run.text.empty()) {
      body_ += " aria-label=\"";
      append_escaped(run.text, body_);
      body_ += '"';
    }
    body_ += " transform=\"matrix(";
    for (const double factor : {x.x, x.y, -y.x, -y.y}) {
      append_factor(factor, body_);
      body_ += ' ';
    }
    append_pixels(at.x, body_);
    body_ += ' ';
    append_pixels(at.y, body_);
    body_ += ")\">";
    for (std::size_t i = begin; i < end; ++i) {
      const RunGlyph& glyph = run.glyphs[i];
      body_ += "<use href=\"#g";
      body_ += std::to_string(number_of(*glyph.glyph));
      if (i > begin) {
        body_ += "\" x=\"";
        append_factor(std::round((glyph.dx - first.dx) / first.xx * kGlyphUnits), body_);
      }
      body_ += "\"/>";
    }
    body_ += "</g>\n";
  }

  /// Characters stand upside down in their definitions as files count y downwards.
  std::size_t number_of(const font::Glyph& glyph) {
    const auto [place, is_new] = defined_.try_emplace(&glyph, defined_.size());
    if (!is_new) return place->second;
    definitions_ += "<path id=\"g" + std::to_string(place->second) + "\" d=\"";
    const auto append = [&](const font::Point& p, char before) {
      if (before) definitions_ += before;
      definitions_ += std::to_string(std::lround(p.x * kGlyphUnits));
      definitions_ += ' ';
      definitions_ += std::to_string(std::lround(-p.y * kGlyphUnits));
    };
    const font::Point* p = glyph.outline.points.data();
    for (const font::Outline::Step step : glyph.outline.steps) {
      switch (step) {
        case font::Outline::Step::kMove:
          append(*p++, 'M');
          break;
        case font::Outline::Step::kLine:
          append(*p++, 'L');
          break;
        case font::Outline::Step::kCurve:
          append(p[0], 'C'), append(p[1], ' '), append(p[2], ' ');
          p += 3;
          break;
        case font::Outline::Step::kClose:
          definitions_ += 'z';
          break;
      }
    }
    definitions_ += "\"/>\n";
    return place->second;
  }

  const Sheet sheet_;
  std::string body_, definitions_;
  std::string style_, current_;
  std::unordered_map<const font::Glyph*, std::size_t> defined_;
};

}  // namespace

std::unique_ptr<Painter> make_svg_painter(const Sheet& sheet) {
  return std::make_unique<SvgPainter>(sheet);
}

}  // namespace cad::picture
