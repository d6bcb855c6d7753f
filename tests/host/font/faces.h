#pragma once

#include <string>
#include <string_view>

#include "host/font/line_layout.h"

/// Faces for tests that hold whichever fonts are installed: a single-stroke font's digits are 20/21
/// of the text's height wide and its Chinese characters as wide as high, always.
namespace font_test {

inline const cad::font::Face& stroke_face() {
  static const cad::font::Face& face = cad::font::face_for({.file = L"simplex.shx"});
  return face;
}

inline constexpr double kDigit = 0.952;

inline double width(std::wstring_view text, double height = 1.0, double width_factor = 1.0) {
  return cad::font::measure_line(text, stroke_face(), {height, width_factor}).advance;
}

inline std::wstring characters(std::wstring_view text) {
  std::wstring out;
  cad::font::LineReader reader(text);
  for (wchar_t c; reader.next(c);) out += c;
  return out;
}

}  // namespace font_test
