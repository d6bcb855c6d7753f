#include "host/dxf/tag_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "host/dxf/binary_layout.h"
#include "tests/host/dxf/written.h"

namespace cad::dxf {
namespace {

const Dialect kAscii{};
const Dialect kCrlf{.crlf = true};
const Dialect kBinary{.binary = true};
const Dialect kOldBinary{.binary = true, .one_byte_codes = true};

template <class Write>
std::string written_by(const Dialect& dialect, Write write) {
  std::string out;
  TagWriter writer(out, dialect);
  write(writer);
  return out;
}

TEST(TagWriter, AlignsAsTheCadProgramDoes) {
  EXPECT_EQ(written_by(kAscii,
                       [](TagWriter& w) {
                         w.raw(0, "LINE");
                         w.handle(5, 0x2F);
                         w.text(8, L"0");
                         w.real(40, 2.5);
                         w.integer(70, 7);
                         w.integer(70, -7);
                         w.integer(70, 1234567);
                         w.integer(90, 12);
                         w.integer(160, 12);
                         w.integer(290, 1);
                         w.integer(370, -1);
                         w.handle(330, 0xABC);
                         w.integer(1070, 3);
                         w.integer(1071, 3);
                         w.raw(1001, "PN");
                       }),
            "  0\nLINE\n  5\n2F\n  8\n0\n 40\n2.5\n 70\n     7\n 70\n    -7\n 70\n1234567\n"
            " 90\n       12\n160\n                12\n290\n     1\n370\n    -1\n330\nABC\n"
            "1070\n     3\n1071\n        3\n1001\nPN\n");
}

TEST(TagWriter, EndsLinesAsTheDialectSays) {
  EXPECT_EQ(written_by(kCrlf, [](TagWriter& w) { w.point(10, 1, -2.5, 0); }),
            " 10\r\n1.0\r\n 20\r\n-2.5\r\n 30\r\n0.0\r\n");
}

TEST(TagWriter, IntegersUnderARealCodeAreReals) {
  EXPECT_EQ(written_by(kAscii, [](TagWriter& w) { w.integer(40, 3); }), " 40\n3.0\n");
  EXPECT_EQ(written_by(kBinary, [](TagWriter& w) { w.integer(40, 3); }),
            written::binary("40 3.0").substr(kBinarySentinel.size()));
}

TEST(TagWriter, NumbersUnderATextCodeArePlain) {
  EXPECT_EQ(written_by(kAscii,
                       [](TagWriter& w) {
                         w.integer(1, -12);
                         w.real(1, 0.5);
                       }),
            "  1\n-12\n  1\n0.5\n");
}

TEST(TagWriter, ChunksAreUpperCaseHexadecimal) {
  const unsigned char bytes[] = {0, 0x7F, 0xAB, 0xFF};
  EXPECT_EQ(written_by(kAscii, [&](TagWriter& w) { w.chunk(310, bytes); }), "310\n007FABFF\n");
  EXPECT_EQ(written_by(kAscii, [&](TagWriter& w) { w.chunk(310, {}); }), "310\n\n");
}

TEST(TagWriter, BinaryFilesHoldTheSameValues) {
  const auto write = [](TagWriter& w) {
    const unsigned char chunk[] = {0x00, 0xFF, 0x0A};
    w.raw(0, "LINE");
    w.handle(5, 0x2F);
    w.text(8, L"0");
    w.point(10, 1.5, -2.25, 1e300);
    w.integer(62, -3);
    w.integer(90, -70000);
    w.integer(160, std::numeric_limits<std::int64_t>::min());
    w.integer(290, 1);
    w.chunk(310, chunk);
    w.handle(330, 0xABCDEF0123456789);
    w.raw(1001, "PN");
    w.integer(1070, -7);
    w.integer(1071, 70000);
    w.real(1040, -0.1);
  };
  const std::string note =
      "0 LINE\n5 2F\n8 0\n10 1.5\n20 -2.25\n30 1e300\n62 -3\n90 -70000\n"
      "160 -9223372036854775808\n290 1\n310 00FF0A\n330 ABCDEF0123456789\n1001 PN\n1070 -7\n"
      "1071 70000\n1040 -0.1\n";
  EXPECT_EQ(written_by(kBinary, write), written::binary(note).substr(kBinarySentinel.size()));
  EXPECT_EQ(written_by(kOldBinary, write),
            written::binary(note, true).substr(kBinarySentinel.size()));
}

TEST(TagWriter, TextsGoThroughTheCodePageAndTheEscapes) {
  const Dialect old{.release = Release::kR2000, .code_page = CodePage::k936};
  EXPECT_EQ(written_by(old, [](TagWriter& w) { w.text(1, L"\u7BA1\n\u20BF"); }),
            "  1\n\xB9\xDC^J\\U+20BF\n");
  EXPECT_EQ(written_by(kBinary, [](TagWriter& w) { w.text(1, L"a\tb"); }),
            std::string("\x01\0a^Ib\0", 7));
}

TEST(TagWriter, WritesLongValuesLikeShortOnes) {
  for (const std::size_t length : {0, 1, 99, 100, 101, 102, 250, 5000}) {
    const std::string value(length, 'v');
    for (const int code : {0, 8, 62, 310, 1000, 1071, 9999, 10000, 123456}) {
      const std::string digits = std::to_string(code);
      const std::string line = std::string(digits.size() < 3 ? 3 - digits.size() : 0, ' ') + digits;
      for (const Dialect* dialect : {&kAscii, &kCrlf}) {
        const std::string eol(dialect->eol());
        const std::string wanted = line + eol + value + eol;
        EXPECT_EQ(written_by(*dialect, [&](TagWriter& w) { w.raw(code, value); }), wanted);
        EXPECT_EQ(written_by(*dialect,
                             [&](TagWriter& w) {
                               w.text(code, std::wstring(value.begin(), value.end()));
                             }),
                  wanted);
      }
    }
  }
}

TEST(TagWriter, RespellsATextWhereverItsSpecialCharacterStands) {
  for (const std::size_t length : {1, 2, 50, 99, 100, 101}) {
    for (std::size_t at = 0; at<length; at += length> 10 ? 7 : 1) {
      std::wstring text(length, L'v');
      text[at] = L'\n';
      std::string wanted(length, 'v');
      wanted.replace(at, 1, "^J");
      EXPECT_EQ(written_by(kAscii, [&](TagWriter& w) { w.text(1, text); }),
                "  1\n" + wanted + "\n");
      text[at] = L'\u7BA1';
      wanted.replace(at, 2, "\u7BA1");
      EXPECT_EQ(written_by(kAscii, [&](TagWriter& w) { w.text(1, text); }),
                "  1\n" + wanted + "\n");
      text[at] = L'\x10076';  // whose low byte is a plain letter
      wanted.replace(at, 3, "\xF0\x90\x81\xB6");
      EXPECT_EQ(written_by(kAscii, [&](TagWriter& w) { w.text(1, text); }),
                "  1\n" + wanted + "\n");
    }
  }
}

TEST(TagWriter, CodesOutsideTheTableAreWrittenInFull) {
  EXPECT_EQ(written_by(kAscii, [](TagWriter& w) { w.integer(-3, -12); }), " -3\n-12\n");
  EXPECT_EQ(written_by(kAscii, [](TagWriter& w) { w.integer(10000, 7); }), "10000\n7\n");
  EXPECT_EQ(written_by(kCrlf, [](TagWriter& w) { w.real(-1, 0.5); }), " -1\r\n0.5\r\n");
}

TEST(TagWriter, CopyingRespellsATagForAnotherDialect) {
  const Dialect old{.release = Release::kR2000, .code_page = CodePage::k936, .crlf = true};
  struct Row {
    const char* from;
    const char* to;
  };
  const Row rows[] = {
      {"  0\nLINE\n", "  0\r\nLINE\r\n"},
      {"8\n\u7BA1\u7EBF\n", "  8\r\n\xB9\xDC\xCF\xDF\r\n"},
      {"  1\na^Jb^ c\n", "  1\r\na^Jb^ c\r\n"},
      {"  1\n\\U+7BA1\n", "  1\r\n\xB9\xDC\r\n"},
      {"  1\n\\P{\\C1;x}\n", "  1\r\n\\P{\\C1;x}\r\n"},
      {"40\n2.50000\n", " 40\r\n2.5\r\n"},
      {"70\n7\n", " 70\r\n     7\r\n"},
      {"330\n2f\n", "330\r\n2f\r\n"},
      {"310\nffaa\n", "310\r\nFFAA\r\n"},
      {"290\n1\n", "290\r\n     1\r\n"},
  };
  for (const Row& row : rows) {
    const std::string from = row.from;
    TagReader tags(from, kAscii);
    Tag tag;
    ASSERT_TRUE(tags.next(tag));
    EXPECT_EQ(written_by(old, [&](TagWriter& w) { w.copy(tag, kAscii); }), row.to) << row.from;
  }
}

TEST(TagWriter, AHandleThatIsNoneKeepsToItsLine) {
  Tag tag;
  tag.code = 330;
  tag.value = "A\nB";
  EXPECT_EQ(written_by(kAscii, [&](TagWriter& w) { w.copy(tag, kBinary); }), "330\nA^JB\n");
}

TEST(TagWriter, WhatItWritesReadsBackAsTheSameNumber) {
  std::mt19937_64 random(20120607);
  for (int round = 0; round < 20000; ++round) {
    const std::uint64_t bits = random();
    double real;
    std::memcpy(&real, &bits, sizeof real);
    if (!std::isfinite(real)) continue;
    for (const Dialect* dialect : {&kAscii, &kCrlf, &kBinary, &kOldBinary}) {
      const std::string bytes = written_by(*dialect, [&](TagWriter& w) {
        w.real(1040, real);
        w.integer(70, static_cast<std::int16_t>(bits));
        w.integer(1071, static_cast<std::int32_t>(bits));
        w.integer(160, static_cast<std::int64_t>(bits));
        w.handle(360, bits);
      });
      TagReader tags(bytes, *dialect);
      Tag tag;
      ASSERT_TRUE(tags.next(tag));
      ASSERT_EQ(real_value(tag, *dialect), real);
      ASSERT_TRUE(tags.next(tag));
      ASSERT_EQ(int_value(tag, *dialect), static_cast<std::int16_t>(bits));
      ASSERT_TRUE(tags.next(tag));
      ASSERT_EQ(int_value(tag, *dialect), static_cast<std::int32_t>(bits));
      ASSERT_TRUE(tags.next(tag));
      ASSERT_EQ(int_value(tag, *dialect), static_cast<std::int64_t>(bits));
      ASSERT_TRUE(tags.next(tag));
      ASSERT_EQ(handle_value(tag), bits);
      ASSERT_FALSE(tags.next(tag));
    }
  }
}

}  // namespace
}  // namespace cad::dxf
