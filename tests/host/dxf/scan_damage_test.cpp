#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/host/dxf/scanned.h"
#include "tests/host/dxf/written.h"

namespace cad::dxf {
namespace {

using written::ascii;

// Code lines in every spelling

struct CodeRow {
  std::string line;
  int code;
};

/// A drawing whose LINE holds one tag with the given code line; the value is a handle.
std::string with_code_line(const std::string& line, std::string_view eol = "\n") {
  const std::string end(eol);
  return ascii("0 SECTION\n2 ENTITIES\n0 LINE\n", eol) + line + end + "2F" + end +
         ascii("0 ENDSEC\n0 EOF\n", eol);
}

TEST(CodeLine, MayHaveBlanksRoundTheNumber) {
  const std::string blanks(5000, ' ');
  for (const std::string& line :
       {std::string("5"), std::string("  5"), std::string(" 5"), std::string("   5"),
        std::string("    5"), std::string("5 "), std::string("5   "), std::string(" 5 "),
        std::string("\t5"), std::string("5\t"), std::string("\t 5 \t"), std::string("05"),
        std::string("0005"), std::string("000000005"), blanks + "5", "5" + blanks}) {
    for (const std::string_view eol : {"\n", "\r\n"}) {
      const Scanned scanned(with_code_line(line, eol));
      EXPECT_EQ(scanned.error, "") << line.substr(0, 20);
      EXPECT_EQ(scanned.first("LINE").handle, 0x2Fu) << line.substr(0, 20);
    }
  }
}

TEST(CodeLine, OfOtherNumbersIsNoHandle) {
  for (const char* line : {"-5", "-1", "50", "15", "1005", "1071", "505", "32767", "-32768", "4",
                           "6", "   15", "1001 "}) {
    const Scanned scanned(with_code_line(line));
    EXPECT_EQ(scanned.error, "") << line;
    EXPECT_EQ(scanned.first("LINE").handle, 0u) << line;
  }
}

TEST(CodeLine, ThatIsNoNumberIsNamedWithItsLine) {
  struct Row {
    std::string line;
    std::string shown;
  };
  const Row rows[] = {
      {"5 5", "5 5"},
      {"4O", "4O"},
      {"!0", "!0"},
      {"", ""},
      {" ", " "},
      {"   ", "   "},
      {"    ", "    "},
      {"0x5", "0x5"},
      {"5.0", "5.0"},
      {"+5", "+5"},
      {"- 5", "- 5"},
      {"-", "-"},
      {"--5", "--5"},
      {"5-", "5-"},
      {":", ":"},
      {"1:", "1:"},
      {"/5", "/5"},
      {"p5", "p5"},
      {"5\x01", "5?"},
      {"\xB5", "\xB5"},
      {"\xC2\xA0"
       "5",
       "\xC2\xA0"
       "5"},
      {"32768", "32768"},
      {"-32769", "-32769"},
      {"99999999999", "99999999999"},
      {"5\r5", "5?5"},
      {std::string("5\0", 2), "5?"},
      {"LINE", "LINE"},
      {std::string(5000, '1'), std::string(40, '1') + "..."},
  };
  for (const Row& row : rows) {
    for (const std::string_view eol : {"\n", "\r\n"}) {
      EXPECT_EQ(Scanned(with_code_line(row.line, eol)).error,
                "plan.dxf:7: group code \"" + row.shown + "\" is not a number");
    }
  }
}

TEST(CodeLine, ReadsTheSameFastAndSlow) {
  // Every line of up to three characters from these reads as std::strtol would have it.
  const std::string letters = " 0159-\tA:";
  const auto expected = [](const std::string& line) {
    const std::size_t first = line.find_first_not_of(" \t");
    const std::size_t last = line.find_last_not_of(" \t");
    if (first == std::string::npos) return std::string("error");
    const std::string core = line.substr(first, last - first + 1);
    const std::size_t digits = core[0] == '-' ? 1 : 0;
    if (core.size() == digits) return std::string("error");
    if (core.find_first_not_of("0123456789", digits) != std::string::npos) {
      return std::string("error");
    }
    return std::atoi(core.c_str()) == 5 ? std::string("handle") : std::string("other");
  };
  std::vector<std::string> lines = {""};
  for (std::size_t i = 0; lines[i].size() < 4; ++i) {
    for (const char c : letters) lines.push_back(lines[i] + c);
  }
  for (const std::string& line : lines) {
    const std::string wanted = expected(line);
    if (line.find_first_not_of(" \t0-") == std::string::npos) continue;  // 0 begins a record
    const Scanned scanned(with_code_line(line));
    const std::string found = !scanned.error.empty()                 ? "error"
                              : scanned.first("LINE").handle == 0x2F ? "handle"
                                                                     : "other";
    EXPECT_EQ(found, wanted) << '"' << line << '"';
  }
}

TEST(CodeLine, AtTheVeryStartIsReadWithoutLookingInFrontOfTheBytes) {
  // A tight allocation, so that the sanitizer sees a look in front.
  const std::string text = "0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n";
  const std::vector<char> tight(text.begin(), text.end());
  const std::string_view bytes(tight.data(), tight.size());
  Scanned sink("");
  const Result<Preamble> preamble = read_preamble(bytes, "plan.dxf");
  ASSERT_TRUE(preamble);
  EXPECT_TRUE(scan_records(bytes, *preamble, "plan.dxf", sink));
  EXPECT_EQ(sink.marks.size(), 3u);
}

// Sections

TEST(ScanSections, ThatAreNotClosedAreNamed) {
  EXPECT_EQ(Scanned(ascii("0 SECTION\n2 ENTITIES\n0 LINE\n0 SECTION\n2 OBJECTS\n0 EOF\n")).error,
            "plan.dxf:7: a section begins inside section ENTITIES, whose ENDSEC is missing");
  EXPECT_EQ(Scanned(ascii("0 SECTION\n2 ENTITIES\n0 LINE\n0 EOF\n")).error,
            "plan.dxf:7: the drawing ends inside section ENTITIES, whose ENDSEC is missing");
  EXPECT_EQ(Scanned(ascii("0 SECTION\n0 SECTION\n2 OBJECTS\n0 EOF\n")).error,
            "plan.dxf:3: a section begins inside section without a name, whose ENDSEC is missing");
}

TEST(ScanSections, WithoutEofTheDrawingIsCutOff) {
  EXPECT_EQ(Scanned(ascii("0 SECTION\n2 ENTITIES\n0 ENDSEC\n")).error,
            "plan.dxf:7: the drawing is cut off: it ends without EOF");
  EXPECT_EQ(Scanned(ascii("0 SECTION\n2 ENTITIES\n0 LINE\n")).error,
            "plan.dxf:7: the drawing is cut off: it ends without EOF");
}

// Cuts

constexpr const char* kPlan =
    "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1027\n9 $HANDSEED\n5 30\n0 ENDSEC\n"
    "0 SECTION\n2 ENTITIES\n0 LINE\n5 2F\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbLine\n"
    "10 1.5\n20 -2.0\n30 0.0\n1001 PN\n1000 x\n0 ENDSEC\n0 EOF\n";

TEST(ScanCut, AtEveryByteIsAnErrorUntilEofIsWhole) {
  for (const std::string_view eol : {"\n", "\r\n"}) {
    const std::string whole = ascii(kPlan, eol);
    const std::size_t eof_is_whole = whole.size() - eol.size();
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const std::string cut = whole.substr(0, size);
      const Scanned scanned(cut);
      if (size >= eof_is_whole) {
        EXPECT_EQ(scanned.error, "") << size;
        EXPECT_EQ(scanned.kinds().back(), "EOF");
      } else {
        EXPECT_NE(scanned.error, "") << size;
        EXPECT_THAT(scanned.error, testing::StartsWith("plan.dxf")) << size;
      }
    }
  }
}

TEST(ScanDamage, RandomBytesNeverDoMoreThanFail) {
  std::mt19937 random(20120607);
  for (int round = 0; round < 3000; ++round) {
    std::string bytes(random() % 200, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    if (round % 3 == 0) bytes.insert(0, kBinarySentinel);
    if (round % 3 == 1) bytes.insert(0, "0\nSECTION\n2\nENTITIES\n");
    const Scanned scanned(bytes);
    EXPECT_NE(scanned.error, "");
  }
}

TEST(ScanDamage, ChangedBytesEitherFailOrLeaveRecordsThatCoverTheFile) {
  std::mt19937 random(20120607);
  const std::string sound = ascii(kPlan);
  for (int round = 0; round < 5000; ++round) {
    std::string bytes = sound;
    for (int changes = 1 + static_cast<int>(random() % 4); changes > 0; --changes) {
      const std::size_t at = random() % bytes.size();
      switch (random() % 3) {
        case 0:
          bytes[at] = static_cast<char>(random());
          break;
        case 1:
          bytes.erase(at, 1 + random() % 5);
          break;
        default:
          bytes.insert(at, 1, "0159 \n\r-A"[random() % 9]);
      }
      if (bytes.empty()) break;
    }
    const Scanned scanned(bytes);
    if (!scanned.error.empty()) continue;
    std::uint64_t position = scanned.preamble.start;
    for (const RecordMark& mark : scanned.marks) {
      ASSERT_EQ(mark.begin, position);
      position = mark.end;
    }
    ASSERT_EQ(position, bytes.size());
  }
}

}  // namespace
}  // namespace cad::dxf
