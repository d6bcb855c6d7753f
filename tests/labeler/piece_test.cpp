#include "labeler/piece.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <ostream>
#include <string>

#include "host/base/codepage.h"

namespace labeler {

// Beside Piece for the test's messages.
void PrintTo(const Piece& piece, std::ostream* out) {
  for (const CString* part : {&piece.prefix, &piece.value, &piece.suffix})
    *out << '[' << std::string(part->begin(), part->end()) << ']';
}

namespace {

struct Split {
  const wchar_t* text;
  const wchar_t* prefix;
  const wchar_t* value;
  const wchar_t* suffix;
};

void PrintTo(const Split& row, std::ostream* out) { *out << cad::to_utf8(row.text); }

class PieceOf : public testing::TestWithParam<Split> {};

TEST_P(PieceOf, IsSplitAtItsOnlyNumber) {
  const Split& row = GetParam();
  EXPECT_EQ(piece_of(L"n", row.text), (Piece{L"n", row.prefix, row.value, row.suffix, L""}));
}

INSTANTIATE_TEST_SUITE_P(
    Labels, PieceOf,
    testing::Values(Split{L"DN300", L"DN", L"300", L""}, Split{L"L=35.2m", L"L=", L"35.2", L"m"},
                    Split{L"i=2.8‰", L"i=", L"2.8", L"‰"}, Split{L"-1.250", L"", L"-1.250", L""},
                    Split{L"管底 -1.250", L"管底 ", L"-1.250", L""},
                    Split{L"W-12", L"W-", L"12", L""}, Split{L"12.", L"", L"12", L"."},
                    // None, or more than one: the whole text is the value.
                    Split{L"渠道", L"", L"渠道", L""},
                    Split{L"BxH=2000x1500", L"", L"BxH=2000x1500", L""},
                    Split{L"de110×6.6", L"", L"de110×6.6", L""},
                    Split{L"K1+234.5", L"", L"K1+234.5", L""}));

TEST(Piece, ANumberKnownBeforehandIsTheValueWhateverItLooksLike) {
  EXPECT_EQ(piece_ending_with(L"well_bh", L"W-12a-3", L"12a-3"),
            (Piece{L"well_bh", L"W-", L"12a-3", L"", L""}));
  EXPECT_EQ(piece_ending_with(L"well_bh", L"XH-7", L"8"),
            (Piece{L"well_bh", L"XH-", L"7", L"", L""}));
}

TEST(Piece, AValueIsNeverItsName) {
  const Piece piece = piece_of(L"jt", L"jt");
  EXPECT_NE(piece.value, piece.name);
  EXPECT_EQ(TextLine{{piece}}.text(), L"jt");
}

TEST(TextLine, JoinsPiecesWithTheSeparatorOfTheOneBefore) {
  const TextLine line{{{L"a", L"DN", L"300", L"", L"-"}, {L"b", L"L=", L"35", L"m", L"+"}}};
  EXPECT_EQ(line.text(), L"DN300-L=35m");
}

TEST(TextLine, APieceWithoutValueKeepsItsSeparatorOnly) {
  const TextLine line{{{L"a", L"DN", L"", L"mm", L"-"}, {L"b", L"", L"35", L"", L""}}};
  EXPECT_EQ(line.text(), L"-35");
}

RC_GTEST_PROP(Piece, JoinsToTheTextItWasMadeOf, ()) {
  const std::string alphabet = "DNxBH=.-+0123456789 m%";
  const auto letters =
      *rc::gen::nonEmpty(rc::gen::container<std::string>(rc::gen::elementOf(alphabet)));
  const std::wstring text(letters.begin(), letters.end());
  RC_ASSERT((TextLine{{piece_of(L"pipe_dia", text)}}.text()) == text);
  RC_ASSERT(
      (TextLine{{piece_ending_with(L"well_bh", text, text.substr(text.size() / 2))}}.text()) ==
      text);
}

TEST(Piece, BecomesAnItemOfItsEntity) {
  const StuDim item = item_of({L"pipe_dia", L"DN", L"300", L"mm", L"-"}, L"2F");
  EXPECT_EQ(item.name, L"pipe_dia");
  EXPECT_EQ(item.handle, L"2F");
  EXPECT_EQ(item.prefix, L"DN");
  EXPECT_EQ(item.value, L"300");
  EXPECT_EQ(item.suffix, L"mm");
  EXPECT_EQ(item.separator, L"-");
  EXPECT_EQ(item.recordKind, L"");
}

}  // namespace
}  // namespace labeler
