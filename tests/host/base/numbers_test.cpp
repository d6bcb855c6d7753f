#include "host/base/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <random>
#include <string>

namespace cad {
namespace {

using Limits = std::numeric_limits<double>;

std::string real_text(double value) {
  std::string out;
  append_real(out, value);
  return out;
}

TEST(ParseInt, ReadsWholeNumbersWithBlanksAround) {
  EXPECT_EQ(parse_int("300"), 300);
  EXPECT_EQ(parse_int("  -7 \r"), -7);
  EXPECT_EQ(parse_int("+12"), 12);
  EXPECT_EQ(parse_int("007"), 7);
  EXPECT_EQ(parse_int("-9223372036854775808"), INT64_MIN);
}

TEST(ParseInt, AnythingElseIsNoNumber) {
  for (const char* text : {"", " ", "-", "+", "+-1", "-+1", "4O", "1.0", "1 2", "0x10", "1e3",
                           "9223372036854775808", "３"}) {
    EXPECT_EQ(parse_int(text), std::nullopt) << text;
  }
}

TEST(ParseReal, ReadsEverySpellingDrawingsHave) {
  EXPECT_EQ(parse_real("36.5"), 36.5);
  EXPECT_EQ(parse_real("  36.50000  "), 36.5);
  EXPECT_EQ(parse_real("-.5"), -0.5);
  EXPECT_EQ(parse_real("+.5"), 0.5);
  EXPECT_EQ(parse_real("5."), 5.0);
  EXPECT_EQ(parse_real("300"), 300.0);
  EXPECT_EQ(parse_real("1E-10"), 1e-10);
  EXPECT_EQ(parse_real("1.5e+20"), 1.5e20);
  EXPECT_TRUE(std::signbit(*parse_real("-0.0")));
}

TEST(ParseReal, AnythingElseIsNoNumber) {
  for (const char* text :
       {"",    " ",    ".",   "-",    "+",   "-.",     "e5",       "1e",  "1e+", "36,5", "1.2.3",
        "1 2", "0x10", "inf", "-inf", "nan", "NAN(1)", "infinity", "+-1", "++1", "1d3"}) {
    EXPECT_EQ(parse_real(text), std::nullopt) << text;
  }
}

TEST(ParseReal, ANumberTooLargeIsNone) {
  EXPECT_EQ(parse_real("1e309"), std::nullopt);
  EXPECT_EQ(parse_real("-1e309"), std::nullopt);
  EXPECT_EQ(parse_real("1e99999999999999999999"), std::nullopt);
  EXPECT_EQ(parse_real(std::string(400, '9')), std::nullopt);
  EXPECT_EQ(parse_real("0.1e310"), std::nullopt);
}

TEST(ParseReal, ANumberTooSmallIsZero) {
  EXPECT_EQ(parse_real("1e-400"), 0.0);
  EXPECT_EQ(parse_real("1e-99999999999999999999"), 0.0);
  EXPECT_EQ(parse_real("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_TRUE(std::signbit(*parse_real("-1e-400")));
}

TEST(ParseReal, ZeroIsZeroWhateverItsExponent) {
  EXPECT_EQ(parse_real("0e999999999999"), 0.0);
  EXPECT_EQ(parse_real("0.000e-999999999999"), 0.0);
}

struct RealText {
  double value;
  const char* text;
};

TEST(AppendReal, IsShortAndAlwaysHasAPoint) {
  constexpr RealText kRows[] = {
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {1.0, "1.0"},
      {-36.5, "-36.5"},
      {0.1, "0.1"},
      {300.0, "300.0"},
      {1.0 / 3.0, "0.3333333333333333"},
      {123456789.25, "123456789.25"},
      {1e-5, "0.00001"},
      {9.5e-6, "9.5E-06"},
      {1e-10, "1.0E-10"},
      {-2.5e-7, "-2.5E-07"},
      {9007199254740993.0, "9007199254740992.0"},
      {9999999999999998.0, "9999999999999998.0"},
      {1e16, "1.0E+16"},
      {1.5e20, "1.5E+20"},
      {1e100, "1.0E+100"},
      {5e-324, "5.0E-324"},
      {1.7976931348623157e308, "1.7976931348623157E+308"},
  };
  for (const auto& [value, text] : kRows) {
    EXPECT_EQ(real_text(value), text);
    EXPECT_EQ(parse_real(text), value) << text;
  }
}

TEST(AppendReal, Appends) {
  std::string line = "40\n";
  append_real(line, 2.5);
  EXPECT_EQ(line, "40\n2.5");
}

TEST(AppendReal, ReadsBackAsTheSameDouble) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937_64 random(seed);
  for (int i = 0; i < 100000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    const std::string text = real_text(value);
    const auto back = parse_real(text);
    ASSERT_TRUE(back) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(*back), std::bit_cast<std::uint64_t>(value)) << text;
    ASSERT_NE(text.find('.'), std::string::npos) << text;
  }
}

/// The shortest text by the library alone.
std::string shortest(double value) {
  char room[64];
  const double size = std::fabs(value);
  const bool fixed = size == 0.0 || (size >= 1e-5 && size < 1e16);
  const auto format = fixed ? std::chars_format::fixed : std::chars_format::scientific;
  std::string text(room, std::to_chars(room, std::end(room), value, format).ptr);
  const std::size_t e = std::min(text.find('e'), text.size());
  if (e < text.size()) text[e] = 'E';
  if (text.find('.') == std::string::npos) text.insert(e, ".0");
  return text;
}

TEST(AppendReal, WritesFewDecimalsLikeAnyOthers) {
  std::mt19937_64 random(4711);
  for (int round = 0; round < 200000; ++round) {
    const auto digits = static_cast<std::int64_t>(random() >> (random() % 64));
    const double decimal =
        static_cast<double>(digits) / std::pow(10.0, static_cast<double>(random() % 19));
    for (const double value : {decimal, -decimal, std::nextafter(decimal, 0.0),
                               std::nextafter(decimal, Limits::max())}) {
      ASSERT_EQ(real_text(value), shortest(value));
      ASSERT_EQ(RealDigits(value).view(), shortest(value));
    }
  }
  for (const double value : {1e-5, 1.1e-5, 9e-6, 1e-6, 5e-7, 999999999.999999, 1e9, 1e15, 1e16,
                             0.1 + 0.2, 4503599627.370497, 0.000001, 123456789.0, 0.5}) {
    EXPECT_EQ(real_text(value), shortest(value));
    EXPECT_EQ(real_text(-value), shortest(-value));
  }
}

TEST(ParseReal, ReadsFewDigitsLikeAnyOthers) {
  std::mt19937_64 random(815);
  for (int round = 0; round < 200000; ++round) {
    std::string text = std::to_string(random() >> (random() % 64));
    text.insert(random() % (text.size() + 1), ".");
    if (random() % 2) text.insert(0, "-");
    double wanted = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), wanted);
    ASSERT_EQ(parse_real(text), wanted) << text;
  }
  for (const char* text : {"..5", "5..", "1.2.3", ".", "-.", "-", "1 2", "12345a", "-1-", "1:2"})
    EXPECT_EQ(parse_real(text), std::nullopt) << text;
  EXPECT_TRUE(std::signbit(*parse_real("-0")));
  EXPECT_EQ(parse_real("000000000000000000000001.5"), 1.5);
}

TEST(Handle, ReadsHexadecimalOfEitherCase) {
  EXPECT_EQ(parse_handle("2F3"), 0x2F3u);
  EXPECT_EQ(parse_handle("2f3"), 0x2F3u);
  EXPECT_EQ(parse_handle("  1A \r"), 0x1Au);
  EXPECT_EQ(parse_handle("0"), 0u);
  EXPECT_EQ(parse_handle("FFFFFFFFFFFFFFFF"), UINT64_MAX);
  EXPECT_EQ(parse_handle("00000000000000FF"), 0xFFu);
  EXPECT_EQ(parse_handle(L"2F3"), 0x2F3u);
  EXPECT_EQ(parse_handle(L" 1a "), 0x1Au);
}

TEST(Handle, AnythingElseIsNone) {
  for (const char* text :
       {"", " ", "0x1F", "-1", "+1", "2G", "1 2", "10000000000000000", "00000000000000000"}) {
    EXPECT_EQ(parse_handle(text), std::nullopt) << text;
  }
  EXPECT_EQ(parse_handle(L"２F3"), std::nullopt);
  EXPECT_EQ(parse_handle(L""), std::nullopt);
}

TEST(Handle, IsWrittenUpperCaseWithoutLeadingZeros) {
  std::string out = "5\n";
  append_handle(out, 0x2F3);
  EXPECT_EQ(out, "5\n2F3");
  EXPECT_EQ(handle_text(0), L"0");
  EXPECT_EQ(handle_text(0xABCDEF), L"ABCDEF");
  EXPECT_EQ(handle_text(UINT64_MAX), L"FFFFFFFFFFFFFFFF");
}

struct WideReal {
  const wchar_t* text;
  double value;
};

TEST(Wtof, ReadsTheLongestPrefixThatIsANumber) {
  constexpr WideReal kRows[] = {
      {L"36.5", 36.5}, {L"  \t\n36.5m", 36.5}, {L"-12.25%", -12.25}, {L"+3", 3.0},
      {L".5", 0.5},    {L"5.", 5.0},           {L"-.5x", -0.5},      {L"1e3", 1000.0},
      {L"1E-2", 0.01}, {L"1d3", 1000.0},       {L"1D+3", 1000.0},    {L"1e", 1.0},
      {L"1e+", 1.0},   {L"1e+x", 1.0},         {L"1.2.3", 1.2},      {L"0x10", 0.0},
      {L"1,5", 1.0},   {L"12 34", 12.0},       {L"00300", 300.0},    {L"2.5e1.5", 25.0},
  };
  for (const auto& [text, value] : kRows) {
    EXPECT_EQ(wtof(text), value) << std::string(text,
                                                text + std::char_traits<wchar_t>::length(text));
  }
}

TEST(Wtof, WhatIsNoNumberIsZero) {
  for (const wchar_t* text : {L"", L"  ", L"-", L".", L"-.", L"+.e5", L"abc", L"e5", L"inf", L"nan",
                              L"--1", L"+-1", L"管", L"３", L"INFINITY"}) {
    EXPECT_EQ(wtof(text), 0.0);
    EXPECT_FALSE(std::signbit(wtof(text)));
  }
}

TEST(Wtof, KeepsTheSignOfZero) { EXPECT_TRUE(std::signbit(wtof(L"-0"))); }

TEST(Wtof, BeyondTheRangeIsInfinityOrZero) {
  EXPECT_EQ(wtof(L"1e999"), Limits::infinity());
  EXPECT_EQ(wtof(L"-1d999"), -Limits::infinity());
  EXPECT_EQ(wtof(L"1e-999"), 0.0);
  EXPECT_EQ(wtof(L"1e99999999999999999999999"), Limits::infinity());
  EXPECT_EQ(wtof(std::wstring(1000, L'9')), Limits::infinity());
}

TEST(Wtoi, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(wtoi(L"300"), 300);
  EXPECT_EQ(wtoi(L" \t-7mm"), -7);
  EXPECT_EQ(wtoi(L"+12.9"), 12);
  EXPECT_EQ(wtoi(L"0x10"), 0);
  EXPECT_EQ(wtoi(L"010"), 10);
  EXPECT_EQ(wtoi(L""), 0);
  EXPECT_EQ(wtoi(L"-"), 0);
  EXPECT_EQ(wtoi(L"--5"), 0);
  EXPECT_EQ(wtoi(L"三"), 0);
  EXPECT_EQ(wtoi(L"３"), 0);
  EXPECT_EQ(wtol(L"42 "), 42);
}

TEST(Wtoi, SaturatesAt32Bits) {
  EXPECT_EQ(wtoi(L"2147483647"), INT32_MAX);
  EXPECT_EQ(wtoi(L"2147483648"), INT32_MAX);
  EXPECT_EQ(wtoi(L"-2147483648"), INT32_MIN);
  EXPECT_EQ(wtoi(L"-2147483649"), INT32_MIN);
  EXPECT_EQ(wtoi(std::wstring(500, L'9')), INT32_MAX);
  EXPECT_EQ(wtol(L"99999999999"), INT32_MAX);
  EXPECT_EQ(wtol(L"-99999999999"), INT32_MIN);
}

}  // namespace
}  // namespace cad
