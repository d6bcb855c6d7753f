#include "host/dxf/tag_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "host/dxf/binary_layout.h"
#include "tests/host/dxf/written.h"

namespace cad::dxf {
namespace {

using testing::ElementsAre;
using written::ascii;
using written::binary;

const Dialect kAscii{};
const Dialect kBinary{.binary = true};
const Dialect kOldBinary{.binary = true, .one_byte_codes = true};

struct Form {
  const char* name;
  const Dialect& dialect;
  std::string bytes;
};

/// A note in all forms, without the binary front.
std::vector<Form> forms(std::string_view note) {
  const std::size_t front = kBinarySentinel.size();
  return {{"LF", kAscii, ascii(note)},
          {"CRLF", kAscii, ascii(note, "\r\n")},
          {"binary", kBinary, binary(note).substr(front)},
          {"old binary", kOldBinary, binary(note, true).substr(front)}};
}

TEST(TagReader, ValuesReadTheSameInEveryForm) {
  for (const Form& form : forms("0 LINE\n5 2F\n8 a b \n40 -2.5\n70 -7\n90 70000\n"
                                "160 -81985529216486895\n290 1\n310 00FF7a\n330 ABCDEF0123\n"
                                "1071 -70000\n1004 10\n1 \n")) {
    SCOPED_TRACE(form.name);
    TagReader tags(form.bytes, form.dialect);
    Tag tag;
    const auto next = [&](int code) {
      ASSERT_TRUE(tags.next(tag));
      EXPECT_EQ(tag.code, code);
    };
    next(0);
    EXPECT_EQ(tag.value, "LINE");
    next(5);
    EXPECT_EQ(handle_value(tag), 0x2Fu);
    next(8);
    EXPECT_EQ(tag.value, "a b ");
    EXPECT_EQ(text_value(tag, form.dialect), L"a b ");
    next(40);
    EXPECT_EQ(real_value(tag, form.dialect), -2.5);
    next(70);
    EXPECT_EQ(int_value(tag, form.dialect), -7);
    EXPECT_EQ(real_value(tag, form.dialect), -7.0);
    next(90);
    EXPECT_EQ(int_value(tag, form.dialect), 70000);
    next(160);
    EXPECT_EQ(int_value(tag, form.dialect), -81985529216486895);
    next(290);
    EXPECT_EQ(int_value(tag, form.dialect), 1);
    next(310);
    EXPECT_THAT(chunk_value(tag, form.dialect), ElementsAre(0x00, 0xFF, 0x7A));
    next(330);
    EXPECT_EQ(handle_value(tag), 0xABCDEF0123u);
    next(1071);
    EXPECT_EQ(int_value(tag, form.dialect), -70000);
    next(1004);
    EXPECT_THAT(chunk_value(tag, form.dialect), ElementsAre(0x10));
    next(1);
    EXPECT_EQ(tag.value, "");
    EXPECT_EQ(tag.end, form.bytes.size());
    EXPECT_FALSE(tags.next(tag));
  }
}

TEST(TagReader, TagsCoverTheirRecordWithoutAGap) {
  for (const Form& form : forms("0 LINE\n5 2F\n10 1.0\n70 3\n310 00\n1000 x\n")) {
    TagReader tags(form.bytes, form.dialect);
    Tag tag;
    std::size_t position = 0;
    while (tags.next(tag)) {
      EXPECT_EQ(tag.begin, position) << form.name;
      position = tag.end;
    }
    EXPECT_EQ(position, form.bytes.size()) << form.name;
  }
}

TEST(TagReader, ReadsCodeLinesAsTheScannerDoes) {
  struct Row {
    const char* line;
    int code;
  };
  constexpr Row rows[] = {{"5", 5},   {"  5", 5},   {"\t5", 5},     {"5 ", 5},
                          {"5\t", 5}, {"-5", -5},   {"1071", 1071}, {"  -1", -1},
                          {"\r5", 5}, {" \r 5", 5}, {"0005", 5},    {"000000000000000005", 5},
                          {"5\r", 5}};
  for (const Row& row : rows) {
    const std::string bytes = std::string(row.line) + "\nx\n";
    TagReader tags(bytes, kAscii);
    Tag tag;
    ASSERT_TRUE(tags.next(tag)) << row.line;
    EXPECT_EQ(tag.code, row.code) << row.line;
    EXPECT_EQ(tag.value, "x");
  }
}

/// What the tags of ASCII bytes are, worked out line by line.
std::vector<Tag> tags_line_by_line(std::string_view bytes) {
  std::vector<Tag> tags;
  std::size_t position = 0;
  while (position < bytes.size()) {
    const std::size_t code_end = bytes.find('\n', position);
    if (code_end == bytes.npos) break;
    const std::size_t value_end = std::min(bytes.find('\n', code_end + 1), bytes.size());
    Tag tag;
    tag.begin = position;
    tag.code = std::atoi(std::string(bytes.substr(position, code_end - position)).c_str());
    tag.value = bytes.substr(code_end + 1, value_end - code_end - 1);
    if (tag.value.ends_with('\r')) tag.value.remove_suffix(1);
    position = tag.end = std::min(value_end + 1, bytes.size());
    tags.push_back(tag);
  }
  return tags;
}

/// Reads from memory of exactly that size, so that the sanitizer sees a look beyond.
void expect_read_line_by_line(const std::string& text) {
  const std::vector<char> tight(text.begin(), text.end());
  const std::string_view bytes(tight.data(), tight.size());
  TagReader tags(bytes, kAscii);
  Tag tag;
  for (const Tag& wanted : tags_line_by_line(bytes)) {
    ASSERT_TRUE(tags.next(tag)) << testing::PrintToString(text);
    ASSERT_EQ(tag.code, wanted.code) << testing::PrintToString(text);
    ASSERT_EQ(tag.value, wanted.value) << testing::PrintToString(text);
    ASSERT_EQ(tag.begin, wanted.begin);
    ASSERT_EQ(tag.end, wanted.end);
  }
  EXPECT_FALSE(tags.next(tag)) << testing::PrintToString(text);
}

TEST(TagReader, ReadsEveryCodeLineAsItWouldLineByLine) {
  const std::string letters(" 0159-\tA:/\0\r", 12);
  std::vector<std::string> lines = {""};
  for (std::size_t i = 0; lines[i].size() < 4; ++i)
    for (const char c : letters) lines.push_back(lines[i] + c);
  for (const std::string& line : lines)
    for (const char* rest : {"\nvalue that fills a block\n", "\r\nx\r\n"})
      ASSERT_NO_FATAL_FAILURE(expect_read_line_by_line(line + rest));
}

TEST(TagReader, ReadsLongCodeLinesAsItWouldLineByLine) {
  for (const char* line : {"10000", " 1000", "   40", "    40", "     40", "      40", "00040",
                           "40     ", "1000       ", "                    40", "32767", "-1000",
                           " -1", "40 comment", "1000x", "4 0"})
    for (const char* rest : {"\nvalue that fills a block\n", "\r\nx\r\n", "\nx", "\n", ""})
      expect_read_line_by_line(line + std::string(rest));
}

TEST(TagReader, ReadsValuesOfEveryLengthToTheEndOfTheBytes) {
  for (std::size_t length = 0; length < 70; ++length) {
    for (const char* end : {"", "\r", "\n", "\r\n", "\r\r\n", "\n\n", "\n  8\n0\n", "\n100"}) {
      expect_read_line_by_line("  1\n" + std::string(length, 'v') + end);
      expect_read_line_by_line("1000\r\n" + std::string(length, 'v') + end);
      expect_read_line_by_line("  1\n" + std::string(length, '\0') + end);
      expect_read_line_by_line("  1\n" + std::string(length, '\r') + end);
    }
  }
  expect_read_line_by_line("310\n" + std::string(1'000'000, 'F') + "\n  8\n0\n");
}

TEST(TagReader, BlanksOfAValueAreData) {
  const std::string bytes = "  1\n  two blanks, one behind \r\n";
  TagReader tags(bytes, kAscii);
  Tag tag;
  ASSERT_TRUE(tags.next(tag));
  EXPECT_EQ(tag.value, "  two blanks, one behind ");
}

TEST(TagReader, OnlyTheLastCarriageReturnBelongsToTheLineEnd) {
  const std::string bytes = "  1\r\na\r\r\n";
  TagReader tags(bytes, kAscii);
  Tag tag;
  ASSERT_TRUE(tags.next(tag));
  EXPECT_EQ(tag.value, "a\r");
}

TEST(TagReader, AValueThatIsNoNumberReadsAsZero) {
  for (const char* value : {"", "abc", "1,5", "--1", "1e999999", "nan", "inf"}) {
    const std::string bytes = " 40\n" + std::string(value) + "\n";
    TagReader tags(bytes, kAscii);
    Tag tag;
    ASSERT_TRUE(tags.next(tag));
    EXPECT_EQ(real_value(tag, kAscii), 0.0) << value;
    EXPECT_EQ(int_value(tag, kAscii), 0) << value;
  }
}

TEST(TagReader, BytesThatAreNoNumberReadAsZero) {
  for (const double value : {NAN, INFINITY, -INFINITY}) {
    Tag tag;
    tag.code = 40;
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    tag.value = {bytes, sizeof bytes};
    EXPECT_EQ(real_value(tag, kBinary), 0.0);
  }
}

TEST(TagReader, NumbersMayHaveBlanksRoundThem) {
  const std::string bytes = " 40\n  2.5 \n 70\n     7\n  5\n 2F \n";
  TagReader tags(bytes, kAscii);
  Tag tag;
  ASSERT_TRUE(tags.next(tag));
  EXPECT_EQ(real_value(tag, kAscii), 2.5);
  ASSERT_TRUE(tags.next(tag));
  EXPECT_EQ(int_value(tag, kAscii), 7);
  ASSERT_TRUE(tags.next(tag));
  EXPECT_EQ(handle_value(tag), 0x2Fu);
}

TEST(TagReader, AChunkEndsAtTheFirstPairThatIsNotHexadecimal) {
  const std::string bytes = "310\n01ffXX02\n310\n012\n";
  TagReader tags(bytes, kAscii);
  Tag tag;
  ASSERT_TRUE(tags.next(tag));
  EXPECT_THAT(chunk_value(tag, kAscii), ElementsAre(0x01, 0xFF));
  ASSERT_TRUE(tags.next(tag));
  EXPECT_THAT(chunk_value(tag, kAscii), ElementsAre(0x01));
}

TEST(TagReader, StopsAtATagThatIsNotWhole) {
  for (const Form& form : forms("0 LINE\n40 2.5\n1 text\n310 0102\n1000 x\n1070 3\n")) {
    for (std::size_t size = 0; size < form.bytes.size(); ++size) {
      const std::vector<char> tight(form.bytes.begin(),
                                    form.bytes.begin() + static_cast<std::ptrdiff_t>(size));
      TagReader tags({tight.data(), tight.size()}, form.dialect);
      Tag tag;
      while (tags.next(tag)) EXPECT_LE(tag.end, size);
    }
  }
}

}  // namespace
}  // namespace cad::dxf
