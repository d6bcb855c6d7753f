#include "host/font/face.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "host/base/trace.h"
#include "host/font/characters.h"
#include "host/font/installed_fonts.h"
#include "tests/host/font/faces.h"

namespace {

using namespace cad::font;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

bool fonts_installed() { return InstalledFonts::instance().usual() != nullptr; }

double digit_of(const FontStyle& style) { return face_for(style).glyph(L'0').advance; }

TEST(Face, IsTheSameForTheSameFont) {
  const FontStyle style{.file = L"simplex.shx"};
  EXPECT_EQ(&face_for(style), &face_for({.file = L"simplex.shx", .width_factor = 0.5}));
  EXPECT_NE(&face_for(style), &face_for({.file = L"simplex.shx", .big_file = L"gbcbig.shx"}));
  EXPECT_NE(&face_for(style), &face_for({.file = L"simplex.shx", .bold = true}));
  EXPECT_EQ(&face_for(style).glyph(L'A'), &face_for(style).glyph(L'A'));
}

TEST(Face, FoldersAndMissingExtensionsOfStrokeFontsDoNotMatter) {
  EXPECT_NEAR(digit_of({.file = L"txt"}), 1.0, 1e-9);
  EXPECT_NEAR(digit_of({.file = L"C:\\Fonts\\TXT.SHX"}), 1.0, 1e-9);
  EXPECT_NEAR(digit_of({.file = L"fonts/isocp.shx"}), 0.8, 1e-9);
}

TEST(Face, WithoutAnyNameIsTheUsualStrokeFont) {
  EXPECT_NEAR(digit_of({}), font_test::kDigit, 1e-9);
}

TEST(Face, TypefacesGoBeforeFiles) {
  EXPECT_EQ(&face_for({.file = L"txt.shx", .typeface = L"Arial"}),
            &face_for({.file = L"other.shx", .typeface = L"Arial"}));
}

TEST(Face, CapitalsAreOneHigh) {
  for (const wchar_t* file :
       {L"simplex.shx", L"simsun.ttf", L"arial.ttf", L"times.ttf", L"cour.ttf"})
    EXPECT_NEAR(face_for({.file = file}).glyph(L'H').ink.top, 1.0, 1e-9);
}

TEST(Face, ChineseCharactersComeFromTheBigFontsSubstitute) {
  const Face& face = face_for({.file = L"gbenor.shx", .big_file = L"gbcbig.shx"});
  const Glyph& glyph = face.glyph(L'标');
  EXPECT_NEAR(glyph.advance, 1.0, 1e-9);
  EXPECT_GT(glyph.ink.bottom, -0.1);
  EXPECT_LT(glyph.ink.top, 1.1);
  EXPECT_FALSE(glyph.outline.steps.empty());
}

TEST(Face, CharactersTheFontLacksComeFromAnother) {
  if (!InstalledFonts::instance().with_character(L'标'))
    GTEST_SKIP() << "no installed font has Chinese characters";
  const Face& face = face_for({.file = L"arial.ttf"});
  const Glyph& glyph = face.glyph(L'标');
  EXPECT_GT(glyph.outline.steps.size(), 20u);  // no box
  EXPECT_GT(glyph.advance, 1.1);               // an em, which is higher than a capital
}

TEST(Face, CharactersNoFontHasAreBoxes) {
  const Glyph& glyph = face_for({.file = L"simplex.shx"}).glyph(static_cast<wchar_t>(0xDC80));
  EXPECT_GT(glyph.advance, 0.5);
  EXPECT_EQ(glyph.outline.steps.size(), 10u);
  EXPECT_EQ(&face_for({}).glyph(static_cast<wchar_t>(-5)),
            &face_for({}).glyph(static_cast<wchar_t>(0xFFFD)));
}

TEST(Face, BoldLettersHaveMoreInkThanRegularOnes) {
  if (!fonts_installed()) GTEST_SKIP() << "no fonts are installed";
  const Glyph& regular = face_for({.typeface = L"Arial"}).glyph(L'I');
  const Glyph& bold = face_for({.typeface = L"Arial", .bold = true}).glyph(L'I');
  EXPECT_GT(bold.ink.width(), 1.2 * regular.ink.width());
}

TEST(Face, ItalicLettersLean) {
  if (!fonts_installed()) GTEST_SKIP() << "no fonts are installed";
  const Glyph& regular = face_for({.typeface = L"Arial"}).glyph(L'I');
  const Glyph& italic = face_for({.typeface = L"Arial", .italic = true}).glyph(L'I');
  EXPECT_GT(italic.ink.width(), regular.ink.width() + 0.1);
}

TEST(Face, BoldnessAFontLacksIsMade) {
  const InstalledFont* chinese = InstalledFonts::instance().with_character(L'标');
  if (!chinese) GTEST_SKIP() << "no installed font has Chinese characters";
  const Glyph& regular = face_for({.typeface = L"SimHei"}).glyph(L'一');
  const Glyph& bold = face_for({.typeface = L"SimHei", .bold = true}).glyph(L'一');
  EXPECT_GT(bold.ink.height(), regular.ink.height());
}

TEST(Face, OutlinesAreCompletePaths) {
  for (const wchar_t c : {L'A', L'g', L'8', L'标'}) {
    const Outline& outline = font_test::stroke_face().glyph(c).outline;
    ASSERT_FALSE(outline.steps.empty());
    EXPECT_EQ(outline.steps.front(), Outline::Step::kMove);
    EXPECT_EQ(outline.steps.back(), Outline::Step::kClose);
    std::size_t points = 0;
    for (const Outline::Step step : outline.steps)
      points += step == Outline::Step::kCurve ? 3 : step == Outline::Step::kClose ? 0 : 1;
    EXPECT_EQ(points, outline.points.size());
  }
}

TEST(Face, ReplacementsAreListedAndTracedOnce) {
  std::vector<std::wstring> traced;
  cad::set_trace_sink([&](std::wstring_view line) { traced.emplace_back(line); });
  face_for({.file = L"nobody-has-this.shx"});
  face_for({.file = L"nobody-has-this.shx", .big_file = L"nor-this.shx"});
  cad::set_trace_sink({});
  EXPECT_THAT(traced, Contains(StartsWith(L"fonts: nobody-has-this.shx -> ")).Times(1));
  EXPECT_THAT(traced, Contains(StartsWith(L"fonts: nor-this.shx -> ")).Times(1));
  std::vector<std::wstring> listed;
  for (const Replacement& each : replacements()) listed.push_back(describe(each));
  EXPECT_THAT(listed, Contains(StartsWith(L"nobody-has-this.shx -> ")).Times(1));
}

TEST(Face, InstalledFontsAreNoReplacements) {
  const InstalledFont* usual = InstalledFonts::instance().usual();
  if (!usual) GTEST_SKIP() << "no fonts are installed";
  const std::wstring name(usual->name().begin(), usual->name().end());
  EXPECT_EQ(face_for({.typeface = name}).name(), usual->name());
  const std::string file = usual->path.substr(usual->path.rfind('/') + 1);
  face_for({.file = std::wstring(file.begin(), file.end())});
  for (const Replacement& each : replacements()) {
    EXPECT_NE(each.wanted, name);
    EXPECT_NE(each.wanted, std::wstring(file.begin(), file.end()));
  }
}

TEST(Characters, LinesBreakBesideChineseButNotBeforeItsPunctuation) {
  EXPECT_TRUE(may_break_between(L'标', L'注'));
  EXPECT_TRUE(may_break_between(L'0', L'标'));
  EXPECT_FALSE(may_break_between(L'0', L'a'));
  EXPECT_FALSE(may_break_between(L'标', L'。'));
  EXPECT_FALSE(may_break_between(L'（', L'标'));
  EXPECT_FALSE(may_break_between(L'\u00A0', L'标'));
}

}  // namespace
