#include "host/font/line_layout.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/host/font/faces.h"

namespace {

using namespace cad::font;
using namespace font_test;
using testing::DoubleNear;
using testing::Each;
using testing::SizeIs;

constexpr double kNear = 1e-9;

TEST(LineLayout, HeightIsThatOfACapitalLetter) {
  const LineExtent extent = measure_line(L"H", stroke_face(), {2.5});
  EXPECT_NEAR(extent.ink.top, 2.5, kNear);
  EXPECT_NEAR(extent.ink.bottom, 0.0, kNear);
  EXPECT_GT(extent.ink.left, 0.0);
  EXPECT_LT(extent.ink.right, extent.advance);
}

TEST(LineLayout, SmallLettersAreLowerAndSomeGoBelowTheBaseLine) {
  const Box x = measure_line(L"x", stroke_face(), {}).ink,
            g = measure_line(L"g", stroke_face(), {}).ink;
  EXPECT_LT(x.top, 0.9);
  EXPECT_GT(x.top, 0.5);
  EXPECT_LT(g.bottom, -0.1);
  EXPECT_NEAR(measure_line(L"p", stroke_face(), {}).ink.bottom, -stroke_face().descender(), kNear);
}

TEST(LineLayout, DigitsAreAsWideAsThoseOfTheFontTheyStandFor) {
  EXPECT_NEAR(width(L"0123", 2.0), 4 * 2.0 * kDigit, kNear);
}

TEST(LineLayout, ChineseCharactersOfSingleStrokeFontsAreAsWideAsHigh) {
  EXPECT_NEAR(width(L"标注", 2.5), 5.0, kNear);
  EXPECT_NEAR(width(L"标注", 2.5, 0.8), 4.0, kNear);
  EXPECT_NEAR(width(L"\U00020000"), 1.0, kNear);  // beyond the first plane
}

TEST(LineLayout, WidthFactorStretchesAcrossOnly) {
  const LineExtent plain = measure_line(L"DN300", stroke_face(), {2.0});
  const LineExtent narrow = measure_line(L"DN300", stroke_face(), {2.0, 0.7});
  EXPECT_NEAR(narrow.advance, 0.7 * plain.advance, kNear);
  EXPECT_NEAR(narrow.ink.top, plain.ink.top, kNear);
}

TEST(LineLayout, ObliqueLettersLeanFromTheBaseLine) {
  const LineShape upright{1.0}, oblique{.height = 1.0, .oblique = std::atan(0.5)};
  const LineExtent a = measure_line(L"H", stroke_face(), upright);
  const LineExtent b = measure_line(L"H", stroke_face(), oblique);
  EXPECT_NEAR(b.advance, a.advance, kNear);
  EXPECT_NEAR(b.ink.right, a.ink.right + 0.5, kNear);
  EXPECT_NEAR(b.ink.left, a.ink.left, kNear);
}

TEST(LineLayout, PlacedGlyphsCoverTheInk) {
  const LineShape shape{.height = 3.0, .width_factor = 0.8, .oblique = 0.2};
  const LineLayout line = layout_line(L"W1 标g", stroke_face(), shape);
  ASSERT_THAT(line.glyphs, SizeIs(4));  // the blank is not seen
  EXPECT_EQ(line.glyphs[2].character, L'标');
  Box ink;
  for (const PlacedGlyph& glyph : line.glyphs) ink.add(box_of(glyph));
  EXPECT_DOUBLE_EQ(ink.left, line.ink.left);
  EXPECT_DOUBLE_EQ(ink.right, line.ink.right);
  EXPECT_DOUBLE_EQ(ink.bottom, line.ink.bottom);
  EXPECT_DOUBLE_EQ(ink.top, line.ink.top);
  const LineExtent measured = measure_line(L"W1 标g", stroke_face(), shape);
  EXPECT_DOUBLE_EQ(measured.advance, line.advance);
  EXPECT_DOUBLE_EQ(measured.ink.right, line.ink.right);
}

TEST(LineLayout, GlyphsFollowEachOtherByTheirAdvances) {
  const LineLayout line = layout_line(L"AB", stroke_face(), {2.0, 0.5});
  ASSERT_THAT(line.glyphs, SizeIs(2));
  EXPECT_DOUBLE_EQ(line.glyphs[0].x, 0.0);
  EXPECT_DOUBLE_EQ(line.glyphs[1].x, line.glyphs[0].glyph->advance * 2.0 * 0.5);
  EXPECT_EQ(line.glyphs[0].glyph, &stroke_face().glyph(L'A'));
}

TEST(LineLayout, CodesShowTheirCharacter) {
  EXPECT_EQ(characters(L"%%c100%%d%%p5"), L"Ø100°±5");
  EXPECT_EQ(characters(L"%%C%%D%%P"), L"Ø°±");
  EXPECT_EQ(characters(L"%%065%%%"), L"A%");
  EXPECT_EQ(characters(L"\\U+6807\\U+D840\\U+DC00"), L"标\U00020000");
  EXPECT_EQ(characters(L"\\M+5B1EA"), L"标");
}

TEST(LineLayout, WhatOnlyLooksLikeACodeIsShown) {
  for (const wchar_t* text : {L"5%", L"5%%", L"%%x", L"%%12", L"%%12a", L"\\", L"\\U+", L"\\U+68",
                              L"\\U+680G", L"\\M+", L"\\M+9B1EA", L"\\P", L"100% %"})
    EXPECT_EQ(characters(text), text);
}

TEST(LineLayout, LinesRunUnderOverAndThroughTheText) {
  const LineLayout line = layout_line(L"a%%ub%%oc%%ud%%o%%ke", stroke_face(), {1.0});
  ASSERT_THAT(line.strokes, SizeIs(3));
  EXPECT_DOUBLE_EQ(line.strokes[0].from.x, width(L"a"));
  EXPECT_DOUBLE_EQ(line.strokes[0].to.x, width(L"abc"));
  EXPECT_LT(line.strokes[0].from.y, 0.0);
  EXPECT_DOUBLE_EQ(line.strokes[1].from.x, width(L"ab"));
  EXPECT_DOUBLE_EQ(line.strokes[1].to.x, width(L"abcd"));
  EXPECT_GT(line.strokes[1].from.y, 1.0);
  EXPECT_DOUBLE_EQ(line.strokes[2].to.x, width(L"abcde"));
  EXPECT_NEAR(line.strokes[2].to.y, 0.5, kNear);
}

TEST(LineLayout, ALineThatIsNotSwitchedOffReachesTheEnd) {
  const LineLayout line = layout_line(L"%%uab", stroke_face(), {1.0});
  ASSERT_THAT(line.strokes, SizeIs(1));
  EXPECT_DOUBLE_EQ(line.strokes[0].from.x, 0.0);
  EXPECT_DOUBLE_EQ(line.strokes[0].to.x, width(L"ab"));
  EXPECT_DOUBLE_EQ(line.ink.bottom, line.strokes[0].from.y);
}

TEST(LineLayout, TabsLeadToMultiplesOfFourHeights) {
  EXPECT_NEAR(width(L"\t", 2.0), 8.0, kNear);
  EXPECT_NEAR(width(L"00\t0", 1.0), 4.0 + kDigit, kNear);
  EXPECT_NEAR(width(L"00000\t", 1.0), 8.0, kNear);
}

TEST(LineLayout, ControlsAndJoinersTakeNoRoom) {
  EXPECT_EQ(width(std::wstring(L"\r\u200B\uFEFF\u0001", 4)), 0.0);
  EXPECT_TRUE(layout_line(L"\u200B", stroke_face(), {}).glyphs.empty());
}

TEST(LineLayout, BlanksAreWideButNotSeen) {
  const LineExtent blank = measure_line(L"  ", stroke_face(), {1.0});
  EXPECT_GT(blank.advance, 0.5);
  EXPECT_TRUE(blank.ink.is_empty());
  EXPECT_EQ(measure_line(L"", stroke_face(), {1.0}).advance, 0.0);
}

TEST(LineLayout, HeightsThatAreNoneGiveNothing) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (const double height : {0.0, -1.0, kNan}) {
    const LineLayout line = layout_line(L"%%uDN300", stroke_face(), {height});
    EXPECT_EQ(line.advance, 0.0);
    EXPECT_TRUE(line.ink.is_empty());
    EXPECT_TRUE(line.glyphs.empty());
    EXPECT_TRUE(line.strokes.empty());
  }
}

TEST(LineLayout, AbsurdNumbersStayFinite) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  EXPECT_DOUBLE_EQ(width(L"00", 1.0, kNan), width(L"00"));
  EXPECT_DOUBLE_EQ(width(L"00", 1.0, 0.0), width(L"00"));
  for (const double number : {1e300, kInfinite, -kInfinite, kNan}) {
    const LineExtent extent = measure_line(L"%%u0", stroke_face(), {number, number, number});
    for (const double each : {extent.advance, extent.ink.left, extent.ink.right, extent.ink.top})
      EXPECT_TRUE(std::isfinite(each)) << number;
  }
}

TEST(LineLayout, CharactersOfVerticalTextsStandBelowEachOther) {
  const LineShape shape{.height = 3.0, .vertical = true};
  const LineLayout line = layout_line(L"标1", stroke_face(), shape);
  ASSERT_THAT(line.glyphs, SizeIs(2));
  EXPECT_NEAR(line.advance, 2 * 5.0, kNear);
  EXPECT_NEAR(line.glyphs[0].x, -1.5, kNear);
  EXPECT_NEAR(line.glyphs[0].y, -3.0, kNear);
  EXPECT_NEAR(line.glyphs[1].y, -8.0, kNear);
  EXPECT_LE(line.ink.top, 0.2);
}

TEST(LineLayout, VeryLongTextsAreLaidOut) {
  const std::wstring text(1'000'000, L'0');
  EXPECT_NEAR(width(text), 1e6 * kDigit, 1e-3);
}

TEST(LineLayout, CharactersThatAreNoneAreBoxes) {
  const std::wstring text = {static_cast<wchar_t>(-1), static_cast<wchar_t>(0x110000),
                             static_cast<wchar_t>(0xDC80)};
  EXPECT_THAT(layout_line(text, stroke_face(), {}).glyphs, SizeIs(3));
}

}  // namespace
