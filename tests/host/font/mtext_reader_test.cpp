#include "host/font/mtext_reader.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace {

using namespace cad::font;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Kind = MTextPiece::Kind;

/// The pieces as one text: | paragraph end, ^ column end, > tab, <upper divider lower>.
std::wstring read(std::wstring_view contents, bool keep_percent = false) {
  MTextReader reader(contents, {}, keep_percent);
  std::wstring out;
  for (MTextPiece piece; reader.next(piece);) {
    if (piece.kind == Kind::kCharacter) out += piece.character;
    if (piece.kind == Kind::kTab) out += L'>';
    if (piece.kind == Kind::kParagraphEnd) out += L'|';
    if (piece.kind == Kind::kColumnEnd) out += L'^';
    if (piece.kind == Kind::kFraction) {
      out += L'<' + piece.upper;
      if (piece.divider) out += piece.divider;
      out += piece.lower + L'>';
    }
  }
  return out;
}

/// The format of the first "x" of the contents.
MTextFormat format_at_x(std::wstring_view contents, MTextFormat start = {}) {
  MTextReader reader(contents, start);
  for (MTextPiece piece; reader.next(piece);)
    if (piece.character == L'x') return reader.format();
  ADD_FAILURE() << "no x";
  return {};
}

MTextParagraph paragraph_of(std::wstring_view contents, double height = 1.0) {
  MTextFormat start;
  start.height = height;
  MTextReader reader(contents, start);
  for (MTextPiece piece; reader.next(piece);) continue;
  return reader.paragraph();
}

TEST(MTextReader, BreaksLinesAndColumns) {
  EXPECT_EQ(read(L"a\\Pb\nc\\Nd\\Xe"), L"a|b|c^d|e");
  EXPECT_EQ(read(L"a^Jb^Ic\td^Me\rf"), L"a|b>c>def");
}

TEST(MTextReader, EscapedCharactersAreShown) {
  EXPECT_EQ(read(L"\\\\ \\{ \\}"), L"\\ { }");
  EXPECT_EQ(read(L"a\\~b"), L"a\u00A0b");
  EXPECT_EQ(read(L"\\U+6807\\M+5B1EA"), L"标标");
  EXPECT_EQ(read(L"a\\"), L"a\\");
}

TEST(MTextReader, PercentCodesAreReadOrKept) {
  EXPECT_EQ(read(L"%%c100%%d5%"), L"Ø100°5%");
  EXPECT_EQ(read(L"%%c100%%u", true), L"%%c100%%u");
  EXPECT_TRUE(format_at_x(L"%%ux").under);
}

TEST(MTextReader, FractionsHaveTwoPartsAndADivider) {
  EXPECT_EQ(read(L"\\S1/2;\\S1#2;\\S+0.1^ -0.2;"), L"<1/2><1#2><+0.1^-0.2>");
  EXPECT_EQ(read(L"\\S1\\/2\\;^3;x"), L"<1/2;^3>x");
  EXPECT_EQ(read(L"\\S2;x"), L"<2>x");
  EXPECT_EQ(read(L"\\S\\U+6807/2"), L"<标/2>");
  EXPECT_EQ(read(L"\\S1/2/3;"), L"<1/2/3>");
}

TEST(MTextReader, CodesChangeTheFormatOfWhatFollows) {
  EXPECT_EQ(format_at_x(L"\\H2.5;x").height, 2.5);
  EXPECT_EQ(format_at_x(L"\\H2.5;\\H0.5x;x").height, 1.25);
  EXPECT_EQ(format_at_x(L"\\W0.7;x").width_factor, 0.7);
  EXPECT_DOUBLE_EQ(format_at_x(L"\\Q15;x").oblique, std::numbers::pi / 12);
  EXPECT_EQ(format_at_x(L"\\T1.5;x").tracking, 1.5);
  EXPECT_EQ(format_at_x(L"\\A1;x").level, MTextFormat::Level::kMiddle);
  EXPECT_EQ(format_at_x(L"\\A2;x").level, MTextFormat::Level::kTop);
  EXPECT_TRUE(format_at_x(L"\\Lx\\l").under);
  EXPECT_FALSE(format_at_x(L"\\La\\lx").under);
  EXPECT_TRUE(format_at_x(L"\\Ox").over);
  EXPECT_TRUE(format_at_x(L"\\Kx").through);
}

TEST(MTextReader, ColoursAreIndexesOrTrueColours) {
  EXPECT_EQ(format_at_x(L"x").colour, Colour());
  EXPECT_EQ(format_at_x(L"\\C3;x").colour, (Colour{Colour::Kind::kIndex, 3}));
  EXPECT_EQ(format_at_x(L"\\C256;x").colour, (Colour{Colour::Kind::kIndex, 256}));
  EXPECT_EQ(format_at_x(L"\\C-3;x").colour, Colour());
  EXPECT_EQ(format_at_x(L"\\C999;x").colour, Colour());
  EXPECT_EQ(format_at_x(L"\\c255;x").colour, (Colour{Colour::Kind::kTrue, 0xFF0000}));
}

TEST(MTextReader, FontsHaveNamesAndTraits) {
  const MTextFormat song = format_at_x(L"\\fSimSun|b1|i0|c134|p2;x");
  ASSERT_TRUE(song.font);
  EXPECT_EQ(*song.font, L"SimSun");
  EXPECT_TRUE(song.bold);
  EXPECT_FALSE(song.italic);
  const MTextFormat stroke = format_at_x(L"\\Ftxt,gbcbig;x");
  ASSERT_TRUE(stroke.font);
  EXPECT_EQ(*stroke.font, L"txt,gbcbig");
  EXPECT_TRUE(stroke.font_is_file);
  EXPECT_FALSE(song.font_is_file);
}

TEST(MTextReader, GroupsGiveTheFormatBack) {
  EXPECT_EQ(format_at_x(L"{\\H3;\\C1;a}x"), MTextFormat());
  EXPECT_EQ(format_at_x(L"{\\H3;{\\H4;a}x}").height, 3);
  EXPECT_EQ(format_at_x(L"}}}x"), MTextFormat());
}

TEST(MTextReader, EqualVersionsMeanEqualFormats) {
  MTextReader reader(L"a{\\H3;b}c\\H1;d", {});
  std::vector<std::uint64_t> versions;
  for (MTextPiece piece; reader.next(piece);) versions.push_back(reader.format_version());
  ASSERT_EQ(versions.size(), 4u);
  EXPECT_EQ(versions[0], versions[2]);
  EXPECT_NE(versions[0], versions[1]);
  EXPECT_NE(versions[2], versions[3]);
}

TEST(MTextReader, ParagraphCodesSetIndentsTabsAndAlignment) {
  const MTextParagraph list = paragraph_of(L"\\pxi-2,l4,r1,qc,t3,c8,r12.5,z;x", 2.0);
  EXPECT_EQ(list.first, -4);
  EXPECT_EQ(list.left, 8);
  EXPECT_EQ(list.right, 2);
  EXPECT_EQ(list.align, MTextParagraph::Align::kCenter);
  ASSERT_EQ(list.tabs.size(), 3u);
  EXPECT_EQ(list.tabs[0].position, 6);
  EXPECT_EQ(list.tabs[1].align, MTextParagraph::Align::kCenter);
  EXPECT_EQ(list.tabs[2].position, 25);
  const MTextParagraph usual = paragraph_of(L"\\pi-2,l4,r1,qr,t3;\\pi*,l*,r*,q*,t*;x");
  EXPECT_EQ(usual.first, 0);
  EXPECT_EQ(usual.left, 0);
  EXPECT_EQ(usual.right, 0);
  EXPECT_EQ(usual.align, MTextParagraph::Align::kDefault);
  EXPECT_THAT(usual.tabs, IsEmpty());
}

TEST(MTextReader, ParagraphsCanHaveTheirOwnSpacing) {
  EXPECT_EQ(paragraph_of(L"\\psm1.5;").line_spacing, 1.5);
  const MTextParagraph exact = paragraph_of(L"\\pse5;", 3.0);
  EXPECT_TRUE(exact.exact_spacing);
  EXPECT_DOUBLE_EQ(exact.line_spacing, 1.0);
  EXPECT_EQ(paragraph_of(L"\\psm2;\\ps*;").line_spacing, 0.0);
}

TEST(MTextReader, UnknownCodesShowNothingAndAreCounted) {
  MTextReader reader(L"a\\zb\\z\\!c", {});
  std::wstring shown;
  for (MTextPiece piece; reader.next(piece);) shown += piece.character;
  EXPECT_EQ(shown, L"abc");
  EXPECT_THAT(reader.unknown(), ElementsAre(Pair(L'!', 1u), Pair(L'z', 2u)));
}

TEST(MTextReader, NumbersWithoutASemicolonTakeOnlyWhatIsTheirs) {
  EXPECT_EQ(read(L"\\H3text\\C1red\\A1;\\W;x"), L"textredx");
  EXPECT_EQ(format_at_x(L"\\H1e1;x").height, 10);
  EXPECT_EQ(format_at_x(L"\\H3ex").height, 3);
}

TEST(MTextReader, BadValuesChangeNothing) {
  for (const wchar_t* text : {L"\\H0;x", L"\\H-1;x", L"\\H;x", L"\\Hq;x", L"\\H1e999;x"})
    EXPECT_EQ(format_at_x(text).height, 1.0) << testing::PrintToString(text);
  EXPECT_LT(format_at_x(L"\\Q90;x").oblique, 1.5);
}

TEST(MTextReader, GroupsMayBeOpenedMoreOftenThanAnybodyWould) {
  const std::wstring deep(100'000, L'{');
  EXPECT_EQ(read(deep + L"x" + std::wstring(200'000, L'}') + L"y"), L"xy");
  EXPECT_EQ(format_at_x(std::wstring(300, L'{') + L"\\H2;" + std::wstring(300, L'}') + L"x").height,
            1.0);
}

TEST(MTextReader, CodesWithoutEndDoNoHarm) {
  for (const wchar_t* text :
       {L"\\", L"\\f", L"\\p", L"\\H", L"\\S", L"\\Sa", L"\\S\\", L"{", L"\\U+", L"\\M+5", L"%%",
        L"^", L"\\c", L"\\pt", L"\\pxt,,;", L"\\S^;"})
    read(text);
  EXPECT_EQ(read(L"a\\fArial"), L"a");
}

}  // namespace
