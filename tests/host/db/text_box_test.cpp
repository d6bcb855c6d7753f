#include "host/db/text_box.h"

#include <gmock/gmock.h>

#include "tests/host/db/little.h"
#include "tests/host/db/plan.h"
#include "tests/host/geometry/near.h"

namespace {

using cad::line_box;
using cad::paragraph_size;
using cad::text_corners;

constexpr double kH = 20.0 / 21, kI = 8.0 / 21;  // advances: a digit, "I"

TEST(TextBox, CapitalLettersAreAsHighAsTheText) {
  const cad::TextBox box = line_box(L"I0", 2.1);
  EXPECT_DOUBLE_EQ(box.right, 2.1 * (kI + kH));
  EXPECT_DOUBLE_EQ(box.top, 2.1);
  EXPECT_EQ(box.bottom, 0.0);
  EXPECT_EQ(box.left, 0.0);
}

TEST(TextBox, SmallLettersAreLowerAndSomeGoBelowTheLine) {
  const cad::TextBox box = line_box(L"xg", 3);
  EXPECT_DOUBLE_EQ(box.top, 2);
  EXPECT_DOUBLE_EQ(box.bottom, -1);
}

TEST(TextBox, ChineseCharactersAreAsWideAsHigh) {
  EXPECT_DOUBLE_EQ(line_box(L"标注", 2.5).right, 5);
  EXPECT_DOUBLE_EQ(line_box(L"标注", 2.5, 0.8).right, 4);
}

TEST(TextBox, CodesCountAsTheCharacterTheyShow) {
  EXPECT_DOUBLE_EQ(line_box(L"%%u0%%u%%c0", 1).right, line_box(L"000", 1).right);
  EXPECT_DOUBLE_EQ(line_box(L"%%065", 1).right, line_box(L"A", 1).right);
  EXPECT_DOUBLE_EQ(line_box(L"5%%", 1).right, kH + 2 * 24.0 / 21);
}

TEST(TextBox, ObliqueTextsLean) {
  const cad::TextBox box = line_box(L"I", 1, 1, kPi / 4);
  EXPECT_DOUBLE_EQ(box.right, kI + 1);
  EXPECT_EQ(box.left, 0);
}

TEST(TextBox, ParagraphsBreakAtTheirWidth) {
  EXPECT_DOUBLE_EQ(paragraph_size(L"00\\P0", 3, 0).width, 6 * kH);
  EXPECT_DOUBLE_EQ(paragraph_size(L"00\\P0", 3, 0).height, 3 + 5);
  EXPECT_DOUBLE_EQ(paragraph_size(L"标注标注", 1, 2).height, 1 + 5.0 / 3);
  EXPECT_DOUBLE_EQ(paragraph_size(L"00 00 00", 1, 4.9).height, 1 + 5.0 / 3);
  EXPECT_DOUBLE_EQ(paragraph_size(L"00 00", 1, 0, 2.0).height, 1);
}

TEST(TextBox, FormattingTakesNoRoom) {
  EXPECT_DOUBLE_EQ(paragraph_size(L"{\\fSimSun|b0;\\C1;0}\\L0\\l", 2, 0).width, 4 * kH);
  EXPECT_DOUBLE_EQ(paragraph_size(L"{\\H2x;0}0", 1, 0).width, 3 * kH);
  EXPECT_DOUBLE_EQ(paragraph_size(L"{\\H4;0}", 1, 0).height, 4);
  EXPECT_DOUBLE_EQ(paragraph_size(L"\\{\\}\\\\", 1, 0).width, (14.0 + 14 + 14) / 21);
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

TEST_F(Texts, StandWhereTheirAlignmentPutsThem) {
  const std::string two = "10 99\n20 99\n30 0\n40 1\n1 00\n11 10\n21 20\n31 0\n";
  EXPECT_THAT(corners(two + "72 1\n")[0], Is(10 - kH, 20, 0));
  EXPECT_THAT(corners(two + "72 2\n73 3\n")[2], Is(10, 20, 0));
  EXPECT_THAT(corners(two + "72 4\n")[0], Is(10 - kH, 19.5, 0));
  EXPECT_THAT(corners(two + "72 0\n73 2\n")[0], Is(10, 19.5, 0));
  EXPECT_THAT(corners(two)[0], Is(99, 99, 0));
}

TEST_F(Texts, TurnAboutTheirPoint) {
  const auto box = corners("10 5\n20 5\n30 2\n40 1\n50 90\n1 00\n");
  EXPECT_THAT(box[0], Is(5, 5, 2));
  EXPECT_THAT(box[1], Is(5, 5 + 2 * kH, 2));
  EXPECT_THAT(box[2], Is(4, 5 + 2 * kH, 2));
}

TEST_F(Texts, AlignedAndFittedOnesReachFromPointToPoint) {
  const std::string between = "10 0\n20 0\n30 0\n40 1\n1 00\n11 0\n21 8\n31 0\n";
  const auto aligned = corners(between + "72 3\n");
  EXPECT_THAT(aligned[1], Is(0, 8, 0));
  EXPECT_THAT(aligned[3], Is(-8 / (2 * kH), 0, 0));  // grows in height too
  const auto fitted = corners(between + "72 5\n");
  EXPECT_THAT(fitted[1], Is(0, 8, 0));
  EXPECT_THAT(fitted[3], Is(-1, 0, 0));
}

TEST_F(Texts, UpsideDownAndBackwardOnesAreMirrored) {
  EXPECT_THAT(corners("10 0\n20 0\n30 0\n40 1\n1 00\n71 4\n")[0], Is(0, -1, 0));
  EXPECT_THAT(corners("10 0\n20 0\n30 0\n40 1\n1 00\n71 2\n")[0], Is(-2 * kH, 0, 0));
}

TEST_F(Texts, ParagraphsHangAtTheirAttachment) {
  const std::string text = "10 10\n20 20\n30 0\n40 3\n41 0\n1 00\\P00\n";
  const auto top_left = corners(text + "71 1\n", "MTEXT", "AcDbMText");
  EXPECT_THAT(top_left[3], Is(10, 20, 0));
  EXPECT_THAT(top_left[0], Is(10, 12, 0));
  EXPECT_THAT(corners(text + "71 5\n", "MTEXT", "AcDbMText")[0], Is(10 - 3 * kH, 16, 0));
  EXPECT_THAT(corners(text + "71 7\n11 0\n21 2\n31 0\n", "MTEXT", "AcDbMText")[1],
              Is(10, 20 + 6 * kH, 0));
}

TEST_F(Texts, OfNothingHaveNoBox) {
  given(little_drawing("0 TEXT\n5 30\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0\n20 0\n40 1\n1 \n"));
  EXPECT_FALSE(text_corners(id(0x30)));
  EXPECT_FALSE(text_corners(AcDbObjectId()));
}

}  // namespace
