#include "host/db/explode.h"

#include <gmock/gmock.h>

#include "host/db/copy_entity.h"
#include "host/db/explode_text.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"
#include "tests/host/db/plan.h"
#include "tests/host/db/shapes.h"
#include "tests/host/geometry/near.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Explode : public DrawingTest {
 protected:
  std::vector<AcDbObjectId> exploded(std::uint64_t handle) {
    const auto pieces = cad::explode_entity(id(handle));
    EXPECT_TRUE(pieces) << pieces.error().message();
    return pieces ? *pieces : std::vector<AcDbObjectId>();
  }
  std::string error_of(AcDbObjectId entity) {
    const auto pieces = cad::explode_entity(entity);
    return pieces ? "" : pieces.error().message();
  }
  static std::vector<std::string> kinds(const std::vector<AcDbObjectId>& objects) {
    std::vector<std::string> names;
    for (const AcDbObjectId object : objects) names.emplace_back(cad::record_kind(object));
    return names;
  }
  std::string bytes_of(AcDbObjectId object) { return std::string(cad::record_tags(object).bytes); }
  AcGePoint3d point(AcDbObjectId object, int code) {
    cad::RecordGroups record;
    record.read(object);
    const cad::Group* const group = record.find(code);
    if (!group) return {};
    return {group->numbers[0], group->numbers[1], group->numbers[2]};
  }
};

std::string entity(std::string_view kind, std::string_view own) {
  std::string note = "0 ";
  note.append(kind).append("\n5 100\n330 1F\n100 AcDbEntity\n8 PIPES\n62 3\n").append(own);
  return note;
}

TEST_F(Explode, ABlockReferenceGivesItsBlocksContents) {
  given(drawing_of(entity("INSERT", "100 AcDbBlockReference\n2 BOX\n10 7.0\n20 8.0\n30 0.0\n")));
  const auto pieces = exploded(0x100);
  EXPECT_THAT(kinds(pieces), ElementsAre("LINE", "CIRCLE", "ATTDEF"));
  EXPECT_EQ(point(pieces[0], 10), AcGePoint3d(7, 8, 0));
  EXPECT_EQ(point(pieces[0], 11), AcGePoint3d(9, 8, 0));
  // Layers and colours stay those of the block.
  EXPECT_THAT(bytes_of(pieces[0]), HasSubstr("330\n1F\n100\nAcDbEntity\n  8\n0\n"));
  EXPECT_THAT(bytes_of(pieces[1]), HasSubstr("  8\nPIPES\n 62\n0\n"));
  EXPECT_FALSE(id(0x100).isErased());
  const auto handle = pieces[1].handle();
  reopened();
  EXPECT_EQ(point(id(handle), 10), AcGePoint3d(8, 8, 0));
}

TEST_F(Explode, ATippedBlockReferenceTipsItsContents) {
  given(drawing_of(entity("INSERT",
                          "100 AcDbBlockReference\n2 BOX\n10 -7.0\n20 8.0\n30 0.0\n"
                          "210 0.0\n220 0.0\n230 -1.0\n")));
  const auto pieces = exploded(0x100);
  EXPECT_EQ(point(pieces[0], 10), AcGePoint3d(7, 8, 0));
  EXPECT_EQ(point(pieces[0], 11), AcGePoint3d(5, 8, 0));
  EXPECT_EQ(point(pieces[1], 210), AcGePoint3d(0, 0, -1));
  EXPECT_EQ(point(pieces[1], 10), AcGePoint3d(-6, 8, 0)) << "in its own coordinates";
}

TEST_F(Explode, WhatCannotBeWidenedLeavesNothingBehind) {
  const std::string bytes = drawing_of(
      entity("INSERT", "100 AcDbBlockReference\n2 BOX\n10 7.0\n20 8.0\n30 0.0\n41 2.0\n"));
  given(bytes);
  EXPECT_THAT(error_of(id(0x100)), HasSubstr("cannot be drawn with scales that differ"));
  EXPECT_EQ(entities(0x1F), (std::vector<std::uint64_t>{0x100}));
}

TEST_F(Explode, ADimensionGivesItsBlocksContents) {
  given(drawing_of(entity("DIMENSION",
                          "100 AcDbDimension\n2 *D1\n10 10.0\n20 5.0\n30 0.0\n11 5.0\n21 5.0\n"
                          "31 0.0\n70 32\n3 Standard\n")));
  const auto pieces = exploded(0x100);
  EXPECT_THAT(kinds(pieces), ElementsAre("LINE"));
  EXPECT_EQ(point(pieces[0], 11), AcGePoint3d(10, 5, 0));
}

TEST_F(Explode, ACopiedDimensionHasABlockOfItsOwn) {
  given(drawing_of(entity("DIMENSION",
                          "100 AcDbDimension\n2 *D1\n10 10.0\n20 5.0\n30 0.0\n11 5.0\n21 5.0\n"
                          "31 0.0\n70 32\n3 Standard\n")));
  const auto copy = cad::copy_entity(id(0x100));
  ASSERT_TRUE(copy) << copy.error().message();
  cad::RecordGroups record;
  record.read(*copy);
  const std::wstring name = record.text(*record.find(2));
  EXPECT_NE(name, L"*D1");
  EXPECT_EQ(name.substr(0, 2), L"*D");
  const auto handle = copy->handle();
  reopened();
  EXPECT_THAT(kinds(exploded(handle)), ElementsAre("LINE"));
}

TEST_F(Explode, PolylinesGiveLinesAndArcs) {
  given(drawing_of(entity("LWPOLYLINE",
                          "100 AcDbPolyline\n90 3\n70 1\n38 2.0\n10 0.0\n20 0.0\n10 4.0\n20 0.0\n"
                          "42 1.0\n10 4.0\n20 4.0\n210 0.0\n220 0.0\n230 -1.0\n")));
  const auto pieces = exploded(0x100);
  EXPECT_THAT(kinds(pieces), ElementsAre("LINE", "ARC", "LINE"));
  EXPECT_EQ(point(pieces[0], 11), AcGePoint3d(-4, 0, -2));
  EXPECT_EQ(point(pieces[1], 10), AcGePoint3d(4, 2, 2)) << "in its own coordinates";
  EXPECT_EQ(point(pieces[1], 210), AcGePoint3d(0, 0, -1));
  EXPECT_THAT(bytes_of(pieces[1]), HasSubstr(" 50\n270.0\n 51\n90.0\n"));
  EXPECT_THAT(bytes_of(pieces[1]), HasSubstr("  8\nPIPES\n 62\n     3\n"));
}

TEST_F(Explode, WorksInR12) {
  for (const Form form : {Form::kR12, Form::kOldBinary, Form::kBinary, Form::kChinese}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const auto pieces = exploded(0x37);
    EXPECT_THAT(kinds(pieces), ElementsAre("CIRCLE", "LINE"));
    const auto handle = pieces.at(0).handle();
    reopened();
    EXPECT_EQ(cad::record_kind(id(handle)), "CIRCLE");
  }
}

TEST_F(Explode, WhatHasNoPiecesIsNamed) {
  given_plan();
  EXPECT_EQ(error_of({}), "there is no entity to explode");
  EXPECT_EQ(error_of(id(0x2F)), "LINE 2F: has no pieces");
  erase(0x37);
  EXPECT_EQ(error_of(id(0x37)), "INSERT 37: is erased");
}

TEST(PlainLine, HasNoFormattingCodes) {
  using cad::plain_line;
  EXPECT_EQ(plain_line(L"{\\fArial|b0|i0;DN\\C1;300}\\~m"), L"DN300 m");
  EXPECT_EQ(plain_line(L"\\S1^2; \\L\\H2.5;x\\l"), L"1/2 x");
  EXPECT_EQ(plain_line(L"\\S2^ ;"), L"2");
  EXPECT_EQ(plain_line(L"\\\\ \\{ \\}"), L"\\ { }");
  EXPECT_EQ(plain_line(L""), L"");
  EXPECT_EQ(plain_line(L"\\"), L"\\");
  EXPECT_EQ(plain_line(L"\\fArial"), L"");
  EXPECT_EQ(plain_line(L"%%c100"), L"%%c100");
}

class ExplodedMText : public Explode {
 protected:
  /// The texts of the lines, from top to bottom.
  std::vector<std::wstring> lines(const std::string& own) {
    given(drawing_of(entity("MTEXT", "100 AcDbMText\n10 5.0\n20 7.0\n30 0.0\n40 2.0\n" + own)));
    std::vector<std::wstring> texts;
    pieces_ = exploded(0x100);
    for (const AcDbObjectId piece : pieces_) {
      EXPECT_EQ(cad::record_kind(piece), "TEXT");
      cad::RecordGroups record;
      record.read(piece);
      texts.push_back(record.text(*record.find(1)));
    }
    return texts;
  }
  std::vector<AcDbObjectId> pieces_;
};
using Lines = std::vector<std::wstring>;

TEST_F(ExplodedMText, GivesALineForEachOfItsOwn) {
  EXPECT_EQ(lines("71 1\n1 a\\Pb\\P\\Pc\n"), (Lines{L"a", L"b", L"c"}));
  EXPECT_THAT(point(pieces_[0], 10), Is(5, 5, 0));
  EXPECT_THAT(point(pieces_[1], 10), Is(5, 5 - 10.0 / 3, 0));
  EXPECT_THAT(point(pieces_[2], 10), Is(5, 5 - 10, 0));
}

TEST_F(ExplodedMText, BreaksWideLinesBetweenWords) {
  EXPECT_EQ(lines("41 14.0\n71 1\n1 one two three\n"), (Lines{L"one two", L"three"}));
  EXPECT_EQ(lines("41 6.0\n71 1\n1 incomprehensible x\n"), (Lines{L"incomprehensible", L"x"}));
  EXPECT_EQ(lines("41 4.0\n71 1\n1 \\U+6807\\U+6CE8\\U+6807\n"), (Lines{L"标注", L"标"}));
}

TEST_F(ExplodedMText, PlacesCentredLinesByTheirMiddle) {
  EXPECT_EQ(lines("71 2\n1 {\\C1;a}\\Pb%%c\n"), (Lines{L"a", L"b%%c"}));
  EXPECT_THAT(point(pieces_[1], 11), Is(5, 5 - 10.0 / 3, 0));
  EXPECT_THAT(bytes_of(pieces_[1]), HasSubstr(" 72\n     1\n"));
  EXPECT_LT(point(pieces_[1], 10).x, 5);
  EXPECT_EQ(lines("71 3\n50 90.0\n1 a\n"), (Lines{L"a"}));
  EXPECT_THAT(point(pieces_[0], 11), Is(7, 7, 0));
}

TEST_F(ExplodedMText, KeepsTheHeightOfItsLines) {
  EXPECT_EQ(lines("71 1\n1 {\\H0.5x;a}\\Pb\n"), (Lines{L"a", L"b"}));
  EXPECT_THAT(bytes_of(pieces_[0]), HasSubstr(" 40\n1.0\n"));
  EXPECT_THAT(bytes_of(pieces_[1]), HasSubstr(" 40\n2.0\n"));
}

}  // namespace
