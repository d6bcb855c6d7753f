#include "host/font/font_table.h"

#include <gmock/gmock.h>

#include "host/base/trace.h"

namespace {

using namespace cad::font;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

TEST(FontTable, RowsNameFontsFamiliesAndSizes) {
  const auto table = read_table(
      "# comment\r\n\r\n"
      "simplex.shx, ROMANS.SHX | Liberation Sans, DejaVu Sans:bold:italic | 0.95 | 1.0\r\n"
      "宋体 | WenQuanYi Micro Hei | - |\n",
      "t");
  ASSERT_THAT(table, SizeIs(2));
  EXPECT_THAT(table[0].patterns, ElementsAre(L"simplex.shx", L"romans.shx"));
  ASSERT_THAT(table[0].families, SizeIs(2));
  EXPECT_EQ(table[0].families[1].name, "DejaVu Sans");
  EXPECT_TRUE(table[0].families[1].bold);
  EXPECT_TRUE(table[0].families[1].italic);
  EXPECT_EQ(table[0].digit, 0.95);
  EXPECT_EQ(table[0].full, 1.0);
  EXPECT_EQ(table[1].digit, 0.0);
}

TEST(FontTable, TheFirstFittingRowCounts) {
  const auto table = read_table("gb*.shx|A\ngbcbig.shx|B\nsim???.tt?|C\n*|D", "t");
  EXPECT_EQ(find_substitute(table, L"GBCBIG.SHX")->families[0].name, "A");
  EXPECT_EQ(find_substitute(table, L"simsun.ttc")->families[0].name, "C");
  EXPECT_EQ(find_substitute(table, L"simsunb.ttf")->families[0].name, "D");
  EXPECT_EQ(find_substitute({}, L"x"), nullptr);
}

TEST(FontTable, StarsStandForAnyNumberOfCharacters) {
  const auto table = read_table("a*b*c.shx|A", "t");
  for (const wchar_t* name : {L"abc.shx", L"axxbxc.shx", L"abbcbc.shx"})
    EXPECT_TRUE(find_substitute(table, name)) << testing::PrintToString(name);
  for (const wchar_t* name : {L"ab.shx", L"abc.shx2", L"", L"acb.shx"})
    EXPECT_FALSE(find_substitute(table, name)) << testing::PrintToString(name);
}

TEST(FontTable, LinesThatAreNoRowsAreLeftOutAndTraced) {
  std::wstring traced;
  cad::set_trace_sink([&](std::wstring_view line) { traced += line; });
  const auto table =
      read_table("a|\n|b\na|b:heavy\na|b|wide\na|b|-1\na|b|1|1|1\nonly names\nx|y", "my.txt");
  cad::set_trace_sink({});
  ASSERT_THAT(table, SizeIs(1));
  EXPECT_EQ(table[0].families[0].name, "y");
  for (const wchar_t* where : {L"my.txt:1:", L"my.txt:2:", L"my.txt:3:", L"my.txt:4:", L"my.txt:5:",
                               L"my.txt:6:", L"my.txt:7:"})
    EXPECT_THAT(traced, HasSubstr(where));
}

TEST(FontTable, TheInstalledTableKnowsTheUsualFonts) {
  std::wstring traced;
  cad::set_trace_sink([&](std::wstring_view line) { traced += line; });
  const auto& table = installed_table();
  cad::set_trace_sink({});
  EXPECT_EQ(traced, L"");
  const wchar_t* const kStroke[] = {L"txt.shx",    L"simplex.shx", L"romans.shx", L"isocp.shx",
                                    L"gbenor.shx", L"gbeitc.shx",  L"hztxt.shx",  L"gbcbig.shx"};
  for (const wchar_t* name : kStroke) {
    const Substitute* row = find_substitute(table, name);
    ASSERT_TRUE(row) << testing::PrintToString(name);
    EXPECT_GT(row->digit, 0.5);
    EXPECT_EQ(row->full, 1.0);
  }
  for (const wchar_t* name :
       {L"simsun.ttf", L"simhei.ttf", L"仿宋_GB2312", L"楷体", L"arial.ttf", L"something else"}) {
    const Substitute* row = find_substitute(table, name);
    ASSERT_TRUE(row) << testing::PrintToString(name);
    EXPECT_EQ(row->digit, 0.0);
  }
}

}  // namespace
