#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/dxf/binary_layout.h"
#include "host/dxf/tag_reader.h"
#include "tests/host/dxf/scanned.h"
#include "tests/host/dxf/written.h"

namespace cad::dxf {
namespace {

using written::ascii;
using written::binary;

constexpr const char* kPlan =
    "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1014\n9 $DWGCODEPAGE\n3 ANSI_936\n9 $HANDSEED\n5 40\n"
    "0 ENDSEC\n0 SECTION\n2 TABLES\n0 TABLE\n2 DIMSTYLE\n5 A\n0 DIMSTYLE\n105 27\n0 ENDTAB\n"
    "0 ENDSEC\n0 SECTION\n2 ENTITIES\n0 LINE\n5 2F\n102 {ACAD_REACTORS\n330 D0\n102 }\n330 1F\n"
    "100 AcDbEntity\n8 0\n62 -3\n370 25\n290 1\n160 81985529216486895\n90 70000\n310 00FF0A0D\n"
    "10 1.5\n20 -2.25\n30 0.0\n1001 PN\n1000 {x\n1040 2.5\n1070 -7\n1071 70000\n1004 00\n"
    "1005 2F\n0 ENDSEC\n0 EOF\n";

TEST(ScanBinary, BothCodeWidthsReadLikeTheAsciiFile) {
  const Scanned text(ascii(kPlan));
  for (const bool one_byte : {false, true}) {
    const std::string bytes = binary(kPlan, one_byte);
    const Scanned scanned(bytes);
    EXPECT_EQ(scanned.error, "");
    EXPECT_TRUE(scanned.preamble.dialect.binary);
    EXPECT_EQ(scanned.preamble.dialect.one_byte_codes, one_byte);
    EXPECT_EQ(scanned.preamble.dialect.code_page, CodePage::k936);
    ASSERT_EQ(scanned.kinds(), text.kinds());
    std::uint64_t position = kBinarySentinel.size();
    for (std::size_t i = 0; i < text.marks.size(); ++i) {
      EXPECT_EQ(scanned.marks[i].handle, text.marks[i].handle);
      EXPECT_EQ(scanned.marks[i].owner, text.marks[i].owner);
      EXPECT_EQ(scanned.marks[i].section, text.marks[i].section);
      EXPECT_EQ(scanned.marks[i].begin, position);
      position = scanned.marks[i].end;
    }
    EXPECT_EQ(position, bytes.size());
  }
}

TEST(ScanBinary, ACutAtEveryByteIsAnError) {
  for (const bool one_byte : {false, true}) {
    const std::string whole = binary(kPlan, one_byte);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const std::string cut = whole.substr(0, size);
      EXPECT_NE(Scanned(cut).error, "") << size;
    }
    EXPECT_EQ(Scanned(whole).error, "");
  }
}

TEST(ScanBinary, ErrorsNameTheByteOffset) {
  const std::string whole = binary(kPlan);
  EXPECT_EQ(Scanned(whole.substr(0, whole.size() - 1)).error,
            "plan.dxf, byte " + std::to_string(whole.size() - 6) +
                ": the drawing is cut off: it ends inside a value");
  EXPECT_EQ(Scanned(std::string(kBinarySentinel)).error,
            "plan.dxf, byte 22: the drawing is cut off: it ends without EOF");
}

TEST(ScanBinary, CodesThatAreNoneAreNamedWithTheirOffset) {
  const std::string front = binary("0 SECTION\n2 ENTITIES\n");
  const std::string at = "plan.dxf, byte " + std::to_string(front.size());
  EXPECT_EQ(Scanned(front + std::string("\xFF\xFF\0", 3)).error, at + ": -1 is not a group code");
  EXPECT_EQ(Scanned(front + std::string("\x30\x04\0", 3)).error, at + ": 1072 is not a group code");
}

TEST(ScanBinary, NothingIsReadBehindEof) {
  EXPECT_EQ(Scanned(binary("0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n") + "\xFF\xFF").error, "");
}

TEST(ScanBinary, SectionsAreCheckedAsInAsciiFiles) {
  EXPECT_THAT(
      Scanned(binary("0 SECTION\n2 ENTITIES\n0 EOF\n")).error,
      testing::EndsWith("the drawing ends inside section ENTITIES, whose ENDSEC is missing"));
}

TEST(ScanBinary, TheSentinelAloneDecides) {
  std::string damaged = binary(kPlan);
  damaged[3] = 'X';
  EXPECT_EQ(Scanned(damaged).error, "plan.dxf: this is not a DXF drawing: no SECTION at its start");
}

}  // namespace
}  // namespace cad::dxf
