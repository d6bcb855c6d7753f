#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "host/base/result.h"
#include "host/picture/scene.h"

/// Writes a picture in one file format. Coordinates are pixels, 96 to the inch, y down.
namespace cad::picture {

struct Sheet {
  int width = 1;
  int height = 1;
  std::uint32_t background = 0xFFFFFF;
  std::string title;        ///< UTF-8
  std::string description;  ///< UTF-8
};

struct Stroke {
  std::uint32_t rgb = 0;
  double width = 1.0;
  double opacity = 1.0;
  std::span<const double> dashes;  ///< lengths drawn and not drawn in turn; empty: continuous
  bool is_wide = false;  ///< as wide as something in the drawing: mitred, and growing when zoomed
};

struct Fill {
  std::uint32_t rgb = 0;
  double opacity = 1.0;
  bool even_odd = false;
};

/// A run whose axes are in pixels.
struct PixelRun {
  Point origin, x_axis, y_axis;
  std::span<const RunGlyph> glyphs;
  std::string_view text;
  std::uint32_t rgb = 0;
  Point place(double x, double y) const { return origin + x_axis * x + y_axis * y; }
};

class Painter {
 public:
  virtual ~Painter() = default;
  virtual void stroke(PathView path, const Stroke& stroke) = 0;
  virtual void fill(PathView path, const Fill& fill) = 0;
  virtual void run(const PixelRun& run) = 0;
  /// The bytes of the file. Call once.
  virtual Result<std::string> finish() = 0;
};

std::unique_ptr<Painter> make_svg_painter(const Sheet& sheet);
std::unique_ptr<Painter> make_pdf_painter(const Sheet& sheet);
/// The error when there is not enough memory for so many pixels comes with finish().
std::unique_ptr<Painter> make_png_painter(const Sheet& sheet);

}  // namespace cad::picture
