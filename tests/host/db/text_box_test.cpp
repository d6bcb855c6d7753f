#include "host/db/text_box.h"

#include <gmock/gmock.h>

#include "host/db/object_access.h"
#include "host/db/record_groups.h"
#include "tests/host/db/little.h"
#include "tests/host/db/plan.h"
#include "tests/host/geometry/near.h"

namespace {

using cad::line_box;
using cad::paragraph_size;
using cad::text_corners;

/// Advance of a digit in heights: single-stroke fonts keep theirs, whatever draws them.
constexpr double kDigit = 0.952;

TEST(TextBox, CapitalLettersAreAsHighAsTheText) {
  const cad::TextBox box = line_box(L"H0", 2.1);
  EXPECT_NEAR(line_box(L"00", 2.1).right, 2.1 * 2 * kDigit, 1e-9);
  EXPECT_NEAR(line_box(L"H", 2.1).top, 2.1, 1e-9);
  EXPECT_NEAR(box.top, 2.1, 0.1);  // round ones rise a little above
  EXPECT_NEAR(box.bottom, 0, 0.1);
  EXPECT_EQ(box.left, 0.0);
}

TEST(TextBox, SmallLettersAreLowerAndSomeGoBelowTheLine) {
  EXPECT_LT(line_box(L"x", 3).top, 2.5);
  EXPECT_LT(line_box(L"xg", 3).bottom, -0.3);
  EXPECT_EQ(line_box(L"x", 3).bottom, 0);
}

TEST(TextBox, ChineseCharactersOfTheUsualFontAreAsWideAsHigh) {
  EXPECT_NEAR(line_box(L"标注", 2.5).right, 5, 1e-9);
  EXPECT_NEAR(line_box(L"标注", 2.5, 0.8).right, 4, 1e-9);
}

TEST(TextBox, CodesCountAsTheCharacterTheyShow) {
  EXPECT_DOUBLE_EQ(line_box(L"%%u0%%u%%c0", 1).right, line_box(L"0Ø0", 1).right);
  EXPECT_DOUBLE_EQ(line_box(L"%%065", 1).right, line_box(L"A", 1).right);
  EXPECT_DOUBLE_EQ(line_box(L"5%%", 1).right,
                   line_box(L"5", 1).right + 2 * line_box(L"%", 1).right);
}

TEST(TextBox, ObliqueTextsLean) {
  const cad::TextBox upright = line_box(L"H", 1), box = line_box(L"H", 1, 1, kPi / 4);
  EXPECT_GT(box.right, upright.right + 0.7);
  EXPECT_EQ(box.left, 0);
}

TEST(TextBox, ParagraphsBreakAtTheirWidth) {
  EXPECT_NEAR(paragraph_size(L"00\\P0", 3, 0).width, 6 * kDigit, 1e-9);
  EXPECT_DOUBLE_EQ(paragraph_size(L"00\\P0", 3, 0).height, 3 + 5);
  EXPECT_DOUBLE_EQ(paragraph_size(L"标注标注", 1, 2).height, 1 + 5.0 / 3);
  EXPECT_DOUBLE_EQ(paragraph_size(L"00 00 00", 1, 5.4).height, 1 + 5.0 / 3);
  EXPECT_DOUBLE_EQ(paragraph_size(L"00 00", 1, 0, 2.0).height, 1);
}

TEST(TextBox, FormattingTakesNoRoom) {
  EXPECT_NEAR(paragraph_size(L"{\\Fsimplex;\\C1;0}\\L0\\l", 2, 0).width, 4 * kDigit, 1e-9);
  EXPECT_NEAR(paragraph_size(L"{\\H2x;0}0", 1, 0).width, 3 * kDigit, 1e-9);
  EXPECT_DOUBLE_EQ(paragraph_size(L"{\\H4;0}", 1, 0).height, 4);
  EXPECT_DOUBLE_EQ(paragraph_size(L"\\{\\}\\\\", 1, 0).width, line_box(L"{}\\", 1).right);
}

TEST(TextBox, CodesWithoutEndDoNoHarm) {
  for (const wchar_t* text : {L"\\", L"\\f", L"\\H;", L"\\S", L"{{{", L"}}}", L"\\U+", L"\\U+4E",
                              L"%%", L"%", L"%%%", L"\\Sa", L"\\H1e999;x"})
    paragraph_size(text, 1, 1), line_box(text, 1);
  EXPECT_EQ(paragraph_size(L"", 1, 0).height, 0);
}

class Texts : public DrawingTest {
 protected:
  std::array<AcGePoint3d, 4> corners(const std::string& tags, const char* kind = "TEXT",
                                     const char* part = "AcDbText") {
    given(little_drawing(std::string("0 ") + kind + "\n5 30\n100 AcDbEntity\n8 0\n100 " + part +
                         "\n" + tags));
    const auto found = text_corners(id(0x30));
    EXPECT_TRUE(found);
    return found.value_or(std::array<AcGePoint3d, 4>());
  }
};

/// The middle of the box across and its width, which digits make the same with every font.
double middle(const std::array<AcGePoint3d, 4>& box) { return (box[0].x + box[1].x) / 2; }
double width(const std::array<AcGePoint3d, 4>& box) { return box[1].x - box[0].x; }

TEST_F(Texts, StandWhereTheirAlignmentPutsThem) {
  const std::string two = "10 99\n20 99\n30 0\n40 1\n1 00\n11 10\n21 20\n31 0\n";
  EXPECT_NEAR(width(corners(two + "72 1\n")), 2 * kDigit, 1e-9);
  EXPECT_NEAR(middle(corners(two + "72 1\n")), 10, 1e-9);
  EXPECT_NEAR(corners(two + "72 1\n")[0].y, 20, 0.1);
  EXPECT_THAT(corners(two + "72 2\n73 3\n")[1].x, testing::DoubleNear(10, 1e-9));
  EXPECT_NEAR(corners(two + "72 2\n73 3\n")[2].y, 20, 0.1);
  const auto mid = corners(two + "72 4\n");
  EXPECT_NEAR(middle(mid), 10, 1e-9);
  EXPECT_NEAR((mid[0].y + mid[2].y) / 2, 20, 1e-9);
  EXPECT_NEAR(corners(two + "72 0\n73 2\n")[0].y, 19.5, 0.1);
  EXPECT_THAT(corners(two)[0].x, testing::DoubleNear(99, 1e-9));
}

TEST_F(Texts, AttributesHaveTheirVerticalJustificationElsewhere) {
  const std::string two =
      "10 99\n20 99\n30 0\n40 1\n1 00\n11 10\n21 20\n31 0\n72 1\n73 7\n74 3\n2 T\n";
  EXPECT_NEAR(corners(two, "ATTRIB")[2].y, 20, 0.1);
}

TEST_F(Texts, TurnAboutTheirPoint) {
  const auto box = corners("10 5\n20 5\n30 2\n40 1\n50 90\n1 HH\n");
  EXPECT_THAT(box[0], Is(5, 5, 2));
  EXPECT_NEAR(box[1].y - box[0].y, line_box(L"HH", 1).right, 1e-9);
  EXPECT_NEAR(box[2].x, 4, 1e-9);
}

TEST_F(Texts, AlignedAndFittedOnesReachFromPointToPoint) {
  const std::string between = "10 0\n20 0\n30 0\n40 1\n1 HH\n11 0\n21 8\n31 0\n";
  const auto aligned = corners(between + "72 3\n");
  EXPECT_THAT(aligned[1], Is(0, 8, 0));
  EXPECT_NEAR(aligned[3].x, -8 / line_box(L"HH", 1).right, 1e-9);  // grows in height too
  const auto fitted = corners(between + "72 5\n");
  EXPECT_THAT(fitted[1], Is(0, 8, 0));
  EXPECT_NEAR(fitted[3].x, -1, 1e-9);
}

TEST_F(Texts, UpsideDownAndBackwardOnesAreMirrored) {
  const std::string text = "10 0\n20 0\n30 0\n40 1\n1 HH\n";
  EXPECT_NEAR(corners(text + "71 4\n")[0].y, -1, 1e-9);
  EXPECT_NEAR(corners(text + "71 2\n")[0].x, -line_box(L"HH", 1).right, 1e-9);
}

TEST_F(Texts, ParagraphsHangAtTheirAttachment) {
  const std::string text = "10 10\n20 20\n30 0\n40 3\n41 0\n1 00\\P00\n";
  const auto top_left = corners(text + "71 1\n", "MTEXT", "AcDbMText");
  EXPECT_THAT(top_left[3], Is(10, 20, 0));
  EXPECT_THAT(top_left[0], Is(10, 12, 0));
  EXPECT_THAT(corners(text + "71 5\n", "MTEXT", "AcDbMText")[0], Is(10 - 3 * kDigit, 16, 0));
  EXPECT_THAT(corners(text + "71 7\n11 0\n21 2\n31 0\n", "MTEXT", "AcDbMText")[1],
              Is(10, 20 + 6 * kDigit, 0));
}

TEST_F(Texts, OfParagraphsTheLaterOfDirectionAndAngleCounts) {
  const std::string text = "10 0\n20 0\n30 0\n40 1\n41 0\n71 7\n1 00\n";
  EXPECT_THAT(corners(text + "11 0\n21 1\n31 0\n50 180\n", "MTEXT", "AcDbMText")[1],
              Is(-2 * kDigit, 0, 0));
  EXPECT_THAT(corners(text + "50 180\n11 0\n21 1\n31 0\n", "MTEXT", "AcDbMText")[1],
              Is(0, 2 * kDigit, 0));
}

/// A drawing with the styles NARROW, TALL (vertical), TYPE (a typeface by its data).
class StyledTexts : public DrawingTest {
 protected:
  void given_text(const std::string& tags, const char* kind = "TEXT",
                  const char* part = "AcDbText") {
    const auto style = [](const char* handle, const char* name, const std::string& own) {
      return std::string("0 STYLE\n5 ") + handle +
             "\n100 AcDbSymbolTableRecord\n100 AcDbTextStyleTableRecord\n2 " + name + "\n" + own;
    };
    std::string note =
        "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1027\n9 $HANDSEED\n5 1000\n0 ENDSEC\n"
        "0 SECTION\n2 TABLES\n0 TABLE\n2 STYLE\n5 3\n70 3\n";
    note += style("41", "NARROW", "70 0\n40 0.0\n41 0.5\n50 0.0\n71 0\n3 txt.shx\n4 gbcbig.shx\n");
    note += style("42", "TALL", "70 4\n40 0.0\n41 1.0\n50 0.0\n71 0\n3 txt.shx\n4 \n");
    note += style("43", "TYPE",
                  "70 0\n40 2.5\n41 1.0\n50 15.0\n71 6\n3 txt.shx\n4 \n1001 OTHER\n1000 no\n"
                  "1001 ACAD\n1000 Arial\n1071 50331648\n");
    note += "0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n";
    note += std::string("0 ") + kind + "\n5 30\n100 AcDbEntity\n8 0\n100 " + part + "\n" + tags;
    given(written::ascii(note + "0 ENDSEC\n0 EOF\n"));
  }
  double width_of_text() const {
    const auto box = text_corners(id(0x30));
    return box ? width(*box) : 0.0;
  }
};

TEST_F(StyledTexts, AreMeasuredWithTheirFont) {
  const std::string text = "10 0\n20 0\n30 0\n40 2\n1 00\n";
  given_text(text + "7 narrow\n");
  EXPECT_NEAR(width_of_text(), 4,
              1e-9);  // txt.shx: digits as wide as high; TEXT has its own factor
  given_text(text);
  EXPECT_NEAR(width_of_text(), 4 * kDigit, 1e-9);
  given_text("10 0\n20 0\n30 0\n40 2\n41 0\n71 1\n1 00\n7 NARROW\n", "MTEXT", "AcDbMText");
  EXPECT_NEAR(width_of_text(), 2, 1e-9);  // MTEXT takes the style's
}

TEST_F(StyledTexts, OfVerticalStylesHangDown) {
  given_text("10 0\n20 0\n30 0\n40 3\n1 000\n7 TALL\n");
  const auto box = text_corners(id(0x30));
  ASSERT_TRUE(box);
  EXPECT_NEAR((*box)[0].y, -15, 1e-9);
  EXPECT_LT(width(*box), 3);
}

TEST_F(StyledTexts, RecordsSayFontSizeAndShape) {
  given_text("10 0\n20 0\n30 0\n40 2\n1 00\n");
  const cad::TextStyleRef style = cad::text_style(id(0x43));
  EXPECT_EQ(style->font.typeface, L"Arial");
  EXPECT_TRUE(style->font.bold);
  EXPECT_TRUE(style->font.italic);
  EXPECT_EQ(style->font.fixed_height, 2.5);
  EXPECT_NEAR(style->font.oblique, kPi / 12, 1e-12);
  EXPECT_TRUE(style->font.backward);
  EXPECT_TRUE(style->font.upside_down);
  EXPECT_FALSE(style->font.vertical);
  EXPECT_EQ(cad::text_style(id(0x41))->font.big_file, L"gbcbig.shx");
  EXPECT_EQ(cad::text_style(AcDbObjectId()), cad::plain_text_style());
}

TEST_F(StyledTexts, AChangedStyleCountsAtOnce) {
  given_text("10 0\n20 0\n30 0\n40 2\n1 00\n7 NARROW\n");
  EXPECT_NEAR(width_of_text(), 4, 1e-9);
  cad::RecordGroups record;
  record.read(id(0x41));
  AcDbObject* style = opened(id(0x41), AcDb::kForWrite);
  std::string& tags = cad::ObjectAccess::writable(*style);
  tags.replace(tags.find("txt.shx"), 7, "isocp.shx");
  cad::ObjectAccess::changed(*style);
  style->close();
  EXPECT_NEAR(width_of_text(), 4 * 0.8, 1e-9);
}

TEST_F(Texts, OfNothingHaveNoBox) {
  given(little_drawing("0 TEXT\n5 30\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 0\n40 1\n1 \n"));
  EXPECT_FALSE(text_corners(id(0x30)));
  EXPECT_FALSE(text_corners(AcDbObjectId()));
}

}  // namespace
