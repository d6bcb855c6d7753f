#include "host/db/explode.h"

#include <gmock/gmock.h>

#include "host/db/copy_entity.h"
#include "host/db/explode_text.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"
#include "tests/host/db/plan.h"
#include "tests/host/db/shapes.h"

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

TEST(PlainLines, FormattingCodesAreLeftOut) {
  using Lines = std::vector<std::wstring>;
  EXPECT_EQ(cad::plain_lines(L"a\\Pb", 1, 0), (Lines{L"a", L"b"}));
  EXPECT_EQ(cad::plain_lines(L"{\\fArial|b0|i0;DN\\C1;300}\\~m", 1, 0), (Lines{L"DN300 m"}));
  EXPECT_EQ(cad::plain_lines(L"\\S1^2; \\L\\H2.5;x\\l", 1, 0), (Lines{L"1/2 x"}));
  EXPECT_EQ(cad::plain_lines(L"\\\\ \\{ \\}", 1, 0), (Lines{L"\\ { }"}));
  EXPECT_EQ(cad::plain_lines(L"", 1, 0), (Lines{L""}));
  EXPECT_EQ(cad::plain_lines(L"\\", 1, 0), (Lines{L"\\"}));
  EXPECT_EQ(cad::plain_lines(L"\\fArial", 1, 0), (Lines{L""}));
  EXPECT_EQ(cad::plain_lines(L"%%c100", 1, 0), (Lines{L"%%c100"}));
}

TEST(PlainLines, WideLinesAreBrokenBetweenWords) {
  using Lines = std::vector<std::wstring>;
  EXPECT_EQ(cad::plain_lines(L"one two three", 1, 7), (Lines{L"one two", L"three"}));
  EXPECT_EQ(cad::plain_lines(L"incomprehensible x", 1, 3), (Lines{L"incomprehensible", L"x"}));
}

}  // namespace
