#pragma once

#include <cstdint>

/// What layout wants to know of characters, whatever the font.
namespace cad::font {

/// Chinese, Japanese, Korean letters and their punctuation: as wide as high.
bool is_full_width(std::uint32_t character);
/// Controls, joiners and the like: no width, nothing to see.
bool is_invisible(std::uint32_t character);
/// Blanks of all widths.
bool is_blank(std::uint32_t character);
/// Whether a line may be broken between neighbours without a blank: beside a full-width character,
/// but not before closing or behind opening punctuation.
bool may_break_between(wchar_t before, wchar_t after);

/// Advance and extent in the usual single-stroke font, or an estimate like it: for drawings on
/// machines without fonts. In heights of a capital letter.
double stroke_advance(std::uint32_t character);
double stroke_top(std::uint32_t character);
double stroke_bottom(std::uint32_t character);
/// Of the digits there.
inline constexpr double kStrokeDigit = 20.0 / 21.0;
inline constexpr double kStrokeDescender = 7.0 / 21.0;

}  // namespace cad::font
