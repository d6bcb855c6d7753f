#include "host/dxf/extended_begin.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "host/dxf/tag_reader.h"

namespace cad::dxf {
namespace {

/// As a reader finds it, tag by tag.
std::size_t found_by_reader(std::string_view record) {
  const Dialect dialect;
  TagReader tags(record, dialect);
  Tag tag;
  std::size_t end = 0;
  while (tags.next(tag)) {
    if (tag.code == 1001) return tag.begin;
    end = tag.end;
  }
  return end;
}

TEST(ExtendedDataBegin, IsWhereTheFirstCode1001Stands) {
  const std::string entity = "  0\nLINE\n  5\n1A\n 10\n1.0\n";
  EXPECT_EQ(extended_data_begin(entity + "1001\nAPP\n1000\ntext\n1001\nOTHER\n"), entity.size());
  EXPECT_EQ(extended_data_begin("  0\r\nLINE\r\n1001\r\nAPP\r\n"), 11u);
  EXPECT_EQ(extended_data_begin("1001\nAPP\n"), 0u);
}

TEST(ExtendedDataBegin, IsTheEndOfARecordWithoutExtendedData) {
  for (const std::string record : {"", "  0\nLINE\n", "  0\nTEXT\n  5\n2F\n  1\nDN300 - 100.15\n"})
    EXPECT_EQ(extended_data_begin(record), record.size());
}

TEST(ExtendedDataBegin, AValueThatReads1001IsNone) {
  for (std::size_t blanks = 0; blanks < 40; ++blanks) {
    const std::string front = "  0\nTEXT\n  1\n" + std::string(blanks, ' ') + "1001\n";
    EXPECT_EQ(extended_data_begin(front), front.size());
    EXPECT_EQ(extended_data_begin(front + "1001\nAPP\n"), front.size());
  }
}

TEST(ExtendedDataBegin, ALongerCodeIsAnother) {
  const std::string record = "  0\nTEXT\n10010\nx\n";
  EXPECT_EQ(extended_data_begin(record), record.size());
}

TEST(ExtendedDataBegin, WhatIsSpelledOtherwiseIsLeftToTheReader) {
  EXPECT_FALSE(extended_data_begin("  0\nTEXT\n  1001\nAPP\n"));
  EXPECT_FALSE(extended_data_begin("  0\nTEXT\n01001\nAPP\n"));
  EXPECT_FALSE(extended_data_begin("  0\nTEXT\n1001 \nAPP\n"));
  EXPECT_FALSE(extended_data_begin("  0\nTEXT\n1001"));
  EXPECT_FALSE(extended_data_begin("  0\nTEXT"));
  EXPECT_FALSE(extended_data_begin("  0\nTEXT\n  1\n"));
}

RC_GTEST_PROP(ExtendedDataBegin, IsWhereAReaderFindsIt,
              (const std::vector<std::pair<std::uint8_t, std::uint8_t>>& tags, bool crlf)) {
  constexpr const char* kCodes[] = {"  0",   " 10",   "100", "1000", "1001",
                                    " 1001", "11001", "1",   "1010"};
  constexpr const char* kValues[] = {
      "",      "1",         "1001",      "11001",
      "10011", "1001 1001", "text 1001", "a value of more than sixteen bytes 1001"};
  const std::string end = crlf ? "\r\n" : "\n";
  std::string record;
  for (const auto& [code, value] : tags)
    record += kCodes[code % std::size(kCodes)] + end + kValues[value % std::size(kValues)] + end;
  const std::optional<std::size_t> begin = extended_data_begin(record);
  if (begin) RC_ASSERT(*begin == found_by_reader(record));
}

}  // namespace
}  // namespace cad::dxf
