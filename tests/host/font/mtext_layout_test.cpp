#include "host/font/mtext_layout.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/host/font/faces.h"

namespace {

using namespace cad::font;
using namespace font_test;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

constexpr double kNear = 1e-9;
constexpr double kStep = 5.0 / 3.0;

const FontStyle kStyle{.file = L"simplex.shx"};

MTextLayout laid(std::wstring_view contents, MTextShape shape = {}) {
  return layout_mtext(contents, kStyle, shape);
}

/// The characters of each line.
std::vector<std::wstring> lines(const MTextLayout& layout) {
  std::vector<std::wstring> out;
  for (const MTextLine& line : layout.lines) {
    std::wstring text;
    for (std::size_t r = line.first_run; r < line.first_run + line.runs; ++r) {
      const MTextRun& run = layout.runs[r];
      for (std::size_t g = run.first_glyph; g < run.first_glyph + run.glyphs; ++g)
        text += layout.glyphs[g].character;
    }
    out.push_back(text);
  }
  return out;
}
using Lines = std::vector<std::wstring>;

TEST(MTextLayout, LinesStandFiveThirdsOfTheHeightApart) {
  const MTextLayout layout = laid(L"00\\P0", {.height = 3});
  ASSERT_THAT(layout.lines, SizeIs(2));
  EXPECT_NEAR(layout.lines[0].base, -3, kNear);
  EXPECT_NEAR(layout.lines[1].base, -8, kNear);
  EXPECT_NEAR(layout.frame.width(), 6 * kDigit, kNear);
  EXPECT_NEAR(layout.frame.height(), 8, kNear);
  EXPECT_NEAR(laid(L"0\\P0", {.height = 3, .line_spacing = 2}).lines[1].base, -13, kNear);
}

TEST(MTextLayout, EmptyLinesTakeRoom) {
  const MTextLayout layout = laid(L"0\\P\\P0");
  ASSERT_THAT(layout.lines, SizeIs(3));
  EXPECT_NEAR(layout.lines[2].base, -1 - 2 * kStep, kNear);
}

TEST(MTextLayout, WordsThatDoNotFitGoToTheNextLine) {
  EXPECT_EQ(lines(laid(L"00 00 00", {.reference_width = 5.4})), (Lines{L"0000", L"00"}));
  EXPECT_EQ(lines(laid(L"00 00 00", {.reference_width = 3})), (Lines{L"00", L"00", L"00"}));
  EXPECT_EQ(lines(laid(L"00 00 00")), (Lines{L"000000"}));
}

TEST(MTextLayout, AWordWiderThanTheLineHasOneOfItsOwn) {
  EXPECT_EQ(lines(laid(L"0 00000 0", {.reference_width = 2})), (Lines{L"0", L"00000", L"0"}));
}

TEST(MTextLayout, ALineMayBeFilledToItsEnd) {
  EXPECT_EQ(lines(laid(L"000 0", {.reference_width = 3 * kDigit})), (Lines{L"000", L"0"}));
}

TEST(MTextLayout, ChineseLinesBreakBetweenCharacters) {
  EXPECT_EQ(lines(laid(L"标注标注", {.reference_width = 2})), (Lines{L"标注", L"标注"}));
  EXPECT_EQ(lines(laid(L"标注00", {.reference_width = 3})), (Lines{L"标注", L"00"}));
}

TEST(MTextLayout, PunctuationKeepsToItsCharacter) {
  EXPECT_EQ(lines(laid(L"标注,标", {.reference_width = 2.2})), (Lines{L"标", L"注,", L"标"}));
  EXPECT_EQ(lines(laid(L"标(注)", {.reference_width = 1.8})), (Lines{L"标", L"(注)"}));
}

TEST(MTextLayout, FirmBlanksDoNotBreak) {
  EXPECT_EQ(lines(laid(L"0 0\\~0", {.reference_width = 3})).size(), 2u);
  EXPECT_EQ(lines(laid(L"0 0\\~0", {.reference_width = 3}))[0], L"0");
}

TEST(MTextLayout, BlanksAtTheEndOfALineDoNotCount) {
  EXPECT_NEAR(laid(L"00   ").frame.width(), 2 * kDigit, kNear);
  EXPECT_NEAR(laid(L"00      00", {.reference_width = 2}).frame.width(), 2 * kDigit, kNear);
}

TEST(MTextLayout, NineAttachmentsPlaceTheFrame) {
  for (int attachment = 1; attachment <= 9; ++attachment) {
    const Box frame = laid(L"00\\P00", {.height = 3, .attachment = attachment}).frame;
    const double column = (attachment - 1) % 3, row = (attachment - 1) / 3;
    SCOPED_TRACE(attachment);
    EXPECT_NEAR(frame.left, -6 * kDigit * column / 2, kNear);
    EXPECT_NEAR(frame.top, 8 * row / 2, kNear);
    EXPECT_NEAR(frame.bottom, 8 * row / 2 - 8, kNear);
  }
}

TEST(MTextLayout, LinesAlignAsTheyAreAttached) {
  const MTextLayout right = laid(L"0\\P000", {.attachment = 3});
  EXPECT_NEAR(right.lines[0].left, -kDigit, kNear);
  EXPECT_NEAR(right.lines[1].left, -3 * kDigit, kNear);
  const MTextLayout centred = laid(L"0\\P000", {.attachment = 2});
  EXPECT_NEAR(centred.lines[0].left, -kDigit / 2, kNear);
}

TEST(MTextLayout, ParagraphsCanBeAlignedWithinTheWidth) {
  const MTextShape wide{.reference_width = 10};
  EXPECT_NEAR(laid(L"\\pxqr;0", wide).lines[0].left, 10 - kDigit, kNear);
  EXPECT_NEAR(laid(L"\\pxqc;0", wide).lines[0].left, 5 - kDigit / 2, kNear);
  EXPECT_NEAR(laid(L"\\pxql;0", {.reference_width = 10, .attachment = 3}).lines[0].left, -10,
              kNear);
}

TEST(MTextLayout, JustifiedLinesReachBothEdgesButTheLast) {
  const MTextLayout layout = laid(L"\\pxqj;00 00 00 0", {.reference_width = 5.5});
  ASSERT_THAT(layout.lines, SizeIs(2));
  EXPECT_NEAR(layout.lines[0].width, 5.5, kNear);
  EXPECT_LT(layout.lines[1].width, 5.4);
  const MTextLayout all = laid(L"\\pxqd;000", {.reference_width = 9});
  EXPECT_NEAR(all.lines[0].width, 9, kNear);
  EXPECT_NEAR(all.glyphs[1].x - all.glyphs[0].x, (9 - kDigit) / 2, 0.1);
}

TEST(MTextLayout, IndentsHoldForTheFirstLineAndTheOthers) {
  const MTextLayout layout = laid(L"\\pxi-1,l3;00 00 00", {.reference_width = 6});
  ASSERT_THAT(layout.lines, SizeIs(3));
  EXPECT_NEAR(layout.lines[0].left, 2, kNear);
  EXPECT_NEAR(layout.lines[1].left, 3, kNear);
  EXPECT_NEAR(layout.lines[2].left, 3, kNear);
}

TEST(MTextLayout, TabsLeadToTheirStops) {
  EXPECT_NEAR(laid(L"\\pxt5,9;0^I0").glyphs[1].x, laid(L"0").glyphs[0].x + 5, kNear);
  EXPECT_NEAR(laid(L"\\pxtr6;0^I00").lines[0].width, 6, kNear);
  EXPECT_NEAR(laid(L"\\pxtc6;0^I00").lines[0].width, 6 + kDigit, kNear);
  EXPECT_NEAR(laid(L"0\t0", {.height = 2}).lines[0].width, 8 + 2 * kDigit, kNear);
}

TEST(MTextLayout, TheTallestCharacterMakesTheLine) {
  const MTextLayout layout = laid(L"0{\\H3;0}\\P{\\H2;0}");
  EXPECT_NEAR(layout.lines[0].base, -3, kNear);
  EXPECT_NEAR(layout.lines[0].height, 3, kNear);
  EXPECT_NEAR(layout.lines[1].base, -3 - 2 * kStep, kNear);
  const MTextLayout exact = laid(L"0\\P{\\H2;0}", {.exact_spacing = true});
  EXPECT_NEAR(exact.lines[1].base, -1 - kStep, kNear);
}

TEST(MTextLayout, SmallCharactersStandLowInTheMiddleOrHigh) {
  EXPECT_NEAR(laid(L"{\\H3;0}0").glyphs[1].y, -3, kNear);
  EXPECT_NEAR(laid(L"\\A1;{\\H3;0}0").glyphs[1].y, -2, kNear);
  EXPECT_NEAR(laid(L"\\A2;{\\H3;0}0").glyphs[1].y, -1, kNear);
}

TEST(MTextLayout, FormattingItselfTakesNoRoom) {
  EXPECT_NEAR(laid(L"{\\C1;\\Fsimplex;0}\\L0\\l", {.height = 2}).frame.width(), 4 * kDigit, kNear);
  EXPECT_NEAR(laid(L"\\W0.5;00").frame.width(), kDigit, kNear);
  EXPECT_NEAR(laid(L"\\T2;00").frame.width(), 4 * kDigit, kNear);
}

TEST(MTextLayout, StylesGiveWidthAndSlant) {
  const FontStyle style{.file = L"simplex.shx", .width_factor = 0.5, .oblique = std::atan(0.25)};
  const MTextLayout layout = layout_mtext(L"00", style, {.height = 2});
  EXPECT_NEAR(layout.frame.width(), 2 * kDigit, kNear);
  EXPECT_NEAR(layout.glyphs[0].xy, 0.5, kNear);
}

TEST(MTextLayout, RunsCarryTheirColour) {
  const MTextLayout layout = laid(L"a{\\C1;bc}\\c255;d");
  ASSERT_THAT(layout.runs, SizeIs(3));
  EXPECT_EQ(layout.runs[0].colour, Colour());
  EXPECT_EQ(layout.runs[1].colour, (Colour{Colour::Kind::kIndex, 1}));
  EXPECT_EQ(layout.runs[1].first_glyph, 1u);
  EXPECT_EQ(layout.runs[1].glyphs, 2u);
  EXPECT_EQ(layout.runs[2].colour, (Colour{Colour::Kind::kTrue, 0xFF0000}));
}

TEST(MTextLayout, LinesRunUnderTheRunsThatAskForThem) {
  const MTextLayout layout = laid(L"0\\L00\\l0");
  ASSERT_THAT(layout.strokes, SizeIs(1));
  EXPECT_NEAR(layout.strokes[0].from.x, kDigit, kNear);
  EXPECT_NEAR(layout.strokes[0].to.x, 3 * kDigit, kNear);
  EXPECT_EQ(layout.runs[1].strokes, 1u);
  EXPECT_EQ(layout.runs[2].strokes, 0u);
}

TEST(MTextLayout, AWrappedUnderlineStopsWithTheText) {
  const MTextLayout layout = laid(L"\\L00   00", {.reference_width = 2});
  ASSERT_THAT(layout.strokes, SizeIs(2));
  EXPECT_NEAR(layout.strokes[0].to.x, 2 * kDigit, kNear);
}

TEST(MTextLayout, FractionsAreSmallerPartsAboveEachOther) {
  const MTextLayout bar = laid(L"\\S00/0;");
  ASSERT_THAT(bar.glyphs, SizeIs(3));
  EXPECT_NEAR(bar.lines[0].width, 2 * kDigit * 0.7, kNear);
  EXPECT_GT(bar.glyphs[0].y, bar.glyphs[2].y + 0.7);
  EXPECT_NEAR(bar.glyphs[2].x, kDigit * 0.35, kNear);  // centred
  ASSERT_THAT(bar.strokes, SizeIs(1));
  EXPECT_NEAR(bar.strokes[0].to.x - bar.strokes[0].from.x, 2 * kDigit * 0.7, kNear);
  EXPECT_THAT(laid(L"\\S00^0;").strokes, SizeIs(0));
  const MTextLayout slope = laid(L"\\S0#0;");
  ASSERT_THAT(slope.strokes, SizeIs(1));
  EXPECT_LT(slope.strokes[0].from.x, slope.strokes[0].to.x);
  EXPECT_LT(slope.strokes[0].from.y, slope.strokes[0].to.y);
}

TEST(MTextLayout, UnknownCodesAreCounted) {
  EXPECT_THAT(laid(L"a\\zb\\z").unknown, ElementsAre(Pair(L'z', 2u)));
}

TEST(MTextLayout, SizesThatAreNoneGiveNothing) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (const double height : {0.0, -1.0, kNan}) {
    EXPECT_TRUE(laid(L"\\L00", {.height = height}).glyphs.empty());
    EXPECT_TRUE(laid(L"00", {.height = height}).frame.is_empty());
  }
  const MTextLayout layout =
      laid(L"00 00", {.reference_width = kNan, .attachment = 99, .line_spacing = kNan});
  EXPECT_THAT(layout.lines, SizeIs(1));
}

TEST(MTextLayout, VeryLongTextsAreLaidOut) {
  std::wstring text;
  for (int i = 0; i < 100'000; ++i) text += L"00 ";
  EXPECT_THAT(laid(text, {.reference_width = 100}).lines, SizeIs(testing::Gt(1000u)));
  EXPECT_THAT(laid(std::wstring(300'000, L'0'), {.reference_width = 100}).lines, SizeIs(1));
  EXPECT_THAT(laid(std::wstring(300'000, L'标'), {.reference_width = 100}).lines, SizeIs(3000));
}

}  // namespace
