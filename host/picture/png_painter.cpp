// PNG, by way of a Cairo image.

#include <cairo.h>

#include <cmath>

#include "host/picture/painter.h"
#include "host/picture/pixel_path.h"

namespace cad::picture {
namespace {

/// Characters lower than this are shown as a grey bar: nobody can read them, and a drawing may have
/// hundreds of thousands.
constexpr double kLegible = 1.5;  // pixels
constexpr double kBarOpacity = 0.4;

struct DestroySurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyContext {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

class PngPainter : public Painter {
 public:
  explicit PngPainter(const Sheet& sheet)
      : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, sheet.width, sheet.height)),
        context_(cairo_create(surface_.get())) {
    set_color(sheet.background, 1.0);
    cairo_paint(context_.get());
  }

  void stroke(PathView path, const Stroke& stroke) override {
    append(path);
    set_color(stroke.rgb, stroke.opacity);
    cairo_set_line_width(context_.get(), stroke.width);
    cairo_set_line_cap(context_.get(), stroke.is_wide ? CAIRO_LINE_CAP_BUTT : CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context_.get(),
                        stroke.is_wide ? CAIRO_LINE_JOIN_MITER : CAIRO_LINE_JOIN_BEVEL);
    cairo_set_dash(context_.get(), stroke.dashes.data(), static_cast<int>(stroke.dashes.size()), 0);
    cairo_stroke(context_.get());
  }

  void fill(PathView path, const Fill& fill) override {
    append(path);
    set_color(fill.rgb, fill.opacity);
    cairo_set_fill_rule(context_.get(),
                        fill.even_odd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_fill(context_.get());
  }

  void run(const PixelRun& run) override {
    const RunGlyph& first = run.glyphs.front();
    const double height = std::abs(first.yy) * run.y_axis.length();
    if (height < kLegible) return bar(run);
    set_color(run.rgb, 1.0);
    cairo_set_fill_rule(context_.get(), CAIRO_FILL_RULE_WINDING);
    for (const RunGlyph& glyph : run.glyphs) {
      append(run, glyph);
      cairo_fill(context_.get());
    }
  }

  Result<std::string> finish() override {
    std::string file;
    const auto take = [](void* closure, const unsigned char* data, unsigned length) {
      static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
      return CAIRO_STATUS_SUCCESS;
    };
    cairo_surface_flush(surface_.get());
    cairo_status_t status = cairo_status(context_.get());
    if (status == CAIRO_STATUS_SUCCESS)
      status = cairo_surface_write_to_png_stream(surface_.get(), take, &file);
    if (status == CAIRO_STATUS_SUCCESS) return file;
    return Error{.where = "",
                 .what = std::string("cannot make the image: ") + cairo_status_to_string(status)};
  }

 private:
  void set_color(std::uint32_t rgb, double opacity) {
    const auto channel = [&](int shift) {
      return static_cast<double>((rgb >> shift) & 0xFFU) / 255.0;
    };
    cairo_set_source_rgba(context_.get(), channel(16), channel(8), channel(0), opacity);
  }

  void append(PathView path) {
    cairo_t* const c = context_.get();
    const auto cubic = [&](Point a, Point b, Point to) {
      cairo_curve_to(c, a.x, a.y, b.x, b.y, to.x, to.y);
    };
    const Point* p = path.points.data();
    for (const Step step : path.steps) {
      switch (step) {
        case Step::kMove:
          cairo_move_to(c, p->x, p->y);
          break;
        case Step::kLine:
          cairo_line_to(c, p->x, p->y);
          break;
        case Step::kCurve:
          cubic(p[0], p[1], p[2]);
          break;
        case Step::kArc:
          arc_to_cubics(p, cubic);
          break;
        case Step::kClose:
          cairo_close_path(c);
          break;
      }
      p += point_count(step);
    }
  }

  void append(const PixelRun& run, const RunGlyph& glyph) {
    cairo_t* const c = context_.get();
    const auto at = [&](const font::Point& own) {
      return run.place(glyph.dx + glyph.xx * own.x + glyph.xy * own.y, glyph.dy + glyph.yy * own.y);
    };
    const font::Point* p = glyph.glyph->outline.points.data();
    for (const font::Outline::Step step : glyph.glyph->outline.steps) {
      switch (step) {
        case font::Outline::Step::kMove: {
          const Point to = at(*p++);
          cairo_move_to(c, to.x, to.y);
          break;
        }
        case font::Outline::Step::kLine: {
          const Point to = at(*p++);
          cairo_line_to(c, to.x, to.y);
          break;
        }
        case font::Outline::Step::kCurve: {
          const Point a = at(p[0]), b = at(p[1]), to = at(p[2]);
          cairo_curve_to(c, a.x, a.y, b.x, b.y, to.x, to.y);
          p += 3;
          break;
        }
        case font::Outline::Step::kClose:
          cairo_close_path(c);
          break;
      }
    }
  }

  void bar(const PixelRun& run) {
    const RunGlyph& first = run.glyphs.front();
    const RunGlyph& last = run.glyphs.back();
    const double right = last.dx + last.glyph->advance * last.xx;
    const Point corners[] = {run.place(first.dx, first.dy), run.place(right, last.dy),
                             run.place(right, last.dy + last.yy),
                             run.place(first.dx, first.dy + first.yy)};
    cairo_t* const c = context_.get();
    for (const Point& corner : corners) cairo_line_to(c, corner.x, corner.y);
    cairo_close_path(c);
    set_color(run.rgb, kBarOpacity);
    cairo_fill(c);
  }

  std::unique_ptr<cairo_surface_t, DestroySurface> surface_;
  std::unique_ptr<cairo_t, DestroyContext> context_;
};

}  // namespace

std::unique_ptr<Painter> make_png_painter(const Sheet& sheet) {
  return std::make_unique<PngPainter>(sheet);
}

}  // namespace cad::picture
