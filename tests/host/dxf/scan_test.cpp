#include "host/dxf/scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/dxf/scanned.h"
#include "tests/host/dxf/written.h"

namespace cad::dxf {
namespace {

using testing::ElementsAre;
using written::ascii;

constexpr const char* kPlan =
    "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 ANSI_936\n0 ENDSEC\n"
    "0 SECTION\n2 TABLES\n0 TABLE\n2 DIMSTYLE\n5 A\n330 0\n"
    "0 DIMSTYLE\n105 27\n330 A\n100 AcDbSymbolTableRecord\n5 BLOCKNAME\n0 ENDTAB\n0 ENDSEC\n"
    "0 SECTION\n2 ENTITIES\n0 LINE\n5 2F\n102 {ACAD_REACTORS\n330 D0\n102 }\n330 1F\n"
    "100 AcDbEntity\n330 99\n0 ENDSEC\n"
    "0 SECTION\n2 OBJECTS\n0 DICTIONARY\n5 C\n330 0\n0 ENDSEC\n0 EOF\n";

TEST(Scan, DeliversTheRecordsInFileOrder) {
  const std::string bytes = ascii(kPlan);
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.error, "");
  EXPECT_THAT(scanned.kinds(),
              ElementsAre("SECTION", "ENDSEC", "SECTION", "TABLE", "DIMSTYLE", "ENDTAB", "ENDSEC",
                          "SECTION", "LINE", "ENDSEC", "SECTION", "DICTIONARY", "ENDSEC", "EOF"));
}

TEST(Scan, RecordsCoverTheBytesWithoutAGap) {
  const std::string bytes = ascii(kPlan);
  const Scanned scanned(bytes);
  std::uint64_t position = scanned.preamble.start;
  for (const RecordMark& mark : scanned.marks) {
    EXPECT_EQ(mark.begin, position) << mark.kind;
    position = mark.end;
  }
  EXPECT_EQ(position, bytes.size());
}

TEST(Scan, KnowsTheSectionOfEachRecord) {
  const std::string bytes = ascii(kPlan);
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.first("DIMSTYLE").section, Section::kTables);
  EXPECT_EQ(scanned.first("LINE").section, Section::kEntities);
  EXPECT_EQ(scanned.first("DICTIONARY").section, Section::kObjects);
  EXPECT_EQ(scanned.first("EOF").section, Section::kNone);
}

TEST(Scan, TheHandleIsGroup5AndOfADimensionStyleGroup105) {
  const std::string bytes = ascii(kPlan);
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.first("TABLE").handle, 0xAu);
  EXPECT_EQ(scanned.first("DIMSTYLE").handle, 0x27u);
  EXPECT_EQ(scanned.first("LINE").handle, 0x2Fu);
}

TEST(Scan, OutsideOfTablesADimensionStyleIsNothingSpecial) {
  const Scanned scanned(
      ascii("0 SECTION\n2 ENTITIES\n0 DIMSTYLE\n5 2F\n105 30\n0 ENDSEC\n0 EOF\n"));
  EXPECT_EQ(scanned.marks[1].handle, 0x2Fu);
}

TEST(Scan, TheOwnerIsTheFramesNotAReactorAndNotAReferenceBehindTheMarker) {
  const std::string bytes = ascii(kPlan);
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.first("LINE").owner, 0x1Fu);
  EXPECT_EQ(scanned.first("DIMSTYLE").owner, 0xAu);
}

TEST(Scan, WithoutAFrameOwnerLaterReferencesDoNotStandIn) {
  const std::string bytes = ascii(
      "0 SECTION\n2 OBJECTS\n0 XRECORD\n5 2F\n102 {ACAD_REACTORS\n330 D\n102 }\n"
      "100 AcDbXrecord\n330 99\n0 ENDSEC\n0 EOF\n");
  EXPECT_EQ(Scanned(bytes).first("XRECORD").owner, 0u);
}

TEST(Scan, AHandleThatIsNoNumberCountsAsNone) {
  const std::string bytes = ascii("0 SECTION\n2 ENTITIES\n0 LINE\n5 2G\n5 2F\n0 ENDSEC\n0 EOF\n");
  EXPECT_EQ(Scanned(bytes).first("LINE").handle, 0u);
}

TEST(Scan, UnknownSectionsAndRecordsBetweenSectionsAreKeptWhole) {
  const std::string bytes = ascii(
      "0 SECTION\n2 THUMBNAILIMAGE\n90 3\n310 FFAA00\n0 ENDSEC\n0 STRAY\n5 77\n"
      "0 SECTION\n2 ACDSDATA\n0 ACDSSCHEMA\n5 78\n0 ENDSEC\n0 EOF\n");
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.error, "");
  EXPECT_EQ(scanned.first("STRAY").section, Section::kNone);
  EXPECT_EQ(scanned.first("ACDSSCHEMA").section, Section::kOther);
  EXPECT_EQ(scanned.first("ACDSSCHEMA").handle, 0u) << "what is not looked into has no handle";
}

TEST(Scan, ADrawingMayLackAnySection) {
  EXPECT_EQ(Scanned(ascii("0 EOF\n")).error, "");
  EXPECT_EQ(Scanned(ascii("0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n")).error, "");
}

TEST(Scan, BytesBehindEofAreNotLookedAt) {
  const std::string bytes = ascii("0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n") + "4O\n\0\xFF";
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.error, "");
  EXPECT_EQ(scanned.marks.back().end, bytes.size());
}

TEST(Scan, TheLastLineMayLackItsEnd) {
  for (const std::string_view eol : {"\n", "\r\n"}) {
    std::string bytes = ascii(kPlan, eol);
    bytes.resize(bytes.size() - eol.size());
    const Scanned scanned(bytes);
    EXPECT_EQ(scanned.error, "");
    EXPECT_EQ(scanned.marks.size(), 14u);
  }
}

// Line ends

TEST(ScanLineEnds, AllThreeKindsReadTheSame) {
  const Scanned lf(ascii(kPlan, "\n"));
  const Scanned crlf(ascii(kPlan, "\r\n"));
  EXPECT_FALSE(lf.preamble.dialect.crlf);
  EXPECT_TRUE(crlf.preamble.dialect.crlf);

  std::string mixed = ascii(kPlan, "\n");
  for (std::size_t at = 10, step = 1; at < mixed.size(); at += step++) {
    at = mixed.find('\n', at);
    if (at == std::string::npos) break;
    mixed.insert(at, "\r");
    ++at;
  }
  ASSERT_GT(std::count(mixed.begin(), mixed.end(), '\r'), 5);
  const Scanned both(mixed);
  EXPECT_EQ(both.error, "");
  ASSERT_EQ(both.marks.size(), lf.marks.size());
  for (std::size_t i = 0; i < lf.marks.size(); ++i) {
    EXPECT_EQ(crlf.marks[i].handle, lf.marks[i].handle);
    EXPECT_EQ(crlf.marks[i].owner, lf.marks[i].owner);
    EXPECT_EQ(both.marks[i].handle, lf.marks[i].handle);
    EXPECT_EQ(both.marks[i].owner, lf.marks[i].owner);
    EXPECT_EQ(both.marks[i].kind, lf.marks[i].kind);
  }
}

// The front of a file

TEST(ScanFront, TellsReleaseAndCodePage) {
  const Scanned scanned(ascii(kPlan));
  EXPECT_EQ(scanned.preamble.version, "AC1015");
  EXPECT_EQ(scanned.preamble.code_page, "ANSI_936");
  EXPECT_EQ(scanned.preamble.dialect.release, Release::kR2000);
  EXPECT_EQ(scanned.preamble.dialect.code_page, CodePage::k936);
}

TEST(ScanFront, FromR2007OnTextIsUtf8WhateverPageIsNamed) {
  const Scanned scanned(ascii(
      "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1021\n9 $DWGCODEPAGE\n3 ANSI_936\n0 ENDSEC\n0 EOF\n"));
  EXPECT_EQ(scanned.preamble.code_page, "ANSI_936");
  EXPECT_EQ(scanned.preamble.dialect.code_page, CodePage::kUtf8);
}

TEST(ScanFront, WithoutAHeaderADrawingIsR12InTheWesternPage) {
  const Scanned scanned(ascii("0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n"));
  EXPECT_EQ(scanned.preamble.version, "");
  EXPECT_EQ(scanned.preamble.dialect.release, Release::kR12);
  EXPECT_EQ(scanned.preamble.dialect.code_page, CodePage::k1252);
}

TEST(ScanFront, AnUnknownCodePageReadsAsTheWesternOne) {
  const Scanned scanned(ascii(
      "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 EBCDIC\n0 ENDSEC\n0 EOF\n"));
  EXPECT_EQ(scanned.preamble.dialect.code_page, CodePage::k1252);
}

TEST(ScanFront, CommentsAByteOrderMarkOrBothMayStandInFront) {
  const std::string comments = "999\nwritten by hand\n  999\n\n";
  for (const std::string& front :
       {std::string(), comments, std::string("\xEF\xBB\xBF"), "\xEF\xBB\xBF" + comments}) {
    const std::string bytes = front + ascii(kPlan);
    const Scanned scanned(bytes);
    EXPECT_EQ(scanned.error, "");
    EXPECT_EQ(scanned.preamble.start, front.size());
    EXPECT_EQ(scanned.preamble.version, "AC1015");
    EXPECT_EQ(scanned.first("LINE").handle, 0x2Fu);
  }
}

TEST(ScanFront, CommentsInsideAreTagsLikeOthers) {
  const std::string bytes =
      ascii("0 SECTION\n2 ENTITIES\n0 LINE\n999 0\n5 2F\n999 x\n0 ENDSEC\n0 EOF\n");
  const Scanned scanned(bytes);
  EXPECT_EQ(scanned.error, "");
  EXPECT_EQ(scanned.first("LINE").handle, 0x2Fu);
}

TEST(ScanFront, AsciiFilesOfNoDrawingAreToldApart) {
  struct Row {
    std::string bytes;
    const char* error;
  };
  const Row rows[] = {
      {"", "plan.dxf: the file is empty"},
      {"AC1032\0\0\0",
       "plan.dxf: this is a DWG file; only DXF is read. Save it as DXF and run again"},
      {"%PDF-1.7\n1 0 obj\n", "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
      {"hello", "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
      {"\n\n\n\n", "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
      {"10\nSECTION\n", "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
      {"99999999999999999999\nx\n", "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
      {"999\nonly a comment\n", "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
      {std::string("\0\0\0\0\n\0\n", 7),
       "plan.dxf: this is not a DXF drawing: no SECTION at its start"},
  };
  for (const Row& row : rows) EXPECT_EQ(Scanned(row.bytes).error, row.error) << row.bytes;
}

}  // namespace
}  // namespace cad::dxf
