#pragma once

#include <cairo.h>
#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "host/db/database.h"
#include "host/picture/picture.h"
#include "tests/host/gi/drawing_note.h"

/// Makes pictures of small drawings and looks at them: of an SVG its elements, of a PNG its pixels.
class PictureTest : public testing::Test {
 protected:
  /// A square of 100 by 100 drawing units, in as many pixels: x of the drawing is x of the picture,
  /// y counts down from 100.
  PictureTest() {
    options.size = {100, 100};
    options.window = cad::picture::Box{0, 0, 100, 100};
  }

  /// The drawing is kept, so that a test may look for its entities.
  AcDbDatabase& given(const DrawingNote& note) {
    database_ = std::make_unique<AcDbDatabase>(false);
    EXPECT_TRUE(database_->read_bytes(note.bytes(), "note"));
    return *database_;
  }
  cad::picture::Picture make(cad::picture::Format format) {
    auto made = cad::picture::make_picture(*database_, format, options);
    EXPECT_TRUE(made);
    return made ? std::move(*made) : cad::picture::Picture();
  }

  struct Element {
    std::string tag;
    std::string style;  ///< the attributes of the group it is in
    std::string attributes;
    /// Absolute coordinates of the ends of a path's pieces.
    std::vector<std::pair<double, double>> points;
    std::string attribute(std::string_view name) const { return value_of(attributes, name); }
    std::string inherited(std::string_view name) const { return value_of(style, name); }
  };
  /// What is painted, in order: paths, and runs of characters as their group.
  std::vector<Element> svg(const DrawingNote& note) {
    given(note);
    return elements(make(cad::picture::Format::kSvg).file);
  }
  static std::vector<Element> elements(const std::string& file) {
    std::vector<Element> found;
    std::string group;
    const std::size_t body = file.find("<rect");
    for (std::size_t at = body; (at = file.find('<', at + 1)) != std::string::npos;) {
      const std::string text = file.substr(at, file.find('>', at) - at);
      if (text.rfind("<g transform", 0) == 0 || text.rfind("<g aria-label", 0) == 0)
        found.push_back({"run", group, text, {}});
      else if (text.rfind("<g", 0) == 0)
        group = text;
      else if (text.rfind("<path", 0) == 0)
        found.push_back({"path", group, text, path_points(value_of(text, "d"))});
    }
    return found;
  }

  class Pixels {
   public:
    explicit Pixels(const std::string& file) : rest_(file) {
      const auto read = [](void* closure, unsigned char* data, unsigned length) {
        auto& rest = *static_cast<std::string_view*>(closure);
        if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
        rest.copy(reinterpret_cast<char*>(data), length);
        rest.remove_prefix(length);
        return CAIRO_STATUS_SUCCESS;
      };
      surface_.reset(cairo_image_surface_create_from_png_stream(read, &rest_));
      EXPECT_EQ(cairo_surface_status(surface_.get()), CAIRO_STATUS_SUCCESS);
    }
    int width() const { return cairo_image_surface_get_width(surface_.get()); }
    int height() const { return cairo_image_surface_get_height(surface_.get()); }
    /// 0xRRGGBB.
    std::uint32_t at(int x, int y) const {
      const unsigned char* row = cairo_image_surface_get_data(surface_.get()) +
                                 y * cairo_image_surface_get_stride(surface_.get());
      return reinterpret_cast<const std::uint32_t*>(row)[x] & 0xFFFFFFU;
    }
    /// Whether each channel is within 48 of that colour.
    bool is_near(int x, int y, std::uint32_t rgb) const {
      for (const int shift : {16, 8, 0})
        if (std::abs(static_cast<int>((at(x, y) >> shift) & 0xFFU) -
                     static_cast<int>((rgb >> shift) & 0xFFU)) > 48)
          return false;
      return true;
    }
    int count_near(std::uint32_t rgb) const {
      int count = 0;
      for (int y = 0; y < height(); ++y)
        for (int x = 0; x < width(); ++x) count += is_near(x, y, rgb);
      return count;
    }

   private:
    struct Destroy {
      void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    std::string_view rest_;
    std::unique_ptr<cairo_surface_t, Destroy> surface_;
  };
  Pixels png(const DrawingNote& note) {
    given(note);
    png_ = make(cad::picture::Format::kPng).file;
    return Pixels(png_);
  }

  static std::string value_of(const std::string& text, std::string_view name) {
    const std::string start = ' ' + std::string(name) + "=\"";
    const std::size_t at = text.find(start);
    if (at == std::string::npos) return "";
    const std::size_t begin = at + start.size();
    return text.substr(begin, text.find('"', begin) - begin);
  }

  AcDbDatabase& database() { return *database_; }

  cad::picture::Options options;

 private:
  static std::vector<std::pair<double, double>> path_points(const std::string& data) {
    std::vector<std::pair<double, double>> points;
    const char* at = data.c_str();
    char command = 0;
    double x = 0, y = 0;
    const auto number = [&] {
      while (*at == ' ') ++at;
      // ".5.5" are two numbers; strtod stops where it must.
      char* end = nullptr;
      const double value = std::strtod(at, &end);
      EXPECT_NE(end, at) << data;
      at = end == at ? at + 1 : end;
      return value;
    };
    while (*at) {
      if (*at == ' ') ++at;
      if ((*at >= 'a' && *at <= 'z') || *at == 'M') command = *at++;
      if (command == 'z') continue;
      const int skipped = command == 'c' ? 4 : command == 'a' ? 5 : 0;
      for (int i = 0; i < skipped; ++i) number();
      const double dx = number(), dy = number();
      x = command == 'M' ? dx : x + dx, y = command == 'M' ? dy : y + dy;
      points.emplace_back(x, y);
    }
    return points;
  }

  std::unique_ptr<AcDbDatabase> database_;
  std::string png_;
};

/// Of a picture's points, each within a tenth of a pixel.
MATCHER_P2(IsPlace, x, y, "") {
  return std::abs(arg.first - x) < 0.1 && std::abs(arg.second - y) < 0.1;
}
